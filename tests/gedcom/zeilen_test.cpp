#include "engine/utf8.h"
#include "gedcom/zeilen.h"
#include "support/export_fixture.h"

#include <gtest/gtest.h>

using namespace folio;

namespace {
std::string fold(const std::string& text, std::int16_t level = 1, const std::string& tag = "NOTE") {
    return gedtext_gefaltet(level, tag, text);
}
std::string chars(int n, char c = 'x') {
    return std::string(static_cast<std::size_t>(n), c);
}
} // namespace

TEST(GEDtext, FoldsAtLineBreaksAndLongPieces) {
    EXPECT_EQ(fold(chars(101)), "1 NOTE " + chars(101));
    EXPECT_EQ(fold(chars(102)), "1 NOTE " + chars(101) + "\r\n2 CONC x");
    // Characters 101 and 102 are blanks: the split moves behind character 103.
    const std::string blanks = chars(100) + "  " + chars(60);
    EXPECT_EQ(fold(blanks), "1 NOTE " + blanks.substr(0, 103) + "\r\n2 CONC " + blanks.substr(103));
    EXPECT_EQ(fold("eins\r\nzwei"), "1 NOTE eins\r\n2 CONT zwei");
    EXPECT_EQ(fold("eins\r\n\r\nzwei", 2), "2 NOTE eins\r\n3 CONT \r\n3 CONT zwei");
    EXPECT_EQ(fold("Ende\r\n  "), "1 NOTE Ende\r\n2 CONT ");
    EXPECT_EQ(fold("\r\nText"), "1 NOTE \r\n2 CONT Text");
    EXPECT_EQ(fold("  \r\n \r\n  "), "");
    EXPECT_EQ(fold("   "), "");
    EXPECT_EQ(fold("  vorn bleibt  "), "1 NOTE   vorn bleibt");
    EXPECT_EQ(fold("x", 1, " CAUS "), "1 CAUS x");
    // A single CR or LF is no line break here; like any control character, it goes out as a
    // blank, so that it can't break the line in the file.
    EXPECT_EQ(fold("a\nb\rc\x01"
                   "d\te"),
              "1 NOTE a b c d\te");
    // "#CONT#" typed by the user breaks the line; a "#" restarts the count 7 characters on.
    EXPECT_EQ(fold("a#CONT#b"), "1 NOTE a\r\n2 CONT b");
    const std::string hashes = chars(90) + "#" + chars(105);
    EXPECT_EQ(fold(hashes), "1 NOTE " + hashes);
    // A split never falls in front of a typed "CONT#", which the marker's "#" would complete.
    EXPECT_EQ(fold(chars(101) + "CONT#" + chars(3, 'y')),
              "1 NOTE " + chars(100) + "\r\n2 CONC xCONT#yyy");
    // Behind a line break a piece holds 102 characters.
    EXPECT_EQ(fold("a\r\n" + chars(103)), "1 NOTE a\r\n2 CONT " + chars(102) + "\r\n2 CONC x");
    // No place between two non-blank characters within 200: the split falls at 201.
    const std::string spaced = chars(1) + std::string(250, ' ') + chars(5);
    EXPECT_EQ(fold(spaced).substr(0, 7 + 202), "1 NOTE " + spaced.substr(0, 202));
    // The count is in characters, not bytes.
    EXPECT_EQ(fold(chars(100, 'a') + "ä").find("CONC"), std::string::npos);
}

TEST(GEDtext, MarkersSurviveARunOfBlanksBeforeThem) {
    // Blanks from character 100 up to a line break: the split must not cut the marker.
    const std::string text = chars(99) + std::string(31, ' ') + "\r\nweiter";
    const std::string folded = fold(text);
    EXPECT_NE(folded.find("\r\n2 CONT weiter"), std::string::npos) << folded;
    EXPECT_EQ(folded.find('#'), std::string::npos) << folded;
}

TEST(GEDtext, AHashOfTheUsersIsNoMarker) {
    // The piece ends at the "#", but the split falls behind it as anywhere else: no line
    // ends in the blanks in front of it.
    const std::string text = chars(101, 'a') + std::string(30, ' ') + "#xxxxx";
    EXPECT_EQ(fold(text), "1 NOTE " + text.substr(0, 132) + "\r\n2 CONC xxxxx");
    // Only blanks are trimmed: tabs at either end are text.
    EXPECT_EQ(fold("\tTab\t \r\n"), "1 NOTE \tTab\t \r\n2 CONT ");
    EXPECT_EQ(fold("\t"), "1 NOTE \t");
    // A text of 3 MB with a line break every 150 characters: each line gets one CONC, and
    // the folding takes no longer than its length asks (it once moved the rest of the text
    // at every split).
    std::string lang;
    for (int i = 0; i < 20000; ++i)
        lang += chars(150, 'y') + "\r\n";
    const std::string folded = fold(lang);
    // "1 NOTE ", and per line "\r\n2 CONC " put in and CR LF grown to "\r\n2 CONT ".
    EXPECT_EQ(folded.size(), 7 + lang.size() + 20000 * (9 + 7));
    EXPECT_EQ(folded.substr(0, 7 + 101 + 9 + 49 + 9),
              "1 NOTE " + chars(101, 'y') + "\r\n2 CONC " + chars(49, 'y') + "\r\n2 CONT ");
}

TEST(Zeichensatz, AnsiIsWindows1252) {
    EXPECT_EQ(toWindows1252("Müller € ß"), "M\xFCller \x80 \xDF");
    EXPECT_EQ(toWindows1252("Dvořák 東京"), "Dvo?\xE1k ??");
    EXPECT_EQ(fromWindows1252Text("M\xFCller \x80"), "Müller €");
    EXPECT_EQ(fromWindows1252Text("Müller"), "Müller"); // UTF-8 stays
    EXPECT_EQ(utf8_text("Dvořák"), "Dvořák");
}

using Lines = test::ExportFixture;

TEST_F(Lines, TheChosenCharacterSetAppliesToEveryLine) {
    const std::string utf8 = written([](Exportlauf& l) {
        zeile(l, 1, "NAME Jürgen /Dvořák/");
        GEDtext(l, 1, "NOTE", "Grüße\r\naus Köln");
    });
    EXPECT_EQ(utf8, "1 NAME Jürgen /Dvořák/\r\n1 NOTE Grüße\r\n2 CONT aus Köln\r\n");
    Auswahl().Zeichensatz(0).set("Value", Value(true));
    Auswahl().Zeichensatz(1).set("Value", Value(false));
    const std::string ansi = written([](Exportlauf& l) { zeile(l, 1, "NAME Jürgen /Dvořák/"); });
    EXPECT_EQ(ansi, "1 NAME J\xFCrgen /Dvo?\xE1k/\r\n");
    EXPECT_NE(utf8.substr(0, 3), "\xEF\xBB\xBF"); // never a byte order mark
}

TEST_F(Lines, NoValueOfALineCanEndItOrBeginARecord) {
    // Every control character but the tab becomes one blank; a folded text keeps its CR LF.
    EXPECT_EQ(written([](Exportlauf& l) {
                  zeile(l, 1, "NAME Karl\r\n0 TRLR\r\n/Huber/");
                  zeile(l, 1, "TITL a\rb\nc\x01\x1f\td\x7f");
                  GEDtext(l, 1, "NOTE", "eins\r\nzwei");
              }),
              "1 NAME Karl  0 TRLR  /Huber/\r\n1 TITL a b c  \td\x7f\r\n"
              "1 NOTE eins\r\n2 CONT zwei\r\n");
    // Nor read as a pointer: a text's leading "@" is doubled, on each line of a folded one;
    // the program's own pointers stay as they are.
    EXPECT_EQ(written([](Exportlauf& l) {
                  zeile(l, 1, "TITL " + textwert("@N1@"));
                  zeile(l, 1, "FAMS @F1@");
                  GEDtext(l, 1, "NOTE", "@U2@ und a@b\r\n@Hof@\r\nx@");
              }),
              "1 TITL @@N1@\r\n1 FAMS @F1@\r\n"
              "1 NOTE @@U2@ und a@b\r\n2 CONT @@Hof@\r\n2 CONT x@\r\n");
    EXPECT_EQ(fold(chars(101, 'a') + "@" + chars(99, 'b')),
              "1 NOTE " + chars(101, 'a') + "\r\n2 CONC @@" + chars(99, 'b'));
    // Malformed UTF-8 goes out as the replacement character, or "?" in Ansi.
    EXPECT_EQ(written([](Exportlauf& l) { zeile(l, 1, "NAME a\xC3\x28"); }),
              "1 NAME a\xEF\xBF\xBD(\r\n");
}

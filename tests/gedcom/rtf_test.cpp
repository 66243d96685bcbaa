// Tests of rtf_klartext.
#include "gedcom/rtf.h"

#include <gtest/gtest.h>

#include <string>

using folio::rtf_klartext;

namespace {

// A body in the frame that a rich-text control of a German Windows writes around it.
std::string dokument(const std::string& body, const std::string& kopf = "\\ansicpg1252") {
    return "{\\rtf1\\ansi" + kopf +
           "\\deff0\\deflang1031{\\fonttbl{\\f0\\fnil\\fcharset0 Arial;}}" +
           "\\viewkind4\\uc1\\pard\\f0\\fs20 " + body + "}";
}

} // namespace

TEST(RtfKlartext, PlainValuesComeBackUnchanged) {
    for (const std::string wert : {"", "Müller", "erste Zeile\r\nzweite Zeile", " {\\rtf1 x}",
                                   "{\\RTF1 x}", "{rtf1}", "\\par {\\b x}"})
        EXPECT_EQ(rtf_klartext(wert), wert);
}

TEST(RtfKlartext, TypicalDocument) {
    EXPECT_EQ(rtf_klartext("{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1031{\\fonttbl{\\f0\\fnil"
                           "\\fcharset0 Arial;}}{\\colortbl ;\\red255\\green0\\blue0;}\\viewkind4"
                           "\\uc1\\pard\\f0\\fs20 M\\'fcller \\b Stra\\'dfe\\b0\\par zweite Zeile"
                           "\\par\n}"),
              "Müller Straße\r\nzweite Zeile\r\n");
    EXPECT_EQ(rtf_klartext(dokument("ohne Absatz\r\n")), "ohne Absatz");
    EXPECT_EQ(rtf_klartext(dokument("a\\line b\\tab c\\par\\pard\\plain\\cf2\\i\\i0 d")),
              "a\r\nb\tc\r\nd");
    // Only the blank right behind a word belongs to it; the rest is text.
    EXPECT_EQ(rtf_klartext(dokument("\\b  x\\fs-20 y\\b0\\i z")), " xyz");
    EXPECT_EQ(rtf_klartext(dokument("\\'80 \\'85\\'9f")), "€ …Ÿ");
    // Literal characters of the stored value are already Unicode.
    EXPECT_EQ(rtf_klartext(dokument("Grüße")), "Grüße");
    EXPECT_EQ(rtf_klartext(dokument("")), "");
}

TEST(RtfKlartext, UnicodeEscapesAndTheirFallbacks) {
    EXPECT_EQ(rtf_klartext(dokument("Dvo\\u345?\\'e1k \\u269?\\u-3913 ?")), "Dvořák č\uf0b7");
    EXPECT_EQ(rtf_klartext(dokument("\\u269\\'e8x")), "čx");
    EXPECT_EQ(rtf_klartext(dokument("{\\uc0 \\u269 x}\\u269?y")), "čxčy");
    EXPECT_EQ(rtf_klartext(dokument("{\\uc2\\u26085\\'93\\'fa}\\u26085?z")), "日日z");
    // A fallback ends at a brace.
    EXPECT_EQ(rtf_klartext(dokument("{\\uc2\\u269?}x")), "čx");
    EXPECT_EQ(rtf_klartext(dokument("\\u-10179?\\u-8704?!")), "😀!");
    // Half a surrogate pair is unreadable.
    EXPECT_EQ(rtf_klartext(dokument("\\u-10179?x\\u-8704?")), "\ufffdx\ufffd");
}

TEST(RtfKlartext, CodePagesOfDocumentAndFonts) {
    EXPECT_EQ(rtf_klartext(dokument("\\'e8\\'9a\\'b9", "\\ansicpg1250")), "čšą");
    EXPECT_EQ(rtf_klartext(dokument("\\'c1\\'e1", "\\ansicpg1251")), "Бб");
    EXPECT_EQ(rtf_klartext(dokument("\\'e8", "\\ansicpg99999")), "è");
    EXPECT_EQ(rtf_klartext("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 "
                           "Arial;}{\\f1\\fswiss\\fcharset238{\\*\\panose 0}Arial CE;}{\\f2"
                           "\\fcharset161 Arial Greek;}{\\f3\\fcharset204 Arial Cyr;}}"
                           "\\pard\\f0 \\'e8\\f1 \\'e8{\\f2 \\'e1}\\'e8\\f3 \\'e1\\plain\\'e8}"),
              "èčαčбè");
    // The default font's character set holds where no font is named.
    EXPECT_EQ(rtf_klartext("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fcharset238 Arial CE;}}\\'e8}"),
              "č");
    // A double-byte character spread over two escapes.
    EXPECT_EQ(rtf_klartext("{\\rtf1\\ansi\\ansicpg932 \\'82\\'a0\\'83A}"), "あア");
}

TEST(RtfKlartext, DestinationsAndEscapes) {
    EXPECT_EQ(
        rtf_klartext(dokument("{\\*\\generator Riched20;}{\\info{\\author X}}a{\\*\\bkmkstart "
                              "m{\\x y}}{\\stylesheet{\\s0 Normal;}}{\\pict\\wmetafile8 "
                              "0100}{\\header Kopf}b{\\*\\unbekannt {c}}{\\pntext 1.\\tab}d")),
        "abd");
    EXPECT_EQ(rtf_klartext(dokument("{\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt Link}} "
                                    "{\\field{\\fldinst PAGE}{\\fldrslt 3}}")),
              "Link 3");
    EXPECT_EQ(rtf_klartext(dokument("\\\\ \\{\\} a\\~b\\-c\\_d \\emdash\\endash\\bullet\\lquote"
                                    "\\rquote\\ldblquote\\rdblquote")),
              "\\ {} a\u00a0bc\u2011d —–•‘’“”");
    // Binary data may hold braces and backslashes.
    EXPECT_EQ(rtf_klartext(dokument("a{\\pict\\bin4 }{\\x}b")), "ab");
    EXPECT_EQ(rtf_klartext(dokument("a\\bin3 {\\}b")), "ab");
}

TEST(RtfKlartext, BrokenInputGivesWhatCanBeRead) {
    EXPECT_EQ(rtf_klartext("{\\rtf1 ab{\\b c"), "abc");
    EXPECT_EQ(rtf_klartext("{\\rtf1 a}}b{c}"), "a");
    EXPECT_EQ(rtf_klartext("{\\rtf1 a\\'f"), "a");
    EXPECT_EQ(rtf_klartext("{\\rtf1 a\\'"), "a");
    EXPECT_EQ(rtf_klartext("{\\rtf1 a\\'zz"), "azz");
    EXPECT_EQ(rtf_klartext("{\\rtf1 a\\"), "a");
    EXPECT_EQ(rtf_klartext("{\\rtf1 a\\u"), "a");
    EXPECT_EQ(rtf_klartext("{\\rtf1 a\\u-"), "a-");
    EXPECT_EQ(rtf_klartext("{\\rtf1 a\\u99999999999999999999?"), "a?");
    EXPECT_EQ(rtf_klartext("{\\rtf1 a\\bin999999"), "a");
    EXPECT_EQ(rtf_klartext("{\\rtf1 \\'83\\par x}"), "\u0192\r\nx");
    // A stray byte that isn't UTF-8 is read in the code page.
    EXPECT_EQ(rtf_klartext(std::string("{\\rtf1 M\xfc") + "ller}"), "Müller");
    EXPECT_EQ(rtf_klartext(std::string("{\\rtf1") + std::string(100000, '{') + "x"), "x");
}

TEST(RtfKlartext, LargeDocument) {
    std::string body;
    for (int i = 0; i < 40000; ++i)
        body += "Zeile \\'fc\\u269?{\\b x}\\par ";
    const std::string text = rtf_klartext(dokument(body));
    ASSERT_EQ(text.size(), 40000u * std::string("Zeile üčx\r\n").size());
    EXPECT_EQ(text.substr(0, 14), "Zeile üčx\r\nZ");
}

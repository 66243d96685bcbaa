#include "gedcom/datensaetze.h"
#include "gedcom/stufen.h"
#include "support/export_fixture.h"

#include <gtest/gtest.h>

using namespace folio;

namespace {

const char* const Stamp = "1 CHAN\r\n2 DATE 05 MAR 2004\r\n3 TIME 14:07\r\n";

// Marked rows with everything and with nothing in each class, and unmarked rows with text
// that must not come out. Change stamps are asked for.
struct Records : test::ExportFixture {
    const Value geaendert{DateTime::fromDateTime(2004, 3, 5, 14, 7, 59)};

    void SetUp() override {
        ExportFixture::SetUp();
        Auswahl().Chancheck().set("Value", Value(1));
        const Value rtf("{\\rtf1\\ansi\\ansicpg1252 Gr\\'fc\\'dfe aus\\par Ulm}");
        const auto id = [](int n) { return Value(RecordId(n)); };

        row("Ort", 4, true, {{"Name", Value("Ulm")}, {"Memo", rtf}});
        row("Ort", 5, true, {{"Name", Value("Blau")}, {"Memo", Value("   ")}});
        row("Ort", 6, false, {{"Memo", Value("Rom")}});
        row("Ort", 7, true, {{"Memo", Value("{\\rtf1\\ansi }")}});
        row("Ort", 8, true, {{"Memo", Value("Alte Stadt\r\nam Fluss")}});

        row("Notiz", 9, true,
            {{"Name", Value(" Taufbuch ")}, {"Memo", rtf}, {"geaendert", geaendert}});
        row("Notiz", 3, true, {{"Name", Value("Leer")}, {"geaendert", geaendert}});
        row("Notiz", 8, false, {{"Name", Value("Nein")}});

        row("Bilder", 2, true,
            {{"bildfile", Value(" oma.1920.JPG ")},
             {"Listentext", Value(" Oma Käthe ")},
             {"bildtext", Value(std::string(101, 'a') + "bc\r\nZweite Zeile")},
             {"Notiz", id(9)},
             {"Ort", id(4)},
             {"MCIfile", Value(" stimme.wav")},
             {"mcitext", Value("Ihre Stimme")},
             {"geaendert", geaendert}});
        row("Bilder", 3, true,
            {{"bildfile", Value("portrait")},
             {"Listentext", Value("  ")},
             {"bildtext", Value("  ")},
             {"Notiz", id(8)},
             {"MCIfile", Value("  ")},
             {"mcitext", Value("nicht ohne Datei")}});
        row("Bilder", 5, false, {{"bildfile", Value("x.gif")}});

        row("Dokument", 1, true,
            {{"Listentext", Value(" KB Ulm ")},
             {"Text", rtf},
             {"Notiz", id(9)},
             {"Bild", id(2)},
             {"vTag", Value(5)},
             {"vMonat", Value(3)},
             {"vJahr", Value(1850)},
             {"geaendert", geaendert}});
        row("Dokument", 2, true,
            {{"Listentext", Value("Leer")},
             {"Text", Value(" ")},
             {"Notiz", id(8)},
             {"Bild", id(5)}});
        row("Dokument", 7, false, {{"Listentext", Value("Nein")}});

        row("Adressen", 1, true,
            {{"Adresse", Value("Hauptstraße 1")},
             {"Listenname", Value(" Haus ")},
             {"Memo", rtf},
             {"geaendert", geaendert}});
        row("Adressen", 2, true, {{"Listenname", Value("Leer")}});
        row("Adressen", 6, false, {{"Listenname", Value("Nein")}});
    }
    // A row with its number and mark, and the fields given.
    void row(const char* table, int nr, bool markiert,
             std::initializer_list<std::pair<const char*, Value>> felder = {}) {
        auto rs = DB->OpenRecordset(table);
        rs->AddNew();
        rs->set("Counter", Value(RecordId(nr)));
        rs->set("Markierung", Value(markiert));
        for (const auto& [name, value] : felder)
            rs->set(name, value);
        rs->Update();
    }
    int fortschritt() { return static_cast<int>(Auswahl().Fortschritt().get("Value").toInt()); }
};

// A tree whose side records are all unmarked.
using EmptyTree = test::ExportFixture;

} // namespace

TEST_F(Records, PlaceNotesOnlyForMarkedPlacesWithAText) {
    EXPECT_EQ(written(ortsnotizen_schreiben),
              "0 @ON4@ NOTE\r\n1 NOTE Grüße aus\r\n2 CONT Ulm\r\n"
              "0 @ON8@ NOTE\r\n1 NOTE Alte Stadt\r\n2 CONT am Fluss\r\n");
    // Four marked places, the last of them the fourth row: count / total x 5 + 55.
    EXPECT_EQ(fortschritt(), 60);
}

TEST_F(Records, NotesWithAndWithoutText) {
    EXPECT_EQ(written(notizen_schreiben),
              "0 @N9@ NOTE\r\n1 TITL  Taufbuch \r\n1 TEXT Grüße aus\r\n2 CONT Ulm\r\n" +
                  std::string(Stamp) + "0 @N3@ NOTE\r\n1 TITL Leer\r\n" + Stamp);
    EXPECT_EQ(fortschritt(), 70);
}

TEST_F(Records, SourcesCarryTheGeneralRemarkOfTheExport) {
    Auswahl().Anmerkung().set("Text", Value("Für Tante Käthe"));
    EXPECT_EQ(written(quellen_schreiben),
              "0 @U1@ SOUR\r\n1 TITL  KB Ulm \r\n1 TEXT Grüße aus\r\n2 CONT Ulm\r\n"
              "1 NOTE Für Tante Käthe\r\n1 NOTE @N9@\r\n1 OBJE @B2@\r\n1 DATE 05 MAR 1850\r\n" +
                  std::string(Stamp) +
                  // Unmarked note and picture: no pointers; no date, no stamp.
                  "0 @U2@ SOUR\r\n1 TITL Leer\r\n1 NOTE Für Tante Käthe\r\n");
    EXPECT_EQ(fortschritt(), 75);

    Auswahl().Anmerkung().set("Text", Value("   "));
    EXPECT_EQ(written(quellen_schreiben),
              "0 @U1@ SOUR\r\n1 TITL  KB Ulm \r\n1 TEXT Grüße aus\r\n2 CONT Ulm\r\n"
              "1 NOTE @N9@\r\n1 OBJE @B2@\r\n1 DATE 05 MAR 1850\r\n" +
                  std::string(Stamp) + "0 @U2@ SOUR\r\n1 TITL Leer\r\n");
}

TEST_F(Records, AddressesWithoutTheirAddressLines) {
    EXPECT_EQ(written(adressen_schreiben),
              "0 @A1@ ADDR\r\n1 TITL  Haus \r\n1 TEXT Grüße aus\r\n2 CONT Ulm\r\n" +
                  std::string(Stamp) + "0 @A2@ ADDR\r\n1 TITL Leer\r\n");
    EXPECT_EQ(fortschritt(), 75);
}

TEST_F(Records, MediaWithAndWithoutASecondFile) {
    EXPECT_EQ(written(medien_schreiben),
              "0 @B2@ OBJE\r\n1 FORM JPG \r\n1 TITL Oma Käthe\r\n1 FILE oma.1920.JPG\r\n"
              "1 BLOB \r\n2 CONT \r\n1 NOTE " +
                  std::string(101, 'a') +
                  "\r\n2 CONC bc\r\n2 CONT Zweite Zeile\r\n1 NOTE @N9@\r\n1 PLAC Ulm\r\n"
                  "2 NOTE @ON4@\r\n1 OBJE @BM2@\r\n" +
                  Stamp +
                  // The second file's record follows the stamp; no title, no stamp of its own.
                  "0 @BM2@ OBJE\r\n1 FORM wav\r\n1 FILE stimme.wav\r\n1 BLOB \r\n2 CONT \r\n"
                  "1 NOTE Ihre Stimme\r\n"
                  // A name without a dot is its own suffix; the blank second file is none.
                  "0 @B3@ OBJE\r\n1 FORM portrait\r\n1 TITL \r\n1 FILE portrait\r\n"
                  "1 BLOB \r\n2 CONT \r\n");
    EXPECT_EQ(fortschritt(), 80);
}

TEST_F(Records, TitlesAndFileNamesStayOnTheirLineAndKeepTheirTabs) {
    DB->Execute("DELETE FROM Notiz ;");
    DB->Execute("DELETE FROM Bilder ;");
    row("Notiz", 1, true, {{"Name", Value("Kirchen\r\n0 TRLR\tbuch")}});
    row("Bilder", 1, true,
        {{"bildfile", Value("a\r\nb.jpg\t")}, {"Listentext", Value("\tBild\x1b")}});
    EXPECT_EQ(written(notizen_schreiben), "0 @N1@ NOTE\r\n1 TITL Kirchen  0 TRLR\tbuch\r\n");
    EXPECT_EQ(written(medien_schreiben), "0 @B1@ OBJE\r\n1 FORM jpg\t\r\n1 TITL \tBild \r\n"
                                         "1 FILE a  b.jpg\t\r\n1 BLOB \r\n2 CONT \r\n");
}

TEST_F(Records, StagesWriteTheirClassesInOrder) {
    const std::string einzeln = written([](Exportlauf& l) {
        ortsnotizen_schreiben(l);
        notizen_schreiben(l);
        quellen_schreiben(l);
        adressen_schreiben(l);
        medien_schreiben(l);
    });
    EXPECT_EQ(written([&](Exportlauf& l) {
                  ExportStufen stufen(l);
                  stufen.ortsnotizen();
                  stufen.notizen();
                  stufen.quellen();
                  stufen.adressen();
                  stufen.medien();
              }),
              einzeln);
    EXPECT_EQ(Auswahl().Fortschritttext().text("Text"), sprachtext("614") + sprachtext("617") +
                                                            sprachtext("618") + sprachtext("619") +
                                                            sprachtext("616"));
}

TEST_F(EmptyTree, NothingMarkedWritesNothingButTheProgressText) {
    for (const char* table : {"Ort", "Notiz", "Dokument", "Adressen", "Bilder"})
        add(table, {{"Counter", Value(RecordId(1))}, {"Markierung", Value(false)}});
    Auswahl().Fortschritt().set("Value", Value(42));
    EXPECT_EQ(written([&](Exportlauf& l) {
                  ExportStufen stufen(l);
                  stufen.ortsnotizen();
                  stufen.notizen();
                  stufen.quellen();
                  stufen.adressen();
                  stufen.medien();
              }),
              "");
    EXPECT_EQ(Auswahl().Fortschritt().get("Value").toInt(), 42);
    EXPECT_EQ(Auswahl().Fortschritttext().text("Text"), sprachtext("614") + sprachtext("617") +
                                                            sprachtext("618") + sprachtext("619") +
                                                            sprachtext("616"));
}

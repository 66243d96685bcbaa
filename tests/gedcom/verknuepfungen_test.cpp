#include "gedcom/nachschlagen.h"
#include "gedcom/orte.h"
#include "gedcom/verknuepfungen.h"
#include "support/export_fixture.h"

#include <gtest/gtest.h>

using namespace folio;

namespace {

// Places, notes, pictures, sources and addresses, some marked and some not.
struct Links : test::ExportFixture {
    void SetUp() override {
        ExportFixture::SetUp();
        const std::string rtf = "{\\rtf1\\ansi\\ansicpg1252 Gr\\'fc\\'dfe\\par}";
        add("Ort", {{"Counter", Value(RecordId(4))},
                    {"Markierung", Value(true)},
                    {"Name", Value("  Ulm, Württemberg ")},
                    {"Memo", Value(rtf)},
                    {"Notiz", Value(RecordId(9))},
                    {"Bild", Value(RecordId(2))}});
        add("Ort", {{"Counter", Value(RecordId(5))},
                    {"Markierung", Value(true)},
                    {"Name", Value("   ")},
                    {"Memo", Value(" ")},
                    {"Notiz", Value(RecordId(8))},
                    {"Bild", Value(RecordId(3))}});
        add("Ort", {{"Counter", Value(RecordId(6))},
                    {"Markierung", Value(false)},
                    {"Name", Value("Rom")}});
        add("Notiz", {{"Counter", Value(RecordId(9))}, {"Markierung", Value(true)}});
        add("Notiz", {{"Counter", Value(RecordId(8))}, {"Markierung", Value(false)}});
        add("Bilder", {{"Counter", Value(RecordId(2))}, {"Markierung", Value(true)}});
        add("Bilder", {{"Counter", Value(RecordId(3))}, {"Markierung", Value(false)}});
        add("Dokument", {{"Counter", Value(RecordId(3))}, {"Markierung", Value(true)}});
        add("Dokument", {{"Counter", Value(RecordId(7))}, {"Markierung", Value(false)}});
        add("Adressen", {{"Counter", Value(RecordId(1))},
                         {"Markierung", Value(true)},
                         {"Adresse", Value("Hauptstraße 1\r\nUlm")},
                         {"Listenname", Value(" Haus ")},
                         {"Ort", Value(RecordId(4))},
                         {"Memo", Value("Seit 1900")}});
        add("Adressen", {{"Counter", Value(RecordId(2))},
                         {"Markierung", Value(true)},
                         {"Adresse", Value(" ")},
                         {"Listenname", Value("Leer")},
                         {"Ort", Value(RecordId())},
                         {"Memo", Value(" ")}});
    }
    void link(const char* artQuelle, int quelle, const char* artZiel, int ziel) {
        static int counter = 0;
        add("Quellen_DS", {{"Counter", Value(RecordId(++counter))},
                           {"Quelle", Value(RecordId(quelle))},
                           {"Art_Quelle", Value(artQuelle)},
                           {"Ziel", Value(RecordId(ziel))},
                           {"Art_Ziel", Value(artZiel)},
                           {"Info", Value("")}});
    }
};

} // namespace

TEST_F(Links, PlacesAndAddresses) {
    EXPECT_EQ(written([](Exportlauf& l) { ortschreiben(l, 2, RecordId(4)); }),
              "2 PLAC Ulm, Württemberg\r\n3 NOTE @ON4@\r\n3 NOTE @N9@\r\n3 OBJE @B2@\r\n");
    // Blanks only: the line stands with its blank; unmarked note and picture: no pointers.
    EXPECT_EQ(written([](Exportlauf& l) { ortschreiben(l, 2, RecordId(5)); }), "2 PLAC \r\n");
    EXPECT_EQ(written([](Exportlauf& l) {
                  ortschreiben(l, 2, RecordId(6));  // not marked
                  ortschreiben(l, 2, RecordId(77)); // no such place
                  ortschreiben(l, 2, RecordId());
              }),
              "");
    EXPECT_EQ(written([](Exportlauf& l) { Adresseschreiben(l, 1, RecordId(1)); }),
              "1 ADDR Hauptstraße 1\r\n2 CONT Ulm\r\n2 TITL  Haus \r\n2 PLAC Ulm, Württemberg\r\n"
              "3 NOTE @ON4@\r\n3 NOTE @N9@\r\n3 OBJE @B2@\r\n2 NOTE Seit 1900\r\n");
    EXPECT_EQ(written([](Exportlauf& l) { Adresseschreiben(l, 1, RecordId(2)); }),
              "2 TITL Leer\r\n");
}

TEST_F(Links, LinksOfARecordInTheOrderOfTheirLetters) {
    link("E", 50, "U", 3);
    link("E", 50, "R", 9);
    link("E", 50, "O", 4);
    link("E", 50, "B", 2);
    link("E", 50, "A", 2);
    link("E", 50, "E", 51); // counts for the marking, writes nothing
    link("E", 50, "u", 3);  // lower case: nothing
    link("E", 50, "U", 7);  // not marked
    link("E", 50, "U", 0);
    link("D", 50, "U", 3); // another kind of record
    EXPECT_EQ(written([](Exportlauf& l) { Quellenschreiben(l, 2, RecordId(50), "E"); }),
              "3 TITL Leer\r\n2 OBJE @B2@\r\n2 PLAC Ulm, Württemberg\r\n3 NOTE @ON4@\r\n"
              "3 NOTE @N9@\r\n3 OBJE @B2@\r\n2 NOTE @N9@\r\n2 SOUR @U3@\r\n");
    EXPECT_EQ(written([](Exportlauf& l) { Dokumentverknuepfungschreiben(l, 1, RecordId(7)); }), "");
}

TEST_F(Links, ChangeStampsOnlyWhenAskedFor) {
    const Value stamp(DateTime::fromDateTime(2004, 3, 5, 14, 7, 59));
    EXPECT_EQ(written([&](Exportlauf& l) { Chanschreiben(l, 1, stamp); }), "");
    Auswahl().Chancheck().set("Value", Value(1));
    EXPECT_EQ(written([&](Exportlauf& l) { Chanschreiben(l, 2, stamp); }),
              "2 CHAN\r\n3 DATE 05 MAR 2004\r\n4 TIME 14:07\r\n");
    EXPECT_EQ(written([&](Exportlauf& l) { Chanschreiben(l, 1, Value()); }), "");
}

TEST(ErstesMalTest, EachNumberIsNewOnceWhereverItLies) {
    ErstesMal erstes_mal;
    const RecordId nummern[] = {RecordId(3),
                                RecordId(1),
                                RecordId(200000),
                                RecordId(0),
                                RecordId(-7),
                                RecordId::fromUnits(15000),
                                RecordId(std::int64_t{1} << 40)};
    for (const RecordId n : nummern)
        EXPECT_TRUE(erstes_mal(n)) << n.text();
    for (const RecordId n : nummern)
        EXPECT_FALSE(erstes_mal(n)) << n.text();
    EXPECT_TRUE(erstes_mal(RecordId(2)));
    EXPECT_TRUE(erstes_mal(RecordId::fromUnits(15001)));
}

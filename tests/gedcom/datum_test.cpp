#include "gedcom/datum.h"
#include "support/export_fixture.h"

#include <gtest/gtest.h>

using namespace folio;

TEST(GedcomDatum, FormatsInEnglishWhateverTheSystem) {
    const DateTime d = DateTime::fromDate(1850, 3, 5);
    EXPECT_EQ(gedcom_datum(d, "DD MMM YYYY", "UK"), "05 MAR 1850");
    EXPECT_EQ(gedcom_datum(d, "MMM YYYY", "GB"), "MAR 1850");
    EXPECT_EQ(gedcom_datum(d, "YYYY", "E"), "1850");
    EXPECT_EQ(gedcom_datum(d, "DD MM YYYY", "UK"), "05 03 1850");
    EXPECT_EQ(gedcom_datum(d, "YY", "UK"), "");
    // Day 31 of February carries; a two-digit year is read as the host reads it.
    EXPECT_EQ(gedcom_datum(datum_aus_zahlen(1850, 2, 31), "DD MMM YYYY", "UK"), "03 MAR 1850");
    EXPECT_EQ(gedcom_datum(datum_aus_zahlen(1850, 13, 1), "MMM YYYY", "UK"), "JAN 1851");
    EXPECT_EQ(gedcom_datum(datum_aus_zahlen(29, 1, 1), "YYYY", "UK"), "2029");
    EXPECT_EQ(gedcom_datum(datum_aus_zahlen(30, 1, 1), "YYYY", "UK"), "1930");
}

using Dates = test::ExportFixture;

TEST_F(Dates, DateLinesWithTheModifiersOfGeddateIni) {
    std::ofstream(Programmpfad + "/geddate.ini", std::ios::binary)
        << "ABT\tca.\r\n  AFT  \tnach\r\nEST\tca.\r\nBEF\tvor \r\n\tleer\r\nkein Tab\r\n";
    Auswahl().gedcom_zusaetze = gedcom_zusaetze_laden();
    ASSERT_EQ(Auswahl().gedcom_zusaetze.size(), 6u);
    EXPECT_EQ(Auswahl().gedcom_zusaetze[3].second, "vor "); // nothing trimmed on reading

    int id = 0;
    auto line = [&](const char* ca, int tag, int monat, int jahr) {
        add("Ereignis", {{"Counter", Value(RecordId(++id))},
                         {"ca", Value(ca)},
                         {"vTag", Value(tag)},
                         {"vMonat", Value(monat)},
                         {"vJahr", Value(jahr)}});
        auto rs = DB->OpenRecordset("SELECT * FROM Ereignis WHERE Counter = " + std::to_string(id));
        return written([&](Exportlauf& l) { datumschreiben(l, 2, *rs); });
    };
    EXPECT_EQ(line("ca.   ", 5, 3, 1850), "2 DATE ABT 05 MAR 1850\r\n"); // the first row wins
    EXPECT_EQ(line("ca.", 0, 3, 1850), "2 DATE ABT MAR 1850\r\n");
    EXPECT_EQ(line("nach", 0, 0, 1850), "2 DATE AFT 1850\r\n");
    EXPECT_EQ(line("ca.", 0, 0, 0), "");                         // no date, no line
    EXPECT_EQ(line("      ", 0, 0, 1850), "2 DATE 1850\r\n");    // blanks: no modifier
    EXPECT_EQ(line("err.", 0, 0, 1850), "2 DATE err. 1850\r\n"); // no row: as it stands
    EXPECT_EQ(line("vor", 0, 0, 1850), "2 DATE vor 1850\r\n");   // "vor " never matches
    EXPECT_EQ(line("leer", 0, 0, 1850), "2 DATE  1850\r\n");     // an empty modifier
    EXPECT_EQ(line("ca.", 31, 2, 1850), "2 DATE ABT 03 MAR 1850\r\n");

    std::filesystem::remove(Programmpfad + "/geddate.ini");
    Auswahl().gedcom_zusaetze = gedcom_zusaetze_laden();
    EXPECT_TRUE(Auswahl().gedcom_zusaetze.empty());
    EXPECT_EQ(line("ca.", 0, 0, 1850), "2 DATE ca. 1850\r\n");
}

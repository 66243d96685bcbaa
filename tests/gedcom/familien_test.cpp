#include "gedcom/familien.h"
#include "gedcom/familientabelle.h"
#include "support/export_fixture.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace folio;

namespace {

struct Families : test::ExportFixture {
    Familientabelle tabelle;
    int link = 0;

    void person(int id, bool markiert, const char* geschlecht, int vater = 0, int mutter = 0) {
        add("Daten", {{"Counter", Value(RecordId(id))},
                      {"Markierung", Value(markiert)},
                      {"Lebt", Value(false)},
                      {"Geschlecht", Value(geschlecht)},
                      {"Vater", Value(RecordId(vater))},
                      {"Mutter", Value(RecordId(mutter))}});
    }
    void partners(int ziel, int quelle) {
        add("Daten_DS", {{"Counter", Value(RecordId(++link))},
                         {"Quelle", Value(RecordId(quelle))},
                         {"Ziel", Value(RecordId(ziel))},
                         {"Art", Value("E")}});
    }
    void event(int id, int art, int jahr) {
        add("Ereignis", {{"Counter", Value(RecordId(id))},
                         {"Markierung", Value(true)},
                         {"Art", Value(art)},
                         {"ca", Value(" ")},
                         {"vTag", Value(1)},
                         {"vMonat", Value(5)},
                         {"vJahr", Value(jahr)},
                         {"Grund", Value(" ")}});
    }
    void takes_part(int person, int ereignis, const char* ursprung) {
        add("Ereignis_DS", {{"Counter", Value(RecordId(++link))},
                            {"Quelle", Value(RecordId(person))},
                            {"Ziel", Value(RecordId(ereignis))},
                            {"Ursprung", Value(ursprung)}});
    }
    std::vector<std::pair<int, int>> rows() const {
        std::vector<std::pair<int, int>> r;
        for (std::size_t i = 1; i <= tabelle.anzahl(); ++i)
            r.emplace_back(static_cast<int>(tabelle.zeile(i).vater.units() / RecordId::Scale),
                           static_cast<int>(tabelle.zeile(i).mutter.units() / RecordId::Scale));
        return r;
    }
    int fortschritt() { return static_cast<int>(Auswahl().Fortschritt().get("Value").toInt()); }
    std::string families() {
        return written([&](Exportlauf& l) {
            familien_aus_eltern(l, tabelle);
            familien_aus_partnerschaften(l, tabelle);
            familien_schreiben(l, tabelle);
        });
    }
};

using Rows = std::vector<std::pair<int, int>>;

} // namespace

TEST_F(Families, TableFromParentsThenPartners) {
    person(1, true, "M");           // neither parents nor partner
    person(12, true, "M");          // a couple with a child ...
    person(13, true, "F");          //
    person(20, true, "M", 12, 13);  // ... whose row comes from the child
    person(40, true, "F");          // a marked mother,
    person(41, false, "M");         // an unmarked father
    person(42, true, "F", 41, 40);  // and two children: a row each
    person(43, true, "M", 41, 40);  //
    person(50, true, "F", 99, 0);   // a father without a record stays
    person(51, true, "F", 12, 13);  // finds the couple's row
    person(52, false, "F", 60, 61); // not marked: makes no row
    person(60, true, "F");          // two women as partners
    person(61, true, "F");          //
    person(70, true, "M");          // two men as partners
    person(71, true, "M");          //
    person(80, true, "M");          // partners of whom one isn't in the export
    person(81, false, "F");         //
    partners(13, 12);               // found again, in either order
    partners(60, 61);               // the second partner is the mother
    partners(70, 71);               // the second partner is the father
    partners(80, 81);               // no row
    partners(82, 80);               // a partner without a record: no row
    partners(12, 13);               // the same pair the other way round

    written([&](Exportlauf& l) { familien_aus_eltern(l, tabelle); });
    EXPECT_EQ(rows(), (Rows{{12, 13}, {0, 40}, {0, 40}, {99, 0}}));
    EXPECT_EQ(fortschritt(), 10);
    written([&](Exportlauf& l) { familien_aus_partnerschaften(l, tabelle); });
    EXPECT_EQ(rows(), (Rows{{12, 13}, {0, 40}, {0, 40}, {99, 0}, {0, 61}, {71, 0}}));
    EXPECT_EQ(fortschritt(), 15);
}

TEST_F(Families, RecordsWithHusbandWifeAndChildrenWithoutMarriageLinks) {
    person(12, true, "M");
    person(13, true, "F");
    person(20, true, "M", 12, 13);
    person(21, false, "F", 12, 13); // not marked: no CHIL
    person(22, true, "F", 12, 13);
    person(40, true, "F");
    person(41, false, "M");
    person(42, true, "F", 41, 40);
    person(43, true, "M", 41, 40);
    person(44, true, "M", 0, 40); // a child of the mother alone: in both of her families
    person(50, true, "F", 99, 0);
    written([&](Exportlauf& l) {
        familien_aus_eltern(l, tabelle);
        familien_aus_partnerschaften(l, tabelle); // nothing to do: progress stays where it was
    });
    EXPECT_EQ(fortschritt(), 10);

    EXPECT_EQ(written([&](Exportlauf& l) { familien_schreiben(l, tabelle); }),
              "0 @F1@ FAM\r\n1 HUSB @I12@\r\n1 WIFE @I13@\r\n"
              "1 CHIL @I20@\r\n1 CHIL @I22@\r\n"
              "0 @F2@ FAM\r\n1 WIFE @I40@\r\n"
              "1 CHIL @I42@\r\n1 CHIL @I43@\r\n1 CHIL @I44@\r\n"
              "0 @F3@ FAM\r\n1 WIFE @I40@\r\n"
              "1 CHIL @I42@\r\n1 CHIL @I43@\r\n1 CHIL @I44@\r\n"
              "0 @F4@ FAM\r\n1 HUSB @I99@\r\n1 CHIL @I50@\r\n");
    EXPECT_EQ(fortschritt(), 100);
}

TEST_F(Families, EventsOfTheCoupleByDate) {
    person(12, true, "M");
    person(13, true, "F");
    person(14, true, "F");
    partners(12, 13); // two couples without children: HUSB and WIFE, no CHIL
    partners(12, 14);
    event(101, 10, 1880); // both main persons: written, after the earlier one
    event(102, 10, 1870); // both main persons
    event(103, 1, 1850);  // both main persons, but a kind with one: not written
    event(104, 10, 1860); // the wife in another role
    event(105, 10, 1865); // the husband alone
    event(106, 10, 1866); // the main person letter in upper case
    event(107, 10, 1867); // the other wife's
    for (int e : {101, 102, 103, 104, 105})
        takes_part(12, e, "d");
    for (int e : {101, 102, 103})
        takes_part(13, e, "d");
    takes_part(13, 104, "T");
    takes_part(12, 106, "D");
    takes_part(13, 106, "D");
    takes_part(12, 107, "d");
    takes_part(14, 107, "d");

    EXPECT_EQ(families(), "0 @F1@ FAM\r\n1 HUSB @I12@\r\n1 WIFE @I13@\r\n"
                          "1 MARR\r\n2 DATE 01 MAY 1870\r\n1 MARR\r\n2 DATE 01 MAY 1880\r\n"
                          "0 @F2@ FAM\r\n1 HUSB @I12@\r\n1 WIFE @I14@\r\n"
                          "1 MARR\r\n2 DATE 01 MAY 1867\r\n");
}

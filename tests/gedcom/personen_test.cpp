#include "gedcom/ereignisse.h"
#include "gedcom/familientabelle.h"
#include "gedcom/personen.h"
#include "support/export_fixture.h"

#include <gtest/gtest.h>

using namespace folio;

namespace {

struct Persons : test::ExportFixture {
    Familientabelle familien;
    int link = 0;

    void person(int id, bool lebt, std::initializer_list<std::pair<const char*, Value>> more = {}) {
        auto rs = DB->OpenRecordset("Daten");
        rs->AddNew();
        rs->set("Counter", Value(RecordId(id)));
        rs->set("Markierung", Value(true));
        rs->set("Lebt", Value(lebt));
        rs->set("Geschlecht", Value("M"));
        rs->set("GIVN", Value("Karl Otto"));
        rs->set("SURN", Value("Huber"));
        rs->set("Vater", Value(RecordId()));
        rs->set("Mutter", Value(RecordId()));
        for (const auto& [name, value] : more)
            rs->set(name, value);
        rs->Update();
    }
    void event(int id, int person, int art, int tag, int monat, int jahr) {
        add("Ereignis", {{"Counter", Value(RecordId(id))},
                         {"Markierung", Value(true)},
                         {"Art", Value(art)},
                         {"ca", Value(" ")},
                         {"vTag", Value(tag)},
                         {"vMonat", Value(monat)},
                         {"vJahr", Value(jahr)},
                         {"Grund", Value(" ")}});
        add("Ereignis_DS", {{"Counter", Value(RecordId(++link))},
                            {"Quelle", Value(RecordId(person))},
                            {"Ziel", Value(RecordId(id))},
                            {"Ursprung", Value("d")}});
    }
    void association(int quelle, int ziel, const char* asso) {
        add("Daten_DS", {{"Counter", Value(RecordId(++link))},
                         {"Quelle", Value(RecordId(quelle))},
                         {"Ziel", Value(RecordId(ziel))},
                         {"Art", Value("Z")},
                         {"ASSO", Value(asso)}});
    }
    std::string record() {
        return written([&](Exportlauf& l) { personen_schreiben(l, familien); });
    }
    // A person with everything that privacy can hide.
    void everything(int id, bool lebt) {
        person(id, lebt,
               {{"TITL", Value("Dr.")},
                {"NICK", Value("Kalle")},
                {"NPFX", Value("Herr")},
                {"OCCU", Value("Müller")},
                {"Religion", Value("ev.")},
                {"Memo", Value("Notiz")},
                {"GUID", Value("{12345678-1234-1234-1234-123456789012}")}});
        event(100 + id, id, 1, 5, 3, 1850);
        association(id, 7, "Pate");
    }
};

} // namespace

TEST_F(Persons, PrivacyOfLivingPersons) {
    everything(1, true);
    EXPECT_EQ(record(), "0 @I1@ INDI\r\n1 NAME K. /Huber/\r\n2 GIVN K.\r\n2 SURN Huber\r\n"
                        "1 SEX M\r\n1 _UID 12345678-1234-1234-1234-123456789012\r\n"
                        "1 ASSO @I7@\r\n2 RELA Pate\r\n");
    // The first box unchecked: the name pieces come back, the rest stays hidden.
    Auswahl().Datenschutzcheck(0).set("Value", Value(0));
    EXPECT_EQ(record(), "0 @I1@ INDI\r\n1 NAME Karl Otto /Huber/\r\n2 GIVN Karl Otto\r\n"
                        "2 SURN Huber\r\n2 NICK Kalle\r\n2 NPFX Herr\r\n1 SEX M\r\n"
                        "1 _UID 12345678-1234-1234-1234-123456789012\r\n1 ASSO @I7@\r\n"
                        "2 RELA Pate\r\n");
}

TEST_F(Persons, TheDeadAreWrittenWhole) {
    everything(2, false);
    EXPECT_EQ(record(), "0 @I2@ INDI\r\n1 NAME Karl Otto /Huber/\r\n2 GIVN Karl Otto\r\n"
                        "2 SURN Huber\r\n2 NICK Kalle\r\n2 NPFX Herr\r\n1 SEX M\r\n1 TITL Dr.\r\n"
                        "1 OCCU Müller\r\n1 BIRT\r\n2 DATE 05 MAR 1850\r\n1 NOTE Notiz\r\n"
                        "1 RELI ev.\r\n1 _UID 12345678-1234-1234-1234-123456789012\r\n"
                        "1 ASSO @I7@\r\n2 RELA Pate\r\n");
}

TEST_F(Persons, NamesSexAndRoles) {
    person(3, true, {{"GIVN", Value("")}, {"Geschlecht", Value(" ")}, {"GUID", Value(" ")}});
    person(4, true, {{"GIVN", Value("  Anna")}, {"Geschlecht", Value("m")}});
    Auswahl().Datenschutzcheck(0).set("Value", Value(0));
    association(4, 9, "1890");      // a language key: the role letter Z
    association(4, 8, "1801");      // no key: the number itself
    association(4, 10, "taufPATE"); // in any case
    EXPECT_EQ(record(), "0 @I3@ INDI\r\n1 NAME  /Huber/\r\n2 SURN Huber\r\n1 SEX F\r\n1 _UID \r\n"
                        "0 @I4@ INDI\r\n1 NAME   Anna /Huber/\r\n2 GIVN Anna\r\n2 SURN Huber\r\n"
                        "1 SEX F\r\n1 ASSO @I8@\r\n2 RELA 1801\r\n1 ASSO @I9@\r\n2 RELA Zeuge\r\n"
                        "1 ASSO @I10@\r\n2 RELA Godfather\r\n");
    Auswahl().Datenschutzcheck(0).set("Value", Value(1));
    EXPECT_EQ(record().substr(0, 60),
              "0 @I3@ INDI\r\n1 NAME . /Huber/\r\n2 SURN Huber\r\n1 SEX F\r\n1 _UID");
}

TEST_F(Persons, NamesCanNeitherEndTheirLineNorLoseTheirTabs) {
    person(5, false,
           {{"GIVN", Value("Karl\r\n0 TRLR\r\n")},
            {"SURN", Value("\tHuber ")},
            {"TITL", Value("Dr.\x0b")},
            {"Religion", Value("ev.\n0 @I9@ INDI")}});
    EXPECT_EQ(record(), "0 @I5@ INDI\r\n1 NAME Karl  0 TRLR   /\tHuber /\r\n"
                        "2 GIVN Karl  0 TRLR  \r\n2 SURN \tHuber\r\n1 SEX M\r\n"
                        "1 TITL Dr. \r\n1 RELI ev. 0 @I9@ INDI\r\n");
}

TEST_F(Persons, EventsInTheOrderOfTheirDates) {
    person(5, false);
    event(51, 5, 5, 0, 0, 0);     // no date at all: last
    event(52, 5, 1, 0, 3, 1850);  // March 1850: counts as 31 MAR
    event(53, 5, 2, 5, 3, 1850);  // 5 MAR 1850
    event(54, 5, 3, 0, 0, 1850);  // 1850: counts as 31 DEC
    event(55, 5, 4, 10, 0, 1850); // a day without a month: December
    event(56, 5, 10, 1, 1, 1800); // a family event: not under a person
    const std::string text = record();
    std::vector<std::string> tags;
    for (const char* tag : {"CHR", "BIRT", "FCOM", "CONF", "DEAT"})
        tags.push_back(tag);
    std::size_t at = 0;
    for (const std::string& tag : tags) {
        const std::size_t found = text.find("1 " + tag + "\r\n");
        ASSERT_NE(found, std::string::npos) << tag << "\n" << text;
        EXPECT_GT(found, at) << tag;
        at = found;
    }
    EXPECT_EQ(text.find("MARR"), std::string::npos);
    EXPECT_LT(ereignis_sortschluessel(1850, 0, 10), ereignis_sortschluessel(1850, 0, 0));
    EXPECT_EQ(ereignis_sortschluessel(1850, 3, 0), ereignis_sortschluessel(1850, 3, 31));
    EXPECT_EQ(ereignis_sortschluessel(1850, 0, 0), ereignis_sortschluessel(1850, 12, 31));
    EXPECT_NO_THROW(ereignis_sortschluessel(5, 0, 0));
}

TEST_F(Persons, FamilyLinksInTheOrderOfTheFamilyTable) {
    person(6, false, {{"Vater", Value(RecordId(20))}, {"Mutter", Value(RecordId(21))}});
    familien.hinzufuegen(RecordId(6), RecordId(30));  // 1: FAMS
    familien.hinzufuegen(RecordId(20), RecordId(21)); // 2: FAMC
    familien.hinzufuegen(RecordId(0), RecordId(21));  // 3: nothing
    familien.hinzufuegen(RecordId(31), RecordId(6));  // 4: FAMS
    familien.hinzufuegen(RecordId(20), RecordId(21)); // 5: FAMC again
    const std::string text = record();
    EXPECT_NE(text.find("1 FAMS @F1@\r\n1 FAMC @F2@\r\n1 FAMS @F4@\r\n1 FAMC @F5@\r\n"),
              std::string::npos)
        << text;
}

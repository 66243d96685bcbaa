// The event writer: the tag and its value from the kind of event, the lines under it, and
// the associates with their roles.
#include "gedcom/ereignisse.h"
#include "support/export_fixture.h"

#include <gtest/gtest.h>

using namespace folio;

namespace {

struct Events : test::ExportFixture {
    int link = 0;

    // An event of a kind of the catalogue (0 has no tag, 9 is OCCU with its cause on the tag
    // line), marked, with one main person.
    void event(int id, int art, std::initializer_list<std::pair<const char*, Value>> more = {}) {
        auto rs = DB->OpenRecordset("Ereignis");
        rs->AddNew();
        rs->set("Counter", Value(RecordId(id)));
        rs->set("Markierung", Value(true));
        rs->set("Art", Value(art));
        rs->set("ca", Value(" "));
        rs->set("Grund", Value(" "));
        for (const auto& [name, value] : more)
            rs->set(name, value);
        rs->Update();
        role(id, 1, "d", "");
    }
    void role(int ereignis, int person, const char* ursprung, const char* asso) {
        add("Ereignis_DS", {{"Counter", Value(RecordId(++link))},
                            {"Quelle", Value(RecordId(person))},
                            {"Ziel", Value(RecordId(ereignis))},
                            {"Ursprung", Value(ursprung)},
                            {"ASSO", Value(asso)}});
    }
    std::string lines(int id) {
        return written([id](Exportlauf& l) { ereignisschreiben(l, 1, RecordId(id), 1); });
    }
};

} // namespace

TEST_F(Events, AssociatesTakeTheirRoleFromItsWordsElseFromTheLetter) {
    event(1, 0);
    role(1, 7, "T", "   ");       // blanks are no words: the letter's text (1800 + "T")
    role(1, 8, "P", "");          // 1880 Taufpate, which goes out as Godfather
    role(1, 9, "Z", " Nachbar "); // words stand as they are
    role(1, 9, "Z", " Nachbar "); // the same row twice gives one pair
    role(1, 10, "D", "");         // "D" is no associate either
    EXPECT_EQ(lines(1), "1 EVEN\r\n2 TYPE Ereignis\r\n"
                        "2 ASSO @I7@\r\n3 RELA Trauzeuge\r\n"
                        "2 ASSO @I8@\r\n3 RELA Godfather\r\n"
                        "2 ASSO @I9@\r\n3 RELA  Nachbar \r\n");
}

TEST_F(Events, TrimmingTakesBlanksAloneAndTabsAreText) {
    // The cause on the tag line, trimmed of blanks; a cause below it, folded, keeps what
    // stands in front of it.
    event(1, 9, {{"Grund", Value(" \tSchmied\t ")}});
    event(2, 0, {{"Grund", Value(" \tKrieg  ")}, {"Kurztext", Value("\t")}});
    EXPECT_EQ(lines(1), "1 OCCU \tSchmied\t\r\n");
    EXPECT_EQ(lines(2), "1 EVEN\r\n2 TYPE Ereignis\r\n2 NOTE \t\r\n2 CAUS  \tKrieg\r\n");
}

TEST_F(Events, NoValueOnTheTagsLineOrTheTypeCanBreakTheFile) {
    add("Ereignisdb", {{"Index", Value(300)},
                       {"gedtag", Value(" ")},
                       {"Art", Value("Hof\r\n0 TRLR")},
                       {"maxhauptpersonen", Value(1)},
                       {"CAUSasTAG", Value(false)}});
    add("Ort", {{"Counter", Value(RecordId(4))},
                {"Markierung", Value(true)},
                {"Name", Value("Ulm\n0 @I1@ INDI")}});
    event(1, 300, {{"Ort", Value(RecordId(4))}});
    event(2, 9, {{"Grund", Value("Schmied\r\n1 NAME Falsch")}});
    EXPECT_EQ(lines(1), "1 EVEN\r\n2 TYPE Hof  0 TRLR\r\n2 PLAC Ulm 0 @I1@ INDI\r\n");
    EXPECT_EQ(lines(2), "1 OCCU Schmied  1 NAME Falsch\r\n");
}

// The closure: what each of its nine passes follows from the marked persons, and what it
// leaves out because its table's pass has run already; couples' events; the buttons and the
// one message at the end; and the summary of the last page.
#include "selection/verknuepfungen_markieren.h"
#include "support/selection_fixture.h"
#include "wizard/seiten.h"
#include "wizard/verknuepfungen.h"

using namespace folio;
using Closure = test::SelectionFixture;
using S = std::set<int>;

TEST_F(Closure, EachPassFollowsItsLinksAndNothingMarkedAfterItsTurn) {
    // Person 1 is selected: home place 10, birth place 11, death place 0, image 20, a
    // general link to note 30 and address 40.
    person(1, true, 0, 0, false,
           {{"Ort", Value(RecordId(10))},
            {"GOrt", Value(RecordId(11))},
            {"Bild", Value(RecordId(20))}});
    person(2, false);
    quelle(1, "D", 30, "R");
    adresse_von(1, "D", 40);
    // Event 100 (birth, place 12, image 21 — an event's image isn't followed) links to a
    // document 50 and to event 101; 101 is marked by that link after the events' pass, so
    // its place 13 stays out.
    ereignis(100, 1, 12, 21);
    ereignis(101, 1, 13);
    teilnahme(1, 100, "d");
    quelle(100, "E", 50, "U");
    quelle(100, "E", 101, "E");
    // Document 50: place 14, address 41, note 31 by its field; general links to image 22
    // (whose place 15 and links are followed in the images' pass) and to document 51, which
    // its own pass doesn't visit (place 16 out).
    datensatz("Dokument", 50, {{"Ort", Value(RecordId(14))}, {"Notiz", Value(RecordId(31))}});
    datensatz("Dokument", 51, {{"Ort", Value(RecordId(16))}});
    adresse_von(50, "U", 41);
    quelle(50, "U", 22, "B");
    quelle(50, "U", 51, "U");
    // Note 30 has address 42; the general links of notes aren't followed (event 102 out).
    adresse_von(30, "R", 42);
    quelle(30, "R", 102, "E");
    ereignis(102, 1);
    // Address 40: place 17, a general link to image 23. Address 42, marked in the notes'
    // pass, is still visited by the addresses' pass that follows: place 18 comes in.
    datensatz("Adressen", 40, {{"Ort", Value(RecordId(17))}});
    datensatz("Adressen", 42, {{"Ort", Value(RecordId(18))}});
    quelle(40, "A", 23, "B");
    // Image 20 (the person's): place 19. Image 22: place 15 and a link to note 32.
    datensatz("Bilder", 20, {{"Ort", Value(RecordId(19))}});
    datensatz("Bilder", 22, {{"Ort", Value(RecordId(15))}});
    quelle(22, "B", 32, "R");
    // Place 10 has image 24 (pass 7: its place 25 stays out) and address 43 (pass 9, whose
    // place 26 stays out); the general links of places aren't followed (note 33 out).
    datensatz("Ort", 10, {{"Bild", Value(RecordId(24))}});
    datensatz("Bilder", 24, {{"Ort", Value(RecordId(25))}});
    adresse_von(10, "O", 43);
    datensatz("Adressen", 43, {{"Ort", Value(RecordId(26))}});
    quelle(10, "O", 33, "R");
    for (int ort : {11, 12, 13, 14, 15, 16, 17, 18, 19, 25, 26})
        datensatz("Ort", ort);
    for (int notiz : {30, 31, 32, 33})
        datensatz("Notiz", notiz);
    datensatz("Adressen", 41);
    datensatz("Bilder", 21);
    datensatz("Bilder", 23);
    // Earlier marks of the six tables go: the closure starts from nothing.
    datensatz("Notiz", 34, {{"Markierung", Value(true)}});

    verknuepfungen_markieren();
    EXPECT_EQ(markiert("Ereignis"), (S{100, 101}));
    EXPECT_EQ(markiert("Ort"), (S{10, 11, 12, 14, 15, 17, 18, 19}));
    EXPECT_EQ(markiert("Bilder"), (S{20, 22, 23, 24}));
    EXPECT_EQ(markiert("Dokument"), (S{50, 51}));
    EXPECT_EQ(markiert("Notiz"), (S{30, 31, 32}));
    EXPECT_EQ(markiert("Adressen"), (S{40, 41, 42, 43}));
    EXPECT_TRUE(scripted->shown.empty());
    AuswahlForm& form = Auswahl();
    EXPECT_TRUE(form.verknuepfungen_aktuell);
    EXPECT_TRUE(form.hat_ereignisse && form.hat_orte && form.hat_bilder && form.hat_dokumente &&
                form.hat_notizen && form.hat_adressen);
    EXPECT_TRUE(form.Datengrid(1).get("Visible").toBool());

    // While the selection stands, entering the page again changes nothing, not even what
    // the user took out in the second grid.
    setzen("Ereignis", 100, "Markierung", Value(false));
    verknuepfungen_markieren();
    EXPECT_EQ(markiert("Ereignis"), (S{101}));

    // A summary of fresh counts: a row for every table with marks, persons always.
    zusammenfassung_fuellen();
    const std::vector<PropertyBag>& rows = form.DBGrid(1).items("Rows");
    ASSERT_GE(rows.size(), 8u);
    EXPECT_EQ(rows[1].text("Info"), "         1");
    EXPECT_EQ(rows[1].text("Status"), "Personen");
    EXPECT_EQ(rows[2].text("Info"), "         1");
    EXPECT_EQ(rows[2].text("Status"), "Ereignisse");
    EXPECT_EQ(rows[3].text("Info"), "         8");
    EXPECT_TRUE(rows[0].get("StatusBold").toBool());
}

TEST_F(Closure, CouplesEventsNeedBothPartnersAndTellOnceWhenOneIsMissing) {
    for (int p = 1; p <= 6; ++p)
        person(p, p != 3 && p != 6);
    // 200: a marriage of 1 and 2, both selected. 201 and 202: partners 1 and 3. 203: three
    // main persons, the first (1) and the last (4) decide, the middle one (3) doesn't count.
    // 204: only one exact "d" ("D" is no main person here): left out without a word.
    // 205: a birth with selected 5 only as a witness comes in; 206 of a kind the catalogue
    // lacks counts as a kind of one person.
    for (int e = 200; e <= 204; ++e)
        ereignis(e, 10);
    ereignis(205, 1);
    ereignis(206, 99);
    teilnahme(1, 200, "d");
    teilnahme(2, 200, "d");
    teilnahme(1, 201, "d");
    teilnahme(3, 201, "d");
    teilnahme(3, 202, "d");
    teilnahme(1, 202, "d");
    teilnahme(1, 203, "d");
    teilnahme(3, 203, "d");
    teilnahme(4, 203, "d");
    teilnahme(1, 204, "d");
    teilnahme(2, 204, "D");
    teilnahme(6, 205, "d");
    teilnahme(5, 205, "Z");
    teilnahme(6, 206, "d");
    teilnahme(5, 206, "P");

    verknuepfungen_markieren();
    EXPECT_EQ(markiert("Ereignis"), (S{200, 203, 205, 206}));
    ASSERT_EQ(scripted->shown.size(), 1u);
    EXPECT_EQ(scripted->shown[0].text, sprachtext("1660"));
    EXPECT_EQ(scripted->shown[0].style, 23);
    // With "Ehepartner" pressed the message is the other one.
    AuswahlForm& form = Auswahl();
    form.knopf(0, "Ehepartner").set("Value", Value(1));
    form.verknuepfungen_aktuell = false;
    verknuepfungen_markieren();
    EXPECT_EQ(scripted->shown.back().text, sprachtext("1661"));
}

TEST_F(Closure, LettersAndZerosOfTheLinkTables) {
    person(1, true);
    // The target's letter counts exactly; the source's letter and the addresses' letter
    // compare without case. A target 0 finds nothing; an address link to 0 is skipped.
    quelle(1, "d", 30, "R");
    quelle(1, "D", 31, "r");
    quelle(1, "D", 0, "R");
    quelle(1, "D", 32, "X");
    adresse_von(1, "d", 40);
    adresse_von(1, "D", 0);
    for (int n : {30, 31, 32})
        datensatz("Notiz", n);
    datensatz("Adressen", 40);
    datensatz("Adressen", 0);

    verknuepfungen_markieren();
    EXPECT_EQ(markiert("Notiz"), (S{30}));
    EXPECT_EQ(markiert("Adressen"), (S{40}));
    // Nothing marked in a table switches its button off; the events are shown all the same.
    AuswahlForm& form = Auswahl();
    EXPECT_FALSE(form.knopf(1, "Ereignisse").get("Enabled").toBool());
    EXPECT_EQ(form.knopf(1, "Ereignisse").get("Value").toInt(), 1);
    EXPECT_TRUE(form.knopf(1, "Notizen").get("Enabled").toBool());
    EXPECT_FALSE(form.knopf(1, "Orte").get("Enabled").toBool());
}

// A changed tick brings the ancestors, descendants and spouses of the person along, as the
// switches say, within the limits of generations and through loops in the data.
#include "selection/verwandte.h"
#include "support/selection_fixture.h"
#include "wizard/personengrid.h"

using namespace folio;
using S = std::set<int>;

namespace {

struct Relatives : test::SelectionFixture {
    void schalter(bool vorfahren, bool nachfahren, bool ehepartner, bool lebend = false) {
        AuswahlForm& form = Auswahl();
        form.knopf(0, "Vorfahren").set("Value", Value(vorfahren ? 1 : 0));
        form.knopf(0, "Nachfahren").set("Value", Value(nachfahren ? 1 : 0));
        form.knopf(0, "Ehepartner").set("Value", Value(ehepartner ? 1 : 0));
        form.knopf(0, "Lebend").set("Value", Value(lebend ? 1 : 0));
    }
    void tick(int person, bool stand) {
        setzen("Daten", person, "Markierung", Value(stand));
        markierung_geaendert(0, RecordId(person), stand);
    }
    // Three generations: 1 and 2 the grandparents, 3 (with spouse 4) their son, 5 and 6 the
    // children of 3 and 4, 7 the child of 5; 8 married 5, and 9 married 8 later.
    void familie() {
        person(1, false);
        person(2, false);
        person(3, false, 1, 2);
        person(4, false);
        person(5, false, 3, 4, false, {{"GJahr", Value(1950)}});
        person(6, false, 3, 4, true, {{"GJahr", Value(1940)}});
        person(7, false, 0, 5);
        person(8, false);
        person(9, false);
        ehe(1, 2);
        ehe(4, 3);
        ehe(5, 8);
        ehe(9, 8);
    }
};

} // namespace

TEST_F(Relatives, EachSwitchBringsItsBranchAndUntickingTakesItBack) {
    familie();
    // Without a switch only the tick itself stands, and the closure is stale.
    Auswahl().verknuepfungen_aktuell = true;
    tick(3, true);
    EXPECT_EQ(markiert("Daten"), (S{3}));
    EXPECT_FALSE(Auswahl().verknuepfungen_aktuell);

    schalter(true, false, false);
    tick(5, true);
    EXPECT_EQ(markiert("Daten"), (S{1, 2, 3, 4, 5}));
    // Ancestors and descendants both start from the ticked person: the descendants of its
    // ancestors (the sibling 6) aren't reached.
    schalter(true, true, false);
    tick(3, true);
    EXPECT_EQ(markiert("Daten"), (S{1, 2, 3, 4, 5, 6, 7}));

    // Unticking with "Vorfahren" clears the ancestors too, also those ticked one by one.
    schalter(true, false, false);
    tick(5, false);
    EXPECT_EQ(markiert("Daten"), (S{6, 7}));

    // Spouses, and the spouses of the spouses.
    schalter(false, false, true);
    tick(5, true);
    EXPECT_EQ(markiert("Daten"), (S{5, 6, 7, 8, 9}));

    // "Lebend" takes every living person out at the end, whoever ticked them.
    schalter(false, true, false, true);
    tick(3, true);
    EXPECT_EQ(markiert("Daten"), (S{3, 5, 7, 8, 9}));
}

TEST_F(Relatives, LimitsOfGenerationsAndLoopsInTheData) {
    // A line of 101 persons, each the father of the one before: from person 1, generation
    // 99 (person 99) is marked but not followed.
    for (int p = 1; p <= 101; ++p)
        person(p, false, p < 101 ? p + 1 : 0);
    schalter(true, false, false);
    tick(1, true);
    const S vorfahren = markiert("Daten");
    EXPECT_EQ(vorfahren.size(), 99u);
    EXPECT_TRUE(vorfahren.count(99) && !vorfahren.count(100));
    // Down the same line from person 101: generation 100 is the deepest.
    schalter(false, true, false);
    tick(1, false);
    tick(101, true);
    const S nachfahren = markiert("Daten");
    EXPECT_EQ(nachfahren.size(), 100u);
    EXPECT_TRUE(nachfahren.count(2) && !nachfahren.count(1));
}

TEST_F(Relatives, ALoopLeadingBackEndsTheWalk) {
    // 1 is the father of 2, 2 of 3, and 3 the father of 1: every walk ends.
    person(1, false, 3);
    person(2, false, 1);
    person(3, false, 2);
    person(4, false);
    ehe(3, 4);
    schalter(true, true, true);
    tick(1, true);
    EXPECT_EQ(markiert("Daten"), (S{1, 2, 3, 4}));
}

TEST_F(Relatives, TheGridRefusesALivingPersonWhileLebendIsPressed) {
    person(1, false, 0, 0, true);
    person(2, false);
    schalter(false, false, false, true);
    EXPECT_EQ(haken_setzen(RecordId(1), true), Haken::Verweigert);
    EXPECT_EQ(haken_setzen(RecordId(77), true), Haken::Unbekannt);
    EXPECT_FALSE(Auswahl().sevWizard().get("NextEnabled").toBool());
    EXPECT_EQ(haken_setzen(RecordId(2), true), Haken::Gesetzt);
    EXPECT_EQ(markiert("Daten"), (S{2}));
    EXPECT_TRUE(Auswahl().sevWizard().get("NextEnabled").toBool());
}

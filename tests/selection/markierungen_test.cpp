// The persons' marks are saved when a database is opened and put back when it is left; the
// commands of the person tool bar change them in one statement each.
#include "selection/markierungen.h"
#include "support/selection_fixture.h"
#include "wizard/personengrid.h"

using namespace folio;
using Marks = test::SelectionFixture;

TEST_F(Marks, SavedAtOpeningAndPutBackInEveryMarkedTable) {
    person(1, true);
    person(2, false);
    datensatz("Ereignis", 5, {{"Markierung", Value(true)}, {"Marker", Value(0)}});
    datensatz("Ort", 6, {{"Markierung", Value(false)}, {"Marker", Value(1)}});
    markierungen_sichern();

    // The wizard changes persons and the closure's tables; leaving puts all back.
    markieren_befehl(0, "Abwählen");
    person(3, true, 0, 0, false, {{"Marker", Value(0)}});
    markieren_befehl(0, "Auswählen");
    markierungen_zurueckholen();
    EXPECT_EQ(markiert("Daten"), (std::set<int>{1}));
    EXPECT_EQ(markiert("Ereignis"), (std::set<int>{}));
    EXPECT_EQ(markiert("Ort"), (std::set<int>{6}));

    // A table that an old file lacks, or no database at all, is passed over in silence.
    rs_Adressen->Close();
    DB->DeleteTableDef("Adressen");
    markierungen_zurueckholen();
    EXPECT_EQ(markiert("Ort"), (std::set<int>{6}));
    alle_schliessen("");
    DB.reset();
    markierungen_zurueckholen();
    EXPECT_TRUE(scripted->shown.empty());
}

TEST_F(Marks, ToolbarCommandsAndTheNextButton) {
    person(1, true);
    person(2, false);
    person(3, false);
    markierungen_sichern();
    AuswahlForm& form = Auswahl();
    int auffrischungen = 0;
    form.grid(0).geaendert = [&] { ++auffrischungen; };

    form.verknuepfungen_aktuell = true;
    markieren_befehl(0, "Abwählen");
    EXPECT_TRUE(markiert("Daten").empty());
    EXPECT_FALSE(form.sevWizard().get("NextEnabled").toBool());
    EXPECT_FALSE(form.verknuepfungen_aktuell);
    EXPECT_EQ(auffrischungen, 1);

    // Those marked at opening come back, as an addition; the grid and Next stay.
    person(4, true);
    form.verknuepfungen_aktuell = true;
    markieren_befehl(0, "Alle_gezeigten");
    EXPECT_EQ(markiert("Daten"), (std::set<int>{1, 4}));
    EXPECT_FALSE(form.sevWizard().get("NextEnabled").toBool());
    EXPECT_EQ(auffrischungen, 1);
    EXPECT_FALSE(form.verknuepfungen_aktuell);

    markieren_befehl(0, "Auswählen");
    EXPECT_EQ(markiert("Daten"), (std::set<int>{1, 2, 3, 4}));
    EXPECT_TRUE(form.sevWizard().get("NextEnabled").toBool());

    // Another tool bar does nothing at all.
    form.verknuepfungen_aktuell = true;
    markieren_befehl(1, "Abwählen");
    EXPECT_EQ(markiert("Daten").size(), 4u);
    EXPECT_TRUE(form.verknuepfungen_aktuell);
    form.grid(0).geaendert = nullptr;
}

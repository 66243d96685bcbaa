// The grid model on a small tree: its columns from the query, the order of its rows by the
// program's collation, rows read lazily with the row event for exactly the rows read, a tick
// written at once, and a query that the database refuses.
#include "engine/errors.h"
#include "support/selection_fixture.h"
#include "wizard/datengrid.h"

#include <gtest/gtest.h>

namespace folio::test {
namespace {

struct GridModel : SelectionFixture {
    Datengrid grid{0};
    int ereignisse = 0;

    void SetUp() override {
        SelectionFixture::SetUp();
        const char* namen[] = {"Zander", "äbel", "Abt", "", "Özdemir", "abel", "Meier"};
        for (int i = 0; i < 7; ++i)
            person(i + 1, false, 0, 0, false, {{"SURN", Value(namen[i])}});
        setzen("Daten", 4, "SURN", Value()); // a person without a surname
        grid.zeilenereignis = [&](Zeilenzugriff& z) {
            ++ereignisse;
            z.setzeText("GIVN", "<" + z.text("surn") + ">");
            z.setzeBild("Geschlecht", 3);
            z.setzeText("KeineSpalte", "nichts");
        };
    }
    void TearDown() override {
        grid.Clear(true);
        SelectionFixture::TearDown();
    }
    std::vector<std::string> namen() {
        std::vector<std::string> v;
        for (std::int64_t r = 1; r <= grid.Rows(); ++r)
            v.push_back(grid.Text("SURN", r));
        return v;
    }
};

TEST_F(GridModel, ColumnsRowsAndSorting) {
    grid.Recordset(*DB, "SELECT Counter, Markierung, Geschlecht, GIVN, surn, Lebt FROM Daten");
    ASSERT_EQ(grid.Cols(), 6);
    // Keys as the query spells them, found in any case; the kinds of their fields.
    EXPECT_EQ(grid.Columns(5).Key, "surn");
    EXPECT_EQ(grid.GetCol("SURN"), 5);
    EXPECT_EQ(grid.Columns("surn").DataType, SpaltentypText);
    EXPECT_EQ(grid.Columns("Lebt").DataType, SpaltentypJaNein);
    EXPECT_EQ(grid.Columns("Counter").DataType, SpaltentypZahl);
    EXPECT_EQ(grid.Columns("surn").SourceTable, "Daten");
    EXPECT_EQ(grid.Columns("surn").Name, "SURN");
    EXPECT_EQ(grid.Rows(), 7);
    EXPECT_EQ(grid.Row, 1);
    EXPECT_EQ(ereignisse, 0); // nothing is read before it is asked for

    // The order of the store, then the collation: case and umlauts as a German reader sorts,
    // the person without a name first, and equal names in the order of the store.
    EXPECT_EQ(namen(),
              (std::vector<std::string>{"Zander", "äbel", "Abt", "", "Özdemir", "abel", "Meier"}));
    grid.DoSort("SURN");
    EXPECT_EQ(grid.SortOrder(), "[surn]");
    EXPECT_EQ(grid.Columns("surn").SortState, SortAuf);
    EXPECT_EQ(namen(),
              (std::vector<std::string>{"", "abel", "äbel", "Abt", "Meier", "Özdemir", "Zander"}));
    grid.DoSort("[surn] DESC");
    EXPECT_EQ(namen().front(), "Zander");
    EXPECT_EQ(namen().back(), "");
    grid.DoSort("Counter");
    EXPECT_EQ(grid.Text("Counter", 7), "7");
    EXPECT_THROW(grid.DoSort("[Nichts]"), Error);
    EXPECT_EQ(grid.SortOrder(), "[Counter]");

    // The row event changes only what the grid shows, and a key it lacks is ignored.
    EXPECT_EQ(grid.Text("GIVN", 2), "<äbel>"); // sorted by Counter again
    EXPECT_EQ(grid.zeile(2).zellen[2].bild, 3);
    EXPECT_EQ(grid.Text("KeineSpalte", 2), "");
}

TEST_F(GridModel, RowsAreReadAWindowAtATime) {
    for (int i = 8; i <= 300; ++i)
        person(i, false, 0, 0, false, {{"SURN", Value("N" + std::to_string(1000 + i))}});
    grid.Recordset(*DB, "SELECT Counter, surn FROM Daten WHERE Counter > 5 ORDER BY Counter DESC");
    ASSERT_EQ(grid.Rows(), 295);
    EXPECT_EQ(grid.Text("surn", 295), "N1300");
    EXPECT_LE(ereignisse, Datengrid::Fenstergroesse);
    const int nach_erstem = ereignisse;
    grid.Text("surn", 290);
    EXPECT_EQ(ereignisse, nach_erstem); // still in the window read
    grid.sichtbar(100, 20);
    grid.Refresh();
    EXPECT_EQ(ereignisse, nach_erstem + 20);
    EXPECT_EQ(grid.position_von(grid.rowid(150)), 150);
    EXPECT_EQ(grid.position_von(-5), 0);
}

TEST_F(GridModel, ATickIsWrittenAtOnceAndARefusedQueryKeepsTheRows) {
    int meldungen = 0;
    grid.geaendert = [&] { ++meldungen; };
    grid.Recordset(*DB, "SELECT Counter, Markierung, surn FROM Daten");
    grid.Columns("Markierung").Bearbeitbar = true;
    grid.Text("surn", 1);
    grid.schreiben(3, "Markierung", Value(true));
    EXPECT_EQ(markiert("Daten"), (std::set<int>{3}));
    EXPECT_EQ(grid.Text("Markierung", 3), "True");
    EXPECT_THROW(grid.schreiben(3, "surn", Value("x")), Error);

    grid.LockUpdate(true);
    const int vorher = meldungen;
    EXPECT_THROW(grid.Recordset(*DB, "SELECT Counter, Markierung, surn FROM Daten WHERE ("),
                 DatabaseError);
    EXPECT_THROW(grid.Recordset(*DB, "SELECT Counter, Markierung, surn FROM Daten; DELETE * "
                                     "FROM Daten"),
                 DatabaseError);
    EXPECT_EQ(grid.Rows(), 7);
    EXPECT_EQ(grid.abfrage(), "SELECT Counter, Markierung, surn FROM Daten");
    grid.Recordset(*DB, "SELECT Counter, Markierung, surn FROM Daten WHERE Markierung = True");
    EXPECT_EQ(meldungen, vorher); // told once the grid is unlocked
    grid.LockUpdate(false);
    EXPECT_EQ(meldungen, vorher + 1);
    EXPECT_EQ(grid.Rows(), 1);
    // Unticked, the row stays until the query runs again.
    grid.schreiben(1, "Markierung", Value(false));
    EXPECT_EQ(grid.Rows(), 1);
    EXPECT_TRUE(markiert("Daten").empty());
}

} // namespace
} // namespace folio::test

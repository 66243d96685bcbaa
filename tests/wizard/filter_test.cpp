// The filter language: the condition that a column's filter text becomes, by operator, column
// and data type; texts that try to reach beyond their column; and the filter row on the grids
// of a small tree: what a filter shows, what a refused one leaves, switching off, Escape, the
// lists of the filter cells, and the second grid on the marked records.
#include "engine/date_time.h"
#include "engine/errors.h"
#include "support/selection_fixture.h"
#include "wizard/filter.h"
#include "wizard/grid_aufbau.h"

#include <gtest/gtest.h>

#include <cctype>

namespace folio::test {
namespace {

Spalte spalte(const std::string& key, int typ, const std::string& tabelle = "Daten",
              Value tag = Value(-1)) {
    Spalte s;
    s.Key = key;
    s.Name = key;
    s.DataType = typ;
    s.SourceTable = tabelle;
    s.Tag = tag;
    return s;
}

std::string bedingung(const Spalte& s, const std::string& text) {
    Spalte mit = s;
    mit.Filter = text;
    return spaltenbedingung(mit, filtertext(mit));
}

TEST(Filterbedingung, ByOperatorColumnAndType) {
    const Spalte surn = spalte("SURN", SpaltentypText);
    const Spalte zahl = spalte("Counter", SpaltentypZahl);
    const Spalte gsort = spalte("GSort", SpaltentypText);
    const Spalte datum = spalte("Geburt", SpaltentypDatum, "");
    const std::string jahr = std::to_string(DateTime::today().year());
    struct Fall {
        Spalte spalte;
        std::string text, erwartet;
    };
    // clang-format off
    const Fall faelle[] = {
        {surn, "a",            "([Daten].[SURN] LIKE 'a*')"},
        {surn, "a*",           "([Daten].[SURN] LIKE 'a*')"},
        {surn, "*a",           "([Daten].[SURN] LIKE '*a*')"},
        {surn, "a%",           "([Daten].[SURN] LIKE 'a*')"},
        {surn, "not like *a*", "([Daten].[SURN] NOT LIKE '*a*')"},
        {surn, "NOT LIKE a%",  "([Daten].[SURN] NOT LIKE 'a%')"},
        {surn, "NOT Meier",    "([Daten].[SURN] NOT 'Meier')"},
        {surn, "NOTZ",         "([Daten].[SURN] LIKE 'NOTZ*')"},
        {surn, "<>Meier",      "([Daten].[SURN] <> 'Meier')"},
        {surn, ">=M",          "([Daten].[SURN] >= 'M')"},
        {surn, "=>M",          "([Daten].[SURN] >= 'M')"},
        {surn, "=<  M",        "([Daten].[SURN] <= 'M')"},
        {surn, "<>'Meier'",    "([Daten].[SURN] <> 'Meier')"},
        {surn, "'Meier'",      "([Daten].[SURN] LIKE 'Meier'*)"},
        {surn, "\"\"",         "([Daten].[SURN] LIKE '*')"},
        {surn, "<>\"\"",       "([Daten].[SURN] <> )"},
        {surn, "<>''",         "([Daten].[SURN] <> )"},
        {surn, "drop table",   "([Daten].[SURN] LIKE 'drop table*')"},
        {spalte("Titel", SpaltentypTextRaute), "a", "([Daten].[Titel] LIKE '#a*')"},
        {zahl, "5",            "([Daten].[Counter] = 5)"},
        {zahl, ">5",           "([Daten].[Counter] > 5)"},
        {zahl, "''",           "([Daten].[Counter] = )"},
        {gsort, "1900",        "([Daten].[GSort]   between '1900' AND '19009999')"},
        {gsort, "1900..1950",  "([Daten].[GSort]   between '1900' AND '19509999')"},
        {gsort, ">1900",       "([Daten].[GSort] > '1900')"},
        {spalte("vsort", SpaltentypText, "Ereignis"), "1850..1860",
                               "([Ereignis].[vsort]   between '1850' AND '18609999')"},
        {spalte("bsort", SpaltentypText, "Ereignis"), "1850",
                               "([Ereignis].[bsort]   between '1850' AND '18509999')"},
        {spalte("Marker", SpaltentypJaNein), "ja",   "([Daten].[Marker] = True)"},
        {spalte("Marker", SpaltentypJaNein), "nein", "([Daten].[Marker] = False)"},
        {spalte("Marker", SpaltentypJaNein), "Ja",   "([Daten].[Marker] = False)"},
        {datum, "1.2.1900",    "([Geburt] = #2-1-00#)"},
        {datum, ">=15.03.1850", "([Geburt] >= #3-15-50#)"},
        {datum, "1900..1950",  "([Geburt] > #1-1-1900# AND [Geburt] < #12-31-1950#)"},
        {datum, "1900",        "([Geburt] > #1-1-1900# AND [Geburt] < #12-31-1900#)"},
        {datum, "1990 ..",     "([Geburt] > #1-1-1990# AND [Geburt] < #12-31-" + jahr + "#)"},
        {datum, "3000",        "([Geburt] = 3000)"},
        {datum, "2000-02-29",  "([Geburt] = #2-29-00#)"},
        {datum, "29.2.1900",   "([Geburt] > #1-1-0029# AND [Geburt] < #12-31-0029#)"},
        {datum, "31.2.1900",   "([Geburt] > #1-1-0031# AND [Geburt] < #12-31-0031#)"},
        // The key columns compare the number picked from their list, whatever was typed.
        {spalte("Art", SpaltentypZahl, "Ereignis", Value(12)), "Taufe", "([Ereignis].[Art]  =  12)"},
        {spalte("Art", SpaltentypZahl, "Ereignis"),            "Taufe", "([Ereignis].[Art]  =  -1)"},
        {spalte("GOrt", SpaltentypZahl, "Daten", Value(7)),    "Berlin", "([Daten].[GOrt] = 7)"},
        {spalte("Status", SpaltentypZahl, "Daten", Value(3)),  "<>x",    "([Daten].[Status] = 3)"},
        {spalte("OberOrt", SpaltentypZahl, "Ort", Value(4)),   "x",      "([Ort].[OberOrt] = 4)"},
        // A value in quotes is a harmless string, whatever it says.
        {surn, "<>'x; DROP TABLE Daten; --'", "([Daten].[SURN] <> 'x; DROP TABLE Daten; --')"},
    };
    // clang-format on
    for (const Fall& f : faelle)
        EXPECT_EQ(bedingung(f.spalte, f.text), f.erwartet) << f.spalte.Key << ": " << f.text;
    // A year on a sort key that isn't a whole number is an error of its own.
    EXPECT_THROW(bedingung(gsort, "neunzehnhundert"), Error);
    EXPECT_THROW(bedingung(gsort, "..1950"), Error);
}

TEST(Filterbedingung, NothingTypedReachesBeyondItsColumn) {
    const Spalte surn = spalte("SURN", SpaltentypText);
    const Spalte zahl = spalte("Counter", SpaltentypZahl);
    struct Fall {
        const Spalte& spalte;
        std::string text;
    };
    // clang-format off
    const Fall faelle[] = {
        {surn, "x') OR 1=1 OR ('"},
        {surn, "'; DROP TABLE Daten; --"},
        {surn, "a' UNION SELECT Counter FROM Daten WHERE 'a'='a"},
        {surn, "<>'a' OR SURN LIKE 'b'"},
        {surn, "O'Brien"},
        {surn, "'x) AND (1=1"},
        {zahl, "1) OR (1=1"},
        {zahl, "1; DELETE FROM Daten"},
        {zahl, "=1 -- alle"},
        {zahl, "=1 /* alle */"},
        {zahl, "=[Markierung]"},
        {zahl, "=(SELECT MAX(Counter) FROM Daten)"},
        {zahl, "=randomblob(1000000000)"},
        {zahl, "=x'00'"},
        {zahl, ">1)"},
        {zahl, "=(1"},
        {zahl, "=#1-1-2000"},
    };
    // clang-format on
    for (const Fall& f : faelle)
        EXPECT_THROW(bedingung(f.spalte, f.text), DatabaseError) << f.text;
}

struct Filter : SelectionFixture {
    Datengrid* g = nullptr;

    void SetUp() override {
        SelectionFixture::SetUp();
        // clang-format off
        person(1, true,  0, 0, false, {{"SURN", Value("Meier")},   {"Geschlecht", Value("M")}, {"GSort", Value("19000101")}, {"GOrt", Value(RecordId(7))}});
        person(2, false, 0, 0, false, {{"SURN", Value("Müller")},  {"Geschlecht", Value("W")}, {"GSort", Value("19501231")}});
        person(3, true,  0, 0, true,  {{"SURN", Value("Schmidt")}, {"Geschlecht", Value("M")}, {"GSort", Value("19510101")}, {"GOrt", Value(RecordId(7))}});
        person(4, false, 0, 0, false, {{"SURN", Value("Maier")},   {"Geschlecht", Value("W")}, {"GSort", Value("18991231")}});
        // clang-format on
        datensatz("Ort", 7, {{"Name", Value("Berlin")}});
        datensatz("Ort", 8, {{"Name", Value("Aachen")}});
        personengrid_aufbauen();
        g = &Auswahl().grid(0);
    }
    // Types a filter text into the cell of a column and confirms it.
    void filtern(const char* key, const std::string& text) {
        filter_uebernehmen(*g, g->GetCol(key), text);
        filter_bestaetigen(*g);
    }
    std::string nachnamen() {
        std::string s;
        for (std::int64_t r = 1; r <= g->Rows(); ++r)
            s += g->Text("SURN", r) + " ";
        return s;
    }
};

TEST_F(Filter, AppliedKeepingSortAndScrollAndSwitchedOffByTheRightButton) {
    filter_bestaetigen(*g);
    EXPECT_EQ(g->abfrage(), Auswahl().grid_sql[0]) << "no filter, no WHERE";
    g->DoSort("[SURN] DESC");
    g->HScrollPos = 3;
    g->Row = 4;
    filtern("SURN", "M");
    EXPECT_EQ(nachnamen(), "Müller Meier Maier ");
    EXPECT_EQ(g->SortOrder(), "[SURN] DESC");
    EXPECT_EQ(g->HScrollPos, 3);
    EXPECT_EQ(g->Row, 1);
    EXPECT_FALSE(g->gesperrt());
    EXPECT_EQ(g->Columns("SURN").Image, 1);
    EXPECT_EQ(g->Columns("SURN").ImageAlign, 1);

    filtern("Gsort", "1900..1950");
    EXPECT_EQ(nachnamen(), "Müller Meier ");
    filter_umschalten(*g, g->GetCol("Gsort"), 1); // the left button does nothing
    EXPECT_EQ(nachnamen(), "Müller Meier ");
    filter_umschalten(*g, g->GetCol("Gsort"), MausRechts, true); // nor does it while editing
    EXPECT_EQ(nachnamen(), "Müller Meier ");
    filter_umschalten(*g, g->GetCol("Gsort"), MausRechts);
    EXPECT_EQ(nachnamen(), "Müller Meier Maier ");
    EXPECT_EQ(g->Columns("Gsort").Image, 0);
    EXPECT_EQ(g->Columns("Gsort").Filter, "1900..1950") << "a switched-off text stays";
    filter_umschalten(*g, g->GetCol("Gsort"), MausRechts);
    EXPECT_EQ(nachnamen(), "Müller Meier ");

    // On an empty cell the right button does nothing: no query, no change of state.
    const std::string vorher = g->abfrage();
    filter_umschalten(*g, g->GetCol("GIVN"), MausRechts);
    EXPECT_EQ(g->abfrage(), vorher);
    EXPECT_FALSE(g->Columns("GIVN").FilterShowDisabled);
    EXPECT_TRUE(scripted->shown.empty());
}

TEST_F(Filter, ARefusedQueryShowsTheMessageAndTheGridKeepsItsRows) {
    filtern("SURN", "M");
    for (const char* text : {"O'Brien", "x') OR 1=1 OR ('", "<>\"\"", "'; DROP TABLE Daten; --"}) {
        SCOPED_TRACE(text);
        scripted->shown.clear();
        filtern("SURN", text);
        ASSERT_EQ(scripted->shown.size(), 1u);
        const MessageRequest& m = scripted->shown[0];
        EXPECT_EQ(m.style, 0);
        EXPECT_TRUE(m.text.starts_with("Fehler beim Setzen des Filters!\r\n")) << m.text;
        // The second line: the error's number, " - ", its text.
        const std::size_t zeile = m.text.find("\r\n") + 2;
        const std::string fehler = m.text.substr(zeile, m.text.find("\r\n\r\n") - zeile);
        EXPECT_TRUE(std::isdigit(static_cast<unsigned char>(fehler[0]))) << fehler;
        EXPECT_NE(fehler.find(" - "), std::string::npos) << fehler;
        EXPECT_TRUE(m.text.ends_with("\r\n\r\n" + DB->Name() + "\r\n" + Auswahl().grid_sql[0]))
            << m.text;
        EXPECT_EQ(nachnamen(), "Maier Meier Müller ");
        EXPECT_FALSE(g->gesperrt());
        EXPECT_EQ(g->Columns("SURN").Image, 1) << "the header shows the new filter";
    }
    EXPECT_TRUE(DB->hasTable("Daten"));
    // A number column with text: the database (or the check before it) refuses it.
    scripted->shown.clear();
    filtern("Counter", "abc");
    EXPECT_EQ(scripted->shown.size(), 1u);
}

TEST_F(Filter, FixedListsAndKeyColumns) {
    // Picked entries of the fixed lists; their blank entries give no filter at all.
    filtern("Markierung", sprachtext("8214 Nur markierte Datensätze"));
    EXPECT_EQ(nachnamen(), "Meier Schmidt ");
    filtern("Markierung", sprachtext("1267 Alle nicht markierten Datensätzen"));
    EXPECT_EQ(nachnamen(), "Maier Müller ");
    filtern("Markierung", "  ");
    filtern("Geschlecht", sprachtext("1137 Weiblich"));
    EXPECT_EQ(nachnamen(), "Maier Müller ");
    filtern("Geschlecht", "M");
    EXPECT_EQ(nachnamen(), "Meier Schmidt ");
    filtern("Geschlecht", "        ");
    filtern("Lebt", sprachtext("1266 Person lebt"));
    EXPECT_EQ(nachnamen(), "Schmidt ");
    filtern("Lebt", "        ");
    EXPECT_EQ(g->abfrage(), Auswahl().grid_sql[0]);

    // A key column takes the key of the picked entry, and -1 for a typed text.
    const Filterliste orte = filterliste_fuellen(*g, g->GetCol("GOrt"));
    ASSERT_EQ(orte.eintraege.size(), 2u);
    EXPECT_EQ(orte.eintraege[0].text, "Aachen");
    g->filterwahl = orte.eintraege[1].schluessel;
    filtern("GOrt", orte.eintraege[1].text);
    EXPECT_EQ(g->Columns("GOrt").Tag, Value(7));
    EXPECT_TRUE(g->filterwahl.isNull());
    EXPECT_EQ(nachnamen(), "Meier Schmidt ");
    filtern("GOrt", "Berlin");
    EXPECT_EQ(g->Columns("GOrt").Tag, Value(-1));
    EXPECT_EQ(g->Rows(), 0);
    filtern("GOrt", "");
    EXPECT_TRUE(g->Columns("GOrt").FilterShowDisabled);
    EXPECT_FALSE(g->Columns("GOrt").filter_aktiv);
    EXPECT_EQ(g->Rows(), 4);
}

TEST_F(Filter, TheListsOfTheFilterCells) {
    // A place list: the rows of Ort by name, the key hidden in the first list column.
    const Filterliste orte = filterliste_fuellen(*g, g->GetCol("SOrt"));
    EXPECT_EQ(orte.art, 1);
    EXPECT_EQ(orte.anzeigespalte, 2);
    EXPECT_TRUE(orte.schluessel_verborgen);
    EXPECT_EQ(orte.eintraege[0].schluessel.toInt(), 8);

    const Filterliste geschlecht = filterliste_fuellen(*g, g->GetCol("Geschlecht"));
    EXPECT_EQ(geschlecht.art, 2);
    ASSERT_EQ(geschlecht.eintraege.size(), 3u);
    EXPECT_EQ(geschlecht.eintraege[0].text, sprachtext("1136 Männlich"));
    EXPECT_EQ(geschlecht.eintraege[2].text, "        ");
    EXPECT_EQ(filterliste_fuellen(*g, g->GetCol("SURN")).art, 0);
}

TEST_F(Filter, EscapeGivesBackTheTextsLastApplied) {
    filtern("SURN", "M");
    filter_uebernehmen(*g, g->GetCol("SURN"), "X");
    filter_uebernehmen(*g, g->GetCol("GIVN"), "Anna");
    int taste = 13;
    filter_abbrechen(*g, taste);
    EXPECT_TRUE(scripted->shown.empty());
    taste = TasteEscape;
    scripted->answers.push_back({AntwortNein, -2});
    filter_abbrechen(*g, taste);
    EXPECT_EQ(taste, 0);
    EXPECT_EQ(g->Columns("SURN").Filter, "X");
    ASSERT_EQ(scripted->shown.size(), 1u);
    EXPECT_EQ(scripted->shown[0].text, "Filterbearbeitung wirklich abbrechen?");
    EXPECT_EQ(scripted->shown[0].style, StilFrageJaNeinNein);

    taste = TasteEscape;
    scripted->answers.push_back({AntwortJa, -2});
    filter_abbrechen(*g, taste);
    EXPECT_EQ(taste, TasteEscape);
    EXPECT_EQ(g->Columns("SURN").Filter, "M");
    EXPECT_EQ(g->Columns("GIVN").Filter, "");
    EXPECT_TRUE(g->Columns("GIVN").FilterShowDisabled);
    EXPECT_EQ(nachnamen(), "Maier Meier Müller ") << "the query isn't run again";
}

TEST_F(Filter, TheSecondGridStaysOnMarkedRecords) {
    datensatz("Ort", 9, {{"Name", Value("Bonn")}});
    for (int ort : {7, 9})
        setzen("Ort", ort, "Markierung", Value(true));
    grid2_aufbauen("Orte");
    Datengrid& orte = Auswahl().grid(1);
    filter_bestaetigen(orte);
    EXPECT_EQ(orte.abfrage(), Auswahl().grid_sql[1] + " WHERE  Markierung = true     ");
    EXPECT_EQ(orte.Rows(), 2);
    filter_uebernehmen(orte, orte.GetCol("Name"), "b");
    filter_bestaetigen(orte);
    EXPECT_EQ(orte.Rows(), 2);
    filter_uebernehmen(orte, orte.GetCol("Name"), "*o*");
    filter_bestaetigen(orte);
    EXPECT_EQ(orte.Rows(), 1);
    EXPECT_EQ(orte.Text("Name", 1), "Bonn");
    EXPECT_EQ(orte.abfrage(),
              Auswahl().grid_sql[1] + " WHERE ([Ort].[Name] LIKE '*o*') AND  Markierung = true");
}

TEST_F(Filter, HelpTexts) {
    EXPECT_EQ(filter_hilfe(*g, g->GetCol("SURN")).text,
              "Klicken Sie hier um einen Filter zu setzen.\r\n\r\nBeispiel:\r\n"
              "a*\t\t (alle Einträge, die mit 'a' beginnen)\r\n"
              "*a\t\t (alle Einträge, welche ein 'a' enthalten)\r\n"
              "NOT LIKE *a*\t (alle Einträge, die kein 'a' enthalten)\r\n\r\n"
              "mit der rechten Maustaste können Sie Filter deaktivieren!");
    const int jahr = DateTime::today().year();
    const Tooltip gsort = filter_hilfe(*g, g->GetCol("Gsort"));
    EXPECT_EQ(gsort.titel, "Auto-Filter");
    EXPECT_NE(gsort.text.find("\r\n" + std::to_string(jahr) + "\t (ein bestimmtes Jahr)\r\n\r\n" +
                              std::to_string(jahr - 10) + ".." + std::to_string(jahr) +
                              "\t (für die letzten 10 Jahre)\r\n"),
              std::string::npos);
    EXPECT_EQ(spaltenkopf_hilfe(*g, g->GetCol("SPFX")).text, "Beispiel:\r\nvon , zu, etc. ... ");
    const Tooltip counter = spaltenkopf_hilfe(*g, g->GetCol("Counter"));
    EXPECT_EQ(counter.titel + counter.text, "");
    EXPECT_TRUE(counter.gezeigt);
    EXPECT_EQ(counter.stil, 1);
}

} // namespace
} // namespace folio::test

// The closure: what each of its nine passes follows from the marked persons, and what it
// leaves out because its table's pass has run already; couples' events; the buttons and the
// one message at the end; and the summary of the last page.
#include "selection/verknuepfungen_markieren.h"
#include "support/selection_fixture.h"
#include "wizard/seiten.h"
#include "wizard/verknuepfungen.h"

#include <map>
#include <random>
#include <tuple>

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

namespace {

// The closure as nine passes of SQL over the tree, each marking as it goes: the measure for
// the closure that runs over the numbers in memory.
struct Passes {
    Huelle h;
    std::vector<std::int64_t> paar_arten;

    static std::string feld(const char* f, const char* t) {
        return std::string("SELECT ") + f + " FROM " + t + " WHERE Markierung = True AND " + f +
               " <> 0";
    }
    static std::string counter(const char* t) {
        return std::string("SELECT Counter FROM ") + t + " WHERE Markierung = True";
    }
    static bool Huelle::*flag(const std::string& t) {
        if (t == "Ereignis")
            return &Huelle::hat_ereignisse;
        if (t == "Ort")
            return &Huelle::hat_orte;
        if (t == "Notiz")
            return &Huelle::hat_notizen;
        if (t == "Dokument")
            return &Huelle::hat_dokumente;
        if (t == "Bilder")
            return &Huelle::hat_bilder;
        return &Huelle::hat_adressen;
    }
    void mark(const std::string& t, const std::string& nummern, const std::string& und = "") {
        DB->Execute("UPDATE " + t + " SET Markierung = -1 WHERE Counter IN (" + nummern + ")" +
                    (und.empty() ? "" : " AND " + und));
        if (DB->RecordsAffected() > 0)
            h.*flag(t) = true;
    }
    void quellen(const std::string& von, const char* art) {
        std::vector<std::pair<std::string, RecordId>> ziele;
        auto rs = DB->OpenRecordset(std::string("SELECT Art_Ziel, Ziel FROM Quellen_DS WHERE "
                                                "Art_Quelle = '") +
                                    art + "' AND Quelle IN (" + von + ")");
        for (; !rs->Eof(); rs->MoveNext())
            ziele.emplace_back(rs->get(0).text(), rs->get(1).toRecordId());
        rs->Close();
        const std::pair<const char*, const char*> tabellen[] = {
            {"E", "Ereignis"}, {"R", "Notiz"},    {"O", "Ort"},
            {"U", "Dokument"}, {"A", "Adressen"}, {"B", "Bilder"}};
        for (const auto& [b, ziel] : ziele)
            for (const auto& [buchstabe, t] : tabellen)
                if (b == buchstabe)
                    mark(t, ziel.sqlLiteral());
    }
    void adressen(const std::string& von, const char* art) {
        mark("Adressen", std::string("SELECT Ziel FROM Adressen_DS WHERE ursprung = '") + art +
                             "' AND Ziel <> 0 AND Quelle IN (" + von + ")");
    }
    std::string paar_liste() const {
        std::string s;
        for (std::int64_t a : paar_arten)
            s += (s.empty() ? "" : ", ") + std::to_string(a);
        return s;
    }
    void paare(const std::string& ereignisse) {
        std::vector<RecordId> kandidaten;
        auto rs = DB->OpenRecordset("SELECT Counter FROM Ereignis WHERE Art IN (" + paar_liste() +
                                    ") AND Counter IN (" + ereignisse + ")");
        for (; !rs->Eof(); rs->MoveNext())
            kandidaten.push_back(rs->get(0).toRecordId());
        rs->Close();
        auto gewaehlt = [](RecordId p) {
            return DB->OpenRecordset("SELECT count(*) FROM Daten WHERE Markierung = True AND "
                                     "Counter = " +
                                     p.sqlLiteral())
                       ->get(0)
                       .toInt() > 0;
        };
        for (RecordId e : kandidaten) {
            // The main persons in the order of the table.
            std::vector<RecordId> haupt;
            auto d = DB->OpenRecordset("SELECT Quelle, Ursprung, Ziel FROM Ereignis_DS");
            for (; !d->Eof(); d->MoveNext())
                if (d->get(1).text() == "d" && d->get(2).toRecordId() == e)
                    haupt.push_back(d->get(0).toRecordId());
            d->Close();
            if (haupt.size() < 2 || haupt.front().isZero() || haupt.back().isZero())
                continue;
            if (gewaehlt(haupt.front()) && gewaehlt(haupt.back()))
                mark("Ereignis", e.sqlLiteral());
            else
                h.partner_fehlt = true;
        }
    }
    void run() {
        for (const char* t : VerknuepfteTabellen)
            DB->Execute(std::string("UPDATE ") + t + " SET Markierung = 0 WHERE Markierung <> 0");
        std::map<std::int64_t, std::int64_t> katalog;
        for (rs_Deutsch->MoveFirst(); !rs_Deutsch->Eof(); rs_Deutsch->MoveNext())
            katalog.emplace(rs_Deutsch->get("Index").toInt(),
                            rs_Deutsch->get("maxhauptpersonen").toInt());
        for (const auto& [art, anzahl] : katalog)
            if (anzahl != 1)
                paar_arten.push_back(art);
        const std::string p = counter("Daten");
        const std::string ereignisse = "SELECT Ziel FROM Ereignis_DS WHERE Quelle IN (" + p + ")";
        mark("Ereignis", ereignisse, "(Art IS NULL OR Art NOT IN (" + paar_liste() + "))");
        paare(ereignisse);
        for (const char* f : {"Ort", "GOrt", "SOrt"})
            mark("Ort", feld(f, "Daten"));
        mark("Bilder", feld("Bild", "Daten"));
        quellen(p, "D");
        adressen(p, "D");
        mark("Ort", feld("Ort", "Ereignis"));
        quellen(counter("Ereignis"), "E");
        mark("Ort", feld("Ort", "Dokument"));
        adressen(counter("Dokument"), "U");
        quellen(counter("Dokument"), "U");
        adressen(counter("Notiz"), "R");
        mark("Ort", feld("Ort", "Adressen"));
        quellen(counter("Adressen"), "A");
        mark("Ort", feld("Ort", "Bilder"));
        quellen(counter("Bilder"), "B");
        mark("Bilder", feld("Bild", "Ort"));
        mark("Notiz", feld("Notiz", "Dokument"));
        adressen(counter("Ort"), "O");
    }
};

struct Stumm : Huellenanzeige {
    void balken(long long, long long) override {}
    void ereignisse() override {}
};

// Every record's mark in the six tables, Null apart, in the order of the table.
std::string marken() {
    std::string s;
    for (const char* t : VerknuepfteTabellen) {
        s += std::string("\n") + t + ":";
        auto rs = DB->OpenRecordset(std::string("SELECT Counter, Markierung FROM ") + t +
                                    " ORDER BY rowid");
        for (; !rs->Eof(); rs->MoveNext())
            s += " " + rs->get(0).text() + "=" +
                 (rs->get(1).isNull() ? "N" : std::to_string(rs->get(1).toInt()));
    }
    return s;
}

} // namespace

TEST_F(Closure, InMemoryClosureMarksWhatThePassesMarkOnRandomTrees) {
    const char* tabellen[] = {"Daten", "Ereignis", "Dokument",    "Notiz",      "Bilder",
                              "Ort",   "Adressen", "Ereignis_DS", "Quellen_DS", "Adressen_DS"};
    // Small numbers, so that links meet, miss and repeat; Null and 0 among them.
    auto baum = [&](unsigned seed) {
        std::mt19937 zufall(seed);
        auto zahl = [&](int n) { return static_cast<int>(zufall() % static_cast<unsigned>(n)); };
        auto nummer = [&] {
            const int z = zahl(16);
            return z == 15 ? std::string("NULL") : std::to_string(z);
        };
        auto aus = [&](std::initializer_list<const char*> werte) {
            const char* w = *(werte.begin() + zahl(static_cast<int>(werte.size())));
            return w ? "'" + std::string(w) + "'" : std::string("NULL");
        };
        auto marke = [&] { return zahl(4) == 0 ? "NULL" : zahl(2) ? "-1" : "0"; };
        dao::Transaction schreiben(*DB);
        for (const char* t : tabellen)
            DB->Execute(std::string("DELETE FROM ") + t);
        for (int p = 1; p <= 8; ++p)
            DB->Execute("INSERT INTO Daten (Counter, Markierung, Ort, GOrt, SOrt, Bild) VALUES (" +
                        std::to_string(p) + ", " + (zahl(3) ? "-1" : "0") + ", " + nummer() + ", " +
                        nummer() + ", " + nummer() + ", " + nummer() + ")");
        // Records marked before, records without a number, and numbers missing.
        const std::tuple<const char*, const char*, int> felder[] = {{"Ereignis", ", Art, Ort", 0},
                                                                    {"Dokument", ", Ort, Notiz", 2},
                                                                    {"Notiz", "", 0},
                                                                    {"Bilder", ", Ort", 1},
                                                                    {"Ort", ", Bild", 1},
                                                                    {"Adressen", ", Ort", 1}};
        for (const auto& [t, f, n] : felder) {
            for (int c = 0; c <= 14; ++c) {
                if (zahl(4) == 0)
                    continue;
                std::string werte = c == 14 ? "NULL" : std::to_string(c);
                werte += std::string(", ") + marke();
                if (std::string(t) == "Ereignis")
                    werte += ", " + aus({"1", "10", "99", nullptr, "10"}) + ", " + nummer();
                else
                    for (int i = 0; i < n; ++i)
                        werte += ", " + nummer();
                DB->Execute(std::string("INSERT INTO ") + t + " (Counter, Markierung" + f +
                            ") VALUES (" + werte + ")");
            }
        }
        for (int l = 0; l < 40; ++l)
            DB->Execute("INSERT INTO Ereignis_DS (Counter, Quelle, Ziel, Ursprung) VALUES (" +
                        std::to_string(l) + ", " + nummer() + ", " + nummer() + ", " +
                        aus({"d", "d", "D", "Z", nullptr}) + ")");
        for (int l = 0; l < 60; ++l)
            DB->Execute(
                "INSERT INTO Quellen_DS (Counter, Quelle, Art_Quelle, Ziel, Art_Ziel) VALUES (" +
                std::to_string(l) + ", " + nummer() + ", " +
                aus({"D", "d", "E", "e", "U", "u", "A", "B", "b", "R", "O", "X", nullptr}) + ", " +
                nummer() + ", " + aus({"E", "R", "O", "U", "A", "B", "r", "e", "X", nullptr}) +
                ")");
        for (int l = 0; l < 20; ++l)
            DB->Execute("INSERT INTO Adressen_DS (Counter, Quelle, Ziel, Ursprung) VALUES (" +
                        std::to_string(l) + ", " + nummer() + ", " + nummer() + ", " +
                        aus({"D", "d", "U", "u", "R", "O", "o", "X", nullptr}) + ")");
        schreiben.commit();
    };
    for (unsigned seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        baum(seed);
        Passes alt;
        {
            dao::Transaction schreiben(*DB);
            alt.run();
            schreiben.commit();
        }
        const std::string erwartet = marken();
        baum(seed);
        Stumm stumm;
        const Huelle neu = huelle_bilden(stumm);
        ASSERT_EQ(marken(), erwartet);
        EXPECT_EQ(neu.partner_fehlt, alt.h.partner_fehlt);
        EXPECT_EQ(neu.hat_ereignisse, alt.h.hat_ereignisse);
        EXPECT_EQ(neu.hat_orte, alt.h.hat_orte);
        EXPECT_EQ(neu.hat_notizen, alt.h.hat_notizen);
        EXPECT_EQ(neu.hat_dokumente, alt.h.hat_dokumente);
        EXPECT_EQ(neu.hat_bilder, alt.h.hat_bilder);
        EXPECT_EQ(neu.hat_adressen, alt.h.hat_adressen);
    }
}

#include "engine/errors.h"
#include "frame/ini.h"
#include "frame/meldung.h"
#include "gedcom/export.h"
#include "selection/verknuepfungen_markieren.h"
#include "support/export_fixture.h"
#include "support/gedcom_reader.h"
#include "wizard/exportstart.h"
#include "wizard/personengrid.h"

#include <gtest/gtest.h>

#include <csignal>
#include <map>
#include <random>
#include <regex>
#include <sys/resource.h>

using namespace folio;
namespace fs = std::filesystem;

namespace {

struct Run : test::ExportFixture {
    std::string ziel;
    void SetUp() override {
        ExportFixture::SetUp();
        fs::create_directories(dir.file("ziel"));
        AuswahlForm& form = Auswahl();
        form.Verzeichnis(1).set("Text", Value(dir.file("ziel")));
        form.Verzeichnis(2).set("Text", Value("Familie.Meier"));
        form.Datei(0).set("FileName", Value("Test.SF6"));
        ziel = dir.file("ziel/Familie.Meier.GED");
    }
    // The file without the two lines of the day and time of the run.
    std::string withoutClock(const std::string& text) {
        return std::regex_replace(text,
                                  std::regex("1 DATE [0-9]{2} [A-Z]{3} [0-9]{4}\r\n2 TIME "
                                             "[0-9]{2}:[0-9]{2}:[0-9]{2}\r\n"),
                                  "1 DATE <today>\r\n2 TIME <now>\r\n");
    }
};

const char* const Head = "0 HEAD\r\n1 CHAR UTF-8\r\n1 SOUR Stammfolio\r\n2 VERS 6.0\r\n"
                         "2 NAME Stammfolio\r\n2 CORP Orvanta\r\n3 ADDR Lindengang 7\r\n"
                         "4 CONT 00000 Nirgendheim - Germany\r\n3 PHON +49-(0)0000-000000\r\n"
                         "1 SUBM @00001@\r\n1 DEST PAF\r\n1 DATE <today>\r\n2 TIME <now>\r\n"
                         "1 FILE Test.SF6\r\n1 GEDC\r\n2 VERS 5.5\r\n2 FORM LINEAGE-LINKED\r\n";

} // namespace

TEST_F(Run, HeaderSubmitterAndTrailer) {
    EXPECT_EQ(Exportstarten(), ExportErgebnis::Fertig);
    EXPECT_EQ(withoutClock(test::readFile(ziel)),
              std::string(Head) + "0 @00001@ SUBM\r\n1 NAME \r\n0 TRLR\r\n");
    // The target is remembered, and the end is reported.
    EXPECT_EQ(ini_lesen(programm_ini(), "GEDCOM", "Pfad", ""), dir.file("ziel"));
    EXPECT_EQ(ini_lesen(programm_ini(), "GEDCOM", "Datei", ""), "Familie.Meier");
    ASSERT_EQ(scripted->shown.size(), 1u);
    EXPECT_EQ(scripted->shown[0].text, "Export der Daten beendet");
    EXPECT_EQ(Auswahl().Fortschritt().get("Value").toInt(), 100);
    EXPECT_EQ(Auswahl().get("MousePointer").toInt(), 0);
    const std::string report = Auswahl().Fortschritttext().text("Text");
    EXPECT_EQ(report.find("Familien werden zusammengestellt"), 0u);
    EXPECT_NE(report.find("Adressen werden geschrieben"), std::string::npos);
    EXPECT_NE(report.find("Schließe Export ab"), std::string::npos);
}

TEST_F(Run, AuthorNoteAndAnsi) {
    AuswahlForm& form = Auswahl();
    form.Anmerkung().set("Text", Value("Für Tante Käthe\r\nmit Grüßen"));
    const char* verfasser[] = {
        "Jürgen Meier", "Hauptstr. 1\r\n89073 Ulm", "0731 123", "0731 124", "j@meier.de",
        "meier.de",     "Forscht seit 1980"};
    for (int i = 0; i < 7; ++i)
        form.Verfasser(i).set("Text", Value(verfasser[i]));
    form.Zeichensatz(0).set("Value", Value(true));
    form.Zeichensatz(1).set("Value", Value(false));
    ASSERT_EQ(Exportstarten(), ExportErgebnis::Fertig);
    std::string head = Head;
    head.replace(head.find("UTF-8"), 5, "Ansi");
    EXPECT_EQ(withoutClock(test::readFile(ziel)),
              head + "1 NOTE F\xFCr Tante K\xE4the\r\n2 CONT mit Gr\xFC\xDF"
                     "en\r\n"
                     "0 @00001@ SUBM\r\n1 NAME J\xFCrgen Meier\r\n1 ADDR Hauptstr. 1\r\n"
                     "2 CONT 89073 Ulm\r\n1 PHON 0731 123\r\n1 FAX 0731 124\r\n"
                     "1 EMAIL j@meier.de\r\n1 WWW meier.de\r\n1 NOTE Forscht seit 1980\r\n"
                     "0 TRLR\r\n");
}

TEST_F(Run, ATreeFullOfHostileTextGivesASoundFile) {
    // Texts that break files: quotes, control characters, line breaks that would begin a
    // record, malformed UTF-8, markers and pointers typed by the user, unbalanced rich text.
    const std::string einzeilig[] = {"Anf\"\u00fchr'ung`",
                                     "Zeile\r\n0 TRLR\r\n0 @I1@ INDI",
                                     "Steuer\x01\x07\x0b\x1b\x1f\x7f",
                                     "Ende\r",
                                     "\n1 NAME Falsch",
                                     "kaputt \xC3\x28 \xFF",
                                     "#CONT# @I1@ #",
                                     "{\\rtf1\\ansi {\\b fett",
                                     "\tTab\t"};
    // Folded texts take the same, a lone CR or LF and control characters too.
    const std::string mehrzeilig[] = {einzeilig[1], einzeilig[2], einzeilig[3],
                                      einzeilig[4], einzeilig[6], einzeilig[7]};
    const std::string mega = [] {
        std::string s;
        while (s.size() < 1000000)
            s += "Ein \"langer\" Text\t mit \xC3\x28 Fehlern, #CONC# und Umbr\u00fcchen\r\n" +
                 std::string(130, 'x') + " ";
        return s;
    }();
    const std::string rtf = "{\\rtf1\\ansi\\ansicpg1252 {\\b Fett \\'fc\\par zweite";
    const auto id = [](int n) { return Value(RecordId(n)); };
    int n = 0;
    for (const std::string& h : einzeilig) {
        ++n;
        add("Daten", {{"Counter", id(n)},       {"Markierung", Value(true)},
                      {"Lebt", Value(false)},   {"Geschlecht", Value(n % 2 ? "M" : "W")},
                      {"Vater", id(0)},         {"Mutter", id(0)},
                      {"GIVN", Value(h)},       {"SURN", Value(h)},
                      {"NICK", Value(h)},       {"NPFX", Value(h)},
                      {"NFSX", Value(h)},       {"SPFX", Value(h)},
                      {"ABBR", Value(h)},       {"TITL", Value(h)},
                      {"Religion", Value(h)},   {"OCCU", Value(mehrzeilig[n % 6])},
                      {"NameNOTE", Value(rtf)}, {"Memo", Value(n == 1 ? mega : rtf)},
                      {"Ort", id(n)},           {"Notiz", id(n)},
                      {"Bild", id(n)},          {"GUID", Value(h)}});
        add("Ort", {{"Counter", id(n)},
                    {"Markierung", Value(true)},
                    {"Name", Value(h)},
                    {"Memo", Value(n == 2 ? mega : rtf)},
                    {"Notiz", id(n)},
                    {"Bild", id(n)}});
        add("Notiz", {{"Counter", id(n)},
                      {"Markierung", Value(true)},
                      {"Name", Value(h)},
                      {"Memo", Value(n == 3 ? mega : rtf)}});
        add("Dokument", {{"Counter", id(n)},
                         {"Markierung", Value(true)},
                         {"Listentext", Value(h)},
                         {"Text", Value(rtf)},
                         {"ca", Value("\r\n0 T")},
                         {"vJahr", Value(1850)}});
        add("Adressen", {{"Counter", id(n)},
                         {"Markierung", Value(true)},
                         {"Listenname", Value(h)},
                         {"adresse", Value(rtf)},
                         {"Memo", Value(n == 4 ? mega : rtf)},
                         {"Ort", id(n)}});
        add("Bilder", {{"Counter", id(n)},
                       {"Markierung", Value(true)},
                       {"bildfile", Value(h)},
                       {"Listentext", Value(h)},
                       {"bildtext", Value(rtf)},
                       {"MCIfile", Value(h)},
                       {"mcitext", Value(rtf)},
                       {"Ort", id(n)}});
        // A birth, an occupation with its cause on the tag line, and a marriage with the
        // next person; associates of the event and of the person with the text as role.
        for (const auto& [ereignis, art] :
             {std::pair{10 * n, 1}, {10 * n + 1, 9}, {10 * n + 2, 10}})
            add("Ereignis", {{"Counter", id(ereignis)},
                             {"Markierung", Value(true)},
                             {"Art", Value(art)},
                             {"ca", Value("\r\n0 T")},
                             {"vJahr", Value(1850)},
                             {"Grund", Value(art == 9 ? h : mehrzeilig[n % 6])},
                             {"Kurztext", Value(mehrzeilig[n % 6])},
                             {"Text", Value(ereignis == 20 ? mega : rtf)},
                             {"Ort", id(n)},
                             {"Bild", id(n)}});
        for (int e = 10 * n; e < 10 * n + 3; ++e)
            add("Ereignis_DS", {{"Counter", id(1000 + 4 * e)},
                                {"Quelle", id(n)},
                                {"Ziel", id(e)},
                                {"Ursprung", Value("d")}});
        add("Ereignis_DS", {{"Counter", id(1001 + 40 * n)},
                            {"Quelle", id(n % 9 + 1)},
                            {"Ziel", id(10 * n + 2)},
                            {"Ursprung", Value("d")}});
        add("Ereignis_DS", {{"Counter", id(1002 + 40 * n)},
                            {"Quelle", id(n % 9 + 1)},
                            {"Ziel", id(10 * n)},
                            {"Ursprung", Value("Z")},
                            {"ASSO", Value(h)}});
        add("Daten_DS", {{"Counter", id(2 * n)},
                         {"Quelle", id(n)},
                         {"Ziel", id(n % 9 + 1)},
                         {"Art", Value("Z")},
                         {"ASSO", Value(h)}});
        add("Daten_DS", {{"Counter", id(2 * n + 1)},
                         {"Quelle", id(n)},
                         {"Ziel", id(n % 9 + 1)},
                         {"Art", Value("E")}});
        int q = 0;
        for (const char* ziel : {"U", "R", "A", "B", "O"})
            add("Quellen_DS", {{"Counter", id(10 * n + ++q)},
                               {"Quelle", id(n)},
                               {"Art_Quelle", Value("D")},
                               {"Ziel", id(n)},
                               {"Art_Ziel", Value(ziel)}});
    }
    AuswahlForm& form = Auswahl();
    form.Verfasser(0).set("Text", Value(einzeilig[1]));
    for (int i = 1; i < 7; ++i)
        form.Verfasser(i).set("Text", Value(mehrzeilig[i % 6]));
    // The note stands in the header and in every source.
    form.Anmerkung().set("Text", Value(mehrzeilig[1] + mehrzeilig[4]));
    for (int k = 0; k < 4; ++k)
        form.Datenschutzcheck(k).set("Value", Value(0));
    form.Chancheck().set("Value", Value(1));
    for (const bool ansi : {false, true}) {
        form.Zeichensatz(0).set("Value", Value(ansi));
        form.Zeichensatz(1).set("Value", Value(!ansi));
        form.Verzeichnis(2).set("Text", Value(ansi ? "Ansi" : "UTF-8"));
        ASSERT_EQ(Exportstarten(), ExportErgebnis::Fertig);
        const std::string text =
            test::readFile(dir.file(ansi ? "ziel/Ansi.GED" : "ziel/UTF-8.GED"));
        std::vector<test::GedcomLine> lines;
        EXPECT_EQ(test::gedcomProblems(text, &lines), std::vector<std::string>{});
        std::map<std::string, int> records;
        for (const test::GedcomLine& l : lines)
            if (l.level == 0)
                ++records[l.tag];
        EXPECT_EQ(records, (std::map<std::string, int>{{"HEAD", 1},
                                                       {"SUBM", 1},
                                                       {"INDI", 9},
                                                       {"NOTE", 9 + 9},
                                                       {"SOUR", 9},
                                                       {"ADDR", 9},
                                                       {"OBJE", 9 + 9},
                                                       {"FAM", 9},
                                                       {"TRLR", 1}}));
    }
    // The independent reader reads both files when the test ends.
}

TEST_F(Run, TheControlsThatTheRunReadsAreDisabledWhileItRuns) {
    AuswahlForm& form = Auswahl();
    form.Verfasser(0).set("Enabled", Value(false)); // not the user's own tree
    form.Zeichensatz(0).set("Enabled", Value(true));
    auto gesperrt = [](Control& c) { return c.has("Enabled") && !c.get("Enabled").toBool(); };
    int gesehen = 0;
    scripted->onEvents = [&] {
        ++gesehen;
        EXPECT_TRUE(gesperrt(form.Zeichensatz(0)));
        EXPECT_TRUE(gesperrt(form.Chancheck()));
        EXPECT_TRUE(gesperrt(form.Anmerkung()));
        EXPECT_TRUE(gesperrt(form.Datenschutzcheck(3)));
    };
    ASSERT_EQ(Exportstarten(), ExportErgebnis::Fertig);
    scripted->onEvents = nullptr;
    EXPECT_GT(gesehen, 0);
    EXPECT_TRUE(form.Zeichensatz(0).get("Enabled").toBool());
    EXPECT_FALSE(form.Verfasser(0).get("Enabled").toBool());
}

TEST_F(Run, AnExistingTargetIsReplacedOnlyWhenTheUserSaysSo) {
    std::ofstream(ziel) << "old";
    scripted->answers.push_back({AntwortAbbrechen, -2});
    EXPECT_EQ(Exportstarten(), ExportErgebnis::Abgebrochen);
    EXPECT_EQ(test::readFile(ziel), "old");
    EXPECT_EQ(scripted->shown[0].style, 273);
    EXPECT_EQ(scripted->shown[0].text.find("Familie.Meier\r\n\r\n"), 0u);
    EXPECT_EQ(ini_lesen(programm_ini(), "GEDCOM", "Pfad", "none"), "none"); // nothing changed

    scripted->answers.push_back({AntwortOk, -2});
    EXPECT_EQ(Exportstarten(), ExportErgebnis::Fertig);
    EXPECT_EQ(test::readFile(ziel).substr(0, 8), "0 HEAD\r\n"); // replaced, not appended
}

TEST_F(Run, FailuresLoseNothing) {
    std::ofstream(ziel) << "old";
    scripted->fallback = {AntwortOk, -2};
    // A folder that doesn't exist.
    Auswahl().Verzeichnis(1).set("Text", Value(dir.file("nirgends")));
    EXPECT_EQ(Exportstarten(), ExportErgebnis::Fehler);
    EXPECT_NE(scripted->shown.back().text.find(dir.file("nirgends")), std::string::npos);
    EXPECT_EQ(scripted->shown.back().style, StilFehler);
    EXPECT_FALSE(fs::exists(dir.file("nirgends")));

    // A disk that fills up in the middle of the run: the old target stays, no part is left.
    Auswahl().Verzeichnis(1).set("Text", Value(dir.file("ziel")));
    Auswahl().Anmerkung().set("Text", Value(std::string(100000, 'x')));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit small = old;
    small.rlim_cur = 1000;
    setrlimit(RLIMIT_FSIZE, &small);
    const ExportErgebnis result = Exportstarten();
    setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_EQ(result, ExportErgebnis::Fehler);
    EXPECT_NE(scripted->shown.back().text.find("could not be written"), std::string::npos);
    EXPECT_EQ(test::readFile(ziel), "old");
    for (const auto& f : fs::directory_iterator(dir.file("ziel")))
        EXPECT_EQ(f.path().filename(), "Familie.Meier.GED");
}

TEST_F(Run, TheSampleTree) {
    alle_schliessen(datei);
    DB = dao::OpenDatabase(Datenpfad + "/Beispiel.SF6");
    tabellen_oeffnen();
    Auswahl().Datei(0).set("FileName", Value("Beispiel.SF6"));
    ASSERT_EQ(Exportstarten(), ExportErgebnis::Fertig);
    const std::string text = test::readFile(ziel);
    EXPECT_EQ(text.find("0 HEAD\r\n"), 0u);
    EXPECT_NE(text.find("1 FILE Beispiel.SF6\r\n"), std::string::npos);
    EXPECT_NE(text.find("0 @00001@ SUBM\r\n"), std::string::npos);
    EXPECT_EQ(text.substr(text.size() - 8), "0 TRLR\r\n");
    const std::string report = Auswahl().Fortschritttext().text("Text");
    std::size_t at = 0;
    for (const char* stage : {"Familien werden zusammengestellt", "Personen", "Ortsnotizen",
                              "Notizen", "Quellen", "Adressen", "Bilder",
                              "Familien werden "
                              "geschrieben",
                              "Schließe Export ab"}) {
        at = report.find(stage, at);
        EXPECT_NE(at, std::string::npos) << stage;
    }
}

namespace {

struct Stumm : Huellenanzeige {
    void balken(long long, long long) override {}
    void ereignisse() override {}
};

} // namespace

// The command line selects every person without writing a mark: the closure and the export
// over that selection give the file that the marks written by "Auswählen" (and the living
// taken out) give, also where marks are Null or set before.
TEST_F(Run, EveryPersonSelectedInMemoryWritesWhatTheMarksWrite) {
    alle_schliessen(datei);
    DB = dao::OpenDatabase(Datenpfad + "/Beispiel.SF6");
    tabellen_oeffnen();
    Auswahl().Datei(0).set("FileName", Value("Beispiel.SF6"));
    DB->Execute("UPDATE Daten SET Markierung = 0 ;");
    DB->Execute("UPDATE Daten SET Markierung = -1 WHERE Counter < 12 ;");
    DB->Execute("UPDATE Daten SET Markierung = NULL WHERE Counter IN (3, 20, 41) ;");
    DB->Execute("UPDATE Daten SET Lebt = NULL WHERE Counter = 44 ;");
    ASSERT_GT(DB->OpenRecordset("SELECT count(*) FROM Daten WHERE Lebt = TRUE")->get(0).toInt(), 0);
    Stumm still;
    StilleAnzeige stiller;
    auto lauf = [&](const Personenwahl& wahl, const std::string& name) {
        Exportoptionen optionen = exportoptionen_aus_formular(Auswahl());
        Huelle h = huelle_berechnen(still, wahl);
        optionen.marken = std::make_shared<const Markenstand>(std::move(h.marken));
        optionen.personen = wahl;
        exportieren(optionen, dir.file(name), stiller);
        return withoutClock(test::readFile(dir.file(name)));
    };
    for (const bool ohne_lebende : {false, true}) {
        Personenwahl wahl;
        wahl.alle = true;
        wahl.ohne_lebende = ohne_lebende;
        const std::string im_speicher = lauf(wahl, "speicher.ged");
        std::string geschrieben;
        {
            dao::Transaction nie(*DB);
            markieren_befehl(0, "Auswählen");
            if (ohne_lebende)
                lebende_abwaehlen();
            geschrieben = lauf({}, "geschrieben.ged");
        }
        EXPECT_EQ(im_speicher, geschrieben) << ohne_lebende;
        std::ptrdiff_t personen = 0;
        for (std::size_t at = 0; (at = im_speicher.find("@ INDI\r\n", at)) != std::string::npos;
             ++at)
            ++personen;
        EXPECT_EQ(personen,
                  DB->OpenRecordset("SELECT count(*) FROM Daten WHERE " + wahl.bedingung())
                      ->get(0)
                      .toInt());
    }
}

// Thousands of persons go through the rows written on two threads: each person once, in the
// order of the query of the selected persons, with the families of both kinds of rows.
TEST_F(Run, ManyPersonsComeOnceEachInTheOrderOfTheirQuery) {
    alle_schliessen(datei);
    DB = dao::OpenDatabase(Datenpfad + "/Beispiel.SF6");
    tabellen_oeffnen();
    Auswahl().Datei(0).set("FileName", Value("Beispiel.SF6"));
    dao::Transaction nie(*DB);
    DB->Execute("CREATE TEMP TABLE kopie AS SELECT * FROM Daten ;");
    for (int k = 1; k <= 60; ++k) {
        DB->Execute("UPDATE temp.kopie SET Counter = Counter + 100000 ;");
        DB->Execute("INSERT INTO Daten SELECT * FROM temp.kopie ;");
    }
    Personenwahl alle;
    alle.alle = true;
    Stumm still;
    Exportoptionen optionen = exportoptionen_aus_formular(Auswahl());
    optionen.marken = std::make_shared<const Markenstand>(huelle_berechnen(still, alle).marken);
    optionen.personen = alle;
    StilleAnzeige stiller;
    exportieren(optionen, dir.file("viele.ged"), stiller);
    const std::string text = test::readFile(dir.file("viele.ged"));

    std::string erwartet;
    auto rs = DB->OpenRecordset("SELECT Counter FROM Daten WHERE " + alle.bedingung() + " ;");
    for (; !rs->Eof(); rs->MoveNext())
        erwartet += rs->get(0).toRecordId().text() + ",";
    std::string geschrieben;
    std::size_t familien = 0;
    const std::regex indi("\r\n0 @I([0-9.]+)@ INDI\r\n");
    for (auto it = std::sregex_iterator(text.begin(), text.end(), indi);
         it != std::sregex_iterator(); ++it)
        geschrieben += (*it)[1].str() + ",";
    for (std::size_t at = 0; (at = text.find("\r\n1 FAMC @F", at)) != std::string::npos; ++at)
        ++familien;
    EXPECT_GT(std::count(erwartet.begin(), erwartet.end(), ','), 3000);
    EXPECT_EQ(geschrieben, erwartet);
    EXPECT_GT(familien, 0u);
}

// A page of the tree overwritten with junk, each page in turn: the run ends with a file or with
// an error, never with a crash; a table that can't be opened is one that nothing points into.
TEST_F(Run, ATreeWithAPageOfJunkEndsWithAFileOrAMessage) {
    alle_schliessen(datei);
    const std::string heil = test::readFile(Datenpfad + "/Beispiel.SF6");
    constexpr std::size_t Seite = 4096;
    std::mt19937 zufall(4711);
    int fehler = 0, dateien = 0;
    const std::string pfad = dir.file("kaputt.SF6");
    for (std::size_t s = 1; s < heil.size() / Seite; ++s) {
        std::string kaputt = heil;
        for (std::size_t i = 0; i < Seite; ++i)
            kaputt[s * Seite + i] = static_cast<char>(zufall());
        std::ofstream(pfad, std::ios::binary | std::ios::trunc) << kaputt;
        try {
            DB = dao::OpenDatabase(pfad);
            tabellen_oeffnen();
            Personenwahl alle;
            alle.alle = true;
            Stumm still;
            Exportoptionen optionen = exportoptionen_aus_formular(Auswahl());
            optionen.marken =
                std::make_shared<const Markenstand>(huelle_berechnen(still, alle).marken);
            optionen.personen = alle;
            StilleAnzeige stiller;
            exportieren(optionen, dir.file("kaputt.ged"), stiller);
            ++dateien;
        } catch (const Error& e) {
            EXPECT_FALSE(std::string(e.what()).empty()) << "page " << s;
            ++fehler;
        }
        alle_schliessen(pfad);
        DB.reset();
    }
    EXPECT_GT(fehler, 0);
    EXPECT_GT(dateien, 0);
}

// A small family tree built from the fuzzer's bytes and exported: persons with names, dates,
// notes and rich text, parents that may be missing or the person itself, places whose parent
// places may run in a circle, notes, pictures, sources and addresses, events with their
// participants, partners and associates, links that point nowhere; some persons ticked, the
// options picked by the bytes too. Whatever the tree, the closure and the export end with a
// file that the independent reader accepts, that ends in one trailer, and in which every
// pointer but an associate's leads to a record.
#include "database/schema/schema.h"
#include "database/tabellen.h"
#include "engine/errors.h"
#include "engine/recordset.h"
#include "engine/text_util.h"
#include "engine/utf8.h"
#include "frame/globals.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "fuzz_check.h"
#include "gedcom/export.h"
#include "selection/verknuepfungen_markieren.h"
#include "support/formular_vorgabe.h"
#include "support/gedcom_reader.h"
#include "support/temp_dir.h"
#include "wizard/auswahl.h"
#include "wizard/exportstart.h"

#include <fuzzer/FuzzedDataProvider.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <initializer_list>

namespace {

using namespace folio;
namespace fs = std::filesystem;
using fuzz::pruefen;

// The independent reader, started once: a file name in, "ok" or its objection out.
class Leser {
public:
    Leser() {
        int hin[2], her[2];
        if (::pipe(hin) != 0 || ::pipe(her) != 0)
            fuzz::verletzt("no pipe for the independent reader");
        if (::fork() == 0) {
            ::dup2(hin[0], 0);
            ::dup2(her[1], 1);
            ::close(hin[1]);
            ::close(her[0]);
            ::execlp("node", "node", FOLIO_GEDCOM_CHECK, "--stdin", static_cast<char*>(nullptr));
            ::_exit(127);
        }
        ::close(hin[0]);
        ::close(her[1]);
        hin_ = ::fdopen(hin[1], "w");
        her_ = ::fdopen(her[0], "r");
    }
    std::string pruefe(const std::string& datei) {
        std::fprintf(hin_, "%s\n", datei.c_str());
        std::fflush(hin_);
        char zeile[4096];
        if (!std::fgets(zeile, sizeof zeile, her_))
            fuzz::verletzt("the independent reader doesn't answer");
        std::string antwort(zeile);
        antwort.pop_back();
        return antwort == "ok" ? "" : antwort;
    }

private:
    std::FILE* hin_;
    std::FILE* her_;
};

struct Stumm : Huellenanzeige {
    void balken(long long, long long) override {}
    void ereignisse() override {}
};

// What stays between the runs: the folders, the template, the language texts, the reader.
struct Umgebung {
    std::string ordner;
    std::string vorlage;
    Leser leser;
    Umgebung() {
        ordner =
            fs::temp_directory_path().string() + "/folio-export-fuzz-" + std::to_string(::getpid());
        fs::remove_all(ordner);
        fs::create_directories(ordner + "/Programm");
        fs::create_directories(ordner + "/ziel");
        fs::copy(std::string(FOLIO_STAGE) + "/Daten", ordner + "/Daten",
                 fs::copy_options::recursive);
        Datenpfad = ordner + "/Daten";
        Programmpfad = ordner + "/Programm";
        Sprache = "Deutsch";
        sprache_oeffnen(Datenpfad + "/language.mdb");
        schema::buildTemplate(ordner);
        vorlage = ordner + "/SF.MDB";
        setPlatform(std::make_unique<ScriptedPlatform>());
    }
};

// The bytes read as the parts of a tree.
class Baumbauer {
public:
    explicit Baumbauer(FuzzedDataProvider& d) : d_(d) {}

    std::string text() {
        switch (d_.ConsumeIntegralInRange(0, 7)) {
        case 0:
            return "";
        case 1: // rich text around the bytes
            return "{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0 Arial;}}\\f0 " +
                   d_.ConsumeRandomLengthString(300) + "\\par }";
        case 2: // a long text, to be folded
            return std::string(d_.ConsumeIntegralInRange(90, 260), 'x') + " " +
                   d_.ConsumeRandomLengthString(100);
        default:
            return d_.ConsumeRandomLengthString(120);
        }
    }
    // A counter of a table of `anzahl` records, or one that isn't there (0, negative, far).
    RecordId verweis(int anzahl) {
        switch (d_.ConsumeIntegralInRange(0, 9)) {
        case 0:
            return RecordId(0);
        case 1:
            return RecordId(d_.ConsumeIntegralInRange(-3, 1000));
        default:
            return RecordId(d_.ConsumeIntegralInRange(1, std::max(1, anzahl)));
        }
    }
    std::int16_t klein(int bis) {
        return static_cast<std::int16_t>(d_.ConsumeIntegralInRange(0, bis));
    }
    bool ja() { return d_.ConsumeBool(); }
    std::string buchstabe(const char* auswahl) {
        const std::string a(auswahl);
        return std::string(1, a[d_.ConsumeIntegralInRange<std::size_t>(0, a.size() - 1)]);
    }
    // A date as the program stores one: day, month and year, a date text and a sort key.
    void datum(dao::Recordset& rs, const char* tag, const char* monat, const char* jahr,
               const char* text) {
        rs.set(tag, Value(klein(32)));
        rs.set(monat, Value(klein(13)));
        rs.set(jahr, Value(static_cast<int>(d_.ConsumeIntegralInRange(-10, 2100))));
        if (ja())
            rs.set(text, Value(d_.ConsumeRandomLengthString(20)));
    }

private:
    FuzzedDataProvider& d_;
};

using Zeile = std::initializer_list<std::pair<const char*, Value>>;

void neu(const char* tabelle, Zeile felder, const std::function<void(dao::Recordset&)>& mehr = {}) {
    auto rs = DB->OpenRecordset(tabelle);
    rs->AddNew();
    // A text goes in as the host stores it: cut to the field's size, and one blank where the
    // field refuses the empty string (the store counts a text up to its first NUL).
    for (const auto& [name, wert] : felder) {
        if (!wert.isText()) {
            rs->set(name, wert);
            continue;
        }
        std::string text = wert.text();
        for (const dao::FieldDef& f : rs->Fields())
            if (equalsNoCase(f.Name, name) && f.Type == FieldType::Text)
                text = utf8Left(text, static_cast<std::size_t>(f.Size));
        if (text.empty() || text[0] == '\0')
            text.insert(0, " ");
        rs->set(name, Value(text));
    }
    if (mehr)
        mehr(*rs);
    rs->Update();
}

// Builds the tree; the number of its persons.
int baum_bauen(FuzzedDataProvider& d) {
    Baumbauer b(d);
    const int personen = d.ConsumeIntegralInRange(1, 8), orte = d.ConsumeIntegralInRange(0, 4),
              ereignisse = d.ConsumeIntegralInRange(0, 8), andere = d.ConsumeIntegralInRange(0, 3);
    auto id = [](int n) { return Value(RecordId(n)); };
    for (int n = 1; n <= personen; ++n)
        neu("Daten",
            {{"Counter", id(n)},
             {"Markierung", Value(b.ja())},
             {"Lebt", Value(b.ja())},
             {"Geschlecht", Value(b.buchstabe("MWU "))},
             {"Vater", Value(b.verweis(personen))},
             {"Mutter", Value(b.verweis(personen))},
             {"GIVN", Value(b.text())},
             {"SURN", Value(b.text())},
             {"NICK", Value(b.text())},
             {"TITL", Value(b.text())},
             {"OCCU", Value(b.text())},
             {"NameNOTE", Value(b.text())},
             {"Memo", Value(b.text())},
             {"GOrt", Value(b.verweis(orte))},
             {"Ort", Value(b.verweis(orte))},
             {"Notiz", Value(b.verweis(andere))},
             {"Bild", Value(b.verweis(andere))}},
            [&](dao::Recordset& rs) {
                b.datum(rs, "GTag", "GMonat", "GJahr", "GDatum");
                b.datum(rs, "STag", "SMonat", "SJahr", "SDatum");
            });
    for (int n = 1; n <= orte; ++n)
        neu("Ort", {{"Counter", id(n)},
                    {"Name", Value(b.text())},
                    {"Memo", Value(b.text())},
                    {"Oberort", Value(b.verweis(orte))},
                    {"Notiz", Value(b.verweis(andere))},
                    {"Bild", Value(b.verweis(andere))}});
    for (int n = 1; n <= andere; ++n) {
        neu("Notiz", {{"Counter", id(n)}, {"Name", Value(b.text())}, {"Memo", Value(b.text())}});
        neu("Dokument", {{"Counter", id(n)},
                         {"Listentext", Value(b.text())},
                         {"Text", Value(b.text())},
                         {"Ort", Value(b.verweis(orte))}});
        neu("Bilder", {{"Counter", id(n)},
                       {"bildfile", Value(b.text())},
                       {"bildtext", Value(b.text())},
                       {"Ort", Value(b.verweis(orte))}});
        neu("Adressen", {{"Counter", id(n)},
                         {"Listenname", Value(b.text())},
                         {"adresse", Value(b.text())},
                         {"Ort", Value(b.verweis(orte))}});
    }
    for (int n = 1; n <= ereignisse; ++n) {
        neu("Ereignis",
            {{"Counter", id(n)},
             {"Art", Value(static_cast<int>(d.ConsumeIntegralInRange(-1, 2100)))},
             {"Kurztext", Value(b.text())},
             {"Text", Value(b.text())},
             {"Grund", Value(b.text())},
             {"Ort", Value(b.verweis(orte))},
             {"Notiz", Value(b.verweis(andere))},
             {"Bild", Value(b.verweis(andere))}},
            [&](dao::Recordset& rs) {
                b.datum(rs, "vTag", "vMonat", "vJahr", "vDatum");
                b.datum(rs, "bTag", "bMonat", "bJahr", "bDatum");
            });
    }
    // Participants, partners, associates and general links, any number, pointing anywhere.
    const int links = d.ConsumeIntegralInRange(0, 16);
    for (int n = 1; n <= links; ++n) {
        switch (d.ConsumeIntegralInRange(0, 2)) {
        case 0:
            neu("Ereignis_DS", {{"Counter", id(n)},
                                {"Quelle", Value(b.verweis(personen))},
                                {"Ziel", Value(b.verweis(ereignisse))},
                                {"Ursprung", Value(b.buchstabe("dZKx"))},
                                {"ASSO", Value(b.text())}});
            break;
        case 1:
            neu("Daten_DS", {{"Counter", id(n)},
                             {"Quelle", Value(b.verweis(personen))},
                             {"Ziel", Value(b.verweis(personen))},
                             {"Art", Value(b.buchstabe("EZX"))},
                             {"ASSO", Value(b.text())}});
            break;
        default:
            neu("Quellen_DS", {{"Counter", id(n)},
                               {"Quelle", Value(b.verweis(andere))},
                               {"Art_Quelle", Value(b.buchstabe("DNBA"))},
                               {"Ziel", Value(b.verweis(std::max(personen, ereignisse)))},
                               {"Art_Ziel", Value(b.buchstabe("UREBOAD"))}});
            break;
        }
    }
    return personen;
}

// A parent's number that no person has stands in the family as its husband or wife all the
// same: the family is the child's, and the number is what the tree says. Every other pointer
// but an associate's leads to a record.
bool darf_ins_leere_zeigen(const std::string& problem, int personen) {
    int nummer = 0;
    char tag[8] = {};
    if (std::sscanf(problem.c_str(), "pointer @I%d@ under %4s has no record", &nummer, tag) != 2)
        return false;
    return (std::string(tag) == "HUSB" || std::string(tag) == "WIFE") &&
           (nummer < 1 || nummer > personen);
}

void optionen_waehlen(FuzzedDataProvider& d) {
    test::formular_zuruecksetzen();
    AuswahlForm& form = Auswahl();
    const bool ansi = d.ConsumeBool();
    form.Zeichensatz(0).set("Value", Value(ansi));
    form.Zeichensatz(1).set("Value", Value(!ansi));
    for (int i = 0; i < 4; ++i)
        form.Datenschutzcheck(i).set("Value", Value(d.ConsumeBool() ? 1 : 0));
    form.Chancheck().set("Value", Value(d.ConsumeBool() ? 1 : 0));
    form.nur_auf_55().set("Value", Value(d.ConsumeBool() ? 1 : 0));
    form.Verfasser(0).set("Text", Value(d.ConsumeRandomLengthString(40)));
    form.Anmerkung().set("Text", Value(d.ConsumeRandomLengthString(200)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* daten, std::size_t groesse) {
    static Umgebung umgebung;
    FuzzedDataProvider d(daten, groesse);
    const std::string baum = umgebung.ordner + "/Test.SF6";
    const std::string ziel = umgebung.ordner + "/ziel/Fuzz.ged";
    fs::copy_file(umgebung.vorlage, baum, fs::copy_options::overwrite_existing);
    fs::remove(ziel);
    DB = dao::OpenDatabase(baum);
    tabellen_oeffnen();
    const int personen = baum_bauen(d);
    optionen_waehlen(d);
    try {
        Stumm still;
        Exportoptionen optionen = exportoptionen_aus_formular(Auswahl());
        optionen.marken = std::make_shared<const Markenstand>(huelle_berechnen(still).marken);
        StilleAnzeige stiller;
        exportieren(optionen, ziel, stiller);
    } catch (const Error& e) {
        fuzz::verletzt(std::string("the export fails: ") + e.what());
    }
    alle_schliessen(baum);
    DB.reset();

    const std::string datei = test::readFile(ziel);
    std::vector<test::GedcomLine> zeilen;
    std::vector<std::string> probleme = test::gedcomProblems(datei, &zeilen);
    std::erase_if(probleme,
                  [&](const std::string& p) { return darf_ins_leere_zeigen(p, personen); });
    pruefen(probleme.empty(), probleme.empty() ? "" : probleme.front(), datei);
    int trailer = 0;
    for (const test::GedcomLine& z : zeilen)
        trailer += z.tag == "TRLR";
    pruefen(trailer == 1, std::to_string(trailer) + " trailers", datei);
    const std::string einwand = umgebung.leser.pruefe(ziel);
    pruefen(einwand.empty(), "the independent reader: " + einwand, datei);
    return 0;
}

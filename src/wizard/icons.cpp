#include "wizard/icons.h"

#include "database/tabellen.h"
#include "engine/errors.h"
#include "frame/globals.h"
#include "frame/sprache.h"

#include <array>
#include <filesystem>
#include <memory>
#include <utility>

namespace folio {

namespace {

bool datei_da(const std::string& pfad) {
    std::error_code fehler;
    return std::filesystem::is_regular_file(pfad, fehler);
}

// The catalogue of the event kinds in the current language, by number. Before a family tree
// is open, the catalogue of the data folder is opened, where the tree's side databases lie.
std::unique_ptr<dao::Recordset> katalog_oeffnen() {
    if (!DB_Ereignis || !DB_Ereignis->isOpen())
        DB_Ereignis =
            dao::engine().workspace(0).OpenDatabase(pfad_verbinden(Datenpfad, "Ereignis.mdb"));
    return DB_Ereignis->OpenRecordset("SELECT * FROM " + Sprache + " ORDER BY Index");
}

std::string nummer(dao::Recordset& rs) {
    return std::to_string(rs.get("Index").toInt());
}

// The picture of an event kind: the user's own file in the data folder wins over the one
// shipped with the host, and the picture of the unknown stands in where neither exists.
std::string ereignisgrafik(const std::string& datei) {
    const std::string eigene = pfad_verbinden(pfad_verbinden(Datenpfad, "Ereignisgrafiken"), datei);
    if (datei_da(eigene))
        return eigene;
    const std::string mitgeliefert = pfad_verbinden(Stammpfad, "bmp/Ereignisse/" + datei);
    if (datei_da(mitgeliefert))
        return mitgeliefert;
    return pfad_verbinden(Stammpfad, "prog/unbekannt.ico");
}

// The number as text with a blank in the place of the sign of a number that isn't negative.
std::string mit_vorzeichenstelle(const std::string& zahl) {
    return zahl.starts_with('-') ? zahl : " " + zahl;
}

} // namespace

const Bild* Bilderlager::finden(std::string_view key) const {
    for (const Bild& b : bilder_)
        if (b.key == key)
            return &b;
    return nullptr;
}

void Bilderlager::Add(const std::string& key, const std::string& datei) {
    for (Bild& b : bilder_)
        if (b.key == key) {
            b.datei = datei;
            return;
        }
    bilder_.push_back({key, datei});
}

std::string Bilderlager::datei(std::string_view key) const {
    const Bild* b = finden(key);
    return b ? b->datei : std::string();
}

Bilderlager& Icons16() {
    static Bilderlager lager;
    return lager;
}

void icons16_laden() {
    Bilderlager& lager = Icons16();
    lager.Clear();
    const std::string ordner = pfad_verbinden(Stammpfad, "bmp/icons16");
    for (const Lagerbild& bild : Lagerbilder) {
        const std::string pfad = pfad_verbinden(ordner, bild.datei);
        if (datei_da(pfad))
            lager.Add(bild.key, pfad);
    }
}

void ereignisgrafiken_laden() {
    std::unique_ptr<dao::Recordset> rs;
    try {
        rs = katalog_oeffnen();
    } catch (const Error&) {
        // The catalogue of the data folder is missing or broken: the host's own copy serves.
        // Once only; what fails then goes up.
        DB_Ereignis =
            dao::engine().workspace(0).OpenDatabase(pfad_verbinden(Stammpfad, "Ereignis.mdb"));
        rs = katalog_oeffnen();
    }
    for (; !rs->Eof(); rs->MoveNext()) {
        const std::string datei = nummer(*rs) + ".ICO";
        Icons16().Add(datei, ereignisgrafik(datei));
    }
}

void ereignisicons_laden(Datengrid& cmd) {
    cmd.Icons.push_back({"Filter", bild_aus_lager("Filter")});
    cmd.Icons.push_back({"Bild", bild_aus_lager("Bild2")});
    std::unique_ptr<dao::Recordset> rs = katalog_oeffnen();
    // A kind that the store lacks keeps its place with no picture, so that the positions of
    // the kinds after it stay right.
    for (; !rs->Eof(); rs->MoveNext()) {
        const std::string zahl = nummer(*rs);
        cmd.Icons.push_back({mit_vorzeichenstelle(zahl) + ".ICO", bild_aus_lager(zahl + ".ICO")});
    }
    rs->Close();
}

std::string bild_aus_lager(std::string_view key) {
    return Icons16().datei(key);
}

std::vector<Bild> dokumentbilder() {
    // clang-format off
    static constexpr std::array<std::pair<const char*, const char*>, 18> Tabelle = {{
        {"Filter", "Filter"}, {"Bild", "Bild2"},
        {"Filter3", "Filter"}, {"Filter4", "Filter"}, {"Filter5", "Filter"},
        {"Dok_Art_D", "Dok_Art_D"}, {"Dok_Art_H", "Dok_Art_H"}, {"Dok_Art_T", "Dok_Art_T"},
        {"Dok_Art_A", "Dok_Art_A"}, {"Dok_Art_F", "Dok_Art_F"},
        {"Filter11", "Filter"}, {"Filter12", "Filter"}, {"Filter13", "Filter"},
        {"Dok_Vor_O", "Dok_Vor_O"}, {"Dok_Vor_K", "Dok_Vor_K"}, {"Dok_Vor_A", "Dok_Vor_A"},
        {"Dok_Vor_?", "Dok_Vor_?"}, {"Dok_Vor_H", "Dok_Vor_H"},
    }};
    // clang-format on
    std::vector<Bild> bilder;
    for (const auto& [key, bild] : Tabelle)
        bilder.push_back({key, bild_aus_lager(bild)});
    return bilder;
}

std::string hilfethema(int seite) {
    // clang-format off
    static constexpr std::array<const char*, 5> Themen = {
        "Datenbank.htm",      // 1: choose the family tree
        "Personen.htm",       // 2: choose the persons
        "Verknuepfungen.htm", // 3: linked records
        "Weitere_Daten.htm",  // 4: author, note and options
        "Export.htm",         // 5: target and start
    };
    // clang-format on
    if (seite < 1 || seite > static_cast<int>(Themen.size()))
        return Hilfe_Uebersicht;
    return Themen[static_cast<std::size_t>(seite - 1)];
}

std::string hilfeseite(std::string_view thema) {
    return pfad_verbinden(Stammpfad + sprachtext("567"), std::string(thema));
}

} // namespace folio

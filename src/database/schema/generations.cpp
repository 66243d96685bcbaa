// Each generation is the next newer one with the changes of the chain taken back: what a
// step or the migration adds is missing, what they delete or rename is there in its old
// form. Newest first.
#include "database/schema/generations.h"

#include "engine/text_util.h"

#include <algorithm>
#include <stdexcept>

namespace folio::schema {

// The generations and their contents are tables of data, laid out by hand.
// clang-format off
namespace {

using T = FieldType;

Table& tabelle(std::vector<Table>& t, std::string_view name) {
    for (Table& x : t)
        if (equalsNoCase(x.name, name))
            return x;
    throw std::logic_error("no table " + std::string(name));
}

void ohne(std::vector<Table>& t, std::string_view table, std::initializer_list<std::string_view> felder) {
    Table& x = tabelle(t, table);
    for (std::string_view f : felder) {
        const auto alt = x.fields.size();
        std::erase_if(x.fields, [&](const Field& g) { return equalsNoCase(g.name, f); });
        if (x.fields.size() == alt)
            throw std::logic_error("no field " + std::string(table) + "." + std::string(f));
    }
}

void mit(std::vector<Table>& t, std::string_view table, std::initializer_list<Field> felder) {
    Table& x = tabelle(t, table);
    x.fields.insert(x.fields.end(), felder.begin(), felder.end());
}

void umbenannt(std::vector<Table>& t, std::string_view table, std::string_view neu,
               std::string_view alt) {
    for (Field& f : tabelle(t, table).fields)
        if (equalsNoCase(f.name, neu))
            f.name = alt;
}

void ohne_tabelle(std::vector<Table>& t, std::string_view name) {
    std::erase_if(t, [&](const Table& x) { return equalsNoCase(x.name, name); });
}

Field text(std::string_view n, int size, bool leer = false) {
    return {n, T::Text, size, leer};
}
Field typ(std::string_view n, T t) {
    return {n, t};
}

// 6.0.100: pictures without their size (added for files below 6.0.105).
void vor_6_0_105(std::vector<Table>& t) {
    ohne(t, "Bilder", {"groesse"});
}
// 5.1.100: the ancestor number still a Long under its old name, and event types without
// the mark of a cause written as a tag.
void vor_6(std::vector<Table>& t) {
    ohne(t, "Daten", {"Kekuelnr"});
    mit(t, "Daten", {typ("Kekuel", T::Long)});
    ohne(t, "Ereignisdb", {"CAUSasTAG"});
}
// 5.0.220 and 5.0.190: no occupation of the person.
void vor_5_1_100(std::vector<Table>& t) {
    ohne(t, "Daten", {"OCCU"});
}
// 5.0.100: without what the steps after the migration add and the migration doesn't.
void vor_5_0_190(std::vector<Table>& t) {
    ohne(t, "Daten_DS", {"ASSO"});
    ohne(t, "Ereignis_DS", {"ASSO", "Info"});
    ohne(t, "Version", {"Verfasser_gesperrt"});
}
// 4.x: the old schema as the migration finds it.
void vor_5(std::vector<Table>& t) {
    ohne(t, "Daten", {"ABBR", "GIVN", "SURN", "NICK", "NPFX", "NFSX", "SPFX", "TITL", "RufNamen",
                      "Patronym", "Familienname", "NameNOTE", "GTag", "GMonat", "GJahr", "GDatum",
                      "GSort", "GOrt", "STag", "SMonat", "SJahr", "SDatum", "SSort", "SOrt",
                      "Listentext", "Status", "Onlinemarkierung", "Religion", "Druck"});
    mit(t, "Daten", {text("Nnamen", 255), text("Vnamen", 255), text("Listname", 255),
                     text("Geburtsname", 255), typ("Geburtsdatum", T::DateTime),
                     text("Geburt_XX", 3), typ("Sterbedatum", T::DateTime), text("Sterbe_XX", 3),
                     text("Titel", 255), typ("Namenrtf", T::Memo), typ("Tafeltext", T::Memo)});
    umbenannt(t, "Daten", "Notiz", "Referenz");
    tabelle(t, "Daten").indexes.push_back({"Personsuche", {"Geburtsdatum"}});

    ohne(t, "Ereignis", {"vTag", "vMonat", "vJahr", "vDatum", "vSort", "bTag", "bMonat", "bJahr",
                         "bDatum", "bSort", "Status", "Druck"});
    mit(t, "Ereignis", {typ("Datum_von", T::DateTime), text("Datum_von_XX", 3),
                        typ("Datum_bis", T::DateTime), text("Datum_bis_XX", 3)});
    umbenannt(t, "Ereignis", "Notiz", "Referenz");
    tabelle(t, "Ereignis").indexes.push_back({"Ereignissuchen", {"Datum_von"}});

    for (const char* einfach : {"Bilder", "Dokument"}) {
        ohne(t, einfach, {"vTag", "vMonat", "vJahr", "vDatum", "vSort", "Status", "Druck"});
        mit(t, einfach, {typ("Datum", T::DateTime), text("Datum_XX", 3)});
        umbenannt(t, einfach, "Notiz", "Referenz");
    }
    tabelle(t, "Dokument").indexes.push_back({"Suchen", {"Datum"}});
    ohne(t, "Adressen", {"Status", "Notiz", "Ort", "Druck"});
    for (const char* x : {"Familie", "Ort"}) {
        ohne(t, x, {"Status", "Druck"});
        umbenannt(t, x, "Notiz", "Referenz");
    }
    ohne(t, "Namen", {"Status", "Druck", "Marker"});
    umbenannt(t, "Namen", "Notiz", "Referenz");
    ohne(t, "Notiz", {"Status", "Dateipfad", "Druck"});
    umbenannt(t, "Notiz", "Obernotiz", "OberReferenz");
    tabelle(t, "Notiz").name = "Referenz";
    ohne(t, "Stichwort", {"Druck"});
    ohne(t, "Daten_DS", {"Info"});
    ohne(t, "Quellen_DS", {"Info"});
    ohne(t, "Version", {"Verfasser_Name", "Verfasser_Adresse", "Verfasser_Telefon", "Verfasser_Fax",
                        "Verfasser_eMail", "Verfasser_HTTP", "Verfasser_Anmerkung",
                        "GEDCOM_Anmerkung"});
    mit(t, "Version", {typ("Vornamen_Laenge", T::Integer), typ("Nachnamen_Laenge", T::Integer)});
    ohne_tabelle(t, "Status");
    ohne_tabelle(t, "Ereignisdb");
    // The old name table: a person's names, one row each, in the order of Stellung.
    t.push_back({"Namen_DS",
                 {typ("Counter", T::Currency), text("Namen", 255), typ("Stellung", T::Integer),
                  text("Ursprung", 1), typ("Quelle", T::Currency), typ("Ziel", T::Currency),
                  text("Art", 10)},
                 {{"Counter", {"Counter"}, true},
                  {"Daten_pruefen", {"Quelle", "Stellung"}},
                  {"Namen", {"Ziel", "Quelle"}},
                  {"Quelle", {"Quelle"}},
                  {"Ziel", {"Ziel"}}}});
}
// Before version names: none of the fields that the early steps add, the table Navigation
// missing, the gallery still with its INI, and the older marks of name input.
void vor_versionsnamen(std::vector<Table>& t) {
    ohne(t, "Daten", {"Plausgeburt", "Kekuel", "NNSoundex", "VNSoundex", "Marker", "Titel", "ca1",
                      "ca2", "GUID", "OnlineDB", "OnlineabfrageDB", "OnlineDate", "OnlineMemo",
                      "Geburtsname", "Ahnentafel", "Lebt"});
    ohne(t, "Version", {"Versionname", "KzTitelvor", "KzTitelnach", "KzRufnamevor",
                        "KzRufnamenach", "KzGeburtsnamevor", "KzGeburtsnamenach", "GUID_Anwender",
                        "Navigation", "Vornamen_Laenge", "Nachnamen_Laenge"});
    mit(t, "Version", {text("kztitelliste", 1), text("kztiteltafel", 1), text("kzrufnameliste", 1),
                       text("kzrufnametafel", 1)});
    ohne(t, "Baum", {"Textumfang", "Bildrichtung", "Flowchart"});
    ohne(t, "Dokument", {"Dateipfad", "Marker", "ca"});
    ohne(t, "Namen", {"Soundex"});
    ohne(t, "Ort", {"Soundex", "Marker"});
    ohne(t, "Ereignis", {"Grund", "Marker", "ca"});
    ohne(t, "Bilder", {"Marker", "ca"});
    ohne(t, "Adressen", {"Marker"});
    ohne(t, "Referenz", {"Marker"});
    ohne(t, "Familie", {"Marker", "Ahnentafel"});
    ohne(t, "Stichwort", {"erfasst", "geaendert", "Marker"});
    ohne_tabelle(t, "Navigation");
    mit(t, "Galerie", {typ("INI", T::Memo)});
    ohne(t, "Galerie_DS", {"Flowchart"});
}

} // namespace

std::string_view versionName(Generation g) {
    switch (g) {
    case Generation::Urform: return "";
    case Generation::V4: return "4.3.120";
    case Generation::V5_0_100: return "5.0.100";
    case Generation::V5_0_190: return "5.0.190";
    case Generation::V5_0_220: return "5.0.220";
    case Generation::V5_1_100: return "5.1.100";
    case Generation::V6_0_100: return "6.0.100";
    }
    return "";
}

std::string_view generationName(Generation g) {
    return g == Generation::Urform ? "Urform" : versionName(g);
}

std::vector<Table> tablesOf(Generation g) {
    std::vector<Table> t = mainTables();
    // Newest first: each generation takes back what the chain adds after it.
    using Rueck = void (*)(std::vector<Table>&);
    const std::pair<Generation, Rueck> schritte[] = {
        {Generation::V6_0_100, vor_6_0_105}, {Generation::V5_1_100, vor_6},
        {Generation::V5_0_220, vor_5_1_100}, {Generation::V5_0_190, nullptr},
        {Generation::V5_0_100, vor_5_0_190}, {Generation::V4, vor_5},
        {Generation::Urform, vor_versionsnamen}};
    for (const auto& [generation, zurueck] : schritte) {
        if (zurueck)
            zurueck(t);
        if (generation == g)
            break;
    }
    return t;
}

// clang-format on
} // namespace folio::schema

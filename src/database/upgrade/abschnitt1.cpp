// The steps of the first section, in the order in which they run. A step runs where its
// table lacks its field (the name compared exactly); some only for a file of the old
// schema (version below 5). It creates its fields, fills them by its statements or its
// pass over the rows, and some open the file anew afterwards.
#include "database/upgrade/abschnitt1.h"

#include "database/listentexte.h"
#include "database/schema/schema.h"
#include "database/tabellen.h"
#include "database/upgrade/kette.h"
#include "database/upgrade/lauf.h"
#include "engine/date_time.h"
#include "engine/errors.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/settings_store.h"

#include <cmath>
#include <string>
#include <vector>

namespace folio::upgrade {

namespace {

using T = FieldType;

struct Schritt {
    int nummer;
    const char* tabelle; // whose cursor the test walks
    const char* feld;    // the field whose absence runs the step
    std::vector<NeuesFeld> felder = {};
    std::vector<std::string> anweisungen = {};
    void (*daten)(Lauf&) = nullptr; // work on the rows beyond the statements
    bool neu_oeffnen = false;       // the file is opened anew behind the step
    bool nur_alt = false;           // only in a file of the old schema
    bool ohne_hinweis = false;
};

bool alte_datei() {
    return numerische_version(versionname()) < 5;
}

std::string ganze_tage(const DateTime& d) {
    return std::to_string(static_cast<long long>(std::floor(d.days())));
}

// Step 2: the marks of name input, from the fields of an older version where it has them.
void namensmarken(Lauf&) {
    dao::Recordset& v = offen("Version");
    v.MoveFirst();
    v.Edit();
    const char* felder[] = {"KzTitelvor",    "KzTitelnach",      "KzRufnamevor",
                            "KzRufnamenach", "KzGeburtsnamevor", "KzGeburtsnamenach"};
    const char* werte[] = {"[", "]", "°", "°", "{", "}"};
    for (int i = 0; i < 6; ++i)
        v.set(felder[i], Value(werte[i]));
    const char* aeltere[] = {"kztitelliste", "kztiteltafel", "kzrufnameliste", "kzrufnametafel"};
    for (int i = 0; i < 4; ++i)
        if (v.hasField(aeltere[i]))
            try {
                v.set(felder[i], v.get(aeltere[i]));
            } catch (const Error&) {
            }
    v.Update();
}

void textumfang(Lauf& lauf) {
    lauf.ausfuehren("UPDATE Baum SET Textumfang = '" +
                    ini_lesen(programm_ini(), "Stammbaumform_Tafel", "Textumfang", "6BEbHDO") +
                    "' ;");
}

// Step 7: the soundex codes of names, given names, surnames and places.
void soundex_codes(Lauf& lauf) {
    auto durchgang = [](dao::Recordset& rs, const std::function<void()>& schreiben) {
        for (zum_anfang(rs); !rs.Eof(); rs.MoveNext()) {
            rs.Edit();
            schreiben();
            rs.Update();
        }
    };
    lauf.fortschritt(40);
    dao::Recordset& namen = offen("Namen");
    durchgang(namen, [&] { namen.set("Soundex", Value(soundex(namen.get("Namen").text()))); });
    lauf.fortschritt(50);
    dao::Recordset& daten = offen("Daten");
    auto code = [](const std::string& name) {
        return name.empty() ? std::string(" ") : soundex(name);
    };
    durchgang(daten, [&] {
        daten.set("VNSoundex", Value(code(daten.get("Vnamen").text())));
        daten.set("NNSoundex", Value(code(daten.get("Nnamen").text())));
    });
    lauf.fortschritt(70);
    dao::Recordset& ort = offen("Ort");
    durchgang(ort, [&] { ort.set("Soundex", Value(soundex(ort.get("Name").text()))); });
    lauf.fortschritt(90);
}

// The user's key from the settings store; a user without one gets the one blank that a
// text field without the empty text takes for nothing.
void guid_anwender(Lauf& lauf) {
    const std::string schluessel = einstellung_lesen(HostAnwendung, "GUID", "Schluessel", "");
    lauf.ausfuehren("UPDATE Version SET GUID_Anwender = '" +
                    (schluessel.empty() ? std::string(" ") : schluessel) + "' ;");
}

void personen_guids(Lauf& lauf) {
    dao::Recordset& d = offen("Daten");
    for (zum_anfang(d); !d.Eof(); d.MoveNext()) {
        d.Edit();
        d.set("GUID", Value(neue_guid()));
        d.Update();
    }
    for (const char* sql :
         {"UPDATE Daten SET OnlineDB = TRUE ;", "UPDATE Daten SET OnlineabfrageDB = FALSE ;",
          "UPDATE Daten SET OnlineDate = 0 ;", "UPDATE Daten SET OnlineMemo = ' ' ;"})
        lauf.ausfuehren(sql);
}

void stichwort_daten(Lauf& lauf) {
    const std::string heute = ganze_tage(DateTime::now());
    lauf.ausfuehren("UPDATE Stichwort SET erfasst = " + heute + " ;");
    lauf.ausfuehren("UPDATE Stichwort SET geaendert = " + heute + " ;");
    lauf.ausfuehren("UPDATE Stichwort SET Marker  = 0 ;");
}

void navigation(Lauf& lauf) {
    schema::createTable(*DB, *schema::findTable(schema::mainTables(), "Navigation"));
    rs_Navigation = DB->OpenRecordset("Navigation", dao::RecordsetType::Dynaset);
    lauf.ausfuehren("UPDATE Version SET Navigation = 0 ;");
}

void listennamen(Lauf&) {
    ini_schreiben(programm_ini(), "DB_Check", "Listennamen", "-1");
}

void lebende(Lauf& lauf) {
    lauf.ausfuehren("UPDATE Daten SET Lebt = FALSE ;");
    lauf.ausfuehren("UPDATE Daten SET Lebt = TRUE WHERE Sterbedatum = 767011 AND Geburtsdatum >= " +
                    ganze_tage(DateTime(DateTime::now().days() - 36500)) + "  ;");
}

void ereignisdb_causastag(Lauf& lauf) {
    lauf.ausfuehren("UPDATE Ereignisdb SET CAUSasTAG = 0 ;");
    causastag_uebernehmen();
}

// clang-format off
const std::vector<Schritt>& schritte_vor_migration() {
    static const std::vector<Schritt> schritte = {
        {1, "Daten", "Plausgeburt", {{"Daten", "Plausgeburt", T::Integer}},
         {"UPDATE Daten SET Plausgeburt = -1 ;"}, nullptr, true},
        {2, "Version", "KzGeburtsnamevor",
         {{"Version", "KzTitelvor", T::Text, 1}, {"Version", "KzTitelnach", T::Text, 1},
          {"Version", "KzRufnamevor", T::Text, 1}, {"Version", "KzRufnamenach", T::Text, 1},
          {"Version", "KzGeburtsnamevor", T::Text, 1}, {"Version", "KzGeburtsnamenach", T::Text, 1}},
         {}, namensmarken, true},
        {3, "Baum", "Textumfang", {{"Baum", "Textumfang", T::Text, 10}}, {}, textumfang, true},
        {4, "Baum", "Bildrichtung", {{"Baum", "Bildrichtung", T::Integer}},
         {"UPDATE Baum SET Bildrichtung = 0 ;"}, nullptr, true},
        {5, "Dokument", "Dateipfad", {{"Dokument", "Dateipfad", T::Memo}},
         {"UPDATE Dokument SET Dateipfad = ' ' ;"}, nullptr, true},
        {6, "Daten", "Kekuel", {{"Daten", "Kekuel", T::Integer}}, {"UPDATE Daten SET Kekuel = 0 ;"},
         nullptr, true},
        {7, "Namen", "Soundex",
         {{"Namen", "Soundex", T::Text, 255}, {"Daten", "NNSoundex", T::Text, 255},
          {"Daten", "VNSoundex", T::Text, 255}, {"Ort", "Soundex", T::Text, 255}},
         {}, soundex_codes, true},
        {8, "Ereignis", "Grund", {{"Ereignis", "Grund", T::Text, 255}},
         {"Update Ereignis SET Grund = ' '  ;"}, nullptr, true},
        {9, "Daten", "Marker",
         {{"Daten", "Marker", T::Integer}, {"Ereignis", "Marker", T::Integer},
          {"Bilder", "Marker", T::Integer}, {"Dokument", "Marker", T::Integer}},
         {"UPDATE Daten SET Marker  = 0 ;", "UPDATE Ereignis SET Marker  = 0 ;",
          "UPDATE Bilder SET Marker  = 0 ;", "UPDATE Dokument SET Marker  = 0 ;"},
         nullptr, true},
        {10, "Adressen", "Marker", {{"Adressen", "Marker", T::Integer}},
         {"UPDATE Adressen SET Marker  = 0 ;"}},
        {11, "Referenz", "Marker", {{"Referenz", "Marker", T::Integer}},
         {"UPDATE referenz SET Marker  = 0 ;"}},
        {12, "Ort", "Marker", {{"Ort", "Marker", T::Integer}}, {"UPDATE Ort SET Marker  = 0 ;"}},
        {13, "Daten", "Titel", {{"Daten", "Titel", T::Text, 255}},
         {"UPDATE Daten SET Titel  = ' '  ;"}, nullptr, true, true},
        {14, "Daten", "ca1",
         {{"Ereignis", "ca", T::Text, 6}, {"Daten", "ca1", T::Text, 6}, {"Daten", "ca2", T::Text, 6},
          {"Bilder", "ca", T::Text, 6}, {"Dokument", "ca", T::Text, 6}},
         {"UPDATE Ereignis SET ca  = '      '  ;", "UPDATE Daten SET ca1  = '      '  ;",
          "UPDATE Daten SET ca2  = '      '  ;", "UPDATE Bilder SET ca  = '      '  ;",
          "UPDATE Dokument SET ca  = '      '  ;"}},
        {15, "Baum", "Flowchart", {{"Baum", "Flowchart", T::Memo}},
         {"UPDATE Baum SET Flowchart = 'IMPORT_FEHLT' ;"}},
        // 16, the retyping of Kekuel, has a test of its own (below).
        {17, "Familie", "Marker", {{"Familie", "Marker", T::Integer}},
         {"UPDATE Familie SET Marker  = 0 ;"}},
        {18, "Version", "GUID_Anwender", {{"Version", "GUID_Anwender", T::Text, 38}}, {},
         guid_anwender},
        {19, "Daten", "GUID",
         {{"Daten", "GUID", T::Text, 38}, {"Daten", "OnlineDB", T::Boolean},
          {"Daten", "OnlineabfrageDB", T::Boolean}, {"Daten", "OnlineDate", T::DateTime},
          {"Daten", "OnlineMemo", T::Memo}},
         {}, personen_guids},
        {20, "Stichwort", "erfasst",
         {{"Stichwort", "erfasst", T::DateTime}, {"Stichwort", "geaendert", T::DateTime},
          {"Stichwort", "Marker", T::Integer}},
         {}, stichwort_daten},
        // 21, the table Navigation, is recognised by the table (below).
        {22, "Version", "Vornamen_Laenge",
         {{"Version", "Vornamen_Laenge", T::Integer}, {"Version", "Nachnamen_Laenge", T::Integer}},
         {"UPDATE Version SET Vornamen_Laenge = 20 ;", "UPDATE Version SET Nachnamen_Laenge = 30 ;"},
         nullptr, false, true},
        // 23 runs where a field is present (below).
        {24, "Daten", "Geburtsname", {{"Daten", "Geburtsname", T::Text, 255}},
         {"UPDATE Daten SET Geburtsname = ' ' ;"}, listennamen, false, true},
        {25, "Daten", "Ahnentafel",
         {{"Daten", "Ahnentafel", T::Currency}, {"Familie", "Ahnentafel", T::Currency}},
         {"UPDATE Daten SET Ahnentafel = 0 ;", "UPDATE Familie SET Ahnentafel = 0 ;",
          "DELETE * FROM navigation ;"}},
        {26, "Daten", "Lebt", {{"Daten", "Lebt", T::Boolean}}, {}, lebende},
    };
    return schritte;
}

// Steps 28 to 43: the fields of later versions, none of them with a reopening.
const std::vector<Schritt>& schritte_nach_migration() {
    static const std::vector<Schritt> schritte = {
        {28, "Ereignis", "Druck", {{"Ereignis", "Druck", T::Boolean}}, {}, nullptr, false, false,
         true},
        {29, "Daten", "Religion", {{"Daten", "Religion", T::Text, 255, true}}},
        {30, "Quellen_DS", "Info", {{"Quellen_DS", "Info", T::Memo, 0, true}},
         {"UPDATE Quellen_DS SET Info = '' ;"}},
        {31, "Notiz", "Dateipfad", {{"Notiz", "Dateipfad", T::Memo, 0, true}},
         {"UPDATE Notiz SET Dateipfad = '' ;"}},
        {32, "Daten_DS", "Info", {{"Daten_DS", "Info", T::Memo, 0, true}},
         {"UPDATE Daten_DS SET Info = '' ;"}},
        {33, "Daten_DS", "ASSO", {{"Daten_DS", "ASSO", T::Text, 255, true}},
         {"UPDATE Daten_DS SET ASSO = '' ;"}},
        {34, "Ereignis_DS", "ASSO",
         {{"Ereignis_DS", "ASSO", T::Text, 255, true}, {"Ereignis_DS", "Info", T::Memo, 0, true}},
         {"UPDATE ereignis_DS SET ASSO = '' ;", "UPDATE ereignis_DS SET INFO = '' ;"}},
        {35, "Version", "Verfasser_Name",
         {{"Version", "Verfasser_Name", T::Text, 255, true},
          {"Version", "Verfasser_Adresse", T::Text, 255, true},
          {"Version", "Verfasser_Telefon", T::Text, 255, true},
          {"Version", "Verfasser_Fax", T::Text, 255, true},
          {"Version", "Verfasser_eMail", T::Text, 255, true},
          {"Version", "Verfasser_HTTP", T::Text, 255, true},
          {"Version", "Verfasser_Anmerkung", T::Memo, 0, true},
          {"Version", "GEDCOM_Anmerkung", T::Memo, 0, true},
          {"Version", "Verfasser_gesperrt", T::Boolean}}},
        {36, "Daten", "Druck",
         {{"Daten", "Druck", T::Boolean}, {"Adressen", "Druck", T::Boolean},
          {"Bilder", "Druck", T::Boolean}, {"Dokument", "Druck", T::Boolean},
          {"Ereignis", "Druck", T::Boolean}, {"Familie", "Druck", T::Boolean},
          {"Namen", "Druck", T::Boolean}, {"Notiz", "Druck", T::Boolean},
          {"Ort", "Druck", T::Boolean}, {"Stichwort", "Druck", T::Boolean}}},
        {37, "Ereignis", "Druck", {{"Ereignis", "Druck", T::Boolean}}},
        {38, "Namen", "Marker", {{"Namen", "Marker", T::Boolean}}},
        {39, "Daten", "Familienname", {{"Daten", "Familienname", T::Text, 255, true}}},
        {40, "Ereignisdb", "OrtPos", {{"Ereignisdb", "OrtPos", T::Byte}},
         {"UPDATE Ereignisdb SET OrtPos = 0 ;"}},
        {41, "Daten", "Patronym", {{"Daten", "Patronym", T::Text, 255, true}}, {}, nullptr, false,
         false, true},
        {42, "Version", "Verfasser_gesperrt", {{"Version", "Verfasser_gesperrt", T::Boolean}}, {},
         nullptr, false, false, true},
        {43, "Ereignisdb", "CAUSasTAG", {{"Ereignisdb", "CAUSasTAG", T::Boolean}}, {},
         ereignisdb_causastag},
    };
    return schritte;
}
// clang-format on

// The frame of a step: the note, the fields, the statements and the pass, in one
// transaction; then the opening anew where the step asks for it.
void ausfuehren(Lauf& lauf, const Schritt& s, const std::function<void()>& eigene = {}) {
    lauf.schritt(s.nummer, [&] {
        if (!s.ohne_hinweis)
            lauf.hinweis();
        lauf.fortschritt(10);
        lauf.felder_anlegen(s.felder);
        lauf.fortschritt(50);
        for (const std::string& sql : s.anweisungen)
            lauf.ausfuehren(sql);
        if (s.daten)
            s.daten(lauf);
        if (eigene)
            eigene();
        lauf.fortschritt(90);
    });
    if (s.neu_oeffnen)
        lauf.neu_oeffnen();
}

void nach_test(Lauf& lauf, const Schritt& s) {
    if ((!s.nur_alt || alte_datei()) && lauf.feld_fehlt(s.tabelle, s.feld))
        ausfuehren(lauf, s);
}

// Step 16: an ancestor number of the type Integer becomes a Long; the old numbers are
// given up.
void kekuel_als_long(Lauf& lauf) {
    if (lauf.feld_fehlt("Daten", "Kekuel") ||
        DB->tableDef("Daten").field("Kekuel").Type != FieldType::Integer)
        return;
    const Schritt s{16, "Daten", "Kekuel", {}, {}};
    ausfuehren(lauf, s, [&] {
        cursor_schliessen("Daten");
        dao::TableDef daten = DB->tableDef("Daten");
        daten.DeleteField("Kekuel");
        daten.AppendField(dao::TableDef::CreateField("Kekuel", FieldType::Long));
        cursor_oeffnen("Daten");
        lauf.ausfuehren("UPDATE Daten SET Kekuel = 0 ;");
    });
}

// Step 21: the table Navigation, where the file lacks it.
void navigation_anlegen(Lauf& lauf) {
    if (DB->hasTable("Navigation"))
        return;
    ausfuehren(
        lauf,
        {21, "Version", "Navigation", {{"Version", "Navigation", T::Integer}}, {}, navigation});
}

// Step 23: a gallery with the field INI loses it, and its links get a flowchart.
void galerie(Lauf& lauf) {
    if (lauf.feld_fehlt("Galerie", "INI"))
        return;
    ausfuehren(lauf, {23, "Galerie", "INI", {}, {}}, [&] {
        cursor_schliessen("Galerie");
        DB->tableDef("Galerie").DeleteField("INI");
        lauf.felder_anlegen({{"Galerie_DS", "Flowchart", T::Memo}});
        cursor_schliessen("Galerie_DS");
        lauf.ausfuehren("UPDATE Galerie_DS SET Flowchart = 'X' ;");
        lauf.ausfuehren(
            "UPDATE Galerie SET Hintergrundbild = 'A4.gif' where Hintergrundbild = ' ' ;");
    });
}

// Null fields get a value, and the year 4000 loses its meaning of an unknown date.
void reinigen(Lauf& lauf) {
    lauf.schritt(44, [&] {
        const auto ausfuehren = [&](const std::string& sql) { lauf.ausfuehren(sql); };
        nullfelder_fuellen(ausfuehren);
        jahr_4000_loeschen(ausfuehren);
        lauf.ausfuehren("Update Daten Set ssort = '' WHERE sjahr = 0 ;");
    });
}

} // namespace

void nullfelder_fuellen(const std::function<void(const std::string&)>& ausfuehren) {
    const std::pair<const char*, const char*> felder[] = {
        {"Ereignis", "BTag = 0"},       {"Ereignis", "BMonat = 0"},     {"Ereignis", "BJahr = 0"},
        {"Ereignis", "[Text] = ' '"},   {"Ereignis", "Kurztext = ' '"}, {"Ereignis", "ca = ' '"},
        {"Ereignis", "BDatum = ''"},    {"Ereignis_DS", "ASSO = ''"},   {"Daten", "Religion = ''"},
        {"Daten", "Familienname = ''"}, {"Daten", "Patronym = ''"},     {"Daten", "OnlineDate = 0"},
        {"Daten", "Marker = 0"},        {"Daten", "ca1 = ' '"},         {"Daten", "ca2 = ' '"},
        {"Notiz", "Name = ' '"},        {"Notiz", "erfasst = 0"},       {"Notiz", "geaendert = 0"},
        {"Adressen", "Ort = 0"},        {"Quellen_DS", "Art_Ziel = 0"},
    };
    for (const auto& [tabelle, zuweisung] : felder) {
        const std::string z = zuweisung;
        ausfuehren(std::string("UPDATE ") + tabelle + " SET " + z + " WHERE " +
                   z.substr(0, z.find(' ')) + " IS NULL ;");
    }
}

void jahr_4000_loeschen(const std::function<void(const std::string&)>& ausfuehren) {
    for (const char* sql :
         {"UPDATE Ereignis SET vTag = 0 , VMonat=0 , VJahr=0 WHERE vJahr = 4000 ;",
          "Update Daten Set gTag = 0, GMonat=0, gJahr=0 WHERE gJahr = 4000 ;",
          "Update Daten Set sTag = 0, sMonat=0, sJahr=0 WHERE sJahr = 4000 ;"})
        ausfuehren(sql);
}

void abschnitt1(Lauf& lauf, bool ohne_komprimieren) {
    for (const Schritt& s : schritte_vor_migration()) {
        if (s.nummer == 17)
            kekuel_als_long(lauf);
        if (s.nummer == 22)
            navigation_anlegen(lauf);
        if (s.nummer == 24)
            galerie(lauf);
        nach_test(lauf, s);
    }
    if (alte_datei())
        migration(lauf, ohne_komprimieren);
    for (const Schritt& s : schritte_nach_migration())
        nach_test(lauf, s);
    reinigen(lauf);
}

} // namespace folio::upgrade

// The migration of a file of the old schema to version 5: the names of the old name table
// Namen_DS become name fields of the persons, the old dates (a Date/Time and a mark of what
// isn't known) become partial dates, four event types get new numbers, the notes' table
// Referenz becomes Notiz everywhere, and the tables Status and Ereignisdb come into being.
// Every statement of the field work runs with errors ignored: what fails is passed over.
// The whole migration is one step of the chain and one transaction.
#include "database/listentexte.h"
#include "database/oeffnen.h"
#include "database/schema/schema.h"
#include "database/tabellen.h"
#include "database/upgrade/abschnitt1.h"
#include "database/upgrade/kette.h"
#include "database/upgrade/lauf.h"
#include "engine/errors.h"
#include "engine/file_beside.h"
#include "engine/text_util.h"
#include "frame/fenster.h"
#include "frame/globals.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "frame/start.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>

namespace folio::upgrade {

namespace {

using T = FieldType;
namespace fs = std::filesystem;

void feld(const char* tabelle, const char* name, T typ, int groesse = 0, bool leer = false) {
    fehler_ignorieren([&] {
        dao::FieldDef def = dao::TableDef::CreateField(name, typ, groesse);
        def.AllowZeroLength = leer;
        DB->tableDef(tabelle).AppendField(def);
    });
}

void feld_loeschen(const char* tabelle, const char* name) {
    fehler_ignorieren([&] { DB->tableDef(tabelle).DeleteField(name); });
}

void index_loeschen(const char* tabelle, const char* name) {
    fehler_ignorieren([&] { DB->tableDef(tabelle).DeleteIndex(name); });
}

void umbenennen(const char* tabelle, const char* alt, const char* neu) {
    fehler_ignorieren([&] { DB->tableDef(tabelle).RenameField(alt, neu); });
}

void ausfuehren(const std::string& sql) {
    fehler_ignorieren([&] { DB->Execute(sql, dao::dbFailOnError); });
}

void schliessen(const char* tabelle) {
    fehler_ignorieren([&] { cursor_schliessen(tabelle); });
}

void oeffnen(const char* tabelle) {
    fehler_ignorieren([&] { cursor_oeffnen(tabelle); });
}

// The progress of the migration: the bar Update, and the value as a percentage in Info.
void stand(long long wert, bool mit_info = true) {
    FortschrittForm& form = Fortschrittfrm();
    form.steuerelement("Update").set("Value", Value(wert));
    if (mit_info) {
        char text[32];
        std::snprintf(text, sizeof text, "%.2f %%", static_cast<double>(wert));
        form.control("Info").set("Caption", Value(text));
    }
    platform().repaint(form, nullptr);
}

// A pass over the rows of a table: its progress runs from `basis` over `gewicht`.
void durchgang(const char* tabelle, long long basis, long long gewicht,
               const std::function<void(dao::Recordset&)>& zeile) {
    dao::Recordset& rs = *cursor_von(tabelle);
    const std::int64_t zeilen =
        DB->OpenRecordset(std::string("SELECT count(*) FROM ") + tabelle)->get(0).toInt();
    std::int64_t fertig = 0;
    for (zum_anfang(rs); !rs.Eof(); rs.MoveNext()) {
        fehler_ignorieren([&] { zeile(rs); });
        ++fertig;
        if (fertig % 64 == 0 || fertig == zeilen) {
            stand(zeilen > 0 ? fertig * gewicht / zeilen + basis : basis);
            platform().doEvents();
        }
    }
}

// An old date: a Date/Time and the mark of what isn't known in its first three letters.
struct Teildatum {
    int tag = 0, monat = 0, jahr = 0;
    std::string text, sortierung;
};

Teildatum teildatum(const Value& datum, const std::string& marke) {
    Teildatum d;
    if (datum.isNull())
        return d;
    const CalendarDateTime c = DateTime(datum.toDouble()).calendar();
    d.tag = c.day;
    d.monat = c.month;
    d.jahr = c.year;
    char schluessel[16];
    std::snprintf(schluessel, sizeof schluessel, "%04d%02d%02d", d.jahr, d.monat, d.tag);
    d.sortierung = schluessel;
    const std::string m = utf8Left(marke, 3);
    if (m == "X__") {
        d.tag = 0;
        d.sortierung.resize(6);
    } else if (m == "XX_") {
        d.tag = d.monat = 0;
        d.sortierung.resize(4);
    } else if (m == "XXX") {
        d.tag = d.monat = d.jahr = 0;
        d.sortierung.clear();
    }
    d.text = m == "XXX" ? "" : datum_text(d.tag, d.monat, d.jahr, 0);
    return d;
}

void datum_schreiben(dao::Recordset& rs, const char* p, const Teildatum& d) {
    const std::string prefix = p;
    rs.set(prefix + "Tag", Value(d.tag));
    rs.set(prefix + "Monat", Value(d.monat));
    rs.set(prefix + "Jahr", Value(d.jahr));
    rs.set(prefix + "Datum", Value(d.text));
    rs.set(prefix + "Sort", Value(d.sortierung));
}

// "Add": the text so far, a blank, the name.
void dazu(std::string& sammlung, const std::string& name) {
    sammlung += " " + name;
}

bool als_wort_enthalten(const std::string& text, const std::string& wort) {
    std::size_t i = 0;
    while (i < text.size()) {
        while (i < text.size() && text[i] == ' ')
            ++i;
        const std::size_t ende = std::min(text.find(' ', i), text.size());
        if (text.compare(i, ende - i, wort) == 0 && ende > i)
            return true;
        i = ende;
    }
    return false;
}

// A letter goes into the occurrences of a name of the name table, once.
void vorkommen(RecordId name, const char* buchstabe) {
    fehler_ignorieren([&] {
        dao::Recordset& namen = offen("Namen");
        namen.Index("Counter");
        namen.Seek("=", Value(name));
        if (namen.NoMatch())
            return;
        const std::string bisher = namen.get("Vorkommen").text();
        if (bisher.find(buchstabe) != std::string::npos)
            return;
        namen.Edit();
        namen.set("Vorkommen", Value(bisher + buchstabe));
        namen.Update();
    });
}

struct Namen {
    std::string vornamen, rufnamen, nachnamen, familiennamen, geburtsname, nick, patronym, praefix,
        namenspraefix, titel, notiz;
    bool nur_nachnamen() const {
        return vornamen.empty() && rufnamen.empty() && familiennamen.empty() &&
               geburtsname.empty() && nick.empty() && patronym.empty() && praefix.empty() &&
               namenspraefix.empty() && titel.empty() && notiz.empty();
    }
};

// The names of a person from its rows of the old name table, in their order.
Namen namen_sammeln(RecordId person) {
    Namen n;
    auto zeilen = DB->OpenRecordset("Select * FROM Namen_DS WHERE Quelle = " + person.sqlLiteral() +
                                    " AND ursprung = 'D' ORDER BY Stellung ;");
    for (; !zeilen->Eof(); zeilen->MoveNext()) {
        const std::string name = trimmed(zeilen->get("Namen").text());
        const std::string art = zeilen->get("Art").text();
        const RecordId ziel = zeilen->get("Ziel").toRecordId();
        auto hat = [&](char c) { return art.find(c) != std::string::npos; };
        auto art_setzen = [&](const char* neu) {
            fehler_ignorieren([&] {
                zeilen->Edit();
                zeilen->set("Art", Value(neu));
                zeilen->Update();
            });
        };
        if (hat('V'))
            dazu(n.vornamen, name);
        if (hat('R')) {
            if (!als_wort_enthalten(n.vornamen, name))
                dazu(n.vornamen, name);
            dazu(n.rufnamen, name);
        }
        if (hat('N')) {
            dazu(n.nachnamen, name);
            dazu(n.familiennamen, name);
        }
        if (hat('G')) {
            dazu(n.geburtsname, name);
            vorkommen(ziel, "G");
        }
        if (hat('S'))
            dazu(n.nick, name);
        if (hat('P'))
            dazu(n.patronym, name);
        if (hat('D'))
            dazu(n.notiz, name);
        if (hat('T')) {
            if (n.vornamen.empty() && n.geburtsname.empty()) {
                art_setzen("U");
                vorkommen(ziel, "U");
                dazu(n.praefix, name);
            } else if (n.geburtsname.empty() && n.nachnamen.empty()) {
                dazu(n.namenspraefix, name);
                art_setzen("M");
                vorkommen(ziel, "M");
            } else {
                dazu(n.titel, name);
            }
        }
        if (n.nur_nachnamen())
            dazu(n.nachnamen, name);
    }
    if (n.geburtsname.empty())
        n.geburtsname = n.nachnamen;
    else
        dazu(n.notiz, n.nachnamen);
    if (trimmed(n.familiennamen) == trimmed(n.geburtsname))
        n.familiennamen.clear();
    n.familiennamen = trimmed(n.familiennamen);
    if (!n.familiennamen.empty() && n.familiennamen.back() == ',')
        n.familiennamen.pop_back();
    return n;
}

void person_umwandeln(dao::Recordset& d) {
    if (d.get("Counter").isNull())
        return;
    platform().doEvents();
    const RecordId person = d.get("Counter").toRecordId();
    const Namen n = namen_sammeln(person);
    const Teildatum geburt = teildatum(d.get("Geburtsdatum"), d.get("Geburt_XX").text());
    const Teildatum tod = teildatum(d.get("Sterbedatum"), d.get("Sterbe_XX").text());

    // The places of birth and death: those of the birth and death events on these dates.
    RecordId gort, sort;
    const double geburtstag = datum_aus_teilen(geburt.tag, geburt.monat, geburt.jahr).days();
    const double todestag = datum_aus_teilen(tod.tag, tod.monat, tod.jahr).days();
    auto ereignisse =
        DB->OpenRecordset("Select  Ziel FROM Ereignis_DS WHERE Quelle = " + person.sqlLiteral() +
                          " AND ursprung = 'D' ;");
    dao::Recordset& e = offen("Ereignis");
    e.Index("Counter");
    for (; !ereignisse->Eof(); ereignisse->MoveNext()) {
        e.Seek("=", ereignisse->get("Ziel"));
        if (e.NoMatch())
            continue;
        const double datum = e.get("Datum_von").toDouble();
        const std::int64_t art = e.get("Art").toInt();
        if (datum == geburtstag && art == 1)
            gort = e.get("Ort").toRecordId();
        if (datum == todestag && art == 5)
            sort = e.get("Ort").toRecordId();
    }

    d.Edit();
    const std::pair<const char*, const std::string*> namensfelder[] = {
        {"NPFX", &n.praefix},
        {"GIVN", &n.vornamen},
        {"SPFX", &n.namenspraefix},
        {"SURN", &n.geburtsname},
        {"Familienname", &n.familiennamen},
        {"TITL", &n.titel},
        {"NICK", &n.nick},
        {"Patronym", &n.patronym},
        {"NameNOTE", &n.notiz},
        {"Rufnamen", &n.rufnamen}};
    for (const auto& feld : namensfelder)
        fehler_ignorieren([&] { d.set(feld.first, Value(trimmed(*feld.second))); });
    fehler_ignorieren([&] { d.set("NFSX", Value("")); });
    fehler_ignorieren([&] { d.set("ABBR", Value("")); });
    fehler_ignorieren([&] { datum_schreiben(d, "G", geburt); });
    fehler_ignorieren([&] { datum_schreiben(d, "S", tod); });
    fehler_ignorieren([&] { d.set("GOrt", Value(gort)); });
    fehler_ignorieren([&] { d.set("SOrt", Value(sort)); });
    d.Update();

    d.Edit();
    std::string liste = utf8Left(liste_name(d, false, false, false), 255);
    if (isBlank(liste))
        liste = trimmed(trimmed(d.get("Vnamen").text()) + trimmed(d.get("Nnamen").text()) + " " +
                        trimmed(d.get("TITL").text())) +
                " ";
    d.set("Listentext", Value(utf8Left(liste, 255)));
    d.Update();
}

void ereignis_umwandeln(dao::Recordset& e, const ListentextQuellen& q) {
    const Teildatum von = teildatum(e.get("Datum_von"), e.get("Datum_von_XX").text());
    const Teildatum bis = teildatum(e.get("Datum_bis"), e.get("Datum_bis_XX").text());
    int art = static_cast<int>(e.get("Art").toInt());
    art = art == 50 ? 44 : art == 60 ? 45 : art == 500 ? 46 : art == 501 ? 47 : art;

    const RecordId ereignis = e.get("Counter").toRecordId();
    RecordId erste;
    auto links = DB->OpenRecordset(
        "Select * FROM Ereignis_DS WHERE Ziel = " + ereignis.sqlLiteral() + "  ;");
    for (; !links->Eof(); links->MoveNext())
        if (links->get("Ursprung").text() == "d") {
            erste = links->get("Quelle").toRecordId();
            break;
        }
    links->Close();
    const RecordId zweite = ereignis_hauptperson(q, erste, ereignis);
    std::string ort;
    fehler_ignorieren([&] {
        dao::Recordset& orte = offen("Ort");
        orte.Index("Counter");
        orte.Seek("=", e.get("Ort"));
        if (!orte.NoMatch())
            ort = orte.get("Name").text();
    });
    const std::string text =
        ereignis_text(q, "Listentext", erste, art, e.get("ca").text(), von.text, bis.text,
                      e.get("Kurztext").text(), e.get("Grund").text(), ort, zweite, ereignis);

    e.Edit();
    fehler_ignorieren([&] { datum_schreiben(e, "v", von); });
    fehler_ignorieren([&] { datum_schreiben(e, "b", bis); });
    e.set("Art", Value(art));
    fehler_ignorieren([&] { e.set("Listentext", Value(text)); });
    e.Update();
}

// A table with a single old date: the `v` group, Status, Notiz in place of Referenz, and
// the old date fields gone.
void einfaches_datum(const char* tabelle, long long basis) {
    schliessen(tabelle);
    feld(tabelle, "vTag", T::Byte);
    feld(tabelle, "vMonat", T::Byte);
    feld(tabelle, "vJahr", T::Integer);
    feld(tabelle, "vDatum", T::Text, 20, true);
    feld(tabelle, "vSort", T::Text, 8, true);
    feld(tabelle, "Status", T::Currency);
    umbenennen(tabelle, "Referenz", "Notiz");
    oeffnen(tabelle);
    durchgang(tabelle, basis, 10, [](dao::Recordset& rs) {
        const Teildatum d = teildatum(rs.get("Datum"), rs.get("Datum_XX").text());
        rs.Edit();
        fehler_ignorieren([&] { datum_schreiben(rs, "v", d); });
        rs.Update();
    });
    schliessen(tabelle);
    feld_loeschen(tabelle, "Datum");
    feld_loeschen(tabelle, "Datum_XX");
    oeffnen(tabelle);
}

// The fields of a partial date: day, month, year, its text and its sort key.
void datumsfelder(const char* tabelle, const std::string& vorsilbe) {
    feld(tabelle, (vorsilbe + "Tag").c_str(), T::Byte);
    feld(tabelle, (vorsilbe + "Monat").c_str(), T::Byte);
    feld(tabelle, (vorsilbe + "Jahr").c_str(), T::Integer);
    feld(tabelle, (vorsilbe + "Datum").c_str(), T::Text, 20, true);
    feld(tabelle, (vorsilbe + "Sort").c_str(), T::Text, 8, true);
}

// Steps 2 to 8: the name and date fields of the persons, filled from the old ones, which go.
void personen_umstellen() {
    schliessen("Daten");
    if (!DB->tableDef("Daten").hasField("ABBR"))
        feld("Daten", "ABBR", T::Text, 255, true);
    for (const char* name : {"GIVN", "SURN", "NICK", "NPFX", "NFSX", "SPFX", "TITL", "RufNamen",
                             "Patronym", "Familienname"})
        feld("Daten", name, T::Text, 255, true);
    feld("Daten", "NameNOTE", T::Memo, 0, true);
    for (const char* p : {"G", "S"}) {
        datumsfelder("Daten", p);
        feld("Daten", (std::string(p) + "Ort").c_str(), T::Currency);
    }
    feld("Daten", "Listentext", T::Text, 255, true);
    feld("Daten", "Status", T::Currency);
    feld("Daten", "Onlinemarkierung", T::Boolean);
    feld("Daten", "Religion", T::Text, 255, true);
    oeffnen("Daten");
    stand(10);
    durchgang("Daten", 10, 20, person_umwandeln);
    schliessen("Daten");
    index_loeschen("Daten", "Personsuche");
    for (const char* name : {"Nnamen", "Vnamen", "Listname", "Geburtsname", "Geburtsdatum", "Titel",
                             "Geburt_XX", "Sterbedatum", "Sterbe_XX", "Namenrtf", "Tafeltext"})
        feld_loeschen("Daten", name);
    umbenennen("Daten", "Referenz", "Notiz");
    oeffnen("Daten");
}

// Steps 9 to 11: the partial dates, new kinds and list texts of the events.
void ereignisse_umstellen() {
    schliessen("Ereignis");
    for (const char* p : {"v", "b"})
        datumsfelder("Ereignis", p);
    feld("Ereignis", "Status", T::Currency);
    oeffnen("Ereignis");
    const ListentextQuellen q{DB.get(), rs_Daten.get(), nullptr, rs_Deutsch.get()};
    durchgang("Ereignis", 30, 20, [&](dao::Recordset& e) { ereignis_umwandeln(e, q); });
    schliessen("Ereignis");
    index_loeschen("Ereignis", "Ereignissuchen");
    for (const char* name : {"Datum_von", "Datum_von_XX", "Datum_bis", "Datum_bis_XX"})
        feld_loeschen("Ereignis", name);
    umbenennen("Ereignis", "Referenz", "Notiz");
    oeffnen("Ereignis");
}

// Steps 12 to 16: the table Status, the images and documents, the other tables' notes, and
// the table of notes under its new name.
void weitere_tabellen_umstellen() {
    fehler_ignorieren(
        [] { schema::createTable(*DB, *schema::findTable(schema::mainTables(), "Status")); });
    oeffnen("Status");

    einfaches_datum("Bilder", 50);
    index_loeschen("Dokument", "Suchen");
    einfaches_datum("Dokument", 60);

    schliessen("Adressen");
    feld("Adressen", "Status", T::Currency);
    feld("Adressen", "Notiz", T::Currency);
    feld("Adressen", "Ort", T::Currency);
    oeffnen("Adressen");
    for (const char* tabelle : {"Familie", "Namen", "Ort"}) {
        schliessen(tabelle);
        feld(tabelle, "Status", T::Currency);
        umbenennen(tabelle, "Referenz", "Notiz");
        oeffnen(tabelle);
        if (std::string(tabelle) == "Namen")
            stand(70);
    }

    // The notes.
    schliessen("Referenz");
    fehler_ignorieren([] { DB->tableDef("Referenz").Rename("Notiz"); });
    umbenennen("Notiz", "OberReferenz", "OberNotiz");
    feld("Notiz", "Status", T::Currency);
    feld("Notiz", "Dateipfad", T::Memo, 0, true);
    oeffnen("Notiz");
}

// Steps 17 and 18: the event types in use, from the catalogue.
void ereignisarten_uebernehmen() {
    fehler_ignorieren(
        [] { schema::createTable(*DB, *schema::findTable(schema::mainTables(), "Ereignisdb")); });
    oeffnen("Ereignisdb");
    ausfuehren("UPDATE Ereignisdb SET CAUSasTAG = 0 ;");
    fehler_ignorieren([] {
        std::vector<int> arten;
        auto rs = DB->OpenRecordset("Select Distinct Art FROM Ereignis Order by Art ;");
        for (; !rs->Eof(); rs->MoveNext())
            arten.push_back(static_cast<int>(rs->get(0).toInt()));
        rs->Close();
        std::int64_t fertig = 0;
        for (int art : arten) {
            fehler_ignorieren([&] { ereignisdb_uebernehmen(art); });
            stand(static_cast<long long>(++fertig * 10 / static_cast<std::int64_t>(arten.size())) +
                  80);
        }
    });
}

// Steps 19 to 22: the late fields, the cleaning of Null fields and of the year 4000, and
// the old name table gone.
void aufraeumen() {
    feld("Daten", "Religion", T::Text, 255, true);
    stand(85);
    feld("Notiz", "Dateipfad", T::Memo, 0, true);
    ausfuehren("UPDATE Notiz SET Dateipfad = '' ;");
    stand(90);
    feld("Daten_DS", "Info", T::Memo, 0, true);
    ausfuehren("UPDATE Daten_DS SET Info = '' ;");
    stand(95);
    feld("Quellen_DS", "Info", T::Memo, 0, true);

    for (const char* tabelle : {"Daten", "Adressen", "Bilder", "Dokument", "Ereignis", "Familie",
                                "Namen", "Notiz", "Ort", "Stichwort"}) {
        schliessen(tabelle);
        feld(tabelle, "Druck", T::Boolean);
    }
    feld("Namen", "Marker", T::Boolean);
    for (const char* tabelle : {"Daten", "Adressen", "Bilder", "Dokument", "Ereignis", "Familie",
                                "Namen", "Notiz", "Ort", "Stichwort"})
        oeffnen(tabelle);

    ausfuehren("UPDATE Quellen_DS SET Info = '' ;");
    nullfelder_fuellen(ausfuehren);
    ausfuehren("UPDATE Ereignis SET Level = 1 WHERE Level IS NULL ;");
    jahr_4000_loeschen(ausfuehren);

    // The old name table goes.
    for (const char* index : {"Daten_pruefen", "Namen", "Quelle", "Ziel"})
        index_loeschen("Namen_DS", index);
    fehler_ignorieren([] { DB->DeleteTableDef("Namen_DS"); });
}

// Steps 23 and 24: the version name 5.0.100 and the author's fields of Version.
void version_umstellen() {
    stand(100, false);
    Fortschrittfrm().control("Info").set("Caption", Value(sprachtext("453 Abgeschlossen")));
    schliessen("Version");
    // A file from before version names gets the field here: from now on its version counts.
    if (!DB->tableDef("Version").hasField("Versionname"))
        feld("Version", "Versionname", T::Text, 50);
    oeffnen("Version");
    ausfuehren("UPDATE Version SET Versionname = '5.0.100' ;");
    schliessen("Version");
    feld_loeschen("Version", "Vornamen_Laenge");
    feld_loeschen("Version", "Nachnamen_Laenge");
    for (const char* name : {"Verfasser_Name", "Verfasser_Adresse", "Verfasser_Telefon",
                             "Verfasser_Fax", "Verfasser_eMail", "Verfasser_HTTP"})
        feld("Version", name, T::Text, 255, true);
    feld("Version", "Verfasser_Anmerkung", T::Memo, 0, true);
    feld("Version", "GEDCOM_Anmerkung", T::Memo, 0, true);
    oeffnen("Version");
}

// Steps 2 to 24, the field work, in their order.
void felderarbeit() {
    personen_umstellen();
    ereignisse_umstellen();
    weitere_tabellen_umstellen();
    ereignisarten_uebernehmen();
    aufraeumen();
    version_umstellen();
}

// The file is compacted into a new file beside it, which takes its place only when it is
// complete: a full disk leaves the file as it was.
void komprimieren(const std::string& datei) {
    FileBeside neu(datei);
    dao::engine().CompactDatabase(datei, neu.path().string());
    try {
        neu.putInPlace();
    } catch (const fs::filesystem_error& e) {
        throw dateifehler(e.code(),
                          "The compacted form of '" + datei + "' could not be put in its place");
    }
}

} // namespace

void migration(Lauf& lauf, bool ohne_komprimieren) {
    lauf.schritt(27, [&] {
        lauf.hinweis();
        stand(0, false);
        felderarbeit();
    });
    fehler_ignorieren([] { fenster_vordergrund(Fortschrittfrm(), 0, true); });
    meldung(sprachtext("452"));
    if (ohne_komprimieren)
        return;
    const std::string datei = pfad_verbinden(lauf.pfad, lauf.datei);
    alle_schliessen(datei);
    DB.reset();
    datenbank_reparieren(lauf.pfad, lauf.datei);
    komprimieren(datei);
    wieder_oeffnen(lauf.pfad, lauf.datei, false); // the chain goes on on the compacted file
}

} // namespace folio::upgrade

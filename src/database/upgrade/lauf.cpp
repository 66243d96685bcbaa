#include "database/upgrade/lauf.h"

#include "database/oeffnen.h"
#include "database/schema/schema.h"
#include "database/tabellen.h"
#include "database/upgrade/kette.h"
#include "engine/errors.h"
#include "engine/file_beside.h"
#include "frame/globals.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "frame/start.h"

#include <filesystem>
#include <map>

namespace folio::upgrade {

namespace fs = std::filesystem;

std::unique_ptr<dao::Recordset>& cursor_von(std::string_view tabelle) {
    static const std::map<std::string, std::unique_ptr<dao::Recordset>*, std::less<>> cursors = {
        {"Adressen", &rs_Adressen},
        {"Adressen_DS", &rs_Adressen_DS},
        {"Baum", &rs_Baum},
        {"Baum_DS", &rs_Baum_DS},
        {"Bilder", &rs_Bilder},
        {"Daten", &rs_Daten},
        {"Daten_DS", &rs_Daten_DS},
        {"Dokument", &rs_Dokument},
        {"Ereignis", &rs_Ereignis},
        {"Ereignis_DS", &rs_Ereignis_DS},
        {"Ereignisdb", &rs_Ereignisdb},
        {"Familie", &rs_Familie},
        {"Galerie", &rs_Galerie},
        {"Galerie_DS", &rs_Galerie_DS},
        {"Namen", &rs_Namen},
        {"Notiz", &rs_Notiz},
        {"Ort", &rs_Ort},
        {"Quellen_DS", &rs_Quellen_DS},
        {"Referenz", &rs_Notiz},
        {"Status", &rs_Status},
        {"Stichwort", &rs_Stichwort},
        {"Stichwort_DS", &rs_Stichwort_DS},
        {"Version", &rs_Version},
    };
    auto it = cursors.find(tabelle);
    if (it == cursors.end())
        throw Error(err::ItemNotFound, "No cursor holds the table '" + std::string(tabelle) + "'");
    return *it->second;
}

dao::Recordset& offen(const std::unique_ptr<dao::Recordset>& cursor, const std::string& wer) {
    if (!cursor || !cursor->isOpen())
        throw Error(err::ObjectVariableNotSet, wer + " isn't open");
    return *cursor;
}

dao::Recordset& offen(std::string_view tabelle) {
    return offen(cursor_von(tabelle),
                 "The table '" + std::string(tabelle) + "' of the family tree");
}

void cursor_oeffnen(std::string_view tabelle) {
    cursor_von(tabelle) = DB->OpenRecordset(tabelle, dao::RecordsetType::Table);
}

void cursor_schliessen(std::string_view tabelle) {
    if (const std::unique_ptr<dao::Recordset>& rs = cursor_von(tabelle))
        rs->Close();
}

void zum_anfang(dao::Recordset& rs) {
    try {
        rs.MoveFirst();
    } catch (const Error&) {
        // No rows: the walk that follows finds the end at once.
    }
}

std::string versionname() {
    dao::Recordset& v = offen("Version");
    if (!v.hasField("Versionname"))
        return "";
    v.MoveFirst();
    return v.Eof() ? "" : v.get("Versionname").text();
}

Zeilenbalken::Zeilenbalken(const char* titel)
    : form(Fortschrittfrm()), bar(Fortschrittfrm().steuerelement("Update")) {
    form.set("Caption", Value(titel));
    Fortschrittfrm().abbrechen = false;
    bar.set("Visible", Value(true));
    form.control("WaitBar").set("Visible", Value(false));
    bar.set("Value", Value(0));
}

void Zeilenbalken::maximum(dao::Recordset& rs) {
    try {
        rs.MoveLast();
        bar.set("Max", Value(static_cast<long long>(rs.RecordCount())));
        rs.MoveFirst();
    } catch (const Error&) {
    }
}

void Zeilenbalken::weiter() {
    const long long wert = bar.get("Value").toInt();
    if (wert < bar.get("Max").toInt())
        bar.set("Value", Value(wert + 1));
    form.control("Info").set("Caption", Value(bar.get("Value").text()));
    platform().repaint(form, nullptr);
}

bool Lauf::feld_fehlt(std::string_view tabelle, std::string_view feld) {
    const std::unique_ptr<dao::Recordset>& rs = cursor_von(tabelle);
    if (!rs || !rs->isOpen())
        return !DB->tableDef(tabelle).hasField(feld);
    for (const dao::FieldDef& f : rs->Fields())
        if (f.Name == feld)
            return false;
    return true;
}

void Lauf::hinweis() {
    if (gemeldet[abschnitt])
        return;
    // The first change of this run: the file as it was stays beside it, under a name that
    // tells its version and that the file list of the program doesn't show.
    // A run that the migration starts anew on its result keeps the copy of the first.
    static std::map<std::string, std::string> kopien; // by file, in this process
    if (sicherung_.empty()) {
        const fs::path datei_pfad = fs::absolute(pfad_verbinden(pfad, datei));
        std::string& kopie = kopien[datei_pfad.string()];
        std::error_code ec;
        if (kopie.empty() || !fs::exists(kopie, ec)) {
            const std::string alt = versionname();
            kopie =
                (datei_pfad.parent_path() / (datei_pfad.stem().string() + " (" +
                                             (alt.empty() ? std::string("alt") : alt) + ").bak"))
                    .string();
            if (!fs::exists(kopie, ec)) {
                // Without the copy the file isn't touched: the conversion stops here.
                try {
                    FileBeside neu(kopie);
                    neu.copyFrom(datei_pfad);
                    neu.putInPlace();
                } catch (const fs::filesystem_error& e) {
                    const std::string kopie_pfad = kopie;
                    kopie.clear();
                    throw dateifehler(e.code(), "The copy of '" + datei_pfad.string() +
                                                    "' could not be written as '" + kopie_pfad +
                                                    "'");
                }
            }
        }
        sicherung_ = kopie;
    }
    Form& fortschritt_form = Fortschrittfrm();
    fortschritt_form.set("MousePointer", Value(MausNormal));
    meldung(sprachtext("9951") + "\r\n\r\n" +
                sprachtext("9952 Die Datei in ihrer bisherigen Form bleibt erhalten als:") +
                "\r\n" + sicherung_,
            StilInfo, Produktname);
    gemeldet[abschnitt] = true;
    fortschritt_form.set("MousePointer", Value(MausSanduhr));
}

void Lauf::fortschritt(long long wert) {
    FortschrittForm& form = Fortschrittfrm();
    form.steuerelement("Update").set("Value", Value(wert));
    platform().repaint(form, nullptr);
}

void Lauf::felder_anlegen(const std::vector<NeuesFeld>& felder) {
    long long stand = 0;
    std::string tabelle;
    for (const NeuesFeld& f : felder) {
        if (tabelle != f.tabelle) {
            if (!tabelle.empty())
                cursor_oeffnen(tabelle);
            tabelle = f.tabelle;
            fortschritt(stand += 10);
            cursor_schliessen(tabelle);
        }
        dao::FieldDef def = dao::TableDef::CreateField(f.name, f.typ, f.groesse);
        def.AllowZeroLength = f.leer_erlaubt;
        DB->tableDef(tabelle).AppendField(def);
    }
    if (!tabelle.empty())
        cursor_oeffnen(tabelle);
}

void Lauf::ausfuehren(const std::string& sql) {
    DB->Execute(sql, dao::dbFailOnError);
}

void Lauf::neu_oeffnen() {
    wieder_oeffnen(pfad, datei, true);
}

void wieder_oeffnen(std::string& pfad, std::string& datei, bool ohne_aktualisierung) {
    // Where the file can't be opened again (the message has named it), the conversion ends
    // here, at its last finished step: what follows needs the file open.
    if (datenbank_oeffnen(pfad, datei, false, ohne_aktualisierung) != Geoeffnet::Ja)
        throw Error(err::CannotOpenFile, "The database '" + pfad_verbinden(pfad, datei) +
                                             "' could not be opened again during its conversion");
}

void Lauf::schritt(int nummer, const std::function<void()>& arbeit) {
    dao::Transaction t(*DB);
    arbeit();
    if (vor_abschluss())
        vor_abschluss()(nummer);
    t.commit();
    platform().doEvents();
}

std::function<void(int)>& vor_abschluss() {
    static std::function<void(int)> beobachter;
    return beobachter;
}

} // namespace folio::upgrade

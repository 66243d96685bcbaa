#include "database/tabellen.h"

#include "engine/abbruch.h"
#include "engine/text_util.h"
#include "frame/globals.h"
#include "frame/platform.h"

#include <exception>

namespace folio {

std::unique_ptr<dao::Database> DB;
std::unique_ptr<dao::Database> DB_Ereignis, DB_Geschichte, DB_namen, DB_Orte, DB_Adressen,
    DB_Notizen;
std::unique_ptr<dao::Recordset> rs_Baum, rs_Baum_DS, rs_Bilder, rs_Daten, rs_Daten_DS, rs_Dokument,
    rs_Ereignis, rs_Ereignis_DS, rs_Familie, rs_Galerie, rs_Galerie_DS, rs_Namen, rs_Quellen_DS,
    rs_Notiz, rs_Ort, rs_Stichwort, rs_Stichwort_DS, rs_Adressen, rs_Adressen_DS, rs_Version,
    rs_Navigation, rs_Status, rs_Ereignisdb;
std::unique_ptr<dao::Recordset> rs_Sprache, rs_Deutsch;
std::unique_ptr<dao::Recordset> rs_Geschichte, rs_namen, rs_Orte, rs_AdressenKatalog, rs_Notizen;
std::string aktuelle_datei;

namespace {

std::unique_ptr<dao::Database> seitendatenbank(const char* datei) {
    return dao::OpenDatabase(pfad_verbinden(Datenpfad, datei));
}

std::unique_ptr<dao::Recordset> tabelle(dao::Database& db, const std::string& name) {
    return db.OpenRecordset(name, dao::RecordsetType::Table);
}

// A table that an older file doesn't have: no cursor where the table doesn't exist. Only
// its absence is passed over. A table that exists and can't be opened is damage, and its
// error, which names the file, goes up: the cursor would otherwise stay null, or closed from
// the file opened before, and fail later with words that name no file.
std::unique_ptr<dao::Recordset> wahlweise(dao::Database& db, const std::string& name,
                                          dao::RecordsetType art = dao::RecordsetType::Table) {
    if (!db.hasTable(name))
        return nullptr;
    return db.OpenRecordset(name, art);
}

} // namespace

void tabellen_oeffnen() {
    DB_Ereignis = seitendatenbank("Ereignis.mdb");
    DB_Geschichte = seitendatenbank("Geschichte.mdb");
    DB_namen = seitendatenbank("namen.mdb");
    DB_Orte = seitendatenbank("Orte.mdb");
    DB_Adressen = seitendatenbank("Adressen.mdb");
    DB_Notizen = seitendatenbank("Notizen.mdb");

    dao::Database& db = *DB;
    rs_Baum = tabelle(db, "Baum");
    rs_Baum_DS = tabelle(db, "Baum_DS");
    rs_Bilder = tabelle(db, "Bilder");
    rs_Daten = tabelle(db, "Daten");
    rs_Daten_DS = tabelle(db, "Daten_DS");
    rs_Dokument = tabelle(db, "Dokument");
    rs_Ereignis = tabelle(db, "Ereignis");
    rs_Ereignis_DS = tabelle(db, "Ereignis_DS");
    rs_Familie = tabelle(db, "Familie");
    rs_Galerie = tabelle(db, "Galerie");
    rs_Galerie_DS = tabelle(db, "Galerie_DS");
    rs_Namen = tabelle(db, "Namen");
    rs_Quellen_DS = tabelle(db, "Quellen_DS");
    // An old file has Referenz in place of Notiz; the later one wins where both exist.
    rs_Notiz = wahlweise(db, "Referenz");
    if (auto notiz = wahlweise(db, "Notiz"))
        rs_Notiz = std::move(notiz);
    rs_Ort = tabelle(db, "Ort");
    rs_Stichwort = tabelle(db, "Stichwort");
    rs_Stichwort_DS = tabelle(db, "Stichwort_DS");
    rs_Sprache = tabelle(*DB_Ereignis, Sprache);
    rs_Adressen = tabelle(db, "Adressen");
    rs_Adressen_DS = tabelle(db, "Adressen_DS");
    rs_Version = tabelle(db, "Version");
    // Tables that an old file doesn't have yet.
    rs_Navigation = wahlweise(db, "Navigation", dao::RecordsetType::Dynaset);
    rs_Status = wahlweise(db, "Status");
    rs_Ereignisdb = wahlweise(db, "Ereignisdb");
    rs_Geschichte = tabelle(*DB_Geschichte, "Deutsch");
    rs_namen = tabelle(*DB_namen, "Namen");
    rs_Orte = tabelle(*DB_Orte, "Ort");
    rs_AdressenKatalog = tabelle(*DB_Adressen, "Adressen");
    rs_Notizen = tabelle(*DB_Notizen, "Notizen");
    rs_Deutsch = DB_Ereignis->OpenRecordset("Deutsch", dao::RecordsetType::Dynaset);
}

void alle_schliessen(const std::string& name) {
    // Closing finishes whatever happens: a stop asked for while events run between two
    // databases is raised once everything is closed.
    std::exception_ptr stop;
    const std::string gesucht = upperAscii(name);
    const std::vector<dao::Workspace*> workspaces = dao::engine().Workspaces();
    for (auto w = workspaces.rbegin(); w != workspaces.rend(); ++w) {
        const std::vector<dao::Database*> databases = (*w)->Databases();
        for (auto d = databases.rbegin(); d != databases.rend(); ++d) {
            if (!gesucht.empty() && upperAscii((*d)->Name()).find(gesucht) == std::string::npos)
                continue;
            (*d)->Close(); // closes its recordsets, the last first
            try {
                platform().doEvents();
            } catch (const Abbruch&) {
                if (!stop)
                    stop = std::current_exception();
            }
        }
        if (*w != workspaces.front())
            dao::engine().CloseWorkspace(**w);
    }
    if (stop)
        std::rethrow_exception(stop);
}

} // namespace folio

// The open family tree: the database handles and the long-lived table cursors that every
// part of the program uses while a database is open. tabellen_oeffnen opens them together,
// alle_schliessen closes them together.
#pragma once

#include "engine/engine.h"
#include "engine/recordset.h"

#include <memory>
#include <string>

namespace folio {

// The family tree and the side databases of the data folder.
extern std::unique_ptr<dao::Database> DB;
extern std::unique_ptr<dao::Database> DB_Ereignis, DB_Geschichte, DB_namen, DB_Orte, DB_Adressen,
    DB_Notizen;

// Table cursors of the family tree.
extern std::unique_ptr<dao::Recordset> rs_Baum, rs_Baum_DS, rs_Bilder, rs_Daten, rs_Daten_DS,
    rs_Dokument, rs_Ereignis, rs_Ereignis_DS, rs_Familie, rs_Galerie, rs_Galerie_DS, rs_Namen,
    rs_Quellen_DS, rs_Notiz, rs_Ort, rs_Stichwort, rs_Stichwort_DS, rs_Adressen, rs_Adressen_DS,
    rs_Version, rs_Navigation, rs_Status, rs_Ereignisdb;
// The event catalogue: the table of the current language, and "Deutsch" as a dynaset.
extern std::unique_ptr<dao::Recordset> rs_Sprache, rs_Deutsch;
// The tables of the other side databases.
extern std::unique_ptr<dao::Recordset> rs_Geschichte, rs_namen, rs_Orte, rs_AdressenKatalog,
    rs_Notizen;

// The file name of the family tree as it was finally opened.
extern std::string aktuelle_datei;

// Opens the side databases from Datenpfad and the table cursors of DB, which must be open.
void tabellen_oeffnen();
// Closes what is open on a file: every database whose path holds `name` (without regard to
// case; an empty name closes all), with its recordsets, and every workspace but the first.
void alle_schliessen(const std::string& name);

} // namespace folio

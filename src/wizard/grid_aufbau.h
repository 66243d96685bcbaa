// The set-up of the two grids: the query, the columns (keys, visibility, widths, captions),
// the pictures and the sort of the person grid and of each table of the linked records, and
// the column settings that a user keeps in columns.ini.
#pragma once

#include <string>

namespace folio {

class Datengrid;

// Datengrid(0) shows all persons, sorted by surname.
void personengrid_aufbauen();

// Datengrid(1) shows the marked records of a table: "Ereignisse", "Orte", "Dokumente",
// "Bilder", "Notizen" or "Adressen". Any other key leaves the grid as it is.
void grid2_aufbauen(const std::string& key);

// The file of the column settings: Datenpfad + "/columns.ini".
std::string spalten_ini();

// Takes widths, order and visibility of the grid's columns from `datei`, where they stand
// for the product, form and grid named; what isn't stored keeps its value. A column's entry
// is "width,position,visible" under its key in the section "product/form/grid".
void spalteneinstellungen_laden(Datengrid& grid, const std::string& produkt,
                                const std::string& formular, const std::string& gridname,
                                const std::string& datei);
// Writes them, as the view does when the user has changed a column.
void spalteneinstellungen_speichern(Datengrid& grid, const std::string& produkt,
                                    const std::string& formular, const std::string& gridname,
                                    const std::string& datei);

// The form name under which the settings of the grid as it stands are kept.
std::string formularname(const Datengrid& grid);

} // namespace folio

// The export run: the header and submitter, the record classes in their order with their
// progress, and the trailer, written from what the run is told (Exportoptionen) into a file
// that takes the target's place only when it is complete.
#pragma once

#include "gedcom/exportlauf.h"

#include <cstdint>
#include <functional>
#include <string>

namespace folio {

namespace dao {
class Durchlauf;
class Recordset;
} // namespace dao

// Writes the marked records of the open database to `ziel`. The database and its long-lived
// cursors must be open. Raises where the run fails (the old target stays as it was, no part
// of the new one is left), and Abbruch where a stop was asked for.
void exportieren(const Exportoptionen& optionen, const std::string& ziel,
                 Fortschrittsanzeige& fortschritt);

// Runs `schreiben` on each row of `sql`, with the progress going from `basis` by `spanne`
// over the rows.
void zeilen_durchlaufen(Exportlauf& lauf, const std::string& sql, double basis, double spanne,
                        const std::function<void(dao::Recordset&)>& schreiben);
// Runs `schreiben` on each marked record of a linked table, all its fields, in the order of
// the table; the marks are the run's where it was given them, else the tree's.
void markierte_durchlaufen(Exportlauf& lauf, Verknuepft tabelle, double basis, double spanne,
                           const std::function<void(dao::Recordset&)>& schreiben);
// The same in one forward pass, reading the columns by their position.
void zeilen_durchlaufen(Exportlauf& lauf, const std::string& sql, double basis, double spanne,
                        const std::function<void(const dao::Durchlauf&)>& schreiben);
// The number of rows of `sql`, counted by the database.
std::int64_t zeilen_zaehlen(const std::string& sql);
// The progress at row `anzahl` of `gesamt`: the share of `spanne` on top of `basis`.
void fortschritt_setzen(Exportlauf& lauf, std::int64_t anzahl, std::int64_t gesamt, double basis,
                        double spanne);

} // namespace folio

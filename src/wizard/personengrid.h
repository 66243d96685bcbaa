// What the grids do when the user works in them: the permission to edit a cell, a tick set
// or cleared in the column Markierung and what it brings along, the permission to sort, the
// switches of the persons' tool bar, and the reference column that the grid asks for.
#pragma once

#include "engine/record_id.h"
#include "engine/value.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace folio {

// The cell changed event of the grid `grid`. `counter` and `markierung` are the cells
// Counter and Markierung of the changed row; the grid has written the tick itself. For
// the person grid (0) the walks of the relatives run as the switches of its tool bar say,
// the living lose their marks while "Lebend" is pressed, and the closure becomes stale; any
// grid then has the person grid refreshed.
void markierung_geaendert(int grid, RecordId counter, bool markierung);

enum class Haken {
    Gesetzt,    // the mark is written and the walks have run
    Verweigert, // a living person while "Lebend" is pressed: the grid refuses the edit
    Unbekannt,  // no person of that number
};

// Ticks (or unticks) a person as the grid does: the edit permission, the write of the
// mark, the end of the edit (Next by whether any person is marked), and then the walks of
// the relatives as the switches say.
Haken haken_setzen(RecordId person, bool stand);

// A command of the menu "Markieren" of the tool bar Coolbar_Datengrid(coolbar):
// "Auswählen" marks every person, "Abwählen" none, "Alle_gezeigten" adds the persons
// that were marked when the database was opened. Any command makes the closure stale.
void markieren_befehl(int coolbar, std::string_view key);

// What the grid does, while "Lebend" is pressed, as soon as it shows a living person: every
// living person loses the mark.
void lebende_abwaehlen();

// The edit permission of a cell of the grid `grid` at the row (from 1) and column key: only
// the tick, and in the person grid not that of a living person while "Lebend" is pressed.
bool bearbeiten_erlaubt(int grid, std::int64_t row, std::string_view key);

// The end of an edit in the grid `grid`: for the person grid, Next by whether any person is
// marked.
void bearbeitung_beendet(int grid);

// The user changes a cell as the grid lets them: the permission, the write of the value, the
// end of the edit and the cell changed event. False where the edit was refused.
bool zelle_aendern(int grid, std::int64_t row, std::string_view key, const Value& wert);

// The sort event: whether the grid may sort by `sortierung` (as SortOrder gives it). The person
// grid refuses the columns that show a name for a number, with a message that the user can
// switch off.
bool sortieren_erlaubt(int grid, const std::string& sortierung);

// A click on a switch of the persons' tool bar, with its new state.
void schalter_geklickt(std::string_view key, bool an);

// A click on a button of the tool bar of the linked records: that button is the one pressed,
// and the grid shows its table anew, without filters, also where it was pressed already.
void tabellenknopf_geklickt(const std::string& key);

// The reference column that the grid `grid` asks for, and its width in pixels: the column by
// which it is sorted (the date behind a sort key), else the start column. False where the
// grid gets no answer.
bool referenzspalte(int grid, int spalte, int& ergebnis, int& breite);
int sortierspalte_ermitteln(int grid, int startspalte, int& breite);

} // namespace folio

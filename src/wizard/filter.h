// The filter row of the grids ("Auto-Filter"): a cell under each column header in which the
// user types a pattern or picks an entry of a list. The grid isn't filtered in place: the
// filters of all columns become one SQL condition (see filterbedingung.h), and the grid's base
// query is opened anew with it. These are the procedures behind the events of the filter row.
#pragma once

#include "engine/value.h"
#include "wizard/filterbedingung.h"

#include <string>
#include <vector>

namespace folio {

namespace dao {
class Database;
}
class Datengrid;

// The mouse button and the key that the filter row reacts to.
inline constexpr int MausRechts = 2;
inline constexpr int TasteEscape = 27;
// A question with Yes and No, No the default.
inline constexpr int StilFrageJaNeinNein = 292;

// The list of a filter cell.
struct Filterliste {
    // 0: no list, the cell takes plain text; 1: the rows of a query; 2: fixed items, the last
    // of them the blank one that removes the filter.
    int art = 0;
    bool gebunden = false; // the list shows the rows of `abfrage`
    std::string abfrage;
    dao::Database* datenbank = nullptr;
    int schluesselspalte = 0;          // the list column whose value a pick hands to the grid
    int anzeigespalte = 0;             // the list column that the cell shows
    bool schluessel_verborgen = false; // the first list column has the width 0
    int breite = 0;                    // twips
    int sichtbare_zeilen = 0;
    struct Eintrag {
        Value schluessel; // Null for fixed items
        std::string text;
    };
    std::vector<Eintrag> eintraege;
};

// The tooltip of a filter cell or a column header.
struct Tooltip {
    std::string titel;
    std::string text;
    bool gezeigt = false;
    int stil = 0;
};

// The filter text of the column at `spalte` (from 1) changed: an empty text switches the
// filter off; another switches it on, and a key column takes the key of the entry picked from
// its list (the grid's filterwahl) into its Tag, -1 where the text was typed. Nothing is
// queried yet.
void filter_uebernehmen(Datengrid& grid, int spalte, const std::string& text);

// The list that the filter cell of the column at `spalte` opens, by the column's key; kind 1
// lists read their entries from the family tree (or the address database) now.
Filterliste filterliste_fuellen(Datengrid& grid, int spalte);

// A mouse press on the filter cell of the column at `spalte`: the right button, outside the
// grid's edit state, switches a filter that has a text off or on again and applies the filters.
void filter_umschalten(Datengrid& grid, int spalte, int taste, bool im_bearbeiten = false);

// A key in the filter row: Escape asks whether to cancel, and on Yes puts back the filter texts
// last applied (a column without one is switched off); on any other answer the key is
// swallowed (set to 0). The query isn't run again.
void filter_abbrechen(Datengrid& grid, int& taste);

// Opens `abfrage` on `db` with the condition of all active filters and binds the grid to it,
// keeping its sort and horizontal scroll position; `nur_markierte` keeps the grid on marked
// records. Where the database refuses the query, a message says so and the grid keeps its
// rows.
void filter_anwenden(Datengrid& grid, const std::string& abfrage, dao::Database& db,
                     bool nur_markierte);

// The filters of a grid confirmed: filter_anwenden with the grid's base query on the family
// tree, the second grid on its marked records.
void filter_bestaetigen(Datengrid& grid);

// The tooltip of the filter cell of the column at `spalte`: how to write a filter for it.
Tooltip filter_hilfe(Datengrid& grid, int spalte);

// The tooltip of the header of the column at `spalte`; empty for most columns.
Tooltip spaltenkopf_hilfe(Datengrid& grid, int spalte);

} // namespace folio

// A grid as a model without a window: columns with their keys, widths, captions and filter
// members, a collection of pictures, and rows read from a query of the family tree.
//
// The rows are read lazily. Binding a query reads only the row numbers of the store in the
// order shown (the order of a sort is worked out here, with the program's collation, from
// the sort column alone); the cells of a row are read when a window of rows is asked for,
// and the row event runs for exactly the rows read. A tick in the column Markierung is
// written at once into the record behind the row.
#pragma once

#include "engine/value.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace folio {

namespace dao {
class Database;
}

// Kinds of a column's data, as the grid reports them.
inline constexpr int SpaltentypText = 0;
inline constexpr int SpaltentypZahl = 1;
inline constexpr int SpaltentypJaNein = 2;
inline constexpr int SpaltentypDatum = 3;

// Sort states of a column.
inline constexpr int SortKeine = 0;
inline constexpr int SortAuf = 1;
inline constexpr int SortAb = 2;

// The text colour of a row, as a number of red + 256 * green + 65536 * blue.
inline constexpr long FarbeStandard = 0;
inline constexpr long FarbeRot = 255;

struct Spalte {
    // The field's name as the query spells it; looking a column up ignores case.
    std::string Key;
    int Index = 0; // position, from 1
    int DataType = SpaltentypText;
    bool Visible = true;
    int Width = 1000; // twips
    int MinWidth = 0; // twips
    int Position = 0; // place among the columns on the screen, from 1; only the view uses it
    std::string Caption;
    std::string Format;
    bool Bildspalte = false; // the cell shows a picture, not its text
    bool Bearbeitbar = false;
    int SortState = SortKeine;

    // The filter of the column (see filter.h).
    std::string Filter;
    bool FilterShowDisabled = false;
    bool filter_aktiv = false;
    Value Tag = Value(-1);
    int Image = 0;
    int ImageAlign = 0;

    // The field behind the column: its table ("" for an expression) and its name.
    std::string SourceTable;
    std::string Name;
};

// A picture of a grid's collection: its key and the file it is drawn from ("" for none).
struct Bild {
    std::string key;
    std::string datei;
};

// One row as the grid has read it: a cell per column (text, picture number, tooltip), and
// the row's text colour.
struct Zeile {
    struct Zelle {
        std::string text;
        int bild = 0;
        std::string tooltip;
    };
    std::int64_t rowid = 0;
    std::vector<Zelle> zellen; // by column position - 1
    long farbe = FarbeStandard;
};

class Datengrid;

// What the row event offers: the row's cells by column key, in any case. A key that the grid
// doesn't have gives "" and ignores what is set on it, so one routine serves every table.
class Zeilenzugriff {
public:
    Zeilenzugriff(Datengrid& grid, Zeile& zeile) : grid_(grid), zeile_(zeile) {}
    Datengrid& grid() { return grid_; }
    std::string text(std::string_view key) const;
    void setzeText(std::string_view key, std::string text);
    void setzeBild(std::string_view key, int bild);
    void setzeTooltip(std::string_view key, std::string tooltip);
    void setzeFarbe(long farbe) { zeile_.farbe = farbe; }

private:
    Zeile::Zelle* zelle(std::string_view key) const;
    Datengrid& grid_;
    Zeile& zeile_;
};

class Datengrid {
public:
    explicit Datengrid(int index);
    Datengrid(const Datengrid&) = delete;
    Datengrid& operator=(const Datengrid&) = delete;
    ~Datengrid();

    // The grid's index in its control array: 0 the persons, 1 the linked records.
    int index() const { return index_; }

    // Stops and resumes telling the view of changes.
    void LockUpdate(bool an);
    bool gesperrt() const { return gesperrt_; }
    // Forgets the rows; with `spalten` also the columns and the query.
    void Clear(bool spalten = false);

    // Binds the grid to a query of `db` (SQL of the family tree, one table): reads the order
    // of its rows, and sets up one column per field where the grid has no columns yet. Raises
    // folio::DatabaseError where the database refuses the query; the grid then keeps what it
    // showed before.
    // With `sortierung` (as DoSort takes it) the rows are read in that order at once.
    void Recordset(dao::Database& db, const std::string& sql, std::string_view sortierung = "");
    bool gebunden() const { return db_ != nullptr; }
    const std::string& abfrage() const { return sql_; }
    dao::Database* datenbank() const { return db_; }

    int Cols() const { return static_cast<int>(spalten_.size()); }
    std::int64_t Rows() const { return static_cast<std::int64_t>(reihenfolge_.size()); }
    // The current row, from 1; 0 when there is none.
    std::int64_t Row = 0;

    // A column by its position (from 1) or its key; raises where there is none.
    Spalte& Columns(int position);
    Spalte& Columns(std::string_view key);
    // The position of a column by its key, or 0.
    int GetCol(std::string_view key) const;
    std::vector<Spalte>& spalten() { return spalten_; }

    // Sorts by a column key, or by a text as SortOrder gives it ("[Key]" or "[Key] DESC").
    // Raises where no column has that key.
    void DoSort(std::string_view sortierung);
    // The present sort: "[Key]" or "[Key] DESC" with the key as the query spells it, or "".
    std::string SortOrder() const;
    int HScrollPos = 0;

    // The key of the entry last picked from the list of a filter cell (its key column); Null
    // when the text was typed. filter_uebernehmen takes it over and clears it.
    Value filterwahl;

    // Reads the shown rows anew; the row event runs for each of them.
    void Refresh();
    // The rows shown by the view: from `erste` (from 1), `anzahl` of them.
    void sichtbar(std::int64_t erste, std::int64_t anzahl);
    std::int64_t erste_sichtbare() const { return erste_; }
    // A number that differs for each read of rows, of any grid: the row event can do a
    // thing once per read.
    std::uint64_t lesedurchgang() const { return lesedurchgang_; }

    // The row at a position (from 1), read now unless it is still in the window read last.
    const Zeile& zeile(std::int64_t row);
    // The text of a cell (as the row event left it).
    std::string Text(std::string_view key, std::int64_t row);
    // The record number (rowid) of the row at a position.
    std::int64_t rowid(std::int64_t row) const;
    // The position of the row of a record, or 0 where it isn't shown.
    std::int64_t position_von(std::int64_t rowid) const;

    // Writes a value into the field of a column in the record of the row, at once, and
    // shows it. Only editable columns take a value.
    void schreiben(std::int64_t row, std::string_view key, const Value& wert);

    // The pictures of the grid, addressed by position from 1.
    std::vector<Bild> Icons;
    // The form name under which the column settings of the grid as set up now are kept.
    std::string Formularname;

    // The row event: runs for each row that the grid reads.
    std::function<void(Zeilenzugriff&)> zeilenereignis;
    // Tells the view that the grid changed (rows, columns or cells); not while locked.
    std::function<void()> geaendert;

    // How many rows a read takes at least around the one asked for.
    static constexpr std::int64_t Fenstergroesse = 64;

private:
    void leseFenster(std::int64_t erste, std::int64_t anzahl);
    void spaltenAnlegen();
    void sortieren();
    // The column and direction of a sort text; false where no column has its key.
    bool sortierung_lesen(std::string_view sortierung, int& spalte, bool& absteigend) const;
    void melden();

    int index_;
    bool gesperrt_ = false;
    bool aenderung_offen_ = false;
    dao::Database* db_ = nullptr;
    std::string sql_;
    std::vector<Spalte> spalten_;
    struct Abfrage;
    std::unique_ptr<Abfrage> abfrage_;
    std::vector<std::int64_t> reihenfolge_;                             // rowids in the order shown
    mutable std::unordered_map<std::int64_t, std::int64_t> positionen_; // rowid -> position
    mutable bool positionen_gueltig_ = false;
    std::int64_t erste_ = 1, anzahl_ = 40;
    // The rows read last: positions fenster_anfang_ .. + fenster_.size() - 1.
    std::int64_t fenster_anfang_ = 0;
    std::vector<Zeile> fenster_;
    std::uint64_t lesedurchgang_ = 0;
    int sortspalte_ = 0;               // position, 0 for the order of the store
    bool reihenfolge_aktuell_ = false; // the order was read for the present query and sort
    bool absteigend_ = false;
};

} // namespace folio

#include "wizard/datengrid.h"

#include "engine/engine.h"
#include "engine/errors.h"
#include "engine/field_type.h"
#include "engine/jet_sql.h"
#include "engine/text_util.h"
#include "wizard/rangfolge.h"

#include <algorithm>

namespace folio {

// The bound query, taken apart: the statement that reads one row by its number, and the
// pieces from which the order of the rows is read.
struct Datengrid::Abfrage {
    std::string qualifier; // how the query names its table
    std::string from;      // "FROM table [alias] WHERE ..." without an ORDER BY
    std::string tabelle;
    sqlite::Statement zeile_lesen;
};

namespace {

// The kind of a column as the grid reports it, from the declared type of its field.
int spaltentyp(const char* deklariert) {
    if (!deklariert)
        return SpaltentypText; // an expression: compared as text
    int groesse = 0;
    const FieldType t = typeFromDeclared(deklariert, groesse);
    if (isTextType(t))
        return SpaltentypText;
    if (t == FieldType::Boolean)
        return SpaltentypJaNein;
    if (t == FieldType::DateTime)
        return SpaltentypDatum;
    return SpaltentypZahl;
}

// The text of a cell as the grid shows it.
std::string zelltext(const sqlite::Statement& s, int spalte, int typ) {
    switch (s.type(spalte)) {
    case SQLITE_NULL:
        return "";
    case SQLITE_INTEGER:
        if (typ == SpaltentypJaNein)
            return Value(s.int64(spalte) != 0).text();
        return std::to_string(s.int64(spalte));
    case SQLITE_FLOAT:
        if (typ == SpaltentypDatum)
            return Value(DateTime{s.real(spalte)}).text();
        return Value(s.real(spalte)).text();
    default:
        return s.text(spalte);
    }
}

// The SQL of the rows without its ORDER BY: the grid sorts them itself.
std::string ohne_sortierung(const std::string& rest) {
    const auto tokens = jet::tokenize(rest);
    int tiefe = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const jet::Token& t = tokens[i];
        if (t.kind == jet::TokenKind::Symbol && t.text == "(")
            ++tiefe;
        else if (t.kind == jet::TokenKind::Symbol && t.text == ")")
            --tiefe;
        else if (tiefe == 0 && t.kind == jet::TokenKind::Word && equalsNoCase(t.text, "ORDER"))
            return rest.substr(0, static_cast<std::size_t>(t.text.data() - rest.data()));
    }
    return rest;
}

// The names of the fields as the select list spells them ("surn" where the table says
// "SURN"); "" for an item that is no plain field name ("name" or "table.name").
std::vector<std::string> geschriebene_namen(std::string_view auswahl) {
    std::vector<std::vector<jet::Token>> eintraege(1);
    int tiefe = 0;
    for (const jet::Token& t : jet::tokenize(auswahl)) {
        const bool symbol = t.kind == jet::TokenKind::Symbol;
        tiefe += symbol && t.text == "(" ? 1 : symbol && t.text == ")" ? -1 : 0;
        if (symbol && t.text == "," && tiefe == 0)
            eintraege.emplace_back();
        else if (t.kind != jet::TokenKind::Space)
            eintraege.back().push_back(t);
    }
    auto name = [](const jet::Token& t) -> std::string {
        if (t.kind == jet::TokenKind::Word)
            return std::string(t.text);
        if (t.kind == jet::TokenKind::Quoted)
            return std::string(t.text.substr(1, t.text.size() - 2));
        return "";
    };
    std::vector<std::string> namen;
    for (const auto& e : eintraege) {
        const bool einfach =
            e.size() == 1 || (e.size() == 3 && e[1].text == "." && !name(e[0]).empty());
        namen.push_back(einfach ? name(e.back()) : "");
    }
    return namen;
}

} // namespace

// --- The row event's view of a row -----------------------------------------------------

Zeile::Zelle* Zeilenzugriff::zelle(std::string_view key) const {
    const int pos = grid_.GetCol(key);
    if (pos == 0 || pos > static_cast<int>(zeile_.zellen.size()))
        return nullptr;
    return &zeile_.zellen[static_cast<std::size_t>(pos - 1)];
}

std::string Zeilenzugriff::text(std::string_view key) const {
    const Zeile::Zelle* z = zelle(key);
    return z ? z->text : std::string();
}

void Zeilenzugriff::setzeText(std::string_view key, std::string text) {
    if (Zeile::Zelle* z = zelle(key))
        z->text = std::move(text);
}

void Zeilenzugriff::setzeBild(std::string_view key, int bild) {
    if (Zeile::Zelle* z = zelle(key))
        z->bild = bild;
}

void Zeilenzugriff::setzeTooltip(std::string_view key, std::string tooltip) {
    if (Zeile::Zelle* z = zelle(key))
        z->tooltip = std::move(tooltip);
}

// --- The grid ---------------------------------------------------------------------------

Datengrid::Datengrid(int index) : index_(index) {}

Datengrid::~Datengrid() = default;

void Datengrid::LockUpdate(bool an) {
    gesperrt_ = an;
    if (!an && aenderung_offen_)
        melden();
}

void Datengrid::melden() {
    if (gesperrt_) {
        aenderung_offen_ = true;
        return;
    }
    aenderung_offen_ = false;
    if (geaendert)
        geaendert();
}

void Datengrid::Clear(bool spalten) {
    reihenfolge_.clear();
    positionen_.clear();
    positionen_gueltig_ = false;
    fenster_.clear();
    fenster_anfang_ = 0;
    Row = 0;
    reihenfolge_aktuell_ = false;
    if (spalten) {
        spalten_.clear();
        abfrage_.reset();
        db_ = nullptr;
        sql_.clear();
        sortspalte_ = 0;
        absteigend_ = false;
    }
    melden();
}

void Datengrid::Recordset(dao::Database& db, const std::string& sql, std::string_view sortierung) {
    const std::string uebersetzt = jet::translate(sql);
    const jet::SelectShape form = jet::analyzeSelect(uebersetzt);
    if (!form.isSelect || form.table.empty())
        throw DatabaseError(err::EngineError, "The grid shows the rows of one table: " + sql);

    auto neu = std::make_unique<Abfrage>();
    neu->qualifier = form.qualifier;
    neu->tabelle = form.table;
    neu->from = form.fromTable + " " + ohne_sortierung(form.rest);
    neu->zeile_lesen =
        sqlite::Statement(db.connection(), "SELECT " + form.selectList + " " + form.fromTable +
                                               " WHERE " + form.qualifier + ".rowid = ?");

    // The columns: one per field, where the grid has none yet.
    std::vector<Spalte> spalten = spalten_;
    sqlite3_stmt* s = neu->zeile_lesen.get();
    const int anzahl = sqlite3_column_count(s);
    if (spalten.empty()) {
        const std::vector<std::string> geschrieben = geschriebene_namen(form.selectList);
        for (int i = 0; i < anzahl; ++i) {
            Spalte sp;
            sp.Key = sqlite3_column_name(s, i);
            if (static_cast<int>(geschrieben.size()) == anzahl &&
                !geschrieben[static_cast<std::size_t>(i)].empty() &&
                equalsNoCase(geschrieben[static_cast<std::size_t>(i)], sp.Key))
                sp.Key = geschrieben[static_cast<std::size_t>(i)];
            sp.Index = i + 1;
            sp.Position = i + 1;
            sp.Caption = sp.Key;
            sp.DataType = spaltentyp(sqlite3_column_decltype(s, i));
            const char* tabelle = sqlite3_column_table_name(s, i);
            const char* feld = sqlite3_column_origin_name(s, i);
            sp.SourceTable = tabelle ? tabelle : "";
            sp.Name = feld ? feld : sp.Key;
            spalten.push_back(std::move(sp));
        }
    } else if (static_cast<int>(spalten.size()) != anzahl) {
        throw DatabaseError(err::EngineError, "The query has other fields than the grid: " + sql);
    }

    // The order of the rows, read before anything of the grid changes, so that a query that
    // the database refuses leaves the grid as it was.
    std::swap(abfrage_, neu);
    std::swap(spalten_, spalten);
    dao::Database* alte_db = db_;
    const int alte_spalte = sortspalte_;
    const bool alt_ab = absteigend_;
    db_ = &db;
    try {
        if (!sortierung.empty() && !sortierung_lesen(sortierung, sortspalte_, absteigend_))
            throw Error(err::ElementNotFound, "Element not found: " + std::string(sortierung));
        sortieren();
    } catch (...) {
        std::swap(abfrage_, neu);
        std::swap(spalten_, spalten);
        db_ = alte_db;
        sortspalte_ = alte_spalte;
        absteigend_ = alt_ab;
        throw;
    }
    for (Spalte& sp : spalten_)
        sp.SortState = sp.Index == sortspalte_ ? (absteigend_ ? SortAb : SortAuf) : SortKeine;
    sql_ = sql;
    fenster_.clear();
    fenster_anfang_ = 0;
    Row = reihenfolge_.empty() ? 0 : 1;
    melden();
}

// Reads the numbers of the rows in the order shown: the order of the store, or that of the
// sort column, texts compared by the program's collation, empty values first; rows of equal
// values keep the order of the store.
void Datengrid::sortieren() {
    if (!abfrage_)
        return;
    sqlite::Connection& verbindung = db_->connection();
    std::vector<std::int64_t> rowids;
    if (sortspalte_ == 0) {
        sqlite::Statement s(verbindung, "SELECT " + abfrage_->qualifier + ".rowid " +
                                            abfrage_->from + " ORDER BY 1");
        while (s.step())
            rowids.push_back(s.int64(0));
    } else {
        const Spalte& sp = spalten_[static_cast<std::size_t>(sortspalte_ - 1)];
        sqlite::Statement s(verbindung, "SELECT " + abfrage_->qualifier + ".rowid, [" + sp.Name +
                                            "] " + abfrage_->from + " ORDER BY 1");
        Rangfolge raenge(sp.DataType == SpaltentypText);
        while (s.step()) {
            rowids.push_back(s.int64(0));
            raenge.hinzufuegen(s, 1);
        }
        const std::vector<std::uint32_t> folge = raenge.folge(absteigend_);
        std::vector<std::int64_t> sortiert(rowids.size());
        for (std::size_t i = 0; i < folge.size(); ++i)
            sortiert[i] = rowids[folge[i]];
        rowids.swap(sortiert);
    }
    reihenfolge_.swap(rowids);
    positionen_gueltig_ = false;
    reihenfolge_aktuell_ = true;
}

Spalte& Datengrid::Columns(int position) {
    if (position < 1 || position > Cols())
        throw Error(err::ElementNotFound, "Element not found: column " + std::to_string(position));
    return spalten_[static_cast<std::size_t>(position - 1)];
}

Spalte& Datengrid::Columns(std::string_view key) {
    const int pos = GetCol(key);
    if (pos == 0)
        throw Error(err::ElementNotFound, "Element not found: " + std::string(key));
    return spalten_[static_cast<std::size_t>(pos - 1)];
}

int Datengrid::GetCol(std::string_view key) const {
    for (std::size_t i = 0; i < spalten_.size(); ++i)
        if (equalsNoCase(spalten_[i].Key, key))
            return static_cast<int>(i) + 1;
    return 0;
}

bool Datengrid::sortierung_lesen(std::string_view sortierung, int& spalte, bool& absteigend) const {
    std::string_view key = trimWhitespace(sortierung);
    absteigend = false;
    if (key.size() > 5 && equalsNoCase(key.substr(key.size() - 5), " DESC")) {
        absteigend = true;
        key = trimWhitespace(key.substr(0, key.size() - 5));
    }
    if (key.size() >= 2 && key.front() == '[' && key.back() == ']')
        key = key.substr(1, key.size() - 2);
    spalte = key.empty() ? 0 : GetCol(key);
    return key.empty() || spalte != 0;
}

void Datengrid::DoSort(std::string_view sortierung) {
    int pos = 0;
    bool ab = false;
    if (!sortierung_lesen(sortierung, pos, ab))
        throw Error(err::ElementNotFound, "Element not found: " + std::string(sortierung));
    // The same sort of the same rows needs no new reading of their order.
    if (pos != sortspalte_ || ab != absteigend_ || !reihenfolge_aktuell_) {
        const int alte_spalte = sortspalte_;
        const bool alt_ab = absteigend_;
        sortspalte_ = pos;
        absteigend_ = ab;
        try {
            sortieren();
        } catch (...) {
            sortspalte_ = alte_spalte;
            absteigend_ = alt_ab;
            throw;
        }
    }
    for (Spalte& sp : spalten_)
        sp.SortState = SortKeine;
    if (pos != 0)
        spalten_[static_cast<std::size_t>(pos - 1)].SortState = ab ? SortAb : SortAuf;
    fenster_.clear();
    fenster_anfang_ = 0;
    melden();
}

std::string Datengrid::SortOrder() const {
    if (sortspalte_ == 0)
        return "";
    return "[" + spalten_[static_cast<std::size_t>(sortspalte_ - 1)].Key + "]" +
           (absteigend_ ? " DESC" : "");
}

void Datengrid::sichtbar(std::int64_t erste, std::int64_t anzahl) {
    erste_ = std::max<std::int64_t>(1, erste);
    anzahl_ = std::max<std::int64_t>(0, anzahl);
}

void Datengrid::Refresh() {
    fenster_.clear();
    fenster_anfang_ = 0;
    if (abfrage_ && erste_ <= Rows())
        leseFenster(erste_, std::min(anzahl_, Rows() - erste_ + 1));
    melden();
}

// Reads the cells of the rows at positions erste .. erste + anzahl - 1 and runs the row
// event for each of them, in order.
void Datengrid::leseFenster(std::int64_t erste, std::int64_t anzahl) {
    static std::uint64_t durchgaenge = 0;
    lesedurchgang_ = ++durchgaenge;
    std::vector<Zeile> zeilen;
    zeilen.reserve(static_cast<std::size_t>(anzahl));
    sqlite::Statement& s = abfrage_->zeile_lesen;
    for (std::int64_t pos = erste; pos < erste + anzahl; ++pos) {
        Zeile z;
        z.rowid = reihenfolge_[static_cast<std::size_t>(pos - 1)];
        z.zellen.resize(spalten_.size());
        s.reset();
        s.bindInt(1, z.rowid);
        if (s.step())
            for (std::size_t i = 0; i < spalten_.size(); ++i)
                z.zellen[i].text = zelltext(s, static_cast<int>(i), spalten_[i].DataType);
        s.reset();
        if (zeilenereignis) {
            Zeilenzugriff zugriff(*this, z);
            zeilenereignis(zugriff);
        }
        zeilen.push_back(std::move(z));
    }
    fenster_.swap(zeilen);
    fenster_anfang_ = erste;
}

const Zeile& Datengrid::zeile(std::int64_t row) {
    if (row < 1 || row > Rows())
        throw Error(err::ElementNotFound, "Element not found: row " + std::to_string(row));
    if (fenster_.empty() || row < fenster_anfang_ ||
        row >= fenster_anfang_ + static_cast<std::int64_t>(fenster_.size())) {
        // A window around the row, so that scrolling on reads a row at a time rarely.
        const std::int64_t erste = std::max<std::int64_t>(1, row - Fenstergroesse / 4);
        leseFenster(erste, std::min(Fenstergroesse, Rows() - erste + 1));
    }
    return fenster_[static_cast<std::size_t>(row - fenster_anfang_)];
}

std::string Datengrid::Text(std::string_view key, std::int64_t row) {
    const int pos = GetCol(key);
    if (pos == 0)
        return "";
    return zeile(row).zellen[static_cast<std::size_t>(pos - 1)].text;
}

std::int64_t Datengrid::rowid(std::int64_t row) const {
    if (row < 1 || row > Rows())
        throw Error(err::ElementNotFound, "Element not found: row " + std::to_string(row));
    return reihenfolge_[static_cast<std::size_t>(row - 1)];
}

std::int64_t Datengrid::position_von(std::int64_t id) const {
    if (!positionen_gueltig_) {
        positionen_.clear();
        positionen_.reserve(reihenfolge_.size());
        for (std::size_t i = 0; i < reihenfolge_.size(); ++i)
            positionen_.emplace(reihenfolge_[i], static_cast<std::int64_t>(i) + 1);
        positionen_gueltig_ = true;
    }
    const auto it = positionen_.find(id);
    return it == positionen_.end() ? 0 : it->second;
}

void Datengrid::schreiben(std::int64_t row, std::string_view key, const Value& wert) {
    Spalte& sp = Columns(key);
    if (!sp.Bearbeitbar)
        throw Error(err::ElementNotFound, "The column " + sp.Key + " can't be changed");
    const std::int64_t id = rowid(row);
    std::string zahl;
    if (sp.DataType == SpaltentypJaNein)
        zahl = wert.toBool() ? "-1" : "0";
    else
        zahl = Value(wert.toDouble()).text();
    db_->Execute("UPDATE [" + abfrage_->tabelle + "] SET [" + sp.Name + "] = " + zahl +
                     " WHERE rowid = " + std::to_string(id),
                 dao::dbFailOnError);
    // The row shows the new value; the rest of the window stays as read.
    if (!fenster_.empty() && row >= fenster_anfang_ &&
        row < fenster_anfang_ + static_cast<std::int64_t>(fenster_.size()))
        fenster_[static_cast<std::size_t>(row - fenster_anfang_)]
            .zellen[static_cast<std::size_t>(sp.Index - 1)]
            .text = sp.DataType == SpaltentypJaNein ? Value(wert.toBool()).text() : zahl;
    melden();
}

} // namespace folio

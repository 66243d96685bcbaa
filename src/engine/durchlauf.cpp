#include "engine/durchlauf.h"

#include "engine/engine.h"
#include "engine/errors.h"
#include "engine/jet_sql.h"
#include "engine/spaltenwert.h"

namespace folio::dao {

Durchlauf::Durchlauf(Database& db, std::string_view sql) : Durchlauf(db.connection(), sql) {}

Durchlauf::Durchlauf(const sqlite::Connection& verbindung, std::string_view sql)
    : stmt_(verbindung, jet::translate(sql)) {
    for (int c = 0; c < stmt_.columnCount(); ++c) {
        const char* deklariert = sqlite3_column_decltype(stmt_.get(), c);
        int groesse = 0;
        typen_.push_back(deklariert ? typeFromDeclared(deklariert, groesse) : FieldType::Memo);
        dynamisch_.push_back(deklariert == nullptr);
    }
}

bool Durchlauf::weiter() {
    return stmt_.step();
}

Value Durchlauf::wert(int spalte) const {
    const auto i = static_cast<std::size_t>(spalte);
    return spaltenwert(stmt_.get(), spalte, typen_[i], dynamisch_[i]);
}

// The whole number that the column holds where it is stored as one, through one call to the
// store rather than two: the columns of a million rows are read this way.
std::optional<std::int64_t> Durchlauf::ganzzahl(int spalte) const {
    sqlite3_value* v = sqlite3_column_value(stmt_.get(), spalte);
    if (sqlite3_value_type(v) != SQLITE_INTEGER)
        return std::nullopt;
    return sqlite3_value_int64(v);
}

RecordId Durchlauf::nummer(int spalte) const {
    if (typen_[static_cast<std::size_t>(spalte)] == FieldType::Currency)
        if (const auto n = ganzzahl(spalte))
            return RecordId::fromWhole(*n);
    return wert(spalte).toRecordId();
}

std::int64_t Durchlauf::ganz(int spalte) const {
    const FieldType t = typen_[static_cast<std::size_t>(spalte)];
    if (t == FieldType::Byte || t == FieldType::Integer || t == FieldType::Long)
        if (const auto n = ganzzahl(spalte))
            return *n;
    return wert(spalte).toInt();
}

bool Durchlauf::wahr(int spalte) const {
    if (typen_[static_cast<std::size_t>(spalte)] == FieldType::Boolean)
        if (const auto n = ganzzahl(spalte))
            return *n != 0;
    return wert(spalte).toBool();
}

std::string Durchlauf::text(int spalte) const {
    if (isTextType(typen_[static_cast<std::size_t>(spalte)]) &&
        !dynamisch_[static_cast<std::size_t>(spalte)])
        return spaltentext(stmt_.get(), spalte);
    return wert(spalte).text();
}

std::string_view Durchlauf::textAnsicht(int spalte) const {
    if (isTextType(typen_[static_cast<std::size_t>(spalte)]) &&
        !dynamisch_[static_cast<std::size_t>(spalte)]) {
        const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(stmt_.get(), spalte));
        return p ? std::string_view(
                       p, static_cast<std::size_t>(sqlite3_column_bytes(stmt_.get(), spalte)))
                 : std::string_view();
    }
    umgewandelt_ = wert(spalte).text();
    return umgewandelt_;
}

} // namespace folio::dao

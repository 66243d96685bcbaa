// The translation of the family tree's SQL dialect: any text is translated or refused with
// the dialect's error, never anything else; what is translated is one statement to the store's
// own lexer, so that nothing behind it can run. The helpers that read translated statements
// take any text.
#include "engine/errors.h"
#include "engine/jet_sql.h"
#include "fuzz_check.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* daten, std::size_t groesse) {
    using namespace folio;
    const std::string_view sql(reinterpret_cast<const char*>(daten), groesse);
    std::string uebersetzt;
    try {
        uebersetzt = jet::translate(sql);
    } catch (const DatabaseError&) {
        return 0;
    }
    const fuzz::SqliteSicht sicht = fuzz::sqlite_sicht(uebersetzt);
    fuzz::pruefen(!sicht.zweite_anweisung, "a second statement passes: " + uebersetzt, sql);
    jet::parameterize(uebersetzt);
    jet::analyzeSelect(uebersetzt);
    jet::bareTableName(sql);
    return 0;
}

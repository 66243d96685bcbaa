#include "database/markenstand.h"

#include "database/tabellen.h"
#include "engine/errors.h"
#include "engine/sqlite_handle.h"
#include "engine/text_util.h"

#include <algorithm>
#include <string>

namespace folio {

std::optional<Verknuepft> verknuepfte_tabelle(std::string_view name) {
    for (std::size_t i = 0; i < AnzahlVerknuepfte; ++i)
        if (equalsNoCase(name, VerknuepfteTabellen[i]))
            return static_cast<Verknuepft>(i);
    return std::nullopt;
}

void Markenstand::setzen(Verknuepft tabelle, std::vector<RecordId> nummern) {
    std::sort(nummern.begin(), nummern.end());
    nummern.erase(std::unique(nummern.begin(), nummern.end()), nummern.end());
    nummern.shrink_to_fit();
    nummern_[static_cast<std::size_t>(tabelle)] = std::move(nummern);
}

namespace {
// The living as the person page takes them out: "Lebt = True".
constexpr const char* OhneLebende = " AND (Lebt IS NULL OR Lebt <> TRUE)";
} // namespace

std::string Personenwahl::bedingung() const {
    if (!alle)
        return "Markierung = TRUE";
    return std::string("(Markierung = 0 OR Markierung = TRUE)") + (ohne_lebende ? OhneLebende : "");
}

std::string Personenwahl::suchbedingung() const {
    return std::string("Markierung IS NOT NULL") + (ohne_lebende ? OhneLebende : "");
}

bool Markenstand::markiert(Verknuepft tabelle, RecordId nummer) const {
    const std::vector<RecordId>& n = nummern(tabelle);
    return std::binary_search(n.begin(), n.end(), nummer);
}

namespace {

// The temporary table of the numbers of one table's marked records, on the tree's own
// connection; gone again when this object goes, whatever happened in between. SQLite refuses
// to drop a table while a cursor of the connection stands on a row; then the table stays
// for the next time, empty.
class Nummerntabelle {
public:
    explicit Nummerntabelle(sqlite::Connection& verbindung) : verbindung_(verbindung) {
        verbindung_.exec("CREATE TEMP TABLE IF NOT EXISTS folio_marken (n PRIMARY KEY) "
                         "WITHOUT ROWID");
    }
    ~Nummerntabelle() {
        try {
            verbindung_.exec("DROP TABLE temp.folio_marken");
        } catch (const Error&) {
            try {
                verbindung_.exec("DELETE FROM temp.folio_marken");
            } catch (const Error&) {
                // The transaction's rollback empties the table all the same.
            }
        }
    }
    Nummerntabelle(const Nummerntabelle&) = delete;
    Nummerntabelle& operator=(const Nummerntabelle&) = delete;

    // Holds `nummern` (sorted, unique) from now on. A whole number is stored as the
    // integer, as the trees store their numbers.
    void fuellen(const std::vector<RecordId>& nummern) {
        verbindung_.exec("DELETE FROM temp.folio_marken");
        sqlite::Statement einfuegen(verbindung_, "INSERT INTO temp.folio_marken (n) VALUES (?1)");
        for (RecordId n : nummern) {
            if (n.isWhole())
                einfuegen.bindInt(1, n.units() / RecordId::Scale);
            else
                einfuegen.bind(1, Value(n));
            einfuegen.step();
            einfuegen.reset();
        }
    }

private:
    sqlite::Connection& verbindung_;
};

} // namespace

void Markenstand::schreiben() const {
    sqlite::Connection& verbindung = DB->connection();
    Nummerntabelle nummern(verbindung);
    for (std::size_t i = 0; i < AnzahlVerknuepfte; ++i) {
        const std::string tabelle = quoteIdentifier(VerknuepfteTabellen[i]);
        if (nummern_[i].empty()) {
            DB->Execute("UPDATE " + tabelle + " SET Markierung = 0 WHERE Markierung <> 0",
                        dao::dbFailOnError);
            continue;
        }
        nummern.fuellen(nummern_[i]);
        // Through the database, so that its cursors read the records anew.
        DB->Execute("UPDATE " + tabelle +
                        " SET Markierung = -1 WHERE Counter IN (SELECT n FROM temp.folio_marken)"
                        " AND (Markierung IS NULL OR Markierung <> -1)",
                    dao::dbFailOnError);
        DB->Execute("UPDATE " + tabelle +
                        " SET Markierung = 0 WHERE Markierung <> 0 AND (Counter IS NULL OR "
                        "Counter NOT IN (SELECT n FROM temp.folio_marken))",
                    dao::dbFailOnError);
    }
}

} // namespace folio

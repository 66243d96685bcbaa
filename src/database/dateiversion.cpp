#include "database/dateiversion.h"

#include "database/schema/schema.h"
#include "engine/engine.h"
#include "engine/errors.h"
#include "engine/recordset.h"
#include "engine/text_util.h"

#include <optional>
#include <unistd.h>
#include <vector>

namespace folio {

namespace {

// "6.0.102" as its numbers; nothing for a text that isn't numbers divided by points.
std::optional<std::vector<long>> zahlen(std::string_view version) {
    std::vector<long> teile;
    long teil = 0;
    std::size_t ziffern = 0;
    for (const char c : version) {
        if (c >= '0' && c <= '9' && ziffern < 9) {
            teil = teil * 10 + (c - '0');
            ++ziffern;
        } else if (c == '.' && ziffern > 0) {
            teile.push_back(teil);
            teil = 0;
            ziffern = 0;
        } else {
            return std::nullopt;
        }
    }
    if (ziffern == 0)
        return std::nullopt;
    teile.push_back(teil);
    return teile;
}

} // namespace

Versionsart versionsart(const std::string& versionname) {
    const std::string_view name = trimBlanks(versionname);
    if (name.empty())
        return Versionsart::Aelter; // the old schema had no version name
    const auto datei = zahlen(name);
    const auto aktuell = zahlen(schema::CurrentVersion);
    if (!datei || datei->size() < 2)
        return Versionsart::Unbekannt;
    if (*datei < *aktuell)
        return Versionsart::Aelter;
    return *datei == *aktuell ? Versionsart::Aktuell : Versionsart::Neuer;
}

DatabaseError ohne_versionszeile(const std::string& pfad) {
    return DatabaseError(err::DatabaseDamaged,
                         "'" + pfad +
                             "' is damaged: its table Version has no row, so its version "
                             "can't be told",
                         pfad);
}

Dateiversion dateiversion_lesen(const std::string& pfad) {
    // Opened for writing where it may be written, so that a transaction that a killed run
    // left behind is rolled back first; reading changes nothing else.
    auto db = dao::OpenDatabase(pfad, false, ::access(pfad.c_str(), W_OK) != 0);
    if (!db->hasTable("Version"))
        throw DatabaseError(
            err::NotADatabase,
            "'" + pfad + "' is not a family-tree database (it has no table Version)", pfad);
    // The oldest files have no field for the name yet: they count as the old schema.
    auto rs = db->OpenRecordset("SELECT * FROM Version");
    if (rs->Eof())
        throw ohne_versionszeile(pfad);
    Dateiversion v;
    v.name = rs->hasField("Versionname") ? trimmed(rs->get("Versionname").text()) : "";
    v.art = versionsart(v.name);
    return v;
}

} // namespace folio

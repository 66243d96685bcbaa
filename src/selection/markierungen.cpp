#include "selection/markierungen.h"

#include "database/tabellen.h"
#include "engine/errors.h"
#include "engine/text_util.h"

#include <string>

namespace folio {

void markierungen_sichern() {
    DB->Execute("Update Daten Set Marker = 0 WHERE Markierung = 0 ;", dao::dbFailOnError);
    DB->Execute("Update Daten Set Marker = 1 WHERE Markierung = -1 ;", dao::dbFailOnError);
}

void markierungen_zurueckholen() {
    for (const char* tabelle :
         {"Daten", "Ereignis", "Dokument", "Notiz", "Bilder", "Ort", "Adressen"}) {
        const std::string t = tabelle;
        for (const std::string& sql : {"Update " + t + " Set Markierung = 0 WHERE Marker = 0 ;",
                                       "Update " + t + " Set Markierung = -1 WHERE Marker = 1 ;"}) {
            try {
                if (!DB)
                    throw Error(err::ObjectVariableNotSet, "No database is open");
                DB->Execute(sql, dao::dbFailOnError);
            } catch (const Error&) {
                // Putting marks back must never stop the one who leaves the database.
            }
        }
    }
}

} // namespace folio

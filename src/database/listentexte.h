// Derived texts that the family-tree files store beside the fields they come from: the
// soundex code of names, the display text of a partial date, the list text of a person and
// of an event. Nothing here writes: callers store the result.
#pragma once

#include "engine/record_id.h"

#include <cstdint>
#include <string>

namespace folio {

namespace dao {
class Database;
class Recordset;
} // namespace dao

// The German soundex variant, word by word, without a fixed length: "Müller" gives "M46 ",
// "Schmitz Meier" gives "S2532 M6 ", "" gives " ".
std::string soundex(const std::string& text);

// The display text of a partial date (0 for what isn't known). Form 0 takes the formats from
// programm.ini (section Ansicht), form 1 fixed ones; a year of 0 or 4000 gives "".
std::string datum_text(int tag, int monat, int jahr, int form);

// The list text of the person on the current row of a cursor on Daten.
std::string liste_name(dao::Recordset& daten, bool nachname_vorn, bool mit_lebensdaten,
                       bool mit_datumstexten);

// Where the list texts of events look things up: the persons (a table cursor on Daten), the
// event types of the file (a table cursor on Ereignisdb) and the catalogue table "Deutsch"
// (a dynaset), and the database for queries.
struct ListentextQuellen {
    dao::Database* db = nullptr;
    dao::Recordset* daten = nullptr;
    dao::Recordset* ereignisdb = nullptr;
    dao::Recordset* katalog = nullptr;
};

// The trimmed list text of a person, "?" where there is no such person.
std::string person_kurztext(const ListentextQuellen& q, RecordId person, bool mit_datumstexten);

// The second main person of an event: the first main person ("d") that isn't `erste`; 0 for
// none.
RecordId ereignis_hauptperson(const ListentextQuellen& q, RecordId erste, RecordId ereignis);

// The list text of an event ("Heirat von Anna Meier in Rom mit Karl Huber "), at most 255
// characters. Only the kind "Listentext" exists.
std::string ereignis_text(const ListentextQuellen& q, const std::string& art, RecordId person1,
                          int typ, const std::string& ca, const std::string& datum1,
                          const std::string& datum2, const std::string& kurztext,
                          const std::string& grund, const std::string& ort, RecordId person2,
                          RecordId ereignis = RecordId(), RecordId weitere = RecordId());

} // namespace folio

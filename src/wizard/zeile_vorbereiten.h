// The row event of both grids: what the database holds as a number becomes a name, a kind a
// picture, a sort key the date that the user reads; and while "Lebend" is pressed the living
// are red and lose their marks.
#pragma once

#include <string>

namespace folio {

class Zeilenzugriff;

void zeile_vorbereiten(Zeilenzugriff& zeile);

// The name of a status, a note and a place by its number, found by Seek on the index Counter;
// "" for an empty cell or a number without a record. A place's name loses its blanks.
std::string status_name(const std::string& id);
std::string notiz_name(const std::string& id);
std::string ort_name(const std::string& id);

// True for the text of a cell that converts to True: "True" or a number other than 0.
bool ist_wahr(const std::string& text);

} // namespace folio

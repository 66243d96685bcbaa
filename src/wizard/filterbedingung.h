// The filter language of the grids: the text in a column's filter cell as an SQL condition on
// the column's field. A plain text selects what begins with it, an operator in front compares,
// a year or a range of years selects dates and sort keys, and the key columns compare the
// number of the entry picked from their list. Each condition is checked on its own before it
// is joined to the others, so that nothing a user types runs as a statement of its own or
// reaches beyond the condition of its column.
#pragma once

#include "wizard/datengrid.h"

#include <string>
#include <string_view>

namespace folio {

// The data types that count as text besides SpaltentypText; a column of type 5 compares with
// a "#" in front of its value.
inline constexpr int SpaltentypMemo = 4;
inline constexpr int SpaltentypTextRaute = 5;

// The key columns: they show a name and hold a number, and their filter compares the number
// of the entry picked from their list, which the column keeps in its Tag.
bool ist_schluesselspalte(std::string_view key);

// The column's filter text, with the entries of the fixed lists (lebt, Geschlecht,
// Markierung) translated into the values their conditions use; a list entry that stands for
// no filter (the blank one) gives "".
std::string filtertext(const Spalte& spalte);

// The condition of a column whose filter `text` (as filtertext gives it) isn't empty:
// "([Table].[Field] operator value)". Raises folio::Error where the text can't be translated
// (a year that isn't a whole number) and folio::DatabaseError where the condition would reach
// beyond its column: a second statement, a comment, a name of another field, a word that
// isn't part of a comparison, or parentheses that close the condition early.
std::string spaltenbedingung(const Spalte& spalte, const std::string& text);

// The condition on a sort key column ("GSort", "SSort", "vsort", "bsort"), whose keys begin
// with the year: " between 'lower' AND 'upper9999'" for a year or "lower..upper". Raises
// folio::Error where the (lower) year isn't a whole number.
std::string datumsbereich(const std::string& text);

} // namespace folio

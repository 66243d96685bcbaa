// Families: the database keeps no table of them, so the run makes one from the parents of the
// marked persons and from their partnerships before the first person is written, and writes
// a FAM record for each of its rows after all other records.
#pragma once

namespace folio {

class Exportlauf;
class Familientabelle;

// A row for the parents of each marked person, where the table has no row of those parents
// yet; a parent who isn't marked stands in the row as 0. The search compares the stored
// parents with the rows as they stand, so the children of a pair with one unmarked parent
// each make a row of their own.
void familien_aus_eltern(Exportlauf& lauf, Familientabelle& tabelle);
// A row for each pair of marked partners that the table doesn't hold yet, also for a couple
// without children.
void familien_aus_partnerschaften(Exportlauf& lauf, Familientabelle& tabelle);
// "0 @F…@ FAM" for every row: husband, wife, the marked children and the couple's events.
void familien_schreiben(Exportlauf& lauf, const Familientabelle& tabelle);

} // namespace folio

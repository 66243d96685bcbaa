// The upgrade chain: every opening brings the family tree in place to the current schema.
// Most steps are recognised by what the file lacks, a field or a table, a few by the
// version name, so the chain can run on any file any number of times; a step that finds
// the file up to date does nothing. Each step runs in a transaction of its own: a failure
// or a killed process leaves the file at the last finished step, from where the next
// opening goes on. Before the first change of an older .SF6 file, a copy of it is kept
// beside it.
#pragma once

#include "engine/date_time.h"

#include <functional>
#include <string>

namespace folio {

// Runs the chain on the open DB. `pfad` and `datei` name the file, as in datenbank_oeffnen;
// `ohne_komprimieren` True leaves out the compaction after the migration of an old file.
void datenbank_aktualisieren(std::string& pfad, std::string& datei, bool ohne_komprimieren);

// Version names compare as strings, character by character: "5.0.99" is later than
// "5.0.190".
bool version_mindestens(const std::string& version, const std::string& marke);
// The leading number with its first decimal: "4.3.120" gives 4.3; 0 for a file without a
// version name.
double numerische_version(const std::string& version);

// A new GUID as the 38-character text with braces.
std::string neue_guid();
// A date of the current form as a Date/Time, a 0 in day or month counting as 1 and a 0
// in the year as 4000, the mark of an unknown date in the old schema.
DateTime datum_aus_teilen(int tag, int monat, int jahr);
// Brings an event type of the catalogue into the file's Ereignisdb, with the chain of
// types (mainindex) on which it depends.
void ereignisdb_uebernehmen(int index);

namespace upgrade {
// For tests of a broken-off upgrade: called at the end of each step, before its work is
// committed, with the step's number; what it throws ends the run there.
std::function<void(int schritt)>& vor_abschluss();
} // namespace upgrade

} // namespace folio

// The first page: the folder of the family trees, the list of its files, and the choice of a
// file, which opens it at once, fills the information on it and builds the person grid.
#pragma once

#include <string>

namespace folio {

// Proposes the family tree used last (else a sample) and selects it where the list shows it.
void datenbank_vorschlagen();

// Points the file list Datei(0) at a folder: its files of the pattern "*.SF6", in any case of
// letters, sorted by name; no file is current.
void dateiliste_zeigen(const std::string& ordner);

// Selects the entry of the list at `position` (from 0), as a click does.
void datei_waehlen(int position);

// The click on a file of the list Datei(index); any index but 0 does nothing.
void Datei_Click(int index);

// The size of a file for the information list: kilobytes as "#,###,### KB", with the
// thousands separator of the user's language; " KB" for an empty file.
std::string groesse_in_kb(double bytes);

} // namespace folio

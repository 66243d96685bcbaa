// Settings in ini files, read and written key by key at the moment they are needed, with
// the behaviour of the classic profile calls: section and key names without regard to case,
// values trimmed of blanks and of one pair of enclosing quotes, a value cut at 255
// characters on reading, a default that is returned but never written, and a file (not a
// folder) created on the first write.
#pragma once

#include <string>

namespace folio {

// The value of `schluessel` in `[sektion]` of `datei`, or `standard` (without its trailing
// blanks) where the file, the section or the key is missing or the file can't be read.
std::string ini_lesen(const std::string& datei, const std::string& sektion,
                      const std::string& schluessel, const std::string& standard);

// Writes `schluessel=wert` into `[sektion]` of `datei`: replaces the key where it stands,
// else appends it to the section, else appends the section. The file is replaced as a
// whole, so a failed write leaves the old file. A failure isn't reported.
void ini_schreiben(const std::string& datei, const std::string& sektion,
                   const std::string& schluessel, const std::string& wert);

} // namespace folio

// The globals of the frame, fixed at start-up and read everywhere.
#pragma once

#include <cstdint>
#include <string>

namespace folio {

// The folder of the program itself, without a trailing separator. While a database is being
// opened from the wizard it stands for the host's folder.
extern std::string Programmpfad;
// The parent of Programmpfad: the host's folder.
extern std::string Stammpfad;
// The data folder: ini files, side databases, sample files.
extern std::string Datenpfad;
// "Stammfolio" or "Wurzelwart": the title of message boxes and #PROGNAME#.
extern std::string Produktname;
// The language: a field of the language table and a table of the event catalogue.
extern std::string Sprache;
// 1 shows tooltips.
extern std::int16_t Kurzhilfe;

// The product name of this program itself, as opposed to the host's edition.
inline constexpr const char* EigenerProduktname = "SF-ADD-IN";

// Path of a file in a folder: folder, separator, name.
std::string pfad_verbinden(const std::string& ordner, const std::string& name);
// programm.ini in the data folder.
std::string programm_ini();

} // namespace folio

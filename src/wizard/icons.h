// The pictures of the wizard and its help pages.
//
// Icons16 is the store of keyed pictures of 16 by 16 pixels from which the grids take copies
// into their own collections. It holds the design pictures, staged as files under
// Stammpfad/bmp/icons16, and, once the form has loaded, one picture per event kind of the
// catalogue under the key of its number and ".ICO". A picture is the path of its file: the
// view draws it, the models only pass it on.
#pragma once

#include "wizard/datengrid.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace folio {

// A design picture of the store: its key and the name of its file under bmp/icons16. The key
// "Dok_Vor_?" can't be a file name everywhere, so each key has a name of its own here; the
// builder of the pictures writes the files by this table.
struct Lagerbild {
    const char* key;
    const char* datei;
};

// clang-format off
inline constexpr std::array<Lagerbild, 14> Lagerbilder = {{
    {"Filter",    "Filter.ico"},
    {"Bild2",     "Bild2.ico"},
    {"Mann",      "Mann.ico"},
    {"Frau",      "Frau.ico"},
    {"Dok_Art_D", "Dok_Art_D.ico"},
    {"Dok_Art_H", "Dok_Art_H.ico"},
    {"Dok_Art_T", "Dok_Art_T.ico"},
    {"Dok_Art_A", "Dok_Art_A.ico"},
    {"Dok_Art_F", "Dok_Art_F.ico"},
    {"Dok_Vor_O", "Dok_Vor_O.ico"},
    {"Dok_Vor_K", "Dok_Vor_K.ico"},
    {"Dok_Vor_A", "Dok_Vor_A.ico"},
    {"Dok_Vor_?", "Dok_Vor_Frage.ico"},
    {"Dok_Vor_H", "Dok_Vor_H.ico"},
}};
// clang-format on

// The store of keyed pictures. A key stands once: adding under a key that is there replaces
// its picture, so that loading again gives the same store.
class Bilderlager {
public:
    void Clear() { bilder_.clear(); }
    void Add(const std::string& key, const std::string& datei);
    bool hat(std::string_view key) const { return finden(key) != nullptr; }
    // The file of the picture of a key, or "" where the store has none.
    std::string datei(std::string_view key) const;
    std::size_t Count() const { return bilder_.size(); }
    // The pictures in the order of adding.
    const std::vector<Bild>& bilder() const { return bilder_; }

private:
    const Bild* finden(std::string_view key) const;
    std::vector<Bild> bilder_;
};

// The one store of the form.
Bilderlager& Icons16();

// Fills the store anew with the design pictures found under Stammpfad/bmp/icons16; a picture
// whose file is missing stays out of the store.
void icons16_laden();

// Adds one picture per event kind of the catalogue (the table Sprache of DB_Ereignis) to the
// store, under the key of its number and ".ICO": the file of that name in
// Datenpfad/Ereignisgrafiken, else the one in Stammpfad/bmp/Ereignisse, else
// Stammpfad/prog/unbekannt.ico. Where the catalogue can't be read, DB_Ereignis is opened anew
// from Stammpfad/Ereignis.mdb and the catalogue read once more; a second failure is raised.
void ereignisgrafiken_laden();

// Adds to the collection of the grid "Filter" under "Filter", "Bild2" under "Bild", and then
// the picture of each event kind in the order of the catalogue under its number written with
// a leading blank for the sign, and ".ICO" (" 12.ICO"). The grid addresses them by position,
// so the first kind stands at position 3. The caller empties the collection first.
void ereignisicons_laden(Datengrid& cmd);

// The file of the picture of a key in the store, "" where it has none.
std::string bild_aus_lager(std::string_view key);

// The 18 pictures of the documents grid by position: the filter mark, the image mark, the
// kinds of document from position 6 and the forms of the source from position 14. The entries
// "Filter" and a number hold the filter mark and only keep the positions in place.
std::vector<Bild> dokumentbilder();

// Help. Each page of the wizard has a page of the help, and "Programm.htm" is the overview
// that the Help button opens.
inline constexpr const char* Hilfe_Uebersicht = "Programm.htm";
// The topic of the wizard's page 1 to 5; the overview for any other number.
std::string hilfethema(int seite);
// The path of a help page in the user's language: the folder that the language texts name
// for the help (key 567) under the host's folder.
std::string hilfeseite(std::string_view thema);

} // namespace folio

#include "frame/globals.h"

namespace folio {

std::string Programmpfad;
std::string Stammpfad;
std::string Datenpfad;
std::string Produktname = "Stammfolio";
std::string Sprache = "Deutsch";
std::int16_t Kurzhilfe = 1;

std::string pfad_verbinden(const std::string& ordner, const std::string& name) {
    if (ordner.empty() || ordner.back() == '/')
        return ordner + name;
    return ordner + "/" + name;
}

std::string programm_ini() {
    return pfad_verbinden(Datenpfad, "programm.ini");
}

} // namespace folio

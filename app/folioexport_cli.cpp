// folioexport-cli: the export without a window.

#include "frame/globals.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "frame/start.h"
#include "frame/terminal_platform.h"

#include <cstring>
#include <iostream>

using namespace folio;

namespace {

void zeige_version() {
    std::cout << sprachtext("568 GEDCOM Export 5.5") << " (Folioexport " << FOLIO_VERSION << ")\n"
              << "Programmpfad: " << Programmpfad << "\n"
              << "Stammpfad:    " << Stammpfad << "\n"
              << "Datenpfad:    " << Datenpfad << "\n"
              << "Sprache:      " << Sprache << "\n";
}

} // namespace

int main(int argc, char** argv) {
    setPlatform(std::make_unique<TerminalPlatform>(std::cerr));
    StartForm start;
    const StartErgebnis ergebnis = programm_starten(start);
    if (!ergebnis.ok)
        return 3;
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        zeige_version();
        return 0;
    }
    std::cerr << "folioexport-cli --version\n";
    return 2;
}

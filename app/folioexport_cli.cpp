// folioexport-cli: the export without a window.
//
//   folioexport-cli export DATABASE -o FILE [options]   (see --help)
//   folioexport-cli --version
//   folioexport-cli --help

#include "export_befehl.h"
#include "frame/globals.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "frame/start.h"
#include "frame/terminal_platform.h"

#include <iostream>
#include <string>
#include <unistd.h>
#include <vector>

using namespace folio;

namespace {

void zeige_version() {
    std::cout << sprachtext("568 GEDCOM Export 5.5") << " (Folioexport " << FOLIO_VERSION << ")\n"
              << "Programmpfad: " << Programmpfad << "\n"
              << "Stammpfad:    " << Stammpfad << "\n"
              << "Datenpfad:    " << Datenpfad << "\n"
              << "Sprache:      " << Sprache << "\n";
}

void zeige_hilfe(std::ostream& out) {
    out << sprachtext("9810") << "\n";
}

} // namespace

int main(int argc, char** argv) {
    setPlatform(std::make_unique<TerminalPlatform>(std::cerr, ::isatty(STDERR_FILENO) == 1));
    StartForm start;
    const StartErgebnis ergebnis = programm_starten(start);
    if (!ergebnis.ok)
        return cli::StartFehlgeschlagen;

    const std::vector<std::string> argumente(argv + 1, argv + argc);
    if (argumente.size() == 1 && argumente[0] == "--version") {
        zeige_version();
        return cli::Fertig;
    }
    if (argumente.size() == 1 && (argumente[0] == "--help" || argumente[0] == "-h")) {
        zeige_hilfe(std::cout);
        return cli::Fertig;
    }
    if (!argumente.empty() && argumente[0] == "export") {
        std::string fehler;
        const auto optionen =
            cli::optionen_lesen({argumente.begin() + 1, argumente.end()}, fehler);
        if (optionen)
            return cli::exportieren(*optionen);
        std::cerr << "folioexport-cli: " << fehler << "\n\n";
    }
    zeige_hilfe(std::cerr);
    return cli::FalscherAufruf;
}

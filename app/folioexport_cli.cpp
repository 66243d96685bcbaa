// folioexport-cli: the export without a window.
//
//   folioexport-cli export DATABASE -o FILE [options]   (see --help)
//   folioexport-cli --version
//   folioexport-cli --help
//
// --language de|en, anywhere among the arguments, sets the language of one run.

#include "engine/abbruch.h"
#include "engine/errors.h"
#include "engine/stoerung.h"
#include "export_befehl.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "frame/start.h"
#include "frame/terminal_platform.h"

#include <csignal>
#include <iostream>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

using namespace folio;

namespace {

constexpr const char* Programm = "folioexport-cli";

void zeige_version(const std::string& herkunft) {
    std::cout << sprachtext("568 GEDCOM Export 5.5") << " (Folioexport " << FOLIO_VERSION << ")\n"
              << "Programmpfad: " << Programmpfad << "\n"
              << "Stammpfad:    " << Stammpfad << "\n"
              << "Datenpfad:    " << Datenpfad << "\n"
              << "Sprache:      " << Sprache << " (" << herkunft << ")\n";
}

void zeige_hilfe() {
    std::cout << sprachtext("9810") << "\n";
}

// A mistake in the arguments: the one line that says it, and where help is.
int falscher_aufruf(const std::string& fehler) {
    std::cerr << Programm << ": " << fehler << "\n"
              << Programm << ": " << sprachtext("9832 Die Optionen zeigt:") << " " << Programm
              << " --help\n";
    return cli::FalscherAufruf;
}

// Ctrl-C and SIGTERM ask the work to stop; it unwinds at the next point that looks.
void beim_signal(int signal) {
    abbruch_anfordern(signal);
}

void signale_abfangen() {
    struct sigaction aktion {};
    aktion.sa_handler = beim_signal;
    sigemptyset(&aktion.sa_mask);
    for (const int signal : {SIGINT, SIGTERM})
        sigaction(signal, &aktion, nullptr);
}

// Takes "--language de|en" out of the arguments; "" where it isn't there, "?" for a value
// that is no language.
std::string sprache_nehmen(std::vector<std::string>& argumente) {
    for (std::size_t i = 0; i < argumente.size(); ++i) {
        if (argumente[i] != "--language")
            continue;
        const std::string wert = i + 1 < argumente.size() ? argumente[i + 1] : "";
        argumente.erase(argumente.begin() + static_cast<std::ptrdiff_t>(i),
                        argumente.begin() +
                            static_cast<std::ptrdiff_t>(std::min(i + 2, argumente.size())));
        return wert == "de" ? "Deutsch" : wert == "en" ? "English" : "?";
    }
    return "";
}

} // namespace

int main(int argc, char** argv) {
    signale_abfangen();
    setPlatform(
        std::make_unique<TerminalPlatform>(std::cerr, ::isatty(STDERR_FILENO) == 1, Programm));
    std::vector<std::string> argumente(argv + 1, argv + argc);
    const std::string sprache = sprache_nehmen(argumente);
    try {
        stoerung::aus_umgebung(); // the failing disk of the tests, where they ask for one
    } catch (const Error& e) {
        return falscher_aufruf(e.what());
    }
    StartForm start;
    const StartErgebnis ergebnis = programm_starten(start);
    if (!ergebnis.ok)
        return cli::StartFehlgeschlagen;
    std::string herkunft = "programm.ini";
    if (sprache == "?")
        return falscher_aufruf(sprachtext("9819 Ungültiger Wert:") + " --language");
    if (!sprache.empty()) {
        Sprache = sprache;
        herkunft = "--language";
    } else if (ini_lesen(programm_ini(), "Ansicht", "Sprache", "").empty()) {
        herkunft = sprachtext("9835 Gebietsschema");
    }

    auto hilfe = [](const std::string& a) { return a == "--help" || a == "-h"; };
    if (argumente.size() == 1 && argumente[0] == "--version") {
        zeige_version(herkunft);
        return cli::Fertig;
    }
    if (argumente.size() == 1 && hilfe(argumente[0])) {
        zeige_hilfe();
        return cli::Fertig;
    }
    if (argumente.empty() || argumente[0] != "export")
        return falscher_aufruf(argumente.empty()
                                   ? sprachtext("9836 Es fehlt ein Befehl.")
                                   : sprachtext("9837 Unbekannter Befehl:") + " " + argumente[0]);
    const std::vector<std::string> optionen_text(argumente.begin() + 1, argumente.end());
    for (const std::string& a : optionen_text) {
        if (hilfe(a)) {
            zeige_hilfe();
            return cli::Fertig;
        }
    }
    std::string fehler;
    const auto optionen = cli::optionen_lesen(optionen_text, fehler);
    if (!optionen)
        return falscher_aufruf(fehler);
    try {
        return cli::exportieren(*optionen);
    } catch (const Abbruch& a) {
        meldung(
            sprachtext("9833 Abgebrochen; die Datenbank und die Zieldatei sind, wie sie waren."),
            StilFehler, Produktname);
        return 128 + a.signal();
    }
}

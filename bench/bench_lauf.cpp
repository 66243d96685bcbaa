// The command line's run on generated trees: end to end in a process of its own (open, every
// person selected, closure, export, the tree left as found), and its two long stages in this
// process, the closure over every person and the export of what it marked. Each with its
// wall time and peak memory, beside the figures of the program before the run read its
// tables into memory.
//
//   bench_lauf [persons...]      (default 10000 100000)

#include "baeume.h"
#include "gedcom/datum.h"
#include "gedcom/export.h"
#include "selection/verknuepfungen_markieren.h"
#include "wizard/auswahl.h"
#include "wizard/exportstart.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace folio;
namespace fs = std::filesystem;

namespace {

struct Messung {
    double sekunden;
    double mb;
};

// Measured with the program of 23 November 2026 before this benchmark (per-record queries,
// the closure's marks written into the tree), on the same machine and trees.
// clang-format off
const std::map<long long, std::array<Messung, 3>> Vorher = {
    {10000,   {{{2.02, 41}, {0.0, 0}, {0.0, 0}}}},
    {100000,  {{{17.9, 286}, {0.0, 0}, {0.0, 0}}}},
    {1000000, {{{104.0, 880}, {43.0, 0}, {58.0, 0}}}},
};
// clang-format on

// Forgets the peak memory so far, so that the next stage's own peak can be read.
void spitze_zuruecksetzen() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

// A figure of before, or a dash where it wasn't measured.
std::string vorher_zahl(double wert, const char* format) {
    if (wert <= 0)
        return "—";
    char text[32];
    std::snprintf(text, sizeof text, format, wert);
    return text;
}

void zeile(const char* was, const Messung& jetzt, const Messung* vorher) {
    std::printf("    %-11s %8.2f s %8.1f MB", was, jetzt.sekunden, jetzt.mb);
    if (vorher && vorher->sekunden > 0)
        std::printf("    before: %8s s %8s MB", vorher_zahl(vorher->sekunden, "%.2f").c_str(),
                    vorher_zahl(vorher->mb, "%.1f").c_str());
    std::printf("\n");
}

// The command line in a process of its own, as a user runs it.
Messung befehl(const std::string& baum, const std::string& ziel) {
    const std::string cli = FOLIO_STAGE_DIR "/Stammfolio/Folioexport/folioexport-cli";
    const auto start = std::chrono::steady_clock::now();
    std::fflush(stdout); // the child leaves with a copy of what waits in the buffer
    const pid_t kind = fork();
    if (kind == 0) {
        std::freopen("/dev/null", "w", stdout);
        execl(cli.c_str(), cli.c_str(), "export", baum.c_str(), "-o", ziel.c_str(), "--all",
              "--overwrite", static_cast<char*>(nullptr));
        _exit(127);
    }
    int status = 0;
    rusage verbrauch{};
    wait4(kind, &status, 0, &verbrauch);
    const double s =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        std::printf("    the command line failed (status %d)\n", status);
    return {s, static_cast<double>(verbrauch.ru_maxrss) / 1024.0};
}

class StilleHuelle : public Huellenanzeige {
public:
    void balken(long long, long long) override {}
    void ereignisse() override {}
};

void run(long long persons) {
    const std::string baum = bench::baum(persons);
    const fs::path ziel = bench::arbeitsordner() / ("lauf_" + std::to_string(persons) + ".GED");
    const auto vorher = Vorher.find(persons);
    auto alt = [&](int i) { return vorher == Vorher.end() ? nullptr : &vorher->second[i]; };
    std::printf("%9lld persons:\n", persons);
    zeile("end to end", befehl(baum, ziel.string()), alt(0));

    // The stages as the command line runs them: every person selected in memory.
    DB = dao::OpenDatabase(baum);
    {
        dao::Transaction nie_festgeschrieben(*DB);
        tabellen_oeffnen();
        Personenwahl alle;
        alle.alle = true;
        spitze_zuruecksetzen();
        StilleHuelle anzeige;
        Huelle h;
        const double huelle = bench::sekunden([&] { h = huelle_berechnen(anzeige, alle); });
        zeile("closure", {huelle, bench::spitzenspeicher_kb() / 1024.0}, alt(1));

        spitze_zuruecksetzen();
        Exportoptionen optionen = exportoptionen_aus_formular(Auswahl());
        optionen.marken = std::make_shared<const Markenstand>(std::move(h.marken));
        optionen.personen = alle;
        StilleAnzeige still;
        const double exportiert =
            bench::sekunden([&] { exportieren(optionen, ziel.string(), still); });
        zeile("export", {exportiert, bench::spitzenspeicher_kb() / 1024.0}, alt(2));
    }
    alle_schliessen(baum);
    DB.reset();
}

} // namespace

int main(int argc, char** argv) {
    return folio::bench::hauptprogramm(argc, argv, "bench_lauf", [](long long n) {
        Auswahl().gedcom_zusaetze = gedcom_zusaetze_laden();
        run(n);
    });
}

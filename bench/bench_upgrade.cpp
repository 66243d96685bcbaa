// Speed of the upgrade chain on generated trees of the old schema (version 4.x): each
// person with two to four rows of the old name table and four to six events with old
// dates. Prints the time of the opening that converts the file, and the peak memory.
//
//   bench_upgrade [persons...]      (default 10000 100000)

#include "alte_dateien.h"
#include "baeume.h"
#include "database/oeffnen.h"
#include "frame/platform.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

using namespace folio;
namespace fs = std::filesystem;

namespace {

void run(long long persons) {
    const fs::path work = bench::arbeitsordner() / "upgrade";
    fs::remove_all(work);
    fs::create_directories(work);
    const std::string datei = "alt_" + std::to_string(persons) + ".SF6";
    auto start = std::chrono::steady_clock::now();
    alt::erzeugte_datei(schema::Generation::V4, work / datei, persons);
    const double erzeugt =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const double groesse = static_cast<double>(fs::file_size(work / datei));

    std::string pfad = work.string(), name = datei;
    start = std::chrono::steady_clock::now();
    const Geoeffnet ergebnis = datenbank_oeffnen(pfad, name, false, false);
    const double sekunden =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%9lld persons (old schema, %.0f MB, made in %.1f s): upgrade %s in %8.2f s, "
                "%.0f MB after, peak memory %7.1f MB\n",
                persons, groesse / 1e6, erzeugt, ergebnis == Geoeffnet::Ja ? "done" : "FAILED",
                sekunden, static_cast<double>(fs::file_size(work / datei)) / 1e6,
                bench::spitzenspeicher_kb() / 1024.0);
    alle_schliessen(pfad_verbinden(pfad, name));
    fs::remove_all(work);
}

} // namespace

int main(int argc, char** argv) {
    return folio::bench::hauptprogramm(argc, argv, "bench_upgrade", [](long long n) {
        Stammpfad = Programmpfad = FOLIO_STAGE_DIR "/Stammfolio";
        run(n);
    });
}

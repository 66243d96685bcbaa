// Speed of the export on generated trees: every record marked (as the closure leaves a tree
// exported as a whole), then one run. Prints the time of the run and the peak memory.
//
//   bench_export [persons...]      (default 10000 100000)

#include "baeume.h"
#include "gedcom/datum.h"
#include "gedcom/export.h"
#include "wizard/auswahl.h"
#include "wizard/exportstart.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

using namespace folio;
namespace fs = std::filesystem;

namespace {

double run(long long persons) {
    const std::string tree = bench::baum(persons);
    const fs::path work = bench::arbeitsordner();
    DB = dao::OpenDatabase(tree);
    for (const char* table :
         {"Daten", "Ereignis", "Ort", "Notiz", "Dokument", "Adressen", "Bilder"})
        DB->Execute(std::string("UPDATE ") + table + " SET Markierung = TRUE ;",
                    dao::dbFailOnError);
    tabellen_oeffnen();
    AuswahlForm& form = Auswahl();
    form.Verzeichnis(1).set("Text", Value(work.string()));
    form.Verzeichnis(2).set("Text", Value("bench_" + std::to_string(persons)));
    fs::remove(work / ("bench_" + std::to_string(persons) + ".GED"));
    const auto start = std::chrono::steady_clock::now();
    const ExportErgebnis ergebnis = Exportstarten();
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const auto size = fs::file_size(work / ("bench_" + std::to_string(persons) + ".GED"));
    std::printf("%9lld persons: export %s in %8.2f s, %7.1f MB written, peak memory %7.1f MB\n",
                persons, ergebnis == ExportErgebnis::Fertig ? "done" : "FAILED", seconds,
                size / 1e6, bench::spitzenspeicher_kb() / 1024.0);
    alle_schliessen(tree);
    return seconds;
}

} // namespace

int main(int argc, char** argv) {
    return folio::bench::hauptprogramm(argc, argv, "bench_export", [](long long n) {
        Auswahl().gedcom_zusaetze = gedcom_zusaetze_laden();
        run(n);
    });
}

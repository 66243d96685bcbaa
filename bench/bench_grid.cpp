// Speed of the person grid on generated trees: the set-up of the grid with its first window,
// a jump to the last row, a sort by first name, and filters on the surname and on the year of
// birth. Prints the times and the rows shown.
//
//   bench_grid [persons...]      (default 10000 100000)

#include "baeume.h"
#include "wizard/auswahl.h"
#include "wizard/filter.h"
#include "wizard/grid_aufbau.h"

#include <cstdio>
#include <functional>
#include <string>

using namespace folio;
using bench::sekunden;

namespace {

// The rows that a window of the screen shows, read as the view reads them.
void fenster(Datengrid& grid, std::int64_t erste) {
    for (std::int64_t r = erste; r < erste + 40 && r <= grid.Rows(); ++r)
        grid.zeile(r);
}

void bericht(const char* was, double s, Datengrid& grid) {
    std::printf("    %-40s %8.3f s, %9lld rows\n", was, s, static_cast<long long>(grid.Rows()));
}

void filtern(const char* was, const char* spalte, const char* text) {
    AuswahlForm& form = Auswahl();
    Datengrid& grid = form.grid(0);
    for (Spalte& sp : grid.spalten())
        filter_uebernehmen(grid, sp.Index, "");
    filter_uebernehmen(grid, grid.GetCol(spalte), text);
    bericht(was, sekunden([&] {
                filter_anwenden(grid, form.grid_sql[0], *DB, false);
                fenster(grid, 1);
            }),
            grid);
}

void run(long long persons) {
    bench::im_persongrid(persons, [](Datengrid& grid) {
        bericht("build, sorted by surname, first window", sekunden([&] {
                    personengrid_aufbauen();
                    fenster(grid, 1);
                }),
                grid);
        bericht("jump to the last row", sekunden([&] { fenster(grid, grid.Rows() - 39); }), grid);
        bericht("jump to the middle", sekunden([&] { fenster(grid, grid.Rows() / 2); }), grid);
        bericht("sort by first name", sekunden([&] {
                    grid.DoSort("GIVN");
                    fenster(grid, 1);
                }),
                grid);
        filtern("filter on the surname \"M\"", "SURN", "M");
        filtern("filter on the year of birth 1900..1950", "Gsort", "1900..1950");
    });
}

} // namespace

int main(int argc, char** argv) {
    return bench::hauptprogramm(argc, argv, "bench_grid", run);
}

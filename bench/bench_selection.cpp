// Speed of the selection on generated trees: the closure over every person marked, and the
// walks of relatives from a tick (descendants of a founder, ancestors of the youngest
// child, all three switches). Prints the times and what was marked.
//
//   bench_selection [persons...]      (default 10000 100000)

#include "baeume.h"
#include "selection/markierungen.h"
#include "wizard/auswahl.h"
#include "wizard/personengrid.h"
#include "wizard/verknuepfungen.h"

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

using namespace folio;
using bench::sekunden;

namespace {

long long markierte(const char* tabelle) {
    return DB
        ->OpenRecordset(std::string("SELECT count(*) FROM ") + tabelle + " WHERE Markierung = TRUE")
        ->get(0)
        .toInt();
}

void schalter(bool vorfahren, bool nachfahren, bool ehepartner) {
    AuswahlForm& form = Auswahl();
    form.knopf(0, "Vorfahren").set("Value", Value(vorfahren ? 1 : 0));
    form.knopf(0, "Nachfahren").set("Value", Value(nachfahren ? 1 : 0));
    form.knopf(0, "Ehepartner").set("Value", Value(ehepartner ? 1 : 0));
}

// Clears every person's mark, sets the switches and ticks one person.
void tick(const char* was, RecordId person, bool vorfahren, bool nachfahren, bool ehepartner) {
    markieren_befehl(0, "Abwählen");
    schalter(vorfahren, nachfahren, ehepartner);
    const double s = sekunden([&] { haken_setzen(person, true); });
    std::printf("    %-44s %8.3f s, %7lld persons marked\n", was, s, markierte("Daten"));
}

void run(long long persons) {
    const std::string tree = bench::baum(persons);
    DB = dao::OpenDatabase(tree);
    DB->Execute("UPDATE Daten SET Markierung = TRUE ;", dao::dbFailOnError);
    tabellen_oeffnen();
    AuswahlForm& form = Auswahl();
    form.verknuepfungen_aktuell = false;
    schalter(false, false, false);
    const double huelle = sekunden([] { verknuepfungen_markieren(); });
    std::printf("%9lld persons: closure over all persons in %8.2f s, peak memory %7.1f MB\n",
                persons, huelle, bench::spitzenspeicher_kb() / 1024.0);
    std::printf("    marked: %lld events, %lld places, %lld documents, %lld notes, %lld images, "
                "%lld addresses\n",
                markierte("Ereignis"), markierte("Ort"), markierte("Dokument"), markierte("Notiz"),
                markierte("Bilder"), markierte("Adressen"));

    // The founders come first in the file, each couple before its children; the one with
    // the most children among the first founders heads a large branch.
    const RecordId gruender =
        DB->OpenRecordset("SELECT Vater FROM Daten WHERE Vater <> 0 AND Vater < 200 GROUP BY "
                          "Vater ORDER BY count(*) DESC, Vater ;")
            ->get(0)
            .toRecordId();
    const RecordId juengste =
        DB->OpenRecordset("SELECT max(Counter) FROM Daten WHERE Vater <> 0")->get(0).toRecordId();
    tick("founder: descendants and spouses", gruender, false, true, true);
    tick("youngest child: ancestors and spouses", juengste, true, false, true);
    tick("youngest child: all three", juengste, true, true, true);
    tick("founder: spouses alone", gruender, false, false, true);
    alle_schliessen(tree);
}

} // namespace

int main(int argc, char** argv) {
    return folio::bench::hauptprogramm(argc, argv, "bench_selection", run);
}

#include "gedcom/export.h"

#include "database/tabellen.h"
#include "engine/abbruch.h"
#include "engine/date_time.h"
#include "engine/durchlauf.h"
#include "engine/errors.h"
#include "engine/sqlite_handle.h"
#include "engine/text_util.h"
#include "frame/sprache.h"
#include "gedcom/ausgabe.h"
#include "gedcom/datum.h"
#include "gedcom/exportlauf.h"
#include "gedcom/stufen.h"
#include "gedcom/zeilen.h"

#include <algorithm>
#include <cmath>

namespace folio {

namespace {

// The run reads each table once from front to back and keeps what it needs itself: a small
// page cache does for it, and leaves the memory to its tables. The cache is as it was when the
// run ends.
class KleinerSeitenspeicher {
public:
    KleinerSeitenspeicher() {
        sqlite::Statement groesse(DB->connection(), "PRAGMA cache_size");
        vorher_ = groesse.step() ? groesse.int64(0) : -65536;
        DB->connection().exec("PRAGMA cache_size = -16384");
    }
    ~KleinerSeitenspeicher() {
        try {
            DB->connection().exec("PRAGMA cache_size = " + std::to_string(vorher_));
        } catch (const Error&) {
            // A cache of the wrong size costs speed, nothing else.
        }
    }
    KleinerSeitenspeicher(const KleinerSeitenspeicher&) = delete;
    KleinerSeitenspeicher& operator=(const KleinerSeitenspeicher&) = delete;

private:
    std::int64_t vorher_ = 0;
};

void kopf_schreiben(Exportlauf& lauf) {
    const Exportoptionen& o = lauf.optionen;
    const DateTime jetzt = DateTime::now();
    const CalendarDateTime c = jetzt.calendar();
    zeile(lauf, "0 HEAD");
    zeile(lauf, "1 CHAR " + o.zeichensatz_name);
    zeile(lauf, "1 SOUR Stammfolio");
    zeile(lauf, "2 VERS " + std::to_string(FOLIO_VERSION_MAJOR) + "." +
                    std::to_string(FOLIO_VERSION_MINOR));
    zeile(lauf, "2 NAME Stammfolio");
    zeile(lauf, "2 CORP Orvanta");
    zeile(lauf, "3 ADDR Lindengang 7");
    zeile(lauf, "4 CONT 00000 Nirgendheim - Germany");
    zeile(lauf, "3 PHON +49-(0)0000-000000");
    zeile(lauf, "1 SUBM @00001@");
    zeile(lauf, "1 DEST PAF");
    zeile(lauf, "1 DATE " + gedcom_datum(jetzt, "DD MMM YYYY", "UK"));
    zeile(lauf,
          "2 TIME " + twoDigits(c.hour) + ":" + twoDigits(c.minute) + ":" + twoDigits(c.second));
    GEDtext(lauf, 1, "FILE", o.datenbankname);
    zeile(lauf, "1 GEDC");
    zeile(lauf, "2 VERS 5.5");
    zeile(lauf, "2 FORM LINEAGE-LINKED");
    GEDtext(lauf, 1, "NOTE", o.anmerkung);

    zeile(lauf, "0 @00001@ SUBM");
    zeile(lauf, "1 NAME " + textwert(o.verfasser[0]));
    const char* tags[] = {"ADDR", "PHON", "FAX ", "EMAIL", "WWW", "NOTE"};
    for (int i = 1; i <= 6; ++i)
        GEDtext(lauf, 1, tags[i - 1], o.verfasser[static_cast<std::size_t>(i)]);
}

} // namespace

void exportieren(const Exportoptionen& optionen, const std::string& ziel,
                 Fortschrittsanzeige& fortschritt) {
    GedcomAusgabe datei(ziel);
    Exportlauf lauf(optionen, datei, fortschritt);
    // The run only reads: one transaction over it spares every query its own.
    dao::Transaction lesen(*DB, false);
    KleinerSeitenspeicher seiten;
    // The events, the largest table, are read beside the families' stages where they can.
    lauf.tabellen.ereignisse_vorladen();

    fortschritt.text(sprachtext("610"), false);
    fortschritt.ereignisse();
    kopf_schreiben(lauf);

    fortschritt.wert(5);
    fortschritt.text(sprachtext("613"), false);
    fortschritt.ereignisse();
    ExportStufen stufen(lauf);
    stufen.familien_aus_eltern();
    stufen.familien_aus_partnerschaften();
    stufen.personen();
    stufen.ortsnotizen();
    stufen.notizen();
    stufen.quellen();
    stufen.adressen();
    stufen.medien();
    stufen.familien();

    fortschritt.text(sprachtext("1546 Schließe Export ab"), true);
    fortschritt.wert(100);
    zeile(lauf, "0 TRLR");
    lesen.commit();
    datei.abschliessen();
}

// The number of rows that the last row of the query would tell, counted by the database: a
// move to the last row would fix every row first and make each read a lookup.
std::int64_t zeilen_zaehlen(const std::string& sql) {
    std::string innen = sql;
    while (!innen.empty() && (innen.back() == ';' || innen.back() == ' '))
        innen.pop_back();
    return DB->OpenRecordset("SELECT count(*) FROM (" + innen + ")")->get(0).toInt();
}

void zeilen_durchlaufen(Exportlauf& lauf, const std::string& sql, double basis, double spanne,
                        const std::function<void(const dao::Durchlauf&)>& schreiben) {
    const std::int64_t gesamt = zeilen_zaehlen(sql);
    dao::Durchlauf zeilen(*DB, sql);
    for (std::int64_t anzahl = 1; zeilen.weiter(); ++anzahl) {
        fortschritt_setzen(lauf, anzahl, gesamt, basis, spanne);
        schreiben(zeilen);
    }
}

void zeilen_durchlaufen(Exportlauf& lauf, const std::string& sql, double basis, double spanne,
                        const std::function<void(dao::Recordset&)>& schreiben) {
    auto rs = DB->OpenRecordset(sql);
    if (rs->Eof())
        return;
    const std::int64_t gesamt = zeilen_zaehlen(sql);
    std::int64_t anzahl = 0;
    for (; !rs->Eof(); rs->MoveNext()) {
        fortschritt_setzen(lauf, ++anzahl, gesamt, basis, spanne);
        schreiben(*rs);
    }
}

void markierte_durchlaufen(Exportlauf& lauf, Verknuepft tabelle, double basis, double spanne,
                           const std::function<void(dao::Recordset&)>& schreiben) {
    const std::string name = VerknuepfteTabellen[static_cast<std::size_t>(tabelle)];
    const Markenstand* marken = lauf.optionen.marken.get();
    ErstesMal erstes_mal; // a number that stands twice goes out once
    if (!marken) {
        zeilen_durchlaufen(lauf, "SELECT * FROM " + name + " WHERE Markierung = TRUE ;", basis,
                           spanne, [&](dao::Recordset& rs) {
                               if (erstes_mal(rs.get("Counter").toRecordId()))
                                   schreiben(rs);
                           });
        return;
    }
    const auto gesamt = static_cast<std::int64_t>(marken->anzahl(tabelle));
    if (gesamt == 0)
        return;
    std::int64_t anzahl = 0;
    auto rs = DB->OpenRecordset("SELECT * FROM " + name + " ;");
    const int counter = rs->fieldIndex("Counter");
    for (; !rs->Eof(); rs->MoveNext()) {
        const RecordId nummer = rs->get(counter).toRecordId();
        if (!marken->markiert(tabelle, nummer) || !erstes_mal(nummer))
            continue;
        fortschritt_setzen(lauf, std::min(++anzahl, gesamt), gesamt, basis, spanne);
        schreiben(*rs);
    }
}

void fortschritt_setzen(Exportlauf& lauf, std::int64_t anzahl, std::int64_t gesamt, double basis,
                        double spanne) {
    const double wert =
        gesamt > 0 ? static_cast<double>(anzahl) / static_cast<double>(gesamt) * spanne + basis
                   : basis;
    lauf.fortschritt.wert(static_cast<long long>(std::nearbyint(wert)));
}

} // namespace folio

#include "gedcom/datensaetze.h"

#include "database/tabellen.h"
#include "engine/text_util.h"
#include "gedcom/datum.h"
#include "gedcom/export.h"
#include "gedcom/orte.h"
#include "gedcom/rtf.h"
#include "gedcom/verknuepfungen.h"
#include "gedcom/zeilen.h"
#include "wizard/auswahl.h"

#include <functional>

namespace folio {

namespace {

std::string nummer(dao::Recordset& rs) {
    return rs.get("Counter").toRecordId().text();
}

void ortsnotiz(dao::Recordset& ort) {
    // The same test as the pointer that ortschreiben puts below the place.
    const std::string klartext = rtf_klartext(ort.get("Memo").text());
    if (isBlank(klartext))
        return;
    zeile("0 @ON" + nummer(ort) + "@ NOTE");
    GEDtext(1, "NOTE", klartext);
}

void notiz(dao::Recordset& n) {
    zeile("0 @N" + nummer(n) + "@ NOTE");
    zeile(1, "TITL " + n.get("Name").text());
    const Value memo = n.get("Memo");
    if (!memo.isNull()) {
        const std::string klartext = rtf_klartext(memo.text());
        if (!isBlank(klartext))
            GEDtext(1, "TEXT", klartext);
    }
    Chanschreiben(1, n.get("geaendert"));
}

void quelle(dao::Recordset& d, const std::string& anmerkung) {
    zeile("0 @U" + nummer(d) + "@ SOUR");
    zeile(1, "TITL " + d.get("Listentext").text());
    const std::string klartext = rtf_klartext(d.get("Text").text());
    if (!isBlank(klartext))
        GEDtext(1, "TEXT", klartext);
    // The general remark of the export stands in every source as well as in the header.
    if (!isBlank(anmerkung))
        GEDtext(1, "NOTE", anmerkung);
    Notizverknuepfungschreiben(1, d.get("Notiz").toRecordId());
    Bildverknuepfungschreiben(1, d.get("Bild").toRecordId());
    datumschreiben(1, d);
    Chanschreiben(1, d.get("geaendert"));
}

void adresse(dao::Recordset& a) {
    // The address lines themselves come out inline where the address is linked.
    zeile("0 @A" + nummer(a) + "@ ADDR");
    zeile(1, "TITL " + a.get("Listenname").text());
    const std::string klartext = rtf_klartext(a.get("Memo").text());
    if (!isBlank(klartext))
        GEDtext(1, "TEXT", klartext);
    Chanschreiben(1, a.get("geaendert"));
}

// What follows the last "." of a file name, blanks and case as they stand; a name without a
// "." is its own suffix.
std::string endung(const std::string& datei) {
    const std::size_t punkt = datei.rfind('.');
    return punkt == std::string::npos ? datei : datei.substr(punkt + 1);
}

// The lines that every media record has: the form, the title where given, the file and the
// empty BLOB. The content of a file is never embedded.
void medienkopf(const std::string& praefix, const std::string& nr, const std::string& datei,
                const std::string* titel) {
    zeile("0 @" + praefix + nr + "@ OBJE");
    zeile(1, "FORM " + endung(datei));
    if (titel)
        zeile(1, "TITL " + trimmed(*titel));
    zeile(1, "FILE " + trimmed(datei));
    zeile("1 BLOB ");
    zeile("2 CONT ");
}

void medium(dao::Recordset& b) {
    const std::string nr = nummer(b);
    const std::string titel = b.get("Listentext").text();
    medienkopf("B", nr, b.get("bildfile").text(), &titel);
    const std::string bildtext = b.get("bildtext").text();
    if (!isBlank(bildtext))
        GEDtext(1, "NOTE", bildtext);
    Notizverknuepfungschreiben(1, b.get("Notiz").toRecordId());
    const Value ort = b.get("Ort");
    if (!ort.isNull())
        ortschreiben(1, ort.toRecordId());
    // The second file gets a record of its own behind this one, without title or stamp.
    const std::string zweite = b.get("MCIfile").text();
    if (!isBlank(zweite))
        zeile(1, "OBJE @BM" + nr + "@");
    Chanschreiben(1, b.get("geaendert"));
    if (isBlank(zweite))
        return;
    medienkopf("BM", nr, zweite, nullptr);
    const std::string mcitext = b.get("mcitext").text();
    if (!isBlank(mcitext))
        GEDtext(1, "NOTE", mcitext);
}

} // namespace

void ortsnotizen_schreiben() {
    zeilen_durchlaufen("SELECT * FROM Ort WHERE Markierung = TRUE ;", 55, 5, ortsnotiz);
}

void notizen_schreiben() {
    zeilen_durchlaufen("SELECT * FROM Notiz WHERE Markierung = TRUE ;", 65, 5, notiz);
}

void quellen_schreiben() {
    const std::string anmerkung = Auswahl().Anmerkung().text("Text");
    zeilen_durchlaufen("SELECT * FROM Dokument WHERE Markierung = TRUE ;", 70, 5,
                       [&](dao::Recordset& d) { quelle(d, anmerkung); });
}

void adressen_schreiben() {
    zeilen_durchlaufen("SELECT * FROM Adressen WHERE Markierung = TRUE ;", 70, 5, adresse);
}

void medien_schreiben() {
    zeilen_durchlaufen("SELECT * FROM Bilder WHERE Markierung = TRUE ;", 75, 5, medium);
}

} // namespace folio

#include "gedcom/datensaetze.h"

#include "database/tabellen.h"
#include "engine/text_util.h"
#include "gedcom/datum.h"
#include "gedcom/export.h"
#include "gedcom/exportlauf.h"
#include "gedcom/orte.h"
#include "gedcom/rtf.h"
#include "gedcom/verknuepfungen.h"
#include "gedcom/zeilen.h"

#include <functional>

namespace folio {

namespace {

std::string nummer(dao::Recordset& rs) {
    return rs.get("Counter").toRecordId().text();
}

void ortsnotiz(Exportlauf& lauf, dao::Recordset& ort) {
    // The same test as the pointer that ortschreiben puts below the place.
    const std::string klartext = rtf_klartext(ort.get("Memo").text());
    if (isBlank(klartext))
        return;
    zeile(lauf, "0 @ON" + nummer(ort) + "@ NOTE");
    GEDtext(lauf, 1, "NOTE", klartext);
}

void notiz(Exportlauf& lauf, dao::Recordset& n) {
    zeile(lauf, "0 @N" + nummer(n) + "@ NOTE");
    zeile(lauf, 1, "TITL " + textwert(n.get("Name").text()));
    const Value memo = n.get("Memo");
    if (!memo.isNull()) {
        const std::string klartext = rtf_klartext(memo.text());
        if (!isBlank(klartext))
            GEDtext(lauf, 1, "TEXT", klartext);
    }
    Chanschreiben(lauf, 1, n.get("geaendert"));
}

void quelle(Exportlauf& lauf, dao::Recordset& d, const std::string& anmerkung) {
    zeile(lauf, "0 @U" + nummer(d) + "@ SOUR");
    zeile(lauf, 1, "TITL " + textwert(d.get("Listentext").text()));
    const std::string klartext = rtf_klartext(d.get("Text").text());
    if (!isBlank(klartext))
        GEDtext(lauf, 1, "TEXT", klartext);
    // The general remark of the export stands in every source as well as in the header.
    if (!isBlank(anmerkung))
        GEDtext(lauf, 1, "NOTE", anmerkung);
    Notizverknuepfungschreiben(lauf, 1, d.get("Notiz").toRecordId());
    Bildverknuepfungschreiben(lauf, 1, d.get("Bild").toRecordId());
    datumschreiben(lauf, 1, d);
    Chanschreiben(lauf, 1, d.get("geaendert"));
}

void adresse(Exportlauf& lauf, dao::Recordset& a) {
    // The address lines themselves come out inline where the address is linked.
    zeile(lauf, "0 @A" + nummer(a) + "@ ADDR");
    zeile(lauf, 1, "TITL " + textwert(a.get("Listenname").text()));
    const std::string klartext = rtf_klartext(a.get("Memo").text());
    if (!isBlank(klartext))
        GEDtext(lauf, 1, "TEXT", klartext);
    Chanschreiben(lauf, 1, a.get("geaendert"));
}

// What follows the last "." of a file name, blanks and case as they stand; a name without a
// "." is its own suffix.
std::string endung(const std::string& datei) {
    const std::size_t punkt = datei.rfind('.');
    return punkt == std::string::npos ? datei : datei.substr(punkt + 1);
}

// The lines that every media record has: the form, the title where given, the file and the
// empty BLOB. The content of a file is never embedded.
void medienkopf(Exportlauf& lauf, const std::string& praefix, const std::string& nr,
                const std::string& datei, const std::string* titel) {
    zeile(lauf, "0 @" + praefix + nr + "@ OBJE");
    zeile(lauf, 1, "FORM " + textwert(endung(datei)));
    if (titel)
        zeile(lauf, 1, "TITL " + textwert(trimmed(*titel)));
    zeile(lauf, 1, "FILE " + textwert(trimmed(datei)));
    zeile(lauf, "1 BLOB ");
    zeile(lauf, "2 CONT ");
}

void medium(Exportlauf& lauf, dao::Recordset& b) {
    const std::string nr = nummer(b);
    const std::string titel = b.get("Listentext").text();
    medienkopf(lauf, "B", nr, b.get("bildfile").text(), &titel);
    const std::string bildtext = b.get("bildtext").text();
    if (!isBlank(bildtext))
        GEDtext(lauf, 1, "NOTE", bildtext);
    Notizverknuepfungschreiben(lauf, 1, b.get("Notiz").toRecordId());
    const Value ort = b.get("Ort");
    if (!ort.isNull())
        ortschreiben(lauf, 1, ort.toRecordId());
    // The second file gets a record of its own behind this one, without title or stamp.
    const std::string zweite = b.get("MCIfile").text();
    if (!isBlank(zweite))
        zeile(lauf, 1, "OBJE @BM" + nr + "@");
    Chanschreiben(lauf, 1, b.get("geaendert"));
    if (isBlank(zweite))
        return;
    medienkopf(lauf, "BM", nr, zweite, nullptr);
    const std::string mcitext = b.get("mcitext").text();
    if (!isBlank(mcitext))
        GEDtext(lauf, 1, "NOTE", mcitext);
}

} // namespace

void ortsnotizen_schreiben(Exportlauf& lauf) {
    markierte_durchlaufen(lauf, Verknuepft::Ort, 55, 5,
                          [&](dao::Recordset& rs) { ortsnotiz(lauf, rs); });
}

void notizen_schreiben(Exportlauf& lauf) {
    markierte_durchlaufen(lauf, Verknuepft::Notiz, 65, 5,
                          [&](dao::Recordset& rs) { notiz(lauf, rs); });
}

void quellen_schreiben(Exportlauf& lauf) {
    markierte_durchlaufen(lauf, Verknuepft::Dokument, 70, 5,
                          [&](dao::Recordset& d) { quelle(lauf, d, lauf.optionen.anmerkung); });
}

void adressen_schreiben(Exportlauf& lauf) {
    markierte_durchlaufen(lauf, Verknuepft::Adressen, 70, 5,
                          [&](dao::Recordset& rs) { adresse(lauf, rs); });
}

void medien_schreiben(Exportlauf& lauf) {
    markierte_durchlaufen(lauf, Verknuepft::Bilder, 75, 5,
                          [&](dao::Recordset& rs) { medium(lauf, rs); });
}

} // namespace folio

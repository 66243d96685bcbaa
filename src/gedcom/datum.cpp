#include "gedcom/datum.h"

#include "engine/recordset.h"
#include "engine/text_util.h"
#include "engine/utf8.h"
#include "frame/globals.h"
#include "gedcom/exportlauf.h"
#include "gedcom/zeilen.h"

#include <fstream>
#include <sstream>

namespace folio {

Datumszusaetze gedcom_zusaetze_laden() {
    Datumszusaetze tabelle;
    std::ifstream in(pfad_verbinden(Programmpfad, "geddate.ini"), std::ios::binary);
    if (!in)
        return tabelle;
    std::stringstream inhalt;
    inhalt << in.rdbuf();
    std::istringstream zeilen(fromWindows1252Text(inhalt.str()));
    std::string zeile;
    while (std::getline(zeilen, zeile)) {
        if (!zeile.empty() && zeile.back() == '\r')
            zeile.pop_back();
        const std::size_t tab = zeile.find('\t');
        if (tab == std::string::npos)
            tabelle.emplace_back(zeile, "");
        else
            tabelle.emplace_back(zeile.substr(0, tab), zeile.substr(tab + 1));
    }
    return tabelle;
}

DateTime datum_aus_zahlen(int jahr, int monat, int tag) {
    if (jahr >= 0 && jahr < 30)
        jahr += 2000;
    else if (jahr >= 30 && jahr < 100)
        jahr += 1900;
    return DateTime::fromDate(jahr, monat, tag);
}

std::string gedcom_datum(DateTime datum, const std::string& format, const std::string& sprache) {
    static const char* monate[] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                   "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
    static const char* lokal[] = {"Jan", "Feb", "Mär", "Apr", "Mai", "Jun",
                                  "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"};
    const CalendarDateTime d = datum.calendar();
    const std::string jahr = std::to_string(d.year);
    const bool englisch = sprache == "GB" || sprache == "UK" || sprache == "E";
    const char* monat = (englisch ? monate : lokal)[d.month - 1];
    if (format == "DD MMM YYYY")
        return twoDigits(d.day) + " " + monat + " " + jahr;
    if (format == "MMM YYYY")
        return std::string(monat) + " " + jahr;
    if (format == "DD MM YYYY")
        return twoDigits(d.day) + " " + twoDigits(d.month) + " " + jahr;
    if (format == "YYYY")
        return jahr;
    return "";
}

void datumschreiben(Exportlauf& lauf, std::int16_t nr, dao::Recordset& rs) {
    datumschreiben(lauf, nr, rs.get("ca").text(), rs.get("vtag").toInt(), rs.get("vmonat").toInt(),
                   rs.get("vjahr").toInt());
}

void datumschreiben(Exportlauf& lauf, std::int16_t nr, const std::string& ca_feld,
                    std::int64_t vtag, std::int64_t vmonat, std::int64_t vjahr) {
    std::string zusatz;
    const std::string ca(trimBlanks(ca_feld));
    if (!ca.empty()) {
        zusatz = ca + " ";
        for (const auto& [text, qualifier] : lauf.optionen.datumszusaetze) {
            if (qualifier == ca) {
                zusatz = trimmed(text) + " ";
                break;
            }
        }
    }
    const int tag = static_cast<int>(vtag);
    const int monat = static_cast<int>(vmonat);
    const int jahr = static_cast<int>(vjahr);
    std::string datum;
    if (tag > 0)
        datum = gedcom_datum(datum_aus_zahlen(jahr, monat, tag), "DD MMM YYYY", "UK");
    else if (monat > 0)
        datum = gedcom_datum(datum_aus_zahlen(jahr, monat, 1), "MMM YYYY", "UK");
    else if (jahr > 0)
        datum = gedcom_datum(datum_aus_zahlen(jahr, 1, 1), "YYYY", "UK");
    else
        return;
    zeile(lauf, std::to_string(nr) + " DATE " + zusatz + datum);
}

} // namespace folio

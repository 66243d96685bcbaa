#include "wizard/zeile_vorbereiten.h"

#include "database/tabellen.h"
#include "engine/errors.h"
#include "engine/text_util.h"
#include "frame/sprache.h"
#include "wizard/auswahl.h"
#include "wizard/datengrid.h"

namespace folio {

namespace {

// The field `feld` of the record of number `id` in the table cursor `rs`.
std::string name_von(dao::Recordset* rs, const std::string& id, const char* feld) {
    if (!rs || isBlank(id))
        return "";
    std::string name;
    fehler_ignorieren([&] {
        if (rs->Index() != "Counter")
            rs->Index("Counter");
        rs->Seek("=", Value(numericValue(id)));
        if (!rs->NoMatch())
            name = rs->get(feld).text();
    });
    return name;
}

int dokumentart_bild(const std::string& art) {
    static const char* const arten[] = {"D", "H", "T", "A", "F"};
    for (int i = 0; i < 5; ++i)
        if (art == arten[i])
            return 6 + i;
    return 0;
}

// While "Lebend" is pressed, the living of the person grid are red and unmarked: every living
// person of the tree loses the mark as soon as the grid reads one of them (once per read).
void lebende_zeigen(Zeilenzugriff& zeile) {
    Datengrid& grid = zeile.grid();
    AuswahlForm& form = Auswahl();
    if (grid.index() != 0 || !form.gedrueckt(0, "Lebend") || !ist_wahr(zeile.text("Lebt")))
        return;
    zeile.setzeFarbe(FarbeRot);
    static std::uint64_t abgewaehlt_in = 0;
    if (abgewaehlt_in != grid.lesedurchgang()) {
        abgewaehlt_in = grid.lesedurchgang();
        DB->Execute("Update Daten Set Markierung = 0 WHERE Lebt = True ;", dao::dbFailOnError);
    }
    zeile.setzeText("Markierung", Value(false).text());
}

} // namespace

bool ist_wahr(const std::string& text) {
    if (equalsNoCase(trimBlanks(text), "True"))
        return true;
    return numericValue(text) != 0;
}

std::string status_name(const std::string& id) {
    return name_von(rs_Status.get(), id, "Namen");
}

std::string notiz_name(const std::string& id) {
    return name_von(rs_Notiz.get(), id, "Name");
}

std::string ort_name(const std::string& id) {
    return trimmed(name_von(rs_Ort.get(), id, "Name"));
}

void zeile_vorbereiten(Zeilenzugriff& zeile) {
    const std::string geschlecht = zeile.text("Geschlecht");
    zeile.setzeBild("Geschlecht", geschlecht == "M" ? 3 : geschlecht == "W" ? 4 : 0);
    zeile.setzeText("Status", status_name(zeile.text("Status")));
    zeile.setzeText("Notiz", notiz_name(zeile.text("Notiz")));
    for (const char* ort : {"Ort", "GOrt", "SOrt"})
        zeile.setzeText(ort, ort_name(zeile.text(ort)));
    zeile.setzeText("GSort", zeile.text("GDatum"));
    zeile.setzeText("SSort", zeile.text("SDatum"));
    lebende_zeigen(zeile);

    const std::string art = zeile.text("Art");
    if (!art.empty())
        zeile.setzeBild("Art", static_cast<int>(Value(numericValue(art)).toInt()) + 3);
    zeile.setzeText("VSort", zeile.text("VDatum"));
    zeile.setzeText("BSort", zeile.text("BDatum"));
    if (zeile.text("vdatum") == zeile.text("bdatum"))
        zeile.setzeText("bSort", "");

    const bool bild = numericValue(zeile.text("Bild")) > 0;
    zeile.setzeBild("Bild", bild ? 2 : 0);
    zeile.setzeTooltip("Bild", bild ? sprachtext("589 Bild vorhanden") : "");
    zeile.setzeBild("Dok_Art", dokumentart_bild(zeile.text("Dok_Art")));
}

} // namespace folio

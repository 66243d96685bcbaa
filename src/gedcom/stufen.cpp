#include "gedcom/stufen.h"

#include "frame/platform.h"
#include "frame/sprache.h"
#include "gedcom/personen.h"
#include "wizard/auswahl.h"

namespace folio {

void ExportStufen::beginnen(const std::string& schluessel) {
    AuswahlForm& form = Auswahl();
    Control& text = form.Fortschritttext();
    text.set("Text", Value(text.text("Text") + sprachtext(schluessel)));
    platform().repaint(form, &text);
    platform().doEvents();
}

// The record writers of the classes come with the person, family and side records.
void ExportStufen::familien_aus_eltern() {}
void ExportStufen::familien_aus_partnerschaften() {}
void ExportStufen::personen() {
    beginnen("611");
    personen_schreiben(familientabelle);
}
void ExportStufen::ortsnotizen() {
    beginnen("614");
}
void ExportStufen::notizen() {
    beginnen("617");
}
void ExportStufen::quellen() {
    beginnen("618");
}
void ExportStufen::adressen() {
    beginnen("619");
}
void ExportStufen::medien() {
    beginnen("616");
}
void ExportStufen::familien() {
    beginnen("615");
}

} // namespace folio

#include "gedcom/stufen.h"

#include "frame/platform.h"
#include "frame/sprache.h"
#include "gedcom/datensaetze.h"
#include "gedcom/familien.h"
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

// The family table's stages add no text: theirs is set before them.
void ExportStufen::familien_aus_eltern() {
    folio::familien_aus_eltern(familientabelle);
}
void ExportStufen::familien_aus_partnerschaften() {
    folio::familien_aus_partnerschaften(familientabelle);
}
void ExportStufen::personen() {
    beginnen("611");
    personen_schreiben(familientabelle);
}
void ExportStufen::ortsnotizen() {
    beginnen("614");
    ortsnotizen_schreiben();
}
void ExportStufen::notizen() {
    beginnen("617");
    notizen_schreiben();
}
void ExportStufen::quellen() {
    beginnen("618");
    quellen_schreiben();
}
void ExportStufen::adressen() {
    beginnen("619");
    adressen_schreiben();
}
void ExportStufen::medien() {
    beginnen("616");
    medien_schreiben();
}
void ExportStufen::familien() {
    beginnen("615");
    familien_schreiben(familientabelle);
}

} // namespace folio

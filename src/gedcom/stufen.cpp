#include "gedcom/stufen.h"

#include "frame/sprache.h"
#include "gedcom/datensaetze.h"
#include "gedcom/exportlauf.h"
#include "gedcom/familien.h"
#include "gedcom/personen.h"

namespace folio {

void ExportStufen::beginnen(const std::string& schluessel) {
    lauf_.fortschritt.text(sprachtext(schluessel), true);
    lauf_.fortschritt.ereignisse();
}

// The family table's stages add no text: theirs is set before them.
void ExportStufen::familien_aus_eltern() {
    folio::familien_aus_eltern(lauf_, familientabelle);
}
void ExportStufen::familien_aus_partnerschaften() {
    folio::familien_aus_partnerschaften(lauf_, familientabelle);
}
void ExportStufen::personen() {
    beginnen("611");
    personen_schreiben(lauf_, familientabelle);
}
void ExportStufen::ortsnotizen() {
    beginnen("614");
    ortsnotizen_schreiben(lauf_);
}
void ExportStufen::notizen() {
    beginnen("617");
    notizen_schreiben(lauf_);
}
void ExportStufen::quellen() {
    beginnen("618");
    quellen_schreiben(lauf_);
}
void ExportStufen::adressen() {
    beginnen("619");
    adressen_schreiben(lauf_);
}
void ExportStufen::medien() {
    beginnen("616");
    medien_schreiben(lauf_);
}
void ExportStufen::familien() {
    beginnen("615");
    familien_schreiben(lauf_, familientabelle);
}

} // namespace folio

// The wizard form Auswahl as a model without a window: its controls with their design
// values, and the state that its pages share. The export reads its options straight from
// these controls at the moment of use; a view mirrors them.
#pragma once

#include "frame/form.h"

#include <string>
#include <utility>
#include <vector>

namespace folio {

class AuswahlForm : public Form {
public:
    AuswahlForm();

    // Shorthands for the controls that the run and the pages read most; the run reads some
    // of them for every line, so they are found once.
    Control& Verzeichnis(int i) { return control("Verzeichnis", i); }
    Control& Datei(int i) { return control("Datei", i); }
    Control& Zeichensatz(int i) { return *zeichensatz_[i]; }
    Control& Verfasser(int i) { return control("Verfasser", i); }
    Control& Datenschutzcheck(int i) { return *datenschutzcheck_[i]; }
    Control& Anmerkung() { return control("Anmerkung"); }
    Control& nur_auf_55() { return *nur_auf_55_; }
    Control& Chancheck() { return *chancheck_; }
    Control& Fortschritt() { return *fortschritt_; }
    Control& Fortschritttext() { return control("Fortschritttext"); }

    // A check box counts as set at the value 1, an option button at True.
    bool angehakt(Control& box) { return box.get("Value").toInt() == 1; }
    bool gewaehlt(Control& option) { return option.get("Value").toBool(); }

    // State shared by the pages.
    std::string grid_sql[2];
    // The modifier table of geddate.ini: the text written into a DATE line, and the
    // qualifier of the database that it translates.
    std::vector<std::pair<std::string, std::string>> gedcom_zusaetze;
    bool verknuepfungen_aktuell = false;
    bool hat_ereignisse = false, hat_orte = false, hat_notizen = false, hat_dokumente = false,
         hat_bilder = false, hat_adressen = false;

private:
    Control* zeichensatz_[2] = {};
    Control* datenschutzcheck_[4] = {};
    Control* nur_auf_55_ = nullptr;
    Control* chancheck_ = nullptr;
    Control* fortschritt_ = nullptr;
};

// The one wizard form of the program.
AuswahlForm& Auswahl();

} // namespace folio

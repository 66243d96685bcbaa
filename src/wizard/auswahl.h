// The wizard form Auswahl as a model without a window: its controls with their design
// values, and the state that its pages share. The export reads its options straight from
// these controls at the moment of use; a view mirrors them.
#pragma once

#include "frame/form.h"
#include "wizard/datengrid.h"

#include <functional>
#include <string>
#include <string_view>
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
    Control& Personen_fortschritt() { return control("Personen_fortschritt"); }
    Control& Datengrid(int i) { return control("Datengrid", i); }
    Control& DBGrid(int i) { return control("DBGrid", i); }
    // The wizard frame: its properties NextEnabled and FinishEnabled stand for the buttons.
    Control& sevWizard() { return control("sevWizard"); }

    // A button of a tool bar Coolbar_Datengrid(i) by its key; raises when there is none.
    PropertyBag& knopf(int coolbar, std::string_view key);
    // A switch or button of a tool bar is pressed at the value 1.
    bool gedrueckt(int coolbar, std::string_view key) {
        return knopf(coolbar, key).get("Value").toInt() == 1;
    }
    void weiter_freigeben(bool an) { sevWizard().set("NextEnabled", Value(an)); }

    // A row of a two-column list DBGrid(i): the texts of its cells "Info" and "Status",
    // which the list gets as one string divided by a tab.
    void zeile_anfuegen(int grid, const std::string& info, const std::string& status,
                        bool info_fett = false, bool status_fett = false);

    // A check box counts as set at the value 1, an option button at True.
    bool angehakt(Control& box) { return box.get("Value").toInt() == 1; }
    bool gewaehlt(Control& option) { return option.get("Value").toBool(); }

    // State shared by the pages.
    // The form's own settings, Datenpfad + "/INI/Folioexport.ini", and the folder of the help
    // pages in the user's language.
    std::string folioexport_ini;
    std::string hilfedatei;
    // An export is under way: the controls that it reads are disabled, Cancel asks first.
    bool export_laeuft = false;
    std::string grid_sql[2];
    // The modifier table of geddate.ini: the text written into a DATE line, and the
    // qualifier of the database that it translates.
    std::vector<std::pair<std::string, std::string>> gedcom_zusaetze;
    // The filter texts of each grid as last applied, made anew with each load of the grid.
    std::vector<std::string> filter_merker[2];
    bool verknuepfungen_aktuell = false;
    bool hat_ereignisse = false, hat_orte = false, hat_notizen = false, hat_dokumente = false,
         hat_bilder = false, hat_adressen = false;

    // The rows of Datengrid(0), the persons, and Datengrid(1), the linked records.
    folio::Datengrid& grid(int i) { return i == 0 ? personen_ : verknuepfte_; }

private:
    folio::Datengrid personen_{0};
    folio::Datengrid verknuepfte_{1};
    Control* zeichensatz_[2] = {};
    Control* datenschutzcheck_[4] = {};
    Control* nur_auf_55_ = nullptr;
    Control* chancheck_ = nullptr;
    Control* fortschritt_ = nullptr;
};

// The one wizard form of the program, made at its first use.
AuswahlForm& Auswahl();
// Forgets the form with all its state, so that the next use makes it anew, at its design
// values: a form is loaded once per life.
void Auswahl_verwerfen();

} // namespace folio

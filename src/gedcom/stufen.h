// The record classes of an export run, in the order in which they stand in the file, each
// a stage with its progress text and its share of the progress bar.
#pragma once

#include "gedcom/familientabelle.h"

#include <string>

namespace folio {

class ExportStufen {
public:
    // The family table, from the parents of the marked persons and from their partnerships.
    void familien_aus_eltern();
    void familien_aus_partnerschaften();
    void personen();
    void ortsnotizen();
    void notizen();
    void quellen();
    void adressen();
    void medien();
    void familien();

    // The families of the run, complete before the first person is written.
    Familientabelle familientabelle;

private:
    // Appends the stage's text to the progress report, repaints it and lets events run.
    void beginnen(const std::string& schluessel);
};

} // namespace folio

// The record classes of an export run, in the order in which they stand in the file, each
// as a stage that adds its text to the run's progress report before it writes.
#pragma once

#include "gedcom/familientabelle.h"

#include <string>

namespace folio {

class Exportlauf;

class ExportStufen {
public:
    explicit ExportStufen(Exportlauf& lauf) : lauf_(lauf) {}

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
    // Appends the stage's text to the progress report and lets events run.
    void beginnen(const std::string& schluessel);
    Exportlauf& lauf_;
};

} // namespace folio

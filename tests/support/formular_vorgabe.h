// The wizard's options at their design values: UTF-8, every privacy box ticked, no change
// stamps, no strict 5.5, no author, no note, no extra lines.
#pragma once

#include "engine/value.h"
#include "wizard/auswahl.h"

namespace folio::test {

inline void formular_zuruecksetzen() {
    AuswahlForm& form = Auswahl();
    form.Zeichensatz(0).set("Value", Value(false));
    form.Zeichensatz(1).set("Value", Value(true));
    form.Zeichensatz(0).set("Caption", Value("Ansi"));
    form.Zeichensatz(1).set("Caption", Value("UTF-8"));
    form.Chancheck().set("Value", Value(0));
    form.nur_auf_55().set("Value", Value(0));
    for (int i = 0; i < 4; ++i)
        form.Datenschutzcheck(i).set("Value", Value(1));
    for (int i = 0; i < 7; ++i)
        form.Verfasser(i).set("Text", Value(""));
    form.Anmerkung().set("Text", Value(""));
    form.Fortschritttext().set("Text", Value(""));
    form.gedcom_zusaetze.clear();
}

} // namespace folio::test

// The wizard without a window on a copy of the staged folders: the program started as it
// starts (folders, language), the form loaded behind its splash, and the sample tree proposed
// as the family tree used last. Messages go to a script.
#pragma once

#include "database/tabellen.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/sprache.h"
#include "frame/start.h"
#include "support/cli_fixture.h"
#include "support/scripted_scope.h"
#include "wizard/auswahl.h"
#include "wizard/formular.h"

namespace folio::test {

struct WizardFixture : Staged {
    ScriptedScope scripted;
    StartForm start;

    void SetUp() override {
        Staged::SetUp();
        ASSERT_TRUE(programm_starten(start, dir.file("Stammfolio/Folioexport")).ok);
        Auswahl_verwerfen(); // the form as it is designed, loaded once
    }
    void TearDown() override {
        Auswahl_verwerfen();
        alle_schliessen("");
        sprache_schliessen();
        Staged::TearDown();
    }

    // The sample tree in the data folder as the tree used last.
    void beispiel_zuletzt() {
        ini_schreiben(programm_ini(), "SF-Files", "0", pfad_verbinden(Datenpfad, "Beispiel.SF6"));
    }
    void laden() { Form_Load(start); }
};

} // namespace folio::test

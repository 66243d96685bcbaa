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
#include "support/gedcom_vergleich.h"
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

    // The walk through the pages takes person 35 with ancestors and spouses, Ansi, no privacy,
    // strict 5.5, change stamps and a note. The file that the command line writes with these
    // options from the sample tree, without the time it was written. `kopie_anlegen` copies
    // the tree before the wizard opens it.
    std::string kopie_anlegen() {
        fs::create_directories(dir.file("cli"));
        const std::string kopie = dir.file("cli/Beispiel.SF6");
        fs::copy_file(dir.file("Daten/Beispiel.SF6"), kopie);
        return kopie;
    }
    std::string wie_die_befehlszeile(const std::string& kopie) {
        const Result r = run(cli + " export " + kopie + " -o " + dir.file("cli/Familie.GED") +
                             " --person 35 --ancestors --spouses --charset ansi --privacy none"
                             " --strict-55 --change-stamps --note 'Für Vetter Paul'");
        EXPECT_EQ(r.status, 0) << r.output;
        return ohne_zeitpunkt(dir.file("cli/Familie.GED"));
    }
};

} // namespace folio::test

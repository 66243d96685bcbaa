// A family tree made inside a test, opened as the program opens one: the side databases and
// the language texts of the staged data folder, a file of the current version with the rows
// a test adds, the long-lived cursors, and the wizard's options at their design values.
#pragma once

#include "database/schema/schema.h"
#include "database/tabellen.h"
#include "engine/recordset.h"
#include "frame/globals.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "gedcom/ausgabe.h"
#include "gedcom/exportlauf.h"
#include "support/formular_vorgabe.h"
#include "support/gedcom_reader.h"
#include "support/scripted_scope.h"
#include "support/temp_dir.h"
#include "wizard/auswahl.h"
#include "wizard/exportstart.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

namespace folio::test {

struct ExportFixture : ::testing::Test {
    TempDir dir;
    std::string datei;
    ScriptedScope scripted;

    void SetUp() override {
        namespace fs = std::filesystem;
        const char* stage = std::getenv("FOLIO_STAGE");
        ASSERT_TRUE(stage) << "FOLIO_STAGE names the staged folders";
        Datenpfad = dir.file("Daten");
        Programmpfad = dir.file("Programm");
        fs::create_directories(Programmpfad);
        fs::copy(std::string(stage) + "/Daten", Datenpfad, fs::copy_options::recursive);
        Sprache = "Deutsch";
        sprache_oeffnen(Datenpfad + "/language.mdb");
        schema::buildTemplate(dir.path());
        datei = dir.file("Test.SF6");
        fs::copy_file(dir.file("SF.MDB"), datei);
        DB = dao::OpenDatabase(datei);
        tabellen_oeffnen();
        resetForm();
    }
    void TearDown() override {
        alle_schliessen("");
        sprache_schliessen();
        // Every file that the test exported, read back by the independent reader.
        EXPECT_EQ(independentReaderProblems(gedcomFilesUnder(dir.path())), "");
    }

    static void resetForm() { formular_zuruecksetzen(); }

    // Adds a row to a table of the family tree: field names and values.
    void add(const std::string& table, std::initializer_list<std::pair<const char*, Value>> row) {
        auto rs = DB->OpenRecordset(table);
        rs->AddNew();
        for (const auto& [name, value] : row)
            rs->set(name, value);
        rs->Update();
    }

    // What `f` writes to the output of a run, as the file holds it: a run with the options
    // that the form's controls hold now, its progress shown on the form.
    std::string written(const std::function<void(Exportlauf&)>& f) {
        const std::string path = dir.file("out.GED");
        {
            GedcomAusgabe out(path);
            const Exportoptionen optionen = exportoptionen_aus_formular(Auswahl());
            Formularanzeige anzeige(Auswahl());
            Exportlauf lauf(optionen, out, anzeige);
            f(lauf);
            out.abschliessen();
        }
        return readFile(path);
    }
};

} // namespace folio::test

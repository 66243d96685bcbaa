// The whole file: the sample tree exported with every record marked, in both character sets,
// with the privacy of living persons on and off, strict GEDCOM 5.5 and change stamps on and
// off, compared byte for byte with the expected files in tests/golden/ (the day and time of
// the run left out). FOLIO_UPDATE_GOLDEN=1 writes the expected files anew, for review.

#include "gedcom/datum.h"
#include "gedcom/export.h"
#include "support/export_fixture.h"
#include "support/gedcom_reader.h"
#include "wizard/exportstart.h"

#include <gtest/gtest.h>

#include <regex>

using namespace folio;
namespace fs = std::filesystem;

namespace {

struct Options {
    const char* name;
    bool ansi, privacy, strict, stamps;
};

struct Golden : test::ExportFixture, ::testing::WithParamInterface<Options> {
    void SetUp() override {
        ExportFixture::SetUp();
        alle_schliessen(datei);
        const std::string sample = dir.file("Beispiel.SF6");
        fs::copy_file(Datenpfad + "/Beispiel.SF6", sample);
        DB = dao::OpenDatabase(sample);
        for (const char* table :
             {"Daten", "Ereignis", "Ort", "Notiz", "Dokument", "Adressen", "Bilder"})
            DB->Execute(std::string("UPDATE ") + table + " SET Markierung = TRUE ;");
        tabellen_oeffnen();
        fs::copy_file(std::string(std::getenv("FOLIO_STAGE")) +
                          "/Stammfolio/Folioexport/geddate.ini",
                      Programmpfad + "/geddate.ini");
        Auswahl().gedcom_zusaetze = gedcom_zusaetze_laden();
    }
};

std::string withoutClock(const std::string& text) {
    return std::regex_replace(text,
                              std::regex("1 DATE [0-9]{2} [A-Z]{3} [0-9]{4}\r\n2 TIME "
                                         "[0-9]{2}:[0-9]{2}:[0-9]{2}\r\n"),
                              "1 DATE <today>\r\n2 TIME <now>\r\n",
                              std::regex_constants::format_first_only);
}

} // namespace

TEST_P(Golden, SampleTree) {
    const Options o = GetParam();
    AuswahlForm& form = Auswahl();
    form.Zeichensatz(0).set("Value", Value(o.ansi));
    form.Zeichensatz(1).set("Value", Value(!o.ansi));
    for (int i = 0; i < 4; ++i)
        form.Datenschutzcheck(i).set("Value", Value(o.privacy ? 1 : 0));
    form.nur_auf_55().set("Value", Value(o.strict ? 1 : 0));
    form.Chancheck().set("Value", Value(o.stamps ? 1 : 0));
    form.Anmerkung().set("Text", Value("Beispieldaten für die Prüfung"));
    form.Verfasser(0).set("Text", Value("Jürgen Hollerbach"));
    form.Datei(0).set("FileName", Value("Beispiel.SF6"));
    form.Verzeichnis(1).set("Text", Value(dir.path().string()));
    form.Verzeichnis(2).set("Text", Value(o.name));
    ASSERT_EQ(Exportstarten(), ExportErgebnis::Fertig);

    const std::string text = withoutClock(test::readFile(dir.file(std::string(o.name) + ".GED")));
    std::vector<test::GedcomLine> lines;
    EXPECT_EQ(test::gedcomProblems(text, &lines), std::vector<std::string>{});
    const std::string expected = std::string(FOLIO_SOURCE_DIR) + "/tests/golden/" + o.name + ".ged";
    if (std::getenv("FOLIO_UPDATE_GOLDEN")) {
        std::ofstream(expected, std::ios::binary) << text;
        return;
    }
    EXPECT_EQ(text, test::readFile(expected)) << "differs from " << expected;
}

INSTANTIATE_TEST_SUITE_P(
    Options, Golden,
    ::testing::Values(Options{"utf8_privacy", false, true, false, false},
                      Options{"ansi_open_strict_stamps", true, false, true, true},
                      Options{"utf8_open_stamps", false, false, false, true},
                      Options{"ansi_privacy_strict", true, true, true, false}),
    [](const ::testing::TestParamInfo<Options>& info) { return std::string(info.param.name); });

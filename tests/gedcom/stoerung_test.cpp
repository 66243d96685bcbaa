// The export on a failing disk: the sample tree opened and exported with each read, write and
// sync failing in turn, and with the disk full from each write on. A failure ends in a message
// that names the file it concerns; the old target stays (or the new one is complete), no part
// of the new one is left, and the tree opens and reads as before.
#include "database/tabellen.h"
#include "engine/errors.h"
#include "support/export_fixture.h"
#include "support/stoerung_schleife.h"
#include "wizard/exportstart.h"

#include <gtest/gtest.h>

#include <regex>

using namespace folio;
namespace fs = std::filesystem;

namespace {

std::string ohneUhr(const std::string& text) {
    return std::regex_replace(text, std::regex("1 DATE [^\r]*\r\n2 TIME [^\r]*\r\n"), "");
}

using FehlerhaftePlatte = test::ExportFixture;

} // namespace

TEST_F(FehlerhaftePlatte, EachFailingReadWriteOrSyncOfAnExportLosesNothing) {
    alle_schliessen(datei);
    DB.reset();
    const std::string baum = dir.file("Baum.SF6"), ordner = dir.file("ziel");
    const std::string ziel = ordner + "/Familie.GED";
    fs::create_directories(ordner);
    AuswahlForm& form = Auswahl();
    form.Verzeichnis(1).set("Text", Value(ordner));
    form.Verzeichnis(2).set("Text", Value("Familie"));
    form.Datei(0).set("FileName", Value("Baum.SF6"));
    scripted->fallback = {AntwortOk, -2};

    auto vorbereiten = [&] {
        fs::copy_file(Datenpfad + "/Beispiel.SF6", baum, fs::copy_options::overwrite_existing);
        std::ofstream(ziel, std::ios::trunc) << "old";
        scripted->shown.clear();
    };
    auto exportieren = [&]() -> std::string {
        std::string fehler;
        try {
            DB = dao::OpenDatabase(baum);
            tabellen_oeffnen();
            if (Exportstarten() != ExportErgebnis::Fertig)
                fehler = scripted->shown.empty() ? "?" : scripted->shown.back().text;
        } catch (const Error& e) {
            fehler = e.what();
        }
        alle_schliessen(baum);
        DB.reset();
        return fehler;
    };
    vorbereiten();
    ASSERT_EQ(exportieren(), "");
    const std::string vollstaendig = ohneUhr(test::readFile(ziel));
    ASSERT_NE(vollstaendig.find("0 TRLR"), std::string::npos);

    test::auf_fehlerhafter_platte(
        vorbereiten, exportieren,
        [&](const stoerung::Plan&, bool ausgeloest, const std::string& fehler) {
            const std::string jetzt = test::readFile(ziel);
            if (fehler.empty()) {
                EXPECT_EQ(ohneUhr(jetzt), vollstaendig);
            } else {
                EXPECT_TRUE(ausgeloest) << fehler;
                EXPECT_NE(fehler.find(dir.path().string()), std::string::npos) << fehler; // a file
                EXPECT_EQ(jetzt, "old") << fehler;
            }
            for (const auto& f : fs::directory_iterator(ordner))
                EXPECT_EQ(f.path().filename(), "Familie.GED");
            EXPECT_NO_THROW(dao::engine().RepairDatabase(baum)); // opens, and finds no damage
        });
}

#include "wizard/icons.h"

#include "database/tabellen.h"
#include "engine/errors.h"
#include "frame/globals.h"
#include "frame/sprache.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace folio {
namespace {

namespace fs = std::filesystem;

std::string stage() {
    const char* s = std::getenv("FOLIO_STAGE");
    return s ? s : "";
}

std::string staged_host() {
    return stage() + "/Stammfolio";
}

void touch(const fs::path& path) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << "icon";
}

unsigned le(const std::string& bytes, std::size_t at, int size) {
    unsigned v = 0;
    for (int i = size - 1; i >= 0; --i)
        v = v << 8 | static_cast<std::uint8_t>(bytes[at + static_cast<std::size_t>(i)]);
    return v;
}

// The numbers of the kinds of a catalogue, in its order.
std::vector<std::string> kinds(dao::Database& db, const std::string& sprache) {
    std::vector<std::string> out;
    auto rs = db.OpenRecordset("SELECT * FROM " + sprache + " ORDER BY Index");
    for (; !rs->Eof(); rs->MoveNext())
        out.push_back(std::to_string(rs->get("Index").toInt()));
    return out;
}

// A data folder with a copy of the staged catalogue, and a host folder of the test's own. The
// suite bears the name of the test program, so that a filter on "icons" finds it.
class wizard_icons : public ::testing::Test {
protected:
    test::TempDir dir;

    void SetUp() override {
        ASSERT_FALSE(stage().empty()) << "FOLIO_STAGE names the staged folders";
        Datenpfad = dir.file("Daten");
        Stammpfad = dir.file("Stammfolio");
        fs::create_directories(Datenpfad);
        fs::create_directories(Stammpfad);
        fs::copy_file(stage() + "/Daten/Ereignis.mdb", Datenpfad + "/Ereignis.mdb");
        Sprache = "Deutsch";
        DB_Ereignis = dao::OpenDatabase(Datenpfad + "/Ereignis.mdb");
        Icons16().Clear();
    }
    void TearDown() override {
        alle_schliessen("");
        DB_Ereignis.reset();
        Icons16().Clear();
        Sprache = "Deutsch";
    }
};

TEST_F(wizard_icons, EventPictureOfTheDataFolderWinsOverTheHostsAndTheUnknownStandsIn) {
    touch(Datenpfad + "/Ereignisgrafiken/1.ICO");
    touch(Stammpfad + "/bmp/Ereignisse/1.ICO");
    touch(Stammpfad + "/bmp/Ereignisse/2.ICO");
    ereignisgrafiken_laden();

    const std::vector<std::string> alle = kinds(*DB_Ereignis, Sprache);
    ASSERT_GT(alle.size(), 3u);
    EXPECT_EQ(Icons16().Count(), alle.size());
    EXPECT_EQ(Icons16().datei("1.ICO"), Datenpfad + "/Ereignisgrafiken/1.ICO");
    EXPECT_EQ(Icons16().datei("2.ICO"), Stammpfad + "/bmp/Ereignisse/2.ICO");
    EXPECT_EQ(Icons16().datei("0.ICO"), Stammpfad + "/prog/unbekannt.ico");
    EXPECT_EQ(Icons16().datei(alle.back() + ".ICO"), Stammpfad + "/prog/unbekannt.ico");

    // Loading again replaces the pictures under their keys: nothing stands twice.
    fs::remove(Datenpfad + "/Ereignisgrafiken/1.ICO");
    ereignisgrafiken_laden();
    EXPECT_EQ(Icons16().Count(), alle.size());
    EXPECT_EQ(Icons16().datei("1.ICO"), Stammpfad + "/bmp/Ereignisse/1.ICO");
}

TEST_F(wizard_icons, CatalogueOfTheDataFolderElseOnceMoreTheHostsCopy) {
    // Before a tree is open, the catalogue of the data folder serves.
    DB_Ereignis.reset();
    ereignisgrafiken_laden();
    ASSERT_TRUE(DB_Ereignis);
    EXPECT_EQ(DB_Ereignis->Name(), Datenpfad + "/Ereignis.mdb");
    const std::size_t arten = kinds(*DB_Ereignis, Sprache).size();
    EXPECT_EQ(Icons16().Count(), arten);

    // A catalogue without the table of the language, and none in the host's folder: the
    // second failure goes up.
    Icons16().Clear();
    DB_Ereignis->Execute("DROP TABLE Deutsch");
    EXPECT_THROW(ereignisgrafiken_laden(), Error);
    EXPECT_EQ(Icons16().Count(), 0u);

    // With the host's copy the pictures load, and DB_Ereignis stays open on it.
    fs::copy_file(stage() + "/Daten/Ereignis.mdb", Stammpfad + "/Ereignis.mdb");
    DB_Ereignis = dao::OpenDatabase(Datenpfad + "/Ereignis.mdb");
    ereignisgrafiken_laden();
    ASSERT_TRUE(DB_Ereignis);
    EXPECT_EQ(DB_Ereignis->Name(), Stammpfad + "/Ereignis.mdb");
    EXPECT_EQ(Icons16().Count(), arten);
}

TEST_F(wizard_icons, EventGridTakesFilterImageAndTheKindsInCatalogueOrder) {
    Stammpfad = staged_host();
    icons16_laden();
    ereignisgrafiken_laden();
    Sprache = "English"; // the grid reads the catalogue of the present language

    Datengrid grid(1);
    ereignisicons_laden(grid);
    const std::vector<std::string> alle = kinds(*DB_Ereignis, Sprache);
    ASSERT_EQ(grid.Icons.size(), alle.size() + 2);
    EXPECT_EQ(grid.Icons[0].key, "Filter");
    EXPECT_EQ(grid.Icons[0].datei, staged_host() + "/bmp/icons16/Filter.ico");
    EXPECT_EQ(grid.Icons[1].key, "Bild");
    EXPECT_EQ(grid.Icons[1].datei, staged_host() + "/bmp/icons16/Bild2.ico");
    for (std::size_t i = 0; i < alle.size(); ++i) {
        // Position Art + 3, counted from 1, is the picture of the kind Art.
        const Bild& bild = grid.Icons[std::stoul(alle[i]) + 2];
        EXPECT_EQ(bild.key, " " + alle[i] + ".ICO");
        EXPECT_EQ(bild.datei, staged_host() + "/bmp/Ereignisse/" + alle[i] + ".ICO");
    }

    const std::vector<Bild> erste = grid.Icons;
    grid.Icons.clear();
    ereignisicons_laden(grid);
    ASSERT_EQ(grid.Icons.size(), erste.size());
    for (std::size_t i = 0; i < erste.size(); ++i) {
        EXPECT_EQ(grid.Icons[i].key, erste[i].key);
        EXPECT_EQ(grid.Icons[i].datei, erste[i].datei);
    }
}

TEST_F(wizard_icons, DocumentsGridHoldsItsEighteenPicturesByPosition) {
    Stammpfad = staged_host();
    icons16_laden();
    ASSERT_EQ(Icons16().Count(), Lagerbilder.size());

    const std::vector<Bild> bilder = dokumentbilder();
    ASSERT_EQ(bilder.size(), 18u);
    const std::string filter = bild_aus_lager("Filter");
    EXPECT_EQ(bilder[1].key, "Bild");
    EXPECT_EQ(bilder[1].datei, bild_aus_lager("Bild2"));
    for (std::size_t i : {0, 2, 3, 4, 10, 11, 12})
        EXPECT_EQ(bilder[i].datei, filter) << bilder[i].key;
    EXPECT_EQ(bilder[5].key, "Dok_Art_D");
    EXPECT_EQ(bilder[9].key, "Dok_Art_F");
    EXPECT_EQ(bilder[13].key, "Dok_Vor_O");
    EXPECT_EQ(bilder[16].key, "Dok_Vor_?");
    EXPECT_EQ(bilder[16].datei, staged_host() + "/bmp/icons16/Dok_Vor_Frage.ico");
    EXPECT_EQ(bilder[17].key, "Dok_Vor_H");
    EXPECT_EQ(bild_aus_lager("Dok_Vor_X"), "");
}

// Every staged icon is one 16 by 16 image of 32 bits with its mask; the side picture is a GIF
// of its size; every kind of both catalogues has its picture.
TEST_F(wizard_icons, StagedPicturesAreWellFormedAndCoverEveryKind) {
    const fs::path host = staged_host();
    int icons = 0;
    for (const auto& entry : fs::recursive_directory_iterator(host)) {
        std::string extension = entry.path().extension().string();
        for (char& c : extension)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        if (extension != ".ICO")
            continue;
        ++icons;
        const std::string bytes = test::readFile(entry.path().string());
        SCOPED_TRACE(entry.path().string());
        ASSERT_GE(bytes.size(), 22u + 40u);
        EXPECT_EQ(le(bytes, 0, 2), 0u);
        EXPECT_EQ(le(bytes, 2, 2), 1u); // an icon
        EXPECT_EQ(le(bytes, 4, 2), 1u); // of one image
        EXPECT_EQ(static_cast<std::uint8_t>(bytes[6]), 16);
        EXPECT_EQ(static_cast<std::uint8_t>(bytes[7]), 16);
        EXPECT_EQ(le(bytes, 12, 2), 32u);
        const unsigned size = le(bytes, 14, 4), offset = le(bytes, 18, 4);
        EXPECT_EQ(offset + size, bytes.size());
        EXPECT_EQ(size, 40u + 16 * 16 * 4 + 16 * 4);
        EXPECT_EQ(le(bytes, offset, 4), 40u);
        EXPECT_EQ(le(bytes, offset + 4, 4), 16u);
        EXPECT_EQ(le(bytes, offset + 8, 4), 32u); // colours and mask
    }
    EXPECT_GT(icons, static_cast<int>(Lagerbilder.size()));
    for (const Lagerbild& bild : Lagerbilder)
        EXPECT_TRUE(fs::exists(host / "bmp/icons16" / bild.datei)) << bild.key;
    EXPECT_TRUE(fs::exists(host / "prog/unbekannt.ico"));

    const std::string gif = test::readFile((host / "bmp/prog/archivar.gif").string());
    ASSERT_GT(gif.size(), 13u);
    EXPECT_EQ(gif.substr(0, 6), "GIF89a");
    EXPECT_GT(le(gif, 6, 2), 100u);
    EXPECT_GT(le(gif, 8, 2), 200u);
    EXPECT_EQ(gif.back(), ';');

    auto db = dao::OpenDatabase(stage() + "/Daten/Ereignis.mdb");
    for (const char* sprache : {"Deutsch", "English"})
        for (const std::string& kind : kinds(*db, sprache))
            EXPECT_TRUE(fs::exists(host / "bmp/Ereignisse" / (kind + ".ICO"))) << kind;
}

// Both languages have the overview and a page per wizard page, and every link of a page
// leads to a file.
TEST_F(wizard_icons, HelpOfBothLanguagesHasEveryPageAndItsLinksResolve) {
    Stammpfad = staged_host();
    sprache_oeffnen(stage() + "/Daten/language.mdb");
    std::set<std::string> themen = {Hilfe_Uebersicht};
    for (int seite = 1; seite <= 5; ++seite)
        themen.insert(hilfethema(seite));
    EXPECT_EQ(themen.size(), 6u);
    EXPECT_EQ(hilfethema(0), Hilfe_Uebersicht);

    const std::regex link(R"re((?:href|src)="([^"#]+)")re");
    for (const char* s : {"Deutsch", "English"}) {
        Sprache = s;
        for (const std::string& thema : themen) {
            const fs::path seite = hilfeseite(thema);
            ASSERT_TRUE(fs::exists(seite)) << seite;
            const std::string html = test::readFile(seite.string());
            EXPECT_NE(html.find("charset=\"utf-8\""), std::string::npos) << seite;
            for (std::sregex_iterator m(html.begin(), html.end(), link), end; m != end; ++m)
                EXPECT_TRUE(fs::exists(seite.parent_path() / (*m)[1].str()))
                    << seite << " -> " << (*m)[1];
        }
    }
    Sprache = "Deutsch";
    EXPECT_EQ(hilfeseite("Programm.htm"), staged_host() + "/help/de/Programm.htm");
    Sprache = "English";
    EXPECT_EQ(hilfeseite("Programm.htm"), staged_host() + "/help/en/Programm.htm");
    sprache_schliessen();
}

} // namespace
} // namespace folio

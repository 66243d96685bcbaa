// The later sections of the upgrade chain on files of the versions 5 and 6, and a chain that
// breaks off in the middle: the next opening finishes it, and nothing is lost.
#include "database/upgrade/kette.h"
#include "frame/start.h"
#include "support/stoerung_schleife.h"
#include "support/upgrade_fixture.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

using namespace folio;
namespace fs = std::filesystem;

namespace {

struct Abschnitte : test::UpgradeFixture {
    // A file of version 5.0.220: no occupation field and no picture sizes, with persons,
    // events that carry occupations, and pictures of which one file is missing.
    std::string version_5_0_220() {
        const std::string pfad = vorlage("Familie.SF6");
        auto db = dao::OpenDatabase(pfad);
        db->tableDef("Daten").DeleteField("OCCU");
        db->tableDef("Bilder").DeleteField("groesse");
        db->Execute("UPDATE Version SET Versionname = '5.0.220' ;");
        auto add = [&](const char* table,
                       std::initializer_list<std::pair<const char*, Value>> row) {
            auto rs = db->OpenRecordset(table);
            rs->AddNew();
            for (const auto& [name, value] : row)
                rs->set(name, value);
            rs->Update();
        };
        for (int p = 1; p <= 4; ++p)
            add("Daten", {{"Counter", Value(RecordId(p))}});
        // Person 1: two events of kind 44 (the later row wins) and one of kind 9.
        // Person 2: kind 9 twice (the first stands). Person 3: kind 44 with a second date.
        // Person 4: kind 44 through a link "D", which isn't a main person.
        struct E {
            int counter, art;
            const char* grund;
            int bjahr, person;
            const char* ursprung;
        };
        const E ereignisse[] = {{10, 44, "Bauer", 0, 1, "d"},  {11, 44, "Müller", 0, 1, "d"},
                                {12, 9, "Knecht", 0, 1, "d"},  {13, 9, "Weber", 0, 2, "d"},
                                {14, 9, "Färber", 0, 2, "d"},  {15, 44, "Lehrer", 1900, 3, "d"},
                                {16, 44, "Schmied", 0, 4, "D"}};
        for (const E& e : ereignisse) {
            add("Ereignis", {{"Counter", Value(RecordId(e.counter))},
                             {"Art", Value(e.art)},
                             {"Grund", Value(e.grund)},
                             {"BJahr", Value(e.bjahr)}});
            add("Ereignis_DS", {{"Counter", Value(RecordId(e.counter))},
                                {"Quelle", Value(RecordId(e.person))},
                                {"Ziel", Value(RecordId(e.counter))},
                                {"Ursprung", Value(e.ursprung)}});
        }
        std::ofstream(baeume + "/bild.jpg") << std::string(1234, 'x');
        add("Bilder", {{"Counter", Value(RecordId(1))},
                       {"bildpfad", Value(baeume + "/")},
                       {"bildfile", Value("bild.jpg")}});
        add("Bilder", {{"Counter", Value(RecordId(2))},
                       {"bildpfad", Value(baeume + "/")},
                       {"bildfile", Value("weg.jpg")}});
        return pfad;
    }

    std::string feld(const char* tabelle, int counter, const char* name) {
        auto rs = DB->OpenRecordset(std::string("SELECT ") + name + " FROM " + tabelle +
                                    " WHERE Counter = " + std::to_string(counter));
        return rs->Eof() ? "<none>" : rs->get(0).text();
    }

    void pruefen() {
        EXPECT_EQ(feld("Daten", 1, "OCCU"), "Müller");
        EXPECT_EQ(feld("Daten", 2, "OCCU"), "Weber");
        EXPECT_EQ(feld("Daten", 3, "OCCU"), "");
        EXPECT_EQ(feld("Daten", 4, "OCCU"), "");
        EXPECT_EQ(feld("Bilder", 1, "groesse"), "1234");
        EXPECT_EQ(feld("Bilder", 2, "groesse"), "0");
        EXPECT_EQ(version(), "6.0.102");
        EXPECT_EQ(test::schema_unterschiede(*DB), std::vector<std::string>{});
    }
};

} // namespace

TEST_F(Abschnitte, OccupationsAndPictureSizesComeInAndACopyOfTheOldFileStays) {
    version_5_0_220();
    ASSERT_EQ(oeffnen("Familie.SF6"), Geoeffnet::Ja);
    pruefen();
    // The note comes once for each section that changes something, and says where the
    // copy lies; the copy is the file as it was.
    const std::string kopie = baeume + "/Familie (5.0.220).bak";
    ASSERT_EQ(scripted->shown.size(), 2u) << messages();
    EXPECT_NE(scripted->shown[0].text.find(kopie), std::string::npos) << messages();
    EXPECT_FALSE(Fortschrittfrm().geladen());
    {
        auto alt = dao::OpenDatabase(kopie, false, true);
        EXPECT_FALSE(alt->tableDef("Daten").hasField("OCCU"));
        EXPECT_EQ(alt->OpenRecordset("SELECT Versionname FROM Version")->get(0).text(), "5.0.220");
    }

    // A second opening changes nothing and says nothing.
    scripted->shown.clear();
    alle_schliessen("");
    ASSERT_EQ(oeffnen("Familie.SF6"), Geoeffnet::Ja);
    EXPECT_TRUE(scripted->shown.empty()) << messages();
    pruefen();
}

TEST_F(Abschnitte, AChainBrokenOffIsFinishedByTheNextOpening) {
    version_5_0_220();
    // The step of the picture sizes fails: the occupations are in, the version isn't.
    oeffnen_scheitert_bei(61, "Familie.SF6");
    Fortschrittfrm().entladen();
    {
        auto halb = dao::OpenDatabase(baeume + "/Familie.SF6", false, true);
        EXPECT_TRUE(halb->tableDef("Daten").hasField("OCCU"));
        EXPECT_FALSE(halb->tableDef("Bilder").hasField("groesse"));
        EXPECT_EQ(halb->OpenRecordset("SELECT Versionname FROM Version")->get(0).text(), "5.0.220");
    }
    ASSERT_EQ(oeffnen("Familie.SF6"), Geoeffnet::Ja);
    pruefen();
    // The copy is still the file as it was before the first attempt.
    auto alt = dao::OpenDatabase(baeume + "/Familie (5.0.220).bak", false, true);
    EXPECT_FALSE(alt->tableDef("Daten").hasField("OCCU"));
}

TEST_F(Abschnitte, AProcessKilledInTheMiddleOfAStepLosesOnlyThatStep) {
    version_5_0_220();
    const pid_t kind = ::fork();
    ASSERT_NE(kind, -1);
    if (kind == 0) {
        // The child is killed while the step of the picture sizes has written its work
        // but not committed it.
        upgrade::vor_abschluss() = [](int schritt) {
            if (schritt == 61)
                ::kill(::getpid(), SIGKILL);
        };
        oeffnen("Familie.SF6");
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(kind, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    ASSERT_EQ(oeffnen("Familie.SF6"), Geoeffnet::Ja);
    pruefen();
}

TEST_F(Abschnitte, EachFailingReadWriteOrSyncOfAnUpgradeStopsAtAStepTheNextOpeningFinishes) {
    auto vorbereiten = [&] {
        neu_anfangen();
        version_5_0_220();
    };
    auto oeffnen_lassen = [&] { return oeffnen_versuchen("Familie.SF6"); };
    test::auf_fehlerhafter_platte(
        vorbereiten, oeffnen_lassen,
        [&](const stoerung::Plan&, bool ausgeloest, const std::string& fehler) {
            if (!fehler.empty()) {
                EXPECT_TRUE(ausgeloest) << fehler;
                EXPECT_NE(fehler.find("Familie"), std::string::npos) << fehler;
            }
            for (const auto& f : fs::directory_iterator(baeume))
                EXPECT_NE(f.path().extension(), ".part") << f.path();
            // The file is at a finished step: the next opening finishes the chain.
            schliessen();
            ASSERT_EQ(oeffnen("Familie.SF6"), Geoeffnet::Ja) << fehler << "\n" << messages();
            pruefen();
        });
}

// The command line leaves the tree as it found it: after a clean run, after a run stopped by
// a signal at any point, while another program holds the tree, with two runs at once, on a
// write-protected tree and on a tree of a version it doesn't know. The marks of every table
// and the row of Version are compared before and after.

#include "generate_tree.h"
#include "support/cli_fixture.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>

using namespace folio;
using namespace folio::test;

extern char** environ;

namespace {

// The program started without a shell, so that the test can signal it; its output goes to
// a file.
struct Laufend {
    pid_t pid = -1;
    std::string ausgabe;

    Laufend(const std::string& cli, const std::vector<std::string>& argumente,
            const std::string& ausgabedatei)
        : ausgabe(ausgabedatei) {
        std::vector<char*> argv{const_cast<char*>(cli.c_str())};
        for (const std::string& a : argumente)
            argv.push_back(const_cast<char*>(a.c_str()));
        argv.push_back(nullptr);
        posix_spawn_file_actions_t aktionen;
        posix_spawn_file_actions_init(&aktionen);
        posix_spawn_file_actions_addopen(&aktionen, 1, ausgabe.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_adddup2(&aktionen, 1, 2);
        EXPECT_EQ(posix_spawn(&pid, cli.c_str(), &aktionen, nullptr, argv.data(), environ), 0);
        posix_spawn_file_actions_destroy(&aktionen);
    }
    // The exit status, 128 + the signal for a process that a signal ended.
    int warten() {
        int status = 0;
        waitpid(pid, &status, 0);
        return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    }
    std::string text() const { return readFile(ausgabe); }
};

struct UntouchedTree : Export {
    // The target exists and must stay as it is when a run fails.
    void altesZiel() { std::ofstream(target) << "old"; }
    bool teilVorhanden() { return fs::exists(target + ".part"); }
    std::string bytes() { return readFile(tree); }
};

} // namespace

TEST_F(UntouchedTree, ACleanRunChangesNothingNotEvenWithANote) {
    const std::string vorher = marks(tree);
    Result r = exportieren("--all --note 'Nur für die Datei' --exclude-living");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_NE(readFile(target).find("1 NOTE Nur für die Datei\r\n"), std::string::npos);
    EXPECT_EQ(marks(tree), vorher);
    // The next run sees the marks of the host again: the note was for that one file.
    r = exportieren("--overwrite");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(readFile(target).find("Nur für die Datei"), std::string::npos);
    EXPECT_EQ(persons(readFile(target)).size(), 15u);
}

TEST_F(UntouchedTree, ASignalAtAnyStageLeavesTreeAndTargetAsTheyWere) {
    const std::string vorher = marks(tree);
    const std::pair<const char*, int> signale[] = {{"INT", 130}, {"TERM", 143}, {"KILL", 137}};
    for (const char* stufe : {"auswahl", "huelle"}) {
        for (const auto& [signal, status] : signale) {
            const std::string halt = std::string(stufe) + ":" + signal;
            altesZiel();
            setenv("FOLIO_TEST_HALT", halt.c_str(), 1);
            Result r = exportieren("--all --overwrite");
            unsetenv("FOLIO_TEST_HALT");
            EXPECT_EQ(r.status, status) << halt << "\n" << r.output;
            EXPECT_EQ(marks(tree), vorher) << halt;
            EXPECT_EQ(readFile(target), "old") << halt;
            EXPECT_FALSE(teilVorhanden()) << halt;
            if (status != 137) {
                EXPECT_NE(r.output.find("folioexport-cli: Abgebrochen"), std::string::npos)
                    << r.output;
            }
        }
    }
    // After all that, a run as usual.
    Result r = exportieren("--overwrite");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(persons(readFile(target)).size(), 15u);
    EXPECT_EQ(marks(tree), vorher);
}

TEST_F(UntouchedTree, AStopWhileTheFileIsWrittenLeavesNoPartOfIt) {
    tree = dir.file("Gross.SF6");
    generator::generateTree({2500, 5, dir.file("Daten/Ereignis.mdb")}, tree);
    const std::string vorher = marks(tree);
    for (const int signal : {SIGINT, SIGTERM, SIGKILL}) {
        altesZiel();
        Laufend lauf(cli, {"export", tree, "-o", target, "--all", "--overwrite"},
                     dir.file("out/ausgabe.txt"));
        const auto bis = std::chrono::steady_clock::now() + std::chrono::seconds(120);
        while (!teilVorhanden() && std::chrono::steady_clock::now() < bis)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        ASSERT_TRUE(teilVorhanden()) << lauf.text();
        ::kill(lauf.pid, signal);
        EXPECT_EQ(lauf.warten(), 128 + signal) << lauf.text();
        EXPECT_EQ(readFile(target), "old");
        // A killed run can't clean up: its part stays until the next run for that target.
        EXPECT_EQ(teilVorhanden(), signal == SIGKILL);
        EXPECT_EQ(marks(tree), vorher) << signal;
    }
    Result r = exportieren("--overwrite --person 1");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_FALSE(teilVorhanden());
}

TEST_F(UntouchedTree, ATreeThatAnotherProgramHoldsIsWaitedForThenNamed) {
    const std::string vorher = marks(tree);
    {
        auto anderes = dao::OpenDatabase(tree);
        anderes->BeginTrans(true); // holds the lock for writing
        Result r = exportieren("--wait 1");
        EXPECT_EQ(r.status, 11) << r.output;
        EXPECT_NE(r.output.find("folioexport-cli: Ein anderes Programm benutzt die Datenbank; es "
                                "wird gewartet: " +
                                tree),
                  std::string::npos)
            << r.output;
        EXPECT_NE(r.output.find("folioexport-cli: Die Datenbank wird von einem anderen Programm "
                                "benutzt: " +
                                tree),
                  std::string::npos)
            << r.output;
        EXPECT_FALSE(fs::exists(target));

        // Given time, the run goes on once the other program lets go.
        Laufend lauf(cli, {"export", tree, "-o", target, "--wait", "60"},
                     dir.file("out/ausgabe.txt"));
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        anderes->Rollback();
        EXPECT_EQ(lauf.warten(), 0) << lauf.text();
    }
    EXPECT_EQ(persons(readFile(target)).size(), 15u);
    EXPECT_EQ(marks(tree), vorher);
}

TEST_F(UntouchedTree, TwoRunsAtOnceBothSucceed) {
    const std::string vorher = marks(tree);
    Laufend erster(cli, {"export", tree, "-o", dir.file("out/eins.ged"), "--all"},
                   dir.file("out/eins.txt"));
    Laufend zweiter(cli, {"export", tree, "-o", dir.file("out/zwei.ged"), "--person", "22"},
                    dir.file("out/zwei.txt"));
    EXPECT_EQ(erster.warten(), 0) << erster.text();
    EXPECT_EQ(zweiter.warten(), 0) << zweiter.text();
    EXPECT_EQ(persons(readFile(dir.file("out/eins.ged"))).size(), 53u);
    EXPECT_EQ(persons(readFile(dir.file("out/zwei.ged"))), std::set<int>{22});
    EXPECT_EQ(marks(tree), vorher);
}

TEST_F(UntouchedTree, AWriteProtectedTreeIsExportedFromACopyAndNotTouched) {
    const std::string vorher = bytes();
    fs::permissions(tree, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    Result r = exportieren("--all");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_NE(r.output.find("schreibgeschützt; exportiert wird aus einer Kopie"), std::string::npos)
        << r.output;
    EXPECT_EQ(persons(readFile(target)).size(), 53u);
    EXPECT_EQ(bytes(), vorher);
    for (const auto& f : fs::directory_iterator(fs::path(tree).parent_path()))
        EXPECT_EQ(f.path().filename().string().find("Beispiel.SF6-"), std::string::npos)
            << f.path(); // no journal beside it
}

TEST_F(UntouchedTree, TreesOfVersionsThatTheProgramDoesNotKnowAreRefusedUntouched) {
    for (const char* version : {"9.9.9", "10.0.0", "neu", "6.0.102x"}) {
        {
            auto db = dao::OpenDatabase(tree);
            db->Execute(std::string("UPDATE Version SET Versionname = '") + version + "'");
        }
        const std::string vorher = bytes();
        Result r = exportieren("--overwrite");
        EXPECT_EQ(r.status, 12) << version << "\n" << r.output;
        EXPECT_NE(r.output.find(std::string("Versionname ") +
                                (std::string(version) == "neu" ? "\"neu\"" : "")),
                  std::string::npos)
            << r.output;
        EXPECT_EQ(bytes(), vorher) << version;
        EXPECT_FALSE(fs::exists(target));
    }
}

TEST_F(UntouchedTree, AnOldFileWithAConversionBesideItSaysWhichFileGoesOut) {
    const std::string alt = dir.file("Daten/Familie.SF5");
    fs::copy_file(tree, alt);
    fs::copy_file(tree, dir.file("Daten/Familie.SF6"));
    const std::string vorher = readFile(alt);
    Result r = run(cli + " export '" + alt + "' -o '" + target + "'");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_NE(r.output.find("früher umgewandelte Datei: " + dir.file("Daten/Familie.SF6")),
              std::string::npos)
        << r.output;
    EXPECT_NE(r.output.find("bleibt, wie sie ist: " + alt), std::string::npos);
    EXPECT_EQ(readFile(alt), vorher);
}

TEST_F(UntouchedTree, EveryLineTheProgramSaysBeginsWithItsName) {
    Result r = exportieren("--bogus");
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.output, "folioexport-cli: Unbekannte Option: --bogus\n"
                        "folioexport-cli: Die Optionen zeigt: folioexport-cli --help\n");
    for (const char* hilfe : {" export --help", " export -h", " --help"}) {
        r = run(cli + hilfe);
        EXPECT_EQ(r.status, 0) << hilfe;
        EXPECT_EQ(r.output.rfind("Aufruf: folioexport-cli export", 0), 0u) << r.output;
    }
    r = run(cli + " --language en --version");
    EXPECT_NE(r.output.find("Sprache:      English (--language)"), std::string::npos) << r.output;
    r = run(cli + " --version");
    EXPECT_NE(r.output.find("Sprache:      Deutsch (Gebietsschema)"), std::string::npos);

    // A file that is no database: a sentence, and the engine's words behind it.
    std::ofstream(dir.file("kaputt.SF6")) << std::string(4096, 'x');
    r = run(cli + " export '" + dir.file("kaputt.SF6") + "' -o '" + target + "'");
    EXPECT_EQ(r.status, 5) << r.output;
    std::istringstream zeilen(r.output);
    int anzahl = 0;
    for (std::string zeile; std::getline(zeilen, zeile); ++anzahl)
        EXPECT_EQ(zeile.rfind("folioexport-cli: ", 0), 0u) << zeile;
    EXPECT_GE(anzahl, 2);
    EXPECT_NE(r.output.find("lässt sich nicht als Stammbaum-Datenbank öffnen"), std::string::npos);
}

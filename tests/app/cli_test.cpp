// The staged program finds its folders, its ini files and its language texts from where it
// lies, and the language of programm.ini decides the language of its texts.

#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

struct Result {
    int status;
    std::string output;
};

Result run(const std::string& command) {
    Result r{0, ""};
    FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    std::array<char, 512> buffer{};
    while (pipe && std::fgets(buffer.data(), buffer.size(), pipe))
        r.output += buffer.data();
    r.status = pipe ? WEXITSTATUS(::pclose(pipe)) : -1;
    return r;
}

// A copy of the staged folders, so that the test may change its settings.
struct Staged : ::testing::Test {
    folio::test::TempDir dir;
    std::string cli;
    void SetUp() override {
        const char* stage = std::getenv("FOLIO_STAGE");
        ASSERT_TRUE(stage) << "FOLIO_STAGE names the staged folders";
        fs::copy(stage, dir.path(), fs::copy_options::recursive);
        cli = dir.file("Stammfolio/Folioexport/folioexport-cli");
        setenv("HOME", dir.file("home").c_str(), 1);
        setenv("XDG_CONFIG_HOME", dir.file("home/.config").c_str(), 1);
    }
};

} // namespace

TEST_F(Staged, FindsItsFoldersAndSpeaksTheLanguageOfProgrammIni) {
    Result german = run(cli + " --version");
    ASSERT_EQ(german.status, 0) << german.output;
    EXPECT_NE(german.output.find("GEDCOM Export 5.5"), std::string::npos) << german.output;
    EXPECT_NE(german.output.find("Datenpfad:    " + dir.file("Daten")), std::string::npos)
        << german.output;
    EXPECT_NE(german.output.find("Stammpfad:    " + dir.file("Stammfolio")), std::string::npos);

    std::ofstream(dir.file("Daten/programm.ini")) << "[Ansicht]\nSprache=English\n";
    Result english = run(cli + " --version");
    ASSERT_EQ(english.status, 0) << english.output;
    EXPECT_NE(english.output.find("Sprache:      English"), std::string::npos);
    EXPECT_NE(english.output.substr(0, english.output.find('\n')),
              german.output.substr(0, german.output.find('\n')));
}

TEST_F(Staged, ADataFolderWithoutLanguageTextsIsNamed) {
    fs::remove(dir.file("Daten/language.mdb"));
    Result r = run(cli + " --version");
    EXPECT_NE(r.status, 0);
    EXPECT_NE(r.output.find(dir.file("Daten")), std::string::npos) << r.output;
}

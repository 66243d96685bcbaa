// The staged program run as a user runs it: a copy of the staged folders, the program
// started by the shell, its exit status and what it printed; the marks of a tree, and the
// persons of an exported file.
#pragma once

#include "engine/engine.h"
#include "engine/recordset.h"
#include "support/gedcom_reader.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

namespace folio::test {

namespace fs = std::filesystem;

struct Result {
    int status;
    std::string output;
};

inline Result run(const std::string& command) {
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
    TempDir dir;
    std::string cli;
    void SetUp() override {
        const char* stage = std::getenv("FOLIO_STAGE");
        ASSERT_TRUE(stage) << "FOLIO_STAGE names the staged folders";
        fs::copy(stage, dir.path(), fs::copy_options::recursive);
        cli = dir.file("Stammfolio/Folioexport/folioexport-cli");
        setenv("HOME", dir.file("home").c_str(), 1);
        setenv("XDG_CONFIG_HOME", dir.file("home/.config").c_str(), 1);
        unsetenv("LC_ALL");
        unsetenv("LC_MESSAGES");
        setenv("LANG", "de_DE.UTF-8", 1);
    }
    // Every file that the test exported, read back by the independent reader.
    void TearDown() override {
        EXPECT_EQ(independentReaderProblems(gedcomFilesUnder(dir.path())), "");
    }
};

// The marks of the seven marked tables of a family tree, record by record, and the row of
// Version: what a run must leave as it found it. The tree is opened as the next program to
// open it would open it, which rolls back what a killed run left in its journal.
inline std::string marks(const std::string& tree) {
    auto db = folio::dao::OpenDatabase(tree);
    std::string all;
    for (const char* table :
         {"Daten", "Ereignis", "Dokument", "Notiz", "Bilder", "Ort", "Adressen"}) {
        auto rs = db->OpenRecordset(std::string("SELECT Counter, Markierung, Marker FROM ") +
                                    table + " ORDER BY Counter");
        for (; !rs->Eof(); rs->MoveNext())
            all += std::string(table) + rs->get(0).text() + ":" + rs->get(1).text() + "/" +
                   rs->get(2).text() + " ";
    }
    auto version = db->OpenRecordset("SELECT * FROM Version");
    for (; !version->Eof(); version->MoveNext())
        for (std::size_t i = 0; i < version->Fields().size(); ++i)
            all += " " + version->get(static_cast<int>(i)).text();
    return all;
}

// The persons of a GEDCOM file, by their numbers.
inline std::set<int> persons(const std::string& ged) {
    std::set<int> numbers;
    static const std::regex indi("\r\n0 @I(\\d+)@ INDI");
    for (std::sregex_iterator it(ged.begin(), ged.end(), indi), end; it != end; ++it)
        numbers.insert(std::stoi((*it)[1]));
    return numbers;
}

struct Export : Staged {
    std::string tree, target;
    void SetUp() override {
        Staged::SetUp();
        tree = dir.file("Daten/Beispiel.SF6");
        target = dir.file("out/Familie Hollerbach.ged");
        fs::create_directories(dir.file("out"));
    }
    Result exportieren(const std::string& options) {
        return run(cli + " export '" + tree + "' -o '" + target + "' " + options);
    }
};

} // namespace folio::test

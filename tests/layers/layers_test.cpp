// The layers of the program, from the bottom up: engine, frame, database, then selection and
// gedcom side by side, wizard, the Qt view, and the programs. Every include of a source file
// points down or stays in its own layer; selection and gedcom don't include each other. The
// test prints how many includes go from each layer to each other one.

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <regex>
#include <string>

namespace fs = std::filesystem;

namespace {

// The layer of a path below src/ or of app/, with its rank; "" for a path of no layer.
std::pair<std::string, int> schicht(const std::string& pfad) {
    static const std::pair<const char*, int> schichten[] = {
        {"wizard/qt/", 5}, {"engine/", 0}, {"frame/", 1},  {"database/", 2},
        {"selection/", 3}, {"gedcom/", 3}, {"wizard/", 4}, {"app/", 6}};
    for (const auto& [name, rang] : schichten)
        if (pfad.rfind(name, 0) == 0)
            return {std::string(name, std::strlen(name) - 1), rang};
    return {"", -1};
}

} // namespace

TEST(Layers, EveryIncludePointsDown) {
    const fs::path quelle = FOLIO_SOURCE_DIR;
    const std::regex include("^\\s*#\\s*include\\s*\"([^\"]+)\"");
    std::map<std::pair<std::string, std::string>, int> zaehlung;
    int dateien = 0;
    for (const fs::path& ordner : {quelle / "src", quelle / "app"}) {
        for (const auto& eintrag : fs::recursive_directory_iterator(ordner)) {
            const std::string ext = eintrag.path().extension().string();
            if (ext != ".cpp" && ext != ".h")
                continue;
            ++dateien;
            std::string relativ = fs::relative(eintrag.path(), quelle / "src").string();
            if (relativ.rfind("..", 0) == 0)
                relativ = "app/" + eintrag.path().filename().string();
            const auto [von, von_rang] = schicht(relativ);
            ASSERT_GE(von_rang, 0) << relativ << " lies in no layer";
            std::ifstream in(eintrag.path());
            std::string zeile;
            for (int nummer = 1; std::getline(in, zeile); ++nummer) {
                std::smatch m;
                if (!std::regex_search(zeile, m, include))
                    continue;
                const auto [nach, nach_rang] = schicht(m[1].str());
                if (nach_rang < 0)
                    continue; // a header beside the file (app/, tools/)
                ++zaehlung[{von, nach}];
                EXPECT_TRUE(nach_rang < von_rang || nach == von)
                    << relativ << ":" << nummer << " includes " << m[1] << ": " << von
                    << " may only use the layers below it";
            }
        }
    }
    EXPECT_GT(dateien, 50);
    for (const auto& [paar, anzahl] : zaehlung)
        std::cout << paar.first << " -> " << paar.second << ": " << anzahl << "\n";
}

// Every language key that the program's code uses has a German and an English text in the
// text source of the language database, and a key written with words carries the German
// text that the source holds.

#include "language_source.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace fs = std::filesystem;
using folio::language_source::readTexts;

namespace {

struct KeyUse {
    std::string file;
    std::string words; // the German words behind the number, if any
};

// The code without its // comments (a "//" inside a string or character literal stays).
std::string withoutComments(const std::string& code) {
    std::string out;
    bool inString = false;
    for (std::size_t i = 0; i < code.size(); ++i) {
        const char c = code[i];
        if (inString) {
            if (c == '\\' && i + 1 < code.size())
                out += code[i++];
            else if (c == '"')
                inString = false;
        } else if (c == '\'') { // a character literal: '"' doesn't open a string
            const std::size_t close = code.find('\'', i + (code[i + 1] == '\\' ? 3 : 2));
            if (close == std::string::npos)
                break;
            out += code.substr(i, close - i);
            i = close;
        } else if (c == '"') {
            inString = true;
        } else if (c == '/' && i + 1 < code.size() && code[i + 1] == '/') {
            while (i < code.size() && code[i] != '\n')
                ++i;
        }
        if (i < code.size())
            out += code[i];
    }
    return out;
}

// Keys in the code: the text of a call of sprachtext, and any string literal that begins
// with a number, a blank and a word (a caption or a message key of a form).
std::multimap<int, KeyUse> keysInCode() {
    static const std::regex call(R"re(sprachtext\(\s*"(\d+)( [^"]*)?")re");
    static const std::regex literal(R"re("(\d+) ([A-Za-zÄÖÜäöü#][^"]*)")re");
    std::multimap<int, KeyUse> keys;
    for (const char* folder : {"src", "app"}) {
        for (const auto& entry :
             fs::recursive_directory_iterator(fs::path(FOLIO_SOURCE_DIR) / folder)) {
            const std::string ext = entry.path().extension().string();
            if (ext != ".cpp" && ext != ".h")
                continue;
            std::ifstream in(entry.path());
            std::stringstream text;
            text << in.rdbuf();
            const std::string code = withoutComments(text.str());
            const std::string name = fs::relative(entry.path(), FOLIO_SOURCE_DIR).string();
            for (const std::regex* re : {&call, &literal})
                for (std::sregex_iterator it(code.begin(), code.end(), *re), end; it != end; ++it) {
                    // A literal that begins with a small number is a GEDCOM line ("0 HEAD").
                    if (re == &literal && std::stoi((*it)[1]) < 100)
                        continue;
                    keys.emplace(std::stoi((*it)[1]),
                                 KeyUse{name, (*it)[2].matched ? std::string((*it)[2]).substr(
                                                                     re == &call ? 1 : 0)
                                                               : ""});
                }
        }
    }
    return keys;
}

} // namespace

TEST(LanguageKeys, EveryKeyOfTheCodeHasBothTexts) {
    const auto rows = readTexts(std::string(FOLIO_SOURCE_DIR) + "/data/language/texts.tsv");
    std::map<int, const folio::language_source::Row*> byNumber;
    for (const auto& row : rows)
        byNumber[row.number] = &row;

    // The host's data gives these numbers two German wordings; the source holds one of them.
    const std::set<int> twoWordings = {591, 599, 4114};
    const auto keys = keysInCode();
    ASSERT_FALSE(keys.empty());
    for (const auto& [number, use] : keys) {
        auto it = byNumber.find(number);
        ASSERT_NE(it, byNumber.end()) << "key " << number << " of " << use.file << " has no text";
        EXPECT_FALSE(it->second->german.empty()) << "key " << number << " has no German text";
        EXPECT_FALSE(it->second->english.empty()) << "key " << number << " has no English text";
        if (!use.words.empty() && !twoWordings.count(number)) {
            EXPECT_EQ(it->second->german, use.words)
                << "key " << number << " of " << use.file << " differs from the source";
        }
    }
}

// Two readers of GEDCOM files for the tests. A small one of ours splits a file into lines and
// checks its structure; the independent one, read-gedcom (written by others, run by node
// through tools/gedcom-check), must accept every file that a test exports.
#pragma once

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace folio::test {

struct GedcomLine {
    int level = -1;
    std::string xref; // "@I1@" of a record line
    std::string tag;
    std::string value;
};

// The problems of a file's structure, one text each; empty for a sound file: CR LF at every
// line end, no byte order mark, levels that rise by at most one and start at 0, HEAD first
// and TRLR last, each record's identifier once, and a record for every pointer but those of
// the tags in `mayDangle` (the export points to associated persons whether they are in the
// file or not).
inline std::vector<std::string> gedcomProblems(const std::string& file,
                                               std::vector<GedcomLine>* lines = nullptr,
                                               const std::set<std::string>& mayDangle = {"ASSO"}) {
    std::vector<std::string> problems;
    if (file.rfind("\xEF\xBB\xBF", 0) == 0)
        problems.push_back("byte order mark");
    std::vector<GedcomLine> parsed;
    std::size_t start = 0;
    int previous = -1;
    while (start < file.size()) {
        const std::size_t end = file.find("\r\n", start);
        if (end == std::string::npos) {
            problems.push_back("last line without CR LF");
            break;
        }
        const std::string text = file.substr(start, end - start);
        const std::size_t n = parsed.size() + 1;
        if (text.find_first_of("\r\n") != std::string::npos)
            problems.push_back("line " + std::to_string(n) + ": a lone CR or LF");
        GedcomLine line;
        std::istringstream in(text);
        in >> line.level;
        std::string word;
        in >> word;
        if (!word.empty() && word.front() == '@') {
            line.xref = word;
            in >> word;
        }
        line.tag = word;
        std::getline(in, line.value);
        if (!line.value.empty() && line.value.front() == ' ')
            line.value.erase(0, 1);
        if (line.level < 0 || line.tag.empty())
            problems.push_back("line " + std::to_string(n) + ": no level or tag: " + text);
        if (line.level > previous + 1)
            problems.push_back("line " + std::to_string(n) + ": level jumps: " + text);
        previous = line.level;
        parsed.push_back(line);
        start = end + 2;
    }
    if (parsed.empty() || parsed.front().tag != "HEAD")
        problems.push_back("no HEAD at the start");
    if (parsed.empty() || parsed.back().tag != "TRLR")
        problems.push_back("no TRLR at the end");
    std::set<std::string> records;
    for (const GedcomLine& l : parsed)
        if (l.level == 0 && !l.xref.empty() && !records.insert(l.xref).second)
            problems.push_back("record " + l.xref + " twice");
    for (const GedcomLine& l : parsed)
        // A pointer is "@", an identifier without "@" and "@"; "@@" begins a text.
        if (l.value.size() > 2 && l.value.front() == '@' &&
            l.value.find('@', 1) == l.value.size() - 1 && !records.count(l.value) &&
            !mayDangle.count(l.tag))
            problems.push_back("pointer " + l.value + " under " + l.tag + " has no record");
    if (lines)
        *lines = std::move(parsed);
    return problems;
}

// What the independent reader says of the files: one line per file it rejects, "" when it
// accepts them all. A reader that can't run is a problem too.
inline std::string independentReaderProblems(const std::vector<std::string>& files) {
    if (files.empty())
        return "";
    std::string command = "node '" FOLIO_GEDCOM_CHECK "'";
    for (const std::string& f : files)
        command += " '" + f + "'";
    std::string output;
    FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (!pipe)
        return "the independent reader doesn't start";
    std::array<char, 512> buffer{};
    while (std::fgets(buffer.data(), buffer.size(), pipe))
        output += buffer.data();
    const int status = ::pclose(pipe);
    if (status != 0 && output.empty())
        output = "the independent reader ended with status " + std::to_string(status);
    return output;
}

// Every GEDCOM file under a folder: the files that begin with a header.
inline std::vector<std::string> gedcomFilesUnder(const std::filesystem::path& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file())
            continue;
        char start[8] = {};
        std::ifstream(entry.path(), std::ios::binary).read(start, 8);
        if (std::string(start, 8) == "0 HEAD\r\n")
            files.push_back(entry.path().string());
    }
    return files;
}

} // namespace folio::test

#include "frame/ini.h"

#include "engine/text_util.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

namespace folio {

namespace {

constexpr std::size_t MaxValue = 255; // the buffer of 256 characters holds a NUL too

// "[name]" gives name, trimmed; anything else nullopt-like (empty optional via bool).
bool sectionName(std::string_view line, std::string& name) {
    line = trimWhitespace(line);
    if (line.size() < 2 || line.front() != '[')
        return false;
    const std::size_t close = line.find(']');
    if (close == std::string_view::npos)
        return false;
    name = std::string(trimWhitespace(line.substr(1, close - 1)));
    return true;
}

bool keyLine(std::string_view line, std::string& key, std::string& value) {
    const std::size_t eq = line.find('=');
    if (eq == std::string_view::npos)
        return false;
    const std::string_view k = trimWhitespace(line.substr(0, eq));
    if (k.empty() || k.front() == ';')
        return false;
    key = std::string(k);
    value = std::string(trimWhitespace(line.substr(eq + 1)));
    return true;
}

std::string unquoted(std::string value) {
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front())
        return value.substr(1, value.size() - 2);
    return value;
}

std::string cut(const std::string& value) {
    return utf8Left(value, MaxValue);
}

std::vector<std::string> readLines(const std::string& path, bool& crlf) {
    std::vector<std::string> lines;
    std::ifstream in(path, std::ios::binary);
    std::string line;
    crlf = false;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
            crlf = true;
        }
        lines.push_back(line);
    }
    return lines;
}

} // namespace

std::string ini_lesen(const std::string& datei, const std::string& sektion,
                      const std::string& schluessel, const std::string& standard) {
    std::ifstream in(datei, std::ios::binary);
    std::string line, section, key, value;
    bool inSection = false;
    while (in && std::getline(in, line)) {
        if (sectionName(line, section)) {
            inSection = equalsNoCase(section, trimWhitespace(sektion));
            continue;
        }
        if (inSection && keyLine(line, key, value) && equalsNoCase(key, trimWhitespace(schluessel)))
            return cut(unquoted(value));
    }
    return cut(std::string(trimBlanksRight(standard)));
}

void ini_schreiben(const std::string& datei, const std::string& sektion,
                   const std::string& schluessel, const std::string& wert) {
    bool crlf = false;
    std::vector<std::string> lines = readLines(datei, crlf);
    const std::string entry = std::string(trimWhitespace(schluessel)) + "=" + wert;

    std::string section, key, value;
    bool inSection = false;
    std::size_t sectionEnd = std::string::npos; // behind the last non-blank line of the section
    bool written = false;
    for (std::size_t i = 0; i < lines.size() && !written; ++i) {
        if (sectionName(lines[i], section)) {
            if (inSection)
                break;
            inSection = equalsNoCase(section, trimWhitespace(sektion));
            if (inSection)
                sectionEnd = i + 1;
            continue;
        }
        if (!inSection)
            continue;
        if (keyLine(lines[i], key, value) && equalsNoCase(key, trimWhitespace(schluessel))) {
            lines[i] = key + "=" + wert; // the key keeps its spelling
            written = true;
        } else if (!trimWhitespace(lines[i]).empty()) {
            sectionEnd = i + 1;
        }
    }
    if (!written) {
        if (sectionEnd != std::string::npos) {
            lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(sectionEnd), entry);
        } else {
            lines.push_back("[" + sektion + "]");
            lines.push_back(entry);
        }
    }

    std::ostringstream out;
    for (const std::string& l : lines)
        out << l << (crlf ? "\r\n" : "\n");
    const std::string temp = datei + ".tmp";
    {
        std::ofstream file(temp, std::ios::binary | std::ios::trunc);
        if (!file)
            return;
        file << out.str();
        file.flush();
        if (!file) {
            file.close();
            std::error_code ec;
            std::filesystem::remove(temp, ec);
            return;
        }
    }
    std::error_code ec;
    std::filesystem::rename(temp, datei, ec);
    if (ec)
        std::filesystem::remove(temp, ec);
}

} // namespace folio

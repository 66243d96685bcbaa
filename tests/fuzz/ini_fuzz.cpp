// The ini files: whatever a file holds, a value written under a section and a key is read back
// as the profile calls read it (trimmed, one pair of quotes taken off, cut at 255 characters),
// and every other key reads as before. The input is the file, then the section, the key and
// the value, separated by NUL bytes.
#include "engine/text_util.h"
#include "engine/utf8.h"
#include "frame/ini.h"
#include "fuzz_check.h"

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

namespace {

using folio::fuzz::pruefen;

std::vector<std::string> teile(const std::string& eingabe) {
    std::vector<std::string> t(1);
    for (char c : eingabe) {
        if (c == '\0' && t.size() < 4)
            t.emplace_back();
        else
            t.back() += c;
    }
    t.resize(4);
    return t;
}

// A name that a line can hold as a name: not blank, no line break, no "=" (a key) or "]" (a
// section), not taken for a comment or a section.
bool ist_name(const std::string& n, bool schluessel) {
    const std::string_view t = folio::trimWhitespace(n);
    return !t.empty() && n.find_first_of(schluessel ? "\r\n=" : "\r\n]") == std::string::npos &&
           n.find('\0') == std::string::npos && !(schluessel && (t[0] == ';' || t[0] == '['));
}

// The sections and keys of a file, as a reader finds them.
std::vector<std::pair<std::string, std::string>> schluessel(const std::string& inhalt) {
    std::vector<std::pair<std::string, std::string>> alle;
    std::istringstream in(inhalt);
    std::string zeile, sektion;
    while (std::getline(in, zeile)) {
        const std::string_view t = folio::trimWhitespace(zeile);
        if (t.size() >= 2 && t[0] == '[' && t.find(']') != std::string_view::npos) {
            sektion = std::string(t.substr(1, t.find(']') - 1));
            continue;
        }
        const std::size_t gleich = zeile.find('=');
        if (gleich != std::string::npos)
            alle.emplace_back(sektion, zeile.substr(0, gleich));
    }
    return alle;
}

std::string datei_name() {
    static const std::string name = [] {
        const std::string ordner = std::filesystem::temp_directory_path().string() +
                                   "/folio-ini-fuzz-" + std::to_string(::getpid());
        std::filesystem::create_directories(ordner);
        return ordner + "/Programm.ini";
    }();
    return name;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* daten, std::size_t groesse) {
    using namespace folio;
    const std::vector<std::string> t =
        teile(std::string(reinterpret_cast<const char*>(daten), groesse));
    const std::string &inhalt = t[0], &sektion = t[1], &schluessel_name = t[2], &wert = t[3];
    if (!ist_name(sektion, false) || !ist_name(schluessel_name, true) ||
        wert.find_first_of("\r\n") != std::string::npos)
        return 0;
    const std::string datei = datei_name();
    std::ofstream(datei, std::ios::binary | std::ios::trunc) << inhalt;

    std::vector<std::pair<std::string, std::string>> andere;
    std::vector<std::string> vorher;
    for (const auto& [s, k] : schluessel(inhalt)) {
        if (equalsNoCase(trimWhitespace(s), trimWhitespace(sektion)) &&
            equalsNoCase(trimWhitespace(k), trimWhitespace(schluessel_name)))
            continue;
        andere.emplace_back(s, k);
        vorher.push_back(ini_lesen(datei, s, k, "\x01"));
    }

    ini_schreiben(datei, sektion, schluessel_name, wert);

    std::string soll(trimWhitespace(wert));
    if (soll.size() >= 2 && (soll[0] == '"' || soll[0] == '\'') && soll.back() == soll[0])
        soll = soll.substr(1, soll.size() - 2);
    soll = utf8Left(soll, 255);
    const std::string gelesen = ini_lesen(datei, sektion, schluessel_name, "\x01");
    pruefen(gelesen == soll, "the value written reads back as '" + gelesen + "'", wert);
    for (std::size_t i = 0; i < andere.size(); ++i)
        pruefen(ini_lesen(datei, andere[i].first, andere[i].second, "\x01") == vorher[i],
                "the key '" + andere[i].second + "' changed", inhalt);
    return 0;
}

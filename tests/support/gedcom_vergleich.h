// Two exported files compared as a user compares them: without the lines of the header that
// tell when the file was written, and with the first line in which they differ named.
#pragma once

#include <fstream>
#include <sstream>
#include <string>

namespace folio::test {

// A file without the lines that tell when it was written.
inline std::string ohne_zeitpunkt(const std::string& pfad) {
    std::ifstream in(pfad, std::ios::binary);
    std::string zeile, rest;
    while (std::getline(in, zeile))
        if (zeile.rfind("1 DATE ", 0) != 0 && zeile.rfind("2 TIME ", 0) != 0)
            rest += zeile + "\n";
    return rest;
}

// The first line in which two texts differ, with its number, for a failure's message.
inline std::string erste_abweichung(const std::string& a, const std::string& b) {
    std::istringstream ia(a), ib(b);
    std::string za, zb;
    for (int n = 1;; ++n) {
        const bool ea = !std::getline(ia, za), eb = !std::getline(ib, zb);
        if (ea && eb)
            return "";
        if (ea || eb || za != zb)
            return "line " + std::to_string(n) + ": \"" + za + "\" / \"" + zb + "\"";
    }
}

} // namespace folio::test

#include "gedcom/ausgabe.h"

#include "engine/abbruch.h"
#include "engine/errors.h"

#include <cerrno>
#include <cstring>

namespace folio {

namespace {
// The file is written in pieces of this size: few system calls, little memory.
constexpr std::size_t Puffergroesse = 1 << 20;
} // namespace

GedcomAusgabe::GedcomAusgabe(const std::string& ziel) : ziel_(ziel), datei_(ziel) {
    puffer_.reserve(Puffergroesse + (Puffergroesse >> 4));
    out_.open(datei_.path(), std::ios::binary | std::ios::trunc);
    if (!out_)
        fehler("can't be created");
}

GedcomAusgabe::~GedcomAusgabe() = default; // an unfinished output goes with datei_

void GedcomAusgabe::fehler(const std::string& was) {
    const int e = errno;
    throw Error(e == ENOSPC ? err::DiskFull : err::CannotOpenFile,
                "The GEDCOM file '" + ziel_ + "' " + was +
                    (e ? ": " + std::string(std::strerror(e)) : ""));
}

void GedcomAusgabe::schreiben(std::string_view bytes) {
    abbruch_pruefen();
    puffer_.append(bytes);
    if (puffer_.size() >= Puffergroesse)
        leeren();
}

void GedcomAusgabe::leeren() {
    errno = 0;
    out_.write(puffer_.data(), static_cast<std::streamsize>(puffer_.size()));
    if (!out_)
        fehler("could not be written");
    puffer_.clear();
}

void GedcomAusgabe::abschliessen() {
    leeren();
    errno = 0;
    out_.flush();
    out_.close();
    if (!out_)
        fehler("could not be written");
    try {
        datei_.putInPlace();
    } catch (const std::exception& e) {
        throw Error(err::CannotOpenFile,
                    "The GEDCOM file '" + ziel_ + "' could not replace the old one: " + e.what());
    }
}

} // namespace folio

#include "gedcom/ausgabe.h"

#include "engine/abbruch.h"
#include "engine/errors.h"
#include "engine/stoerung.h"

#include <cerrno>

namespace folio {

namespace {
// The file is written in pieces of this size: few system calls, little memory. At most
// this many wait for the writing thread; the run waits for it where the disk is slower.
constexpr std::size_t Puffergroesse = 1 << 20;
constexpr std::size_t HoechstensWartend = 4;
} // namespace

GedcomAusgabe::GedcomAusgabe(const std::string& ziel) : ziel_(ziel), datei_(ziel) {
    puffer_.reserve(Puffergroesse + (Puffergroesse >> 4));
    errno = 0;
    out_.open(datei_.path(), std::ios::binary | std::ios::trunc);
    if (!out_)
        fehler("can't be created", errno);
    thread_ = std::thread([this] { schreiber(); });
}

GedcomAusgabe::~GedcomAusgabe() {
    anhalten(); // an unfinished output goes with datei_
}

void GedcomAusgabe::fehler(const std::string& was, int e) {
    throw dateifehler(e > 0 ? std::error_code(e, std::generic_category()) : std::error_code(),
                      "The GEDCOM file '" + ziel_ + "' " + was);
}

void GedcomAusgabe::schreiber() {
    std::unique_lock<std::mutex> sperre(mutex_);
    for (;;) {
        bedingung_.wait(sperre, [&] { return !voll_.empty() || ende_; });
        if (voll_.empty())
            return;
        std::string puffer = std::move(voll_.front());
        voll_.pop_front();
        if (fehlernummer_ == 0) {
            sperre.unlock();
            errno = 0;
            int e = stoerung::zaehlen(stoerung::Art::Schreiben);
            if (e == 0) {
                out_.write(puffer.data(), static_cast<std::streamsize>(puffer.size()));
                e = out_ ? 0 : (errno ? errno : -1);
            }
            sperre.lock();
            if (e != 0)
                fehlernummer_ = e;
        }
        puffer.clear();
        frei_.push_back(std::move(puffer));
        bedingung_.notify_all();
    }
}

void GedcomAusgabe::anhalten() {
    if (!thread_.joinable())
        return;
    {
        std::lock_guard<std::mutex> sperre(mutex_);
        ende_ = true;
    }
    bedingung_.notify_all();
    thread_.join();
}

void GedcomAusgabe::fehler_pruefen() {
    int e = 0;
    {
        std::lock_guard<std::mutex> sperre(mutex_);
        e = fehlernummer_;
    }
    if (e != 0)
        fehler("could not be written", e);
}

void GedcomAusgabe::schreiben(std::string_view bytes) {
    abbruch_pruefen();
    puffer_.append(bytes);
    if (puffer_.size() >= Puffergroesse)
        leeren();
}

// Hands the buffer to the writing thread and takes an empty one.
void GedcomAusgabe::leeren() {
    std::unique_lock<std::mutex> sperre(mutex_);
    bedingung_.wait(sperre, [&] { return voll_.size() < HoechstensWartend || fehlernummer_; });
    if (fehlernummer_ != 0) {
        sperre.unlock();
        fehler_pruefen();
    }
    voll_.push_back(std::move(puffer_));
    if (frei_.empty()) {
        puffer_ = std::string();
        puffer_.reserve(Puffergroesse + (Puffergroesse >> 4));
    } else {
        puffer_ = std::move(frei_.back());
        frei_.pop_back();
    }
    sperre.unlock();
    bedingung_.notify_all();
}

void GedcomAusgabe::abschliessen() {
    leeren();
    anhalten(); // after the last buffer is written
    fehler_pruefen();
    errno = 0;
    out_.flush();
    out_.close();
    if (!out_)
        fehler("could not be written", errno);
    try {
        datei_.putInPlace();
    } catch (const std::exception& e) {
        throw Error(err::CannotOpenFile,
                    "The GEDCOM file '" + ziel_ + "' could not replace the old one: " + e.what());
    }
}

} // namespace folio

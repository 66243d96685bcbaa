#include "gedcom/reihenschreiber.h"

namespace folio {

namespace {
// Rows that may wait for the thread beside, and rows that may pile up behind one it writes.
constexpr std::size_t HoechstensBeiIhm = 2, HoechstensOffen = 4;
} // namespace

Reihenschreiber::Reihenschreiber(Exportlauf& lauf) : lauf_(lauf), thread_([this] { laufen(); }) {}

Reihenschreiber::~Reihenschreiber() {
    anhalten();
}

void Reihenschreiber::laufen() {
    std::unique_lock<std::mutex> sperre(mutex_);
    for (;;) {
        bedingung_.wait(sperre, [&] { return !schlange_.empty() || ende_; });
        if (schlange_.empty())
            return;
        Eintrag& e = *schlange_.front();
        if (!fehler_) {
            sperre.unlock();
            std::exception_ptr fehler;
            try {
                Exportlauf teil(lauf_, e.text);
                e.reihe(teil);
            } catch (...) {
                fehler = std::current_exception();
            }
            sperre.lock();
            if (fehler)
                fehler_ = fehler;
        }
        e.fertig = true;
        schlange_.pop_front();
        bedingung_.notify_all();
    }
}

void Reihenschreiber::anhalten() {
    if (!thread_.joinable())
        return;
    {
        std::lock_guard<std::mutex> sperre(mutex_);
        ende_ = true;
    }
    bedingung_.notify_all();
    thread_.join();
}

bool Reihenschreiber::fertig(const Eintrag& e) {
    std::lock_guard<std::mutex> sperre(mutex_);
    if (fehler_)
        std::rethrow_exception(fehler_);
    return e.fertig;
}

void Reihenschreiber::ausschreiben(bool alle) {
    while (!reihen_.empty()) {
        Eintrag& e = *reihen_.front();
        if (!fertig(e)) {
            if (!alle && reihen_.size() < HoechstensOffen)
                return;
            std::unique_lock<std::mutex> sperre(mutex_);
            bedingung_.wait(sperre, [&] { return e.fertig || fehler_; });
            continue; // fertig() raises a failure
        }
        lauf_.ausgabe.schreiben(e.text);
        geschrieben_ += e.anzahl;
        reihen_.pop_front(); // and with it what the row held
    }
}

void Reihenschreiber::schreiben(Reihe reihe, std::int64_t anzahl) {
    reihen_.push_back(std::make_unique<Eintrag>());
    Eintrag& e = *reihen_.back();
    e.reihe = std::move(reihe);
    e.anzahl = anzahl;
    bool uebergeben = false;
    {
        std::lock_guard<std::mutex> sperre(mutex_);
        if (schlange_.size() < HoechstensBeiIhm) {
            schlange_.push_back(&e);
            uebergeben = true;
        }
    }
    if (uebergeben) {
        bedingung_.notify_all();
    } else {
        Exportlauf teil(lauf_, e.text);
        e.reihe(teil);
        std::lock_guard<std::mutex> sperre(mutex_);
        e.fertig = true;
    }
    ausschreiben(false);
}

void Reihenschreiber::beenden() {
    anhalten();
    ausschreiben(true);
}

} // namespace folio

#include "engine/abbruch.h"

#include <atomic>

namespace folio {

namespace {
// Lock-free, so that a signal handler may set it.
std::atomic<int> angefordert{0};
static_assert(std::atomic<int>::is_always_lock_free);
} // namespace

void abbruch_anfordern(int signal) noexcept {
    angefordert.store(signal, std::memory_order_relaxed);
}

int abbruch_angefordert() noexcept {
    return angefordert.load(std::memory_order_relaxed);
}

void abbruch_pruefen() {
    if (const int signal = abbruch_angefordert())
        throw Abbruch(signal);
}

void abbruch_zuruecksetzen() noexcept {
    angefordert.store(0, std::memory_order_relaxed);
}

} // namespace folio

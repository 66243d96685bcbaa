// A run on a failing disk, once for each of its reads, writes and syncs: the run is counted
// once without a failure, then repeated with the Nth operation of a kind failing, and with the
// disk full from the Nth write on. Every N where FOLIO_TEST_IO_ALLE is set (scripts/fuzz sets
// it), else the first few, the last few and a spread between them, so that the suite stays
// quick. FOLIO_TEST_IO_NUR picks one of them.
#pragma once

#include "engine/stoerung.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <set>
#include <string>

namespace folio::test {

inline std::set<long long> stoerstellen(long long gesamt) {
    std::set<long long> n;
    const bool alle = std::getenv("FOLIO_TEST_IO_ALLE") != nullptr;
    const long long schritt = alle ? 1 : std::max(1LL, gesamt / 12);
    for (long long i = 1; i <= gesamt; i += schritt)
        n.insert(i);
    for (long long i = 0; i < 3 && gesamt - i >= 1; ++i)
        n.insert(gesamt - i);
    for (long long i = 1; i <= std::min(gesamt, 3LL); ++i)
        n.insert(i);
    return n;
}

inline const char* artname(const stoerung::Plan& p) {
    if (p.voll)
        return "full disk from write";
    return p.art == stoerung::Art::Lesen ? "read" : p.art == stoerung::Art::Sync ? "sync" : "write";
}

// FOLIO_TEST_IO_NUR="write 465" (as a failure names it) runs that one plan alone, "write" every
// plan of that kind.
inline bool gewaehlt(const stoerung::Plan& p) {
    const char* nur = std::getenv("FOLIO_TEST_IO_NUR");
    return !nur || std::string(nur) == artname(p) ||
           std::string(nur) == std::string(artname(p)) + " " + std::to_string(p.nummer);
}

// Runs `lauf` (after `vorbereiten`) on a failing disk for every plan; `pruefen` looks at the
// outcome: the plan, whether its failure happened, and the text of the error that `lauf`
// returned ("" for none).
inline void auf_fehlerhafter_platte(const std::function<void()>& vorbereiten,
                                    const std::function<std::string()>& lauf,
                                    const std::function<void(const stoerung::Plan&, bool ausgeloest,
                                                             const std::string& fehler)>& pruefen) {
    using stoerung::Art;
    // Counted once, nothing failing.
    vorbereiten();
    stoerung::einrichten({Art::Schreiben, 1LL << 62, false});
    const std::string ohne = lauf();
    const long long gesamt[] = {stoerung::gezaehlt(Art::Lesen), stoerung::gezaehlt(Art::Schreiben),
                                stoerung::gezaehlt(Art::Sync)};
    stoerung::aufheben();
    std::printf("counted: %lld reads, %lld writes, %lld syncs\n", gesamt[0], gesamt[1], gesamt[2]);
    ASSERT_EQ(ohne, "") << "the run fails without a failing disk";
    ASSERT_GT(gesamt[1], 0) << "the run writes nothing that is counted";
    for (const Art art : {Art::Lesen, Art::Schreiben, Art::Sync}) {
        for (const bool voll : {false, true}) {
            if (voll && art != Art::Schreiben)
                continue;
            for (const long long n : stoerstellen(gesamt[static_cast<int>(art)])) {
                const stoerung::Plan plan{art, n, voll};
                if (!gewaehlt(plan))
                    continue;
                const std::string name = std::string(artname(plan)) + " " + std::to_string(n);
                SCOPED_TRACE(name);
                // A long run at every N says where it is, so that a crash names its plan.
                if (std::getenv("FOLIO_TEST_IO_ALLE"))
                    std::fprintf(stderr, "plan: %s\n", name.c_str());
                vorbereiten();
                stoerung::einrichten(plan);
                const std::string fehler = lauf();
                const bool ausgeloest = stoerung::ausgeloest();
                stoerung::aufheben();
                pruefen(plan, ausgeloest, fehler);
                if (::testing::Test::HasFatalFailure())
                    return;
            }
        }
    }
}

} // namespace folio::test

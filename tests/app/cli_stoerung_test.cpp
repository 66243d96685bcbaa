// The command line on a failing disk: the sample tree exported with each read, write and sync
// of the run failing in turn (the start-up's included), and with the disk full from each write
// on. A failure ends in a message that names the file it concerns; the target stays as it was
// and no part of it is left; the tree keeps its marks and opens, and the next run writes the
// same file.
#include "support/cli_fixture.h"
#include "support/stoerung_schleife.h"

#include <gtest/gtest.h>

namespace folio::test {
namespace {

struct Zaehlung {
    long long lesen = 0, schreiben = 0, sync = 0;
    bool ausgeloest = false;
};

// What the program counted, from the line it ends with.
Zaehlung gezaehlt(const std::string& ausgabe) {
    Zaehlung z;
    int ausgeloest = 0;
    const std::size_t p = ausgabe.find("FOLIO_TEST_IO read=");
    if (p != std::string::npos)
        std::sscanf(ausgabe.c_str() + p, "FOLIO_TEST_IO read=%lld write=%lld sync=%lld failed=%d",
                    &z.lesen, &z.schreiben, &z.sync, &ausgeloest);
    z.ausgeloest = ausgeloest == 1;
    return z;
}

TEST_F(Export, EachFailingReadWriteOrSyncOfARunLosesNothing) {
    const std::string vorher = marks(tree);
    auto lauf = [&](const std::string& plan) {
        std::ofstream(target, std::ios::trunc) << "old";
        return run("FOLIO_TEST_IO=" + plan + " " + cli + " export '" + tree + "' -o '" + target +
                   "' --all --overwrite");
    };
    Result r = lauf("write:999999999");
    ASSERT_EQ(r.status, 0) << r.output;
    const std::set<int> alle = persons(readFile(target));
    const Zaehlung gesamt = gezaehlt(r.output);
    ASSERT_GT(gesamt.lesen, 0) << r.output;

    const std::pair<const char*, long long> arten[] = {{"read", gesamt.lesen},
                                                       {"write", gesamt.schreiben},
                                                       {"full", gesamt.schreiben},
                                                       {"sync", gesamt.sync}};
    for (const auto& [art, anzahl] : arten) {
        for (const long long n : stoerstellen(anzahl)) {
            const std::string plan = std::string(art) + ":" + std::to_string(n);
            SCOPED_TRACE(plan);
            r = lauf(plan);
            if (r.status == 0) {
                EXPECT_EQ(persons(readFile(target)), alle) << r.output;
            } else {
                EXPECT_TRUE(gezaehlt(r.output).ausgeloest) << r.output;
                EXPECT_NE(r.output.find(dir.path().string()), std::string::npos) << r.output;
                EXPECT_EQ(readFile(target), "old") << r.output;
            }
            EXPECT_FALSE(fs::exists(target + ".part"));
            EXPECT_EQ(marks(tree), vorher);
        }
    }
    r = run(cli + " export '" + tree + "' -o '" + target + "' --all --overwrite");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_EQ(persons(readFile(target)), alle);
}

} // namespace
} // namespace folio::test

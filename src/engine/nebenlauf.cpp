#include "engine/nebenlauf.h"

#include "engine/connection_setup.h"
#include "engine/engine.h"
#include "engine/errors.h"

namespace folio::dao {

namespace {

// Whether a second connection sees what the run's connection sees: the tree is a file, and
// the run has changed nothing that isn't committed.
bool gleiche_sicht(Database& db) {
    sqlite3* c = db.connection().get();
    const char* datei = sqlite3_db_filename(c, "main");
    if (!datei || !*datei)
        return false;
    return sqlite3_txn_state(c, "main") != SQLITE_TXN_WRITE || sqlite3_total_changes64(c) == 0;
}

} // namespace

Nebenlauf::Nebenlauf(Database& db, Arbeit arbeit) : db_(db), arbeit_(std::move(arbeit)) {
    if (!gleiche_sicht(db))
        return;
    try {
        verbindung_ = sqlite::Connection(sqlite3_db_filename(db.connection().get(), "main"), true);
        setUpConnection(verbindung_);
        // A lock is not waited for: the work is done on the run's connection instead.
        sqlite3_busy_handler(verbindung_.get(), nullptr, nullptr);
        // Its tables are read once from front to back: a few pages of cache do.
        verbindung_.exec("PRAGMA cache_size = -4096; BEGIN; SELECT count(*) FROM sqlite_master");
    } catch (const Error&) {
        verbindung_ = sqlite::Connection();
        return;
    }
    nebenher_ = true;
    thread_ = std::thread([this] {
        try {
            arbeit_(verbindung_);
            verbindung_.exec("COMMIT");
        } catch (...) {
            fehler_ = std::current_exception();
        }
    });
}

Nebenlauf::~Nebenlauf() {
    if (!thread_.joinable())
        return;
    sqlite3_interrupt(verbindung_.get()); // nobody waits for it any more
    thread_.join();
}

void Nebenlauf::warten() {
    if (gewartet_)
        return;
    gewartet_ = true;
    if (!nebenher_) {
        arbeit_(db_.connection());
        return;
    }
    thread_.join();
    verbindung_.close();
    if (fehler_)
        std::rethrow_exception(fehler_);
}

} // namespace folio::dao

// Reading of the tree on a thread of its own, beside the run: a second connection, for
// reading only, that sees the tree as it was last committed, so that two tables are read at
// once on two cores. The run hands it only tables that it hasn't changed itself.
//
// Where the tree can't be read beside the run's connection (a database in memory, changes
// of the run not yet committed, a lock that another connection holds), the work runs on the
// run's own connection when it is waited for: the same rows, one after the other.
#pragma once

#include "engine/sqlite_handle.h"

#include <exception>
#include <functional>
#include <thread>

namespace folio::dao {

class Database;

class Nebenlauf {
public:
    using Arbeit = std::function<void(sqlite::Connection&)>;
    // Starts `arbeit` at once where it can run beside the run.
    Nebenlauf(Database& db, Arbeit arbeit);
    // Stops the work where nobody waited for it, and waits for it to end; a failure of it
    // is dropped, for the run fails already.
    ~Nebenlauf();
    Nebenlauf(const Nebenlauf&) = delete;
    Nebenlauf& operator=(const Nebenlauf&) = delete;

    // Waits for the work (or does it now) and raises its failure. Once.
    void warten();
    // Whether the work runs on a thread of its own.
    bool nebenher() const { return nebenher_; }

private:
    Database& db_;
    Arbeit arbeit_;
    sqlite::Connection verbindung_;
    std::thread thread_;
    std::exception_ptr fehler_;
    bool nebenher_ = false, gewartet_ = false;
};

} // namespace folio::dao

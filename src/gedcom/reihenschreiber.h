// Records written on two threads with the order of the file kept: the run's thread hands rows
// of records (a thousand persons, two thousand families) to a thread beside it, or writes a
// row itself where one waits there already. Each row is written into a text of its own, and
// the texts go into the file in the order in which the rows were given. The writers of a row
// may only ask the run's tables, which must have read everything before
// (Nachschlagetabellen::alles_laden).
#pragma once

#include "gedcom/exportlauf.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace folio {

class Reihenschreiber {
public:
    // Writes the records of one row into the part of the run it is given.
    using Reihe = std::function<void(Exportlauf& teil)>;

    explicit Reihenschreiber(Exportlauf& lauf);
    // Waits for the thread; rows not yet in the file are dropped, for the run fails.
    ~Reihenschreiber();
    Reihenschreiber(const Reihenschreiber&) = delete;
    Reihenschreiber& operator=(const Reihenschreiber&) = delete;

    // A row of `anzahl` records, written beside or here; the rows done at the front go into
    // the file. Raises what went wrong on the thread beside.
    void schreiben(Reihe reihe, std::int64_t anzahl);
    // Waits for every row and puts the rest into the file.
    void beenden();
    // The records of the rows in the file so far.
    std::int64_t geschrieben() const { return geschrieben_; }

private:
    struct Eintrag {
        Reihe reihe;
        std::int64_t anzahl = 0;
        std::string text;
        bool fertig = false; // written into `text`
    };
    void laufen(); // the thread beside
    void anhalten();
    bool fertig(const Eintrag& e);
    void ausschreiben(bool alle);

    Exportlauf& lauf_;
    std::deque<std::unique_ptr<Eintrag>> reihen_; // given, not yet in the file, in order
    std::int64_t geschrieben_ = 0;
    std::mutex mutex_;
    std::condition_variable bedingung_;
    std::deque<Eintrag*> schlange_; // for the thread beside: the first is being written
    bool ende_ = false;
    std::exception_ptr fehler_;
    std::thread thread_; // last: it starts when the rest is there
};

} // namespace folio

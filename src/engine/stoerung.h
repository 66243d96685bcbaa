// Failing input and output on purpose, the way the store tests itself: every read, write and
// sync of the program's files — the store's pages through a file system of its own put in
// front of the store's, the exported file and the files written beside their targets through
// `stoerung::zaehlen` — is counted, and the one with the number asked for fails as a failing
// disk fails it. The tests loop that number over every operation of a run; the command line
// takes it from FOLIO_TEST_IO (see `aus_umgebung`). Without a plan nothing is counted and
// nothing fails.
#pragma once

#include <string>

namespace folio::stoerung {

enum class Art { Lesen, Schreiben, Sync };

struct Plan {
    Art art = Art::Schreiben;
    long long nummer = 0; // the operation of this kind that fails, from 1
    // A full disk: from that write on, every write fails (with ENOSPC), not just the one.
    bool voll = false;
};

// Counts from now on, and fails as `plan` says; the store's files opened from now on go
// through the counting file system.
void einrichten(const Plan& plan);
// Stops counting and failing.
void aufheben();
// The operations of a kind counted since `einrichten`.
long long gezaehlt(Art art);
// Whether the planned failure has happened.
bool ausgeloest();

// Counts one operation of the program's own; the error number (errno) to fail it with, or 0.
int zaehlen(Art art);

// Sets up a plan from the environment variable FOLIO_TEST_IO: "read:N", "write:N", "sync:N" or
// "full:N"; at the program's end, a line on stderr says what was counted and whether the
// failure happened. Does nothing where it isn't set; raises folio::Error where it can't be
// read.
void aus_umgebung();

} // namespace folio::stoerung

// The output file of an export run. It is written beside the target and put in its place
// only when the run is complete, so that a failed run leaves the old file as it was and no
// half-written file behind. The run (Exportlauf) owns it; every writer appends through it.
// The bytes go to the file on a thread of their own, a buffer at a time, while the run
// formats the next ones.
#pragma once

#include "engine/file_beside.h"

#include <condition_variable>
#include <deque>
#include <fstream>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace folio {

class GedcomAusgabe {
public:
    // Opens the output for the target path. Raises a folio::Error that names the path where
    // it can't be created (missing folder, no right to write).
    explicit GedcomAusgabe(const std::string& ziel);
    ~GedcomAusgabe();
    GedcomAusgabe(const GedcomAusgabe&) = delete;
    GedcomAusgabe& operator=(const GedcomAusgabe&) = delete;

    // Appends bytes as they are, through a buffer of its own. Raises where they can't be
    // written (a full disk): at the latest a buffer or two after the failed write.
    void schreiben(std::string_view bytes);
    // Writes what waits, closes the output and puts it in place of the target.
    void abschliessen();

private:
    [[noreturn]] void fehler(const std::string& was, int fehlernummer);
    void leeren();
    void fehler_pruefen();
    void schreiber(); // the writing thread
    void anhalten();  // ends the writing thread once it has written what waits
    std::string ziel_;
    std::string puffer_; // what waits for the next handing over
    FileBeside datei_;
    std::ofstream out_;

    std::mutex mutex_;
    std::condition_variable bedingung_;
    std::deque<std::string> voll_;  // handed over, in order, not yet written
    std::vector<std::string> frei_; // written, to be filled again
    bool ende_ = false;             // nothing more comes
    int fehlernummer_ = 0;          // errno of the failed write, or -1 where none is known
    std::thread thread_;
};

} // namespace folio

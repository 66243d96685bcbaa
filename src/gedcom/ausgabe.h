// The output file of an export run. It is written beside the target and put in its place
// only when the run is complete, so that a failed run leaves the old file as it was and no
// half-written file behind. The run (Exportlauf) owns it; every writer appends through it.
#pragma once

#include "engine/file_beside.h"

#include <fstream>
#include <string>
#include <string_view>

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
    // written (a full disk).
    void schreiben(std::string_view bytes);
    // Closes the output and puts it in place of the target.
    void abschliessen();

private:
    [[noreturn]] void fehler(const std::string& was);
    void leeren();
    std::string ziel_;
    std::string puffer_; // what waits for the next write to the file
    FileBeside datei_;
    std::ofstream out_;
};

} // namespace folio

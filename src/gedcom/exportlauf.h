// One export run: what it is told (Exportoptionen, read once when the run starts, by the
// wizard from its controls or by the command line from its arguments), where it writes,
// where it reports how far it is, and the lookup tables it keeps while it lasts. The run
// makes an Exportlauf and hands it to every writer; nothing of it outlives the run.
#pragma once

#include "database/markenstand.h"
#include "gedcom/ausgabe.h"
#include "gedcom/nachschlagen.h"

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace folio {

enum class Zeichensatz { Ansi, Utf8 };

// The table of date modifiers of geddate.ini: the text written into a DATE line, and the
// qualifier of the database that it translates, in the order of the file's lines.
using Datumszusaetze = std::vector<std::pair<std::string, std::string>>;

struct Exportoptionen {
    Zeichensatz zeichensatz = Zeichensatz::Utf8;
    // What the header's CHAR line says: the caption of the chosen option.
    std::string zeichensatz_name = "UTF-8";
    // The privacy of living persons, the four boxes of the options page.
    bool vornamen_kuerzen = false;    // given names shortened to an initial
    bool ohne_titel = false;          // no title
    bool ohne_lebensdaten = false;    // no occupation, events, dates
    bool ohne_verknuepfungen = false; // no notes, places, images, sources
    bool nur_55 = false;              // strict GEDCOM 5.5
    bool aenderungsdatum = false;     // change stamps
    std::string datenbankname;        // the FILE of the header
    // The submitter: name, address, phone, fax, e-mail, web site, note.
    std::array<std::string, 7> verfasser;
    std::string anmerkung; // the general note of the header and of every source
    Datumszusaetze datumszusaetze;
    // The marks of the linked tables where the closure kept them in memory (the command
    // line's run); null where the tree's marks count (the wizard's).
    std::shared_ptr<const Markenstand> marken;
    // The persons: those marked in the tree unless the run selects them itself.
    Personenwahl personen;
};

// Where a run reports how far it is.
class Fortschrittsanzeige {
public:
    virtual ~Fortschrittsanzeige() = default;
    // A text for the user: in place of the one shown, or behind it.
    virtual void text(const std::string& text, bool anhaengen) = 0;
    // How far the run is, from 0 to 100.
    virtual void wert(long long wert) = 0;
    // A point where pending events may run, and where a stop asked for is raised.
    virtual void ereignisse() = 0;
};

// A sink that shows nothing: for runs nobody watches.
class StilleAnzeige : public Fortschrittsanzeige {
public:
    void text(const std::string&, bool) override {}
    void wert(long long) override {}
    void ereignisse() override {}
};

class Exportlauf {
    StilleAnzeige stille_; // the progress of a part of the run: the run itself reports it
    std::unique_ptr<Nachschlagetabellen> eigene_tabellen_;

public:
    Exportlauf(const Exportoptionen& optionen, GedcomAusgabe& ausgabe,
               Fortschrittsanzeige& fortschritt)
        : eigene_tabellen_(std::make_unique<Nachschlagetabellen>(
              optionen.marken.get(), optionen.personen, optionen.aenderungsdatum)),
          optionen(optionen), ausgabe(ausgabe), fortschritt(fortschritt),
          tabellen(*eigene_tabellen_) {}
    // A part of the run that writes on another thread: the run's options and tables (which
    // must have read everything, Nachschlagetabellen::alles_laden), its lines into
    // `speicher`, no progress of its own.
    Exportlauf(Exportlauf& lauf, std::string& speicher)
        : optionen(lauf.optionen), ausgabe(lauf.ausgabe), fortschritt(stille_),
          tabellen(lauf.tabellen), speicher(&speicher) {}
    Exportlauf(const Exportlauf&) = delete;
    Exportlauf& operator=(const Exportlauf&) = delete;

    const Exportoptionen& optionen;
    GedcomAusgabe& ausgabe;
    Fortschrittsanzeige& fortschritt;
    // Records that the writers look up again and again, kept for this run.
    Nachschlagetabellen& tabellen;
    // Room for the line being written, kept so that a line costs no allocation.
    std::string zeilenpuffer;
    // Where a part of the run puts its lines instead of the file.
    std::string* speicher = nullptr;
};

} // namespace folio

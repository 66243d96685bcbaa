// The frame of the upgrade chain's steps: the test by a field, the note to the user once
// per section (and the copy of the file before its first change), the progress on the
// form Fortschrittfrm, creating fields under the table's cursor, and the transaction of
// each step.
#pragma once

#include "engine/field_type.h"
#include "engine/recordset.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace folio {
class Form;
class Control;
} // namespace folio

namespace folio::upgrade {

// A field that a step adds.
struct NeuesFeld {
    const char* tabelle;
    const char* name;
    FieldType typ;
    int groesse = 0;
    bool leer_erlaubt = false; // the empty text is allowed
};

// The long-lived cursor that holds a table of the family tree.
std::unique_ptr<dao::Recordset>& cursor_von(std::string_view tabelle);
// The cursor, open; a folio::Error "<wer> isn't open" where it isn't, as where a failure
// passed over on the way (a full disk) left it unopened.
dao::Recordset& offen(const std::unique_ptr<dao::Recordset>& cursor, const std::string& wer);
// The table's cursor, open, or an error that names the table.
dao::Recordset& offen(std::string_view tabelle);
// Opens the table's cursor anew, under its global name.
void cursor_oeffnen(std::string_view tabelle);
// Closes the table's cursor, where it has one, so that the table's design can change.
void cursor_schliessen(std::string_view tabelle);

// Moves a table cursor to its first row; an empty table is no error here.
void zum_anfang(dao::Recordset& rs);

// The version name of the open file; "" where it has none.
std::string versionname();

// The progress form as the passes over rows of the later sections show it: a caption, the
// bar Update counting the rows, the number of the row in Info.
struct Zeilenbalken {
    explicit Zeilenbalken(const char* titel);
    // The bar's maximum: the number of rows (a set that can't tell leaves it).
    void maximum(dao::Recordset& rs);
    // One row further, shown.
    void weiter();
    Form& form;
    Control& bar;
};

class Lauf {
public:
    Lauf(std::string& pfad, std::string& datei) : pfad(pfad), datei(datei) {}

    std::string& pfad;
    std::string& datei;
    int abschnitt = 1;
    bool gemeldet[4] = {}; // the note of each section (1 to 3) has been shown

    // Whether the table's cursor lacks the field, the name compared exactly.
    bool feld_fehlt(std::string_view tabelle, std::string_view feld);
    // The note that the file is converted, once per section. Before the first change of a
    // run, the file as it was is copied beside it, and the note says where.
    void hinweis();
    void fortschritt(long long wert);
    // Adds the fields, table by table: the table's cursor is closed, the fields appended,
    // the cursor opened anew. Progress counts 10, 20, 30 ... per table.
    void felder_anlegen(const std::vector<NeuesFeld>& felder);
    void ausfuehren(const std::string& sql);
    // Closes everything and opens the file again, without running the chain.
    void neu_oeffnen();
    // Runs the work of step `nummer` in a transaction of its own.
    void schritt(int nummer, const std::function<void()>& arbeit);

private:
    std::string sicherung_; // the copy of the file as it was, once made
};

// Opens the file again as the chain does (with the rest of the chain run on it, unless
// `ohne_aktualisierung`); raises folio::Error naming the file where it can't be opened, so that
// the conversion ends at its last finished step.
void wieder_oeffnen(std::string& pfad, std::string& datei, bool ohne_aktualisierung);

} // namespace folio::upgrade

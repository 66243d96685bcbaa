#include "wizard/auswahl.h"

#include "engine/errors.h"
#include "engine/text_util.h"

#include <memory>
#include <string_view>
#include <tuple>

namespace folio {

namespace {

Control& mit(Control& c, std::initializer_list<std::pair<const char*, Value>> eigenschaften) {
    for (const auto& [name, wert] : eigenschaften)
        c.set(name, wert);
    return c;
}

} // namespace

AuswahlForm::AuswahlForm() : Form("Auswahl") {
    set("Caption", Value("568 GEDCOM Export 5.5"));
    mit(addControl("sevText", "Verzeichnis", 0), {{"Caption", "503 Verzeichnis"}, {"Text", ""}});
    mit(addControl("FileListBox", "Datei", 0),
        {{"Pattern", "*.SF6"}, {"Path", ""}, {"FileName", ""}, {"ListIndex", -1}});
    mit(addControl("RichTextBox", "RTF"), {{"Visible", false}, {"TextRTF", ""}, {"Text", ""}});

    const char* verfasser[] = {"4105 Namen", "7314 Adresse", "590 Telefon",  "596 Fax",
                               "595 eMail",  "597 Homepage", "591 Anmerkung"};
    for (int i = 0; i < 7; ++i)
        mit(addControl("sevText", "Verfasser", i),
            {{"Caption", verfasser[i]}, {"Text", ""}, {"Enabled", false}});
    mit(addControl("sevText", "Anmerkung"),
        {{"Caption", "591 Anmerkung"}, {"Text", ""}, {"Enabled", true}});
    const char* datenschutz[] = {"598 Vornamen auf einen Buchstaben kürzen.",
                                 "621 Titel nicht ausgeben",
                                 "600 Ohne Geburts- und Sterbedaten sowie Lebenslauf",
                                 "601 Ohne Verknüpfungen zu Dokumenten, Orte  etc."};
    for (int i = 0; i < 4; ++i)
        mit(addControl("sevCheck", "Datenschutzcheck", i),
            {{"Caption", datenschutz[i]}, {"Value", 1}});
    mit(addControl("sevOption", "Zeichensatz", 0), {{"Caption", "627 Ansi"}, {"Value", false}});
    mit(addControl("sevOption", "Zeichensatz", 1), {{"Caption", "628 UTF-8"}, {"Value", true}});
    mit(addControl("sevCheck", "nur_auf_55"), {{"Caption", "777 nur auf 5.5"}, {"Value", 0}});
    mit(addControl("sevCheck", "Chancheck"),
        {{"Caption", "1550 mit Datum Datensatzänderung"}, {"Value", 0}});

    mit(addControl("sevText", "Verzeichnis", 1), {{"Caption", "503 Verzeichnis"}, {"Text", ""}});
    mit(addControl("sevText", "Verzeichnis", 2), {{"Caption", "603 GEDCOM Datei"}, {"Text", ""}});
    mit(addControl("ProgressBar", "Fortschritt"), {{"Value", 0}, {"Max", 100}});
    mit(addControl("TextBox", "Fortschritttext"), {{"Text", ""}, {"Locked", true}});
    mit(addControl("Command", "Exportstarten"),
        {{"Caption", "604 GEDCOM Export starten"}, {"Enabled", false}});

    mit(addControl("sevWizard", "sevWizard"), {{"NextEnabled", false},
                                               {"FinishEnabled", false},
                                               {"Busy", false},
                                               {"HelpBtnText", "523 &Hilfe"},
                                               {"BackBtnText", "515 <&Zurück"},
                                               {"NextBtnText", "516 &Weiter>"},
                                               {"FinishBtnText", "517 &Starten"},
                                               {"CancelBtnText", "518 &Beenden"},
                                               {"HeaderHeight", 1100},
                                               {"Width", 10800},
                                               {"Height", 7800},
                                               {"Picture", ""}});
    // The pages in the wizard's order, each with its title and description.
    const char* seiten[][3] = {
        {"sevWizardPage", "527 Datei öffnen",
         "575 Bitte wählen Sie die Datenbank, aus der die Daten kopiert werden sollen."},
        {"sevWizardPage", "9740 Personen wählen", "566"},
        {"sevWizardPage", "578 Verknüpfte Daten wählen", "569"},
        {"sevWizardPage1", "593 Weitere Daten", "594 Bitte geben Sie Ihre persönlichen ...."},
        {"sevWizardPage", "527 Datei öffnen",
         "575 Bitte wählen Sie die Datenbank, aus der die Daten kopiert werden sollen."}};
    for (int i = 0, index = 0; i < 5; ++i) {
        const bool eigene = std::string_view(seiten[i][0]) == "sevWizardPage1";
        mit(addControl("sevWizardPage", seiten[i][0], eigene ? -1 : index++),
            {{"HeaderTitle", seiten[i][1]}, {"HeaderDescr", seiten[i][2]}, {"Nummer", i + 1}});
    }
    mit(addControl("roLabel", "roLabel1"), {{"Caption", "570 Datenbank von #PROGNAME# öffnen"}});
    // The tool bar at the foot: the version, and a filler.
    Control& fuss = addControl("Coolbar", "Coolbar");
    fuss.set("Height", Value(390));
    for (const char* key : {"Version", "space"}) {
        PropertyBag& b = fuss.items("Buttons").emplace_back();
        b.set("Key", Value(key));
        b.set("Text", Value(std::string_view(key) == "Version" ? "1001" : ""));
        b.set("Width", Value(0));
    }
    const std::pair<const char*, const char*> rahmen[] = {
        {"sevFrame1", "591 Verfasser"},
        {"sevFrame2", "593 Weitere Daten"},
        {"sevFrame3", "599 Datenschutz zu lebenden Personen"},
        {"sevFrame4", "512 Fortschritt"},
        {"sevFrame5", "626 Zeichensatz"},
        {"sevFrame6", "776 Kompatibilität"},
        {"ZielDBFrame", "504 Ziel Datenbank"}};
    for (const auto& [name, caption] : rahmen)
        mit(addControl("sevFrame", name), {{"Caption", caption}});
    // The two lists of information are grids of their own with a caption bar.
    mit(addControl("sevGrid", "DBGrid", 0), {{"Caption", "571 Informationen zur Datenbank"}});
    mit(addControl("sevGrid", "DBGrid", 1), {{"Caption", "4670 Einstellungen"}});
    mit(addControl("Datengrid", "Datengrid", 0), {{"Visible", true}, {"Left", 0}, {"Top", 0}});
    mit(addControl("Datengrid", "Datengrid", 1), {{"Visible", true}, {"Left", 0}, {"Top", 0}});
    mit(addControl("ProgressBar", "Personen_fortschritt"), {{"Value", 0}, {"Max", 100}});
    mit(addControl("Label", "Label1"),
        {{"Caption", "588 Die mit den Personen verknüpften Daten werden ermittelt ..."}});

    // The tool bar of the persons: the menu button and its commands, and the switches,
    // all off at the start.
    Control& personen = addControl("Coolbar", "Coolbar_Datengrid", 0);
    struct Schalter {
        const char* key;
        const char* text;
        const char* tipp;
        int breite;
    };
    const Schalter schalter[] = {
        {"Markieren", "9740 Personen wählen",
         "580 Alle Datensätze der Personen auswählen oder die Auswahl löschen.", 147},
        {"Vorfahren", "586 Vorfahren", "581 Alle Vorfahren der Person mit auswählen", 97},
        {"Nachfahren", "585 Nachfahren", "582 Alle Nachfahren der Person mit auswählen", 107},
        {"Ehepartner", "2355 Ehepartner",
         "583 Alle Ehepartner zu den neu gewählten Personen mit auswählen.", 109},
        {"Lebend", "577 Lebende Personen ausschließen", "584", 206}};
    for (const auto& [key, caption, tipp, breite] : schalter) {
        PropertyBag& b = personen.items("Buttons").emplace_back();
        b.set("Key", Value(key));
        b.set("Text", Value(caption));
        b.set("ToolTipTitle", Value("587 Auswählen"));
        b.set("ToolTipText", Value(tipp));
        b.set("Width", Value(breite));
        b.set("Value", Value(0));
    }
    const std::pair<const char*, const char*> menue[] = {
        {"Auswählen", "229 Alle auswählen"},
        {"Abwählen", "232 Alle Abwählen"},
        {"leer", "-"},
        {"Alle_gezeigten", "1658 Alle angezeigten Personen wählen"}};
    for (const auto& [key, caption] : menue) {
        PropertyBag& m = personen.items("MenuButtons").emplace_back();
        m.set("Key", Value(key));
        m.set("Caption", Value(caption));
    }
    // The tool bar of the linked records: one button pressed at a time.
    Control& verknuepfte = addControl("Coolbar", "Coolbar_Datengrid", 1);
    const std::tuple<const char*, const char*, int> tabellen[] = {
        {"Ereignisse", "2050 Ereignisse", 105}, {"Orte", "4114 Orte", 77},
        {"Dokumente", "4111 Dokumente", 112},   {"Notizen", "4112 Notizen", 93},
        {"Bilder", "2151 Bilder", 83},          {"Adressen", "4115 Adressen", 101}};
    for (const auto& [key, caption, breite] : tabellen) {
        PropertyBag& b = verknuepfte.items("Buttons").emplace_back();
        b.set("Key", Value(key));
        b.set("Text", Value(caption));
        b.set("Width", Value(breite));
        b.set("Value", Value(0));
        b.set("Enabled", Value(true));
    }

    for (int i = 0; i < 2; ++i)
        zeichensatz_[i] = &control("Zeichensatz", i);
    for (int i = 0; i < 4; ++i)
        datenschutzcheck_[i] = &control("Datenschutzcheck", i);
    nur_auf_55_ = &control("nur_auf_55");
    chancheck_ = &control("Chancheck");
    fortschritt_ = &control("Fortschritt");
}

PropertyBag& AuswahlForm::knopf(int coolbar, std::string_view key) {
    for (PropertyBag& b : control("Coolbar_Datengrid", coolbar).items("Buttons"))
        if (equalsNoCase(b.text("Key"), key))
            return b;
    throw Error(err::ElementNotFound, "Element not found: " + std::string(key));
}

void AuswahlForm::zeile_anfuegen(int grid, const std::string& info, const std::string& status,
                                 bool info_fett, bool status_fett) {
    PropertyBag& zeile = DBGrid(grid).items("Rows").emplace_back();
    zeile.set("Info", Value(info));
    zeile.set("Status", Value(status));
    zeile.set("InfoBold", Value(info_fett));
    zeile.set("StatusBold", Value(status_fett));
}

namespace {
std::unique_ptr<AuswahlForm>& auswahl_form() {
    static std::unique_ptr<AuswahlForm> form;
    return form;
}
} // namespace

AuswahlForm& Auswahl() {
    if (!auswahl_form())
        auswahl_form() = std::make_unique<AuswahlForm>();
    return *auswahl_form();
}

void Auswahl_verwerfen() {
    auswahl_form().reset();
}

} // namespace folio

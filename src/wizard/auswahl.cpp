#include "wizard/auswahl.h"

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
    mit(addControl("FileListBox", "Datei", 0), {{"Pattern", "*.SF6"}, {"FileName", ""}});
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

    for (int i = 0; i < 2; ++i)
        zeichensatz_[i] = &control("Zeichensatz", i);
    for (int i = 0; i < 4; ++i)
        datenschutzcheck_[i] = &control("Datenschutzcheck", i);
    nur_auf_55_ = &control("nur_auf_55");
    chancheck_ = &control("Chancheck");
    fortschritt_ = &control("Fortschritt");
}

AuswahlForm& Auswahl() {
    static AuswahlForm form;
    return form;
}

} // namespace folio

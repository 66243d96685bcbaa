#include "frame/start.h"

#include "engine/errors.h"
#include "engine/text_util.h"
#include "frame/fenster.h"
#include "frame/globals.h"
#include "frame/ini.h"
#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/settings_store.h"
#include "frame/sprache.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace folio {

std::string eigene_dateien_pfad() {
    if (const char* docs = std::getenv("XDG_DOCUMENTS_DIR"); docs && *docs)
        return docs;
    const char* home = std::getenv("HOME");
    return pfad_verbinden(home && *home ? home : ".", "Documents");
}

StartForm::StartForm() : Form("Start") {
    addControl("Image", "Bild").set("Picture", Value(""));
    for (int i = 0; i < 2; ++i)
        addControl("Label", "Titel", i).set("Caption", Value(""));
    Control& bar = addControl("ProgressBar", "Fortschritt");
    bar.set("Value", Value(0));
    bar.set("Max", Value(100));
    addControl("Shape", "Shape1");
}

void StartForm::laden() {
    set("MousePointer", Value(MausSanduhr));
    const std::string bild = pfad_verbinden(Stammpfad, "bmp/prog/add-in start.gif");
    std::error_code ec;
    if (fs::exists(bild, ec))
        control("Bild").set("Picture", Value(bild));
}

FortschrittForm::FortschrittForm() : Form("Fortschrittfrm") {
    set("Caption", Value("3502 Importiere Daten aus älterer Version."));
    addControl("Label", "Info").set("Caption", Value(""));
    Control& bar = addControl("ProgressBar", "Update");
    bar.set("Value", Value(0));
    bar.set("Max", Value(100));
    bar.set("Visible", Value(true));
    addControl("ProgressBar", "WaitBar").set("Visible", Value(true));
}

void FortschrittForm::laden() {
    geladen_ = true;
    fenster_zentrieren(*this);
    formular_uebersetzen(*this);
    fenster_vordergrund(*this, -1, true);
    set("Visible", Value(true));
    platform().repaint(*this, nullptr);
}

Control& FortschrittForm::steuerelement(std::string_view name) {
    if (!geladen_)
        laden();
    return control(name);
}

void FortschrittForm::entladen() {
    if (!geladen_)
        return;
    geladen_ = false;
    set("Visible", Value(false));
    set("Caption", Value("3502 Importiere Daten aus älterer Version."));
    abbrechen = false;
}

void FortschrittForm::taste(int code) {
    if (code == 27)
        abbrechen = true;
}

FortschrittForm& Fortschrittfrm() {
    static FortschrittForm form;
    return form;
}

std::string erster_eintrag(const std::string& datei) {
    std::ifstream in(datei, std::ios::binary);
    if (!in)
        return "";
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
        ++i;
    if (i < text.size() && text[i] == '"') {
        const std::size_t close = text.find('"', i + 1);
        return text.substr(i + 1, close == std::string::npos ? std::string::npos : close - i - 1);
    }
    const std::size_t end = text.find_first_of(",\r\n", i);
    return std::string(trimWhitespace(text.substr(i, end == std::string::npos ? end : end - i)));
}

std::string sprache_des_gebietsschemas() {
    // The first of the variables that is set decides, as for the messages of any program.
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* wert = std::getenv(name);
        if (wert && *wert)
            return std::string_view(wert).starts_with("de") ? "Deutsch" : "English";
    }
    return "English";
}

namespace {

std::string laufendes_programm_ordner() {
    std::error_code ec;
    const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    return ec ? fs::current_path().string() : exe.parent_path().string();
}

// The data folder that datenpfad.ini in the host's folder names, if it names an existing one.
void datenpfad_aus_ini() {
    const std::string eintrag = erster_eintrag(pfad_verbinden(Stammpfad, "datenpfad.ini"));
    if (eintrag.empty())
        return;
    fs::path ordner(eintrag);
    if (ordner.is_relative())
        ordner = fs::path(Stammpfad) / ordner;
    std::error_code ec;
    if (fs::is_directory(ordner, ec))
        Datenpfad = fs::weakly_canonical(ordner, ec).string();
}

// An installed program ships the data that a user's data folder starts with beside the
// host's folder. Where the user has no data folder yet, it is made from that copy, so that
// nothing is ever written under the installation.
void datenordner_anlegen() {
    std::error_code ec;
    const fs::path mitgeliefert = fs::path(Stammpfad).parent_path() / "Daten";
    if (fs::exists(Datenpfad, ec) || !fs::is_directory(mitgeliefert, ec))
        return;
    fs::create_directories(fs::path(Datenpfad).parent_path(), ec);
    fs::copy(mitgeliefert, Datenpfad, fs::copy_options::recursive, ec);
    // What the installation made read-only, the user may change in a folder of their own.
    for (const auto& eintrag : fs::recursive_directory_iterator(Datenpfad, ec))
        fs::permissions(eintrag.path(), fs::perms::owner_read | fs::perms::owner_write,
                        fs::perm_options::add, ec);
}

} // namespace

StartErgebnis programm_starten(StartForm& start, const std::string& programmpfad) {
    // 1. The edition: the value 1 is Wurzelwart, anything else Stammfolio.
    const std::string edition = einstellung_lesen(HostAnwendung, "Sippe", "Daten", "");
    const bool wurzelwart = !isBlank(edition) && numericValue(edition) == 1;

    // 2. The program's folder and the host's folder above it.
    if (!programmpfad.empty())
        Programmpfad = programmpfad;
    if (Programmpfad.empty())
        Programmpfad = laufendes_programm_ordner();
    while (Programmpfad.size() > 1 && Programmpfad.back() == '/')
        Programmpfad.pop_back();
    const std::size_t slash = Programmpfad.rfind('/');
    Stammpfad = slash == std::string::npos ? "" : Programmpfad.substr(0, slash);

    // 3. and 4. The data folder.
    Produktname = wurzelwart ? "Wurzelwart" : "Stammfolio";
    Datenpfad = pfad_verbinden(eigene_dateien_pfad(), Produktname);
    datenpfad_aus_ini();
    datenordner_anlegen();

    // 5. The splash form.
    start.laden();
    fenster_zentrieren(start);
    start.set("Visible", Value(true));
    platform().doEvents();

    // 6. Language and short help. With no language stored, the user's locale decides.
    Sprache = ini_lesen(programm_ini(), "Ansicht", "Sprache", "");
    if (Sprache.empty())
        Sprache = sprache_des_gebietsschemas();
    Kurzhilfe = static_cast<std::int16_t>(
        numericValue(ini_lesen(programm_ini(), "Ansicht", "Kurzhilfe", "1")));

    // 7. The language texts. Without them no message can be worded in the user's language,
    // so this one message stands in both languages.
    const std::string sprachdatei = pfad_verbinden(Datenpfad, "language.mdb");
    try {
        sprache_oeffnen(sprachdatei);
    } catch (const Error& e) {
        StartErgebnis fehler;
        fehler.fehler = "Die Sprachtexte fehlen im Datenordner " + Datenpfad +
                        " (language.mdb kann nicht geöffnet werden).\n"
                        "The language texts are missing in the data folder " +
                        Datenpfad + " (language.mdb can't be opened).\n\n" + e.what();
        meldung(fehler.fehler, StilFehler, EigenerProduktname);
        return fehler;
    }
    return {true, {}};
}

} // namespace folio

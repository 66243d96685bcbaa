#include "frame/sprache.h"

#include "engine/engine.h"
#include "engine/errors.h"
#include "engine/recordset.h"
#include "engine/text_util.h"
#include "frame/form.h"
#include "frame/globals.h"

#include <cmath>
#include <filesystem>
#include <functional>
#include <memory>

namespace folio {

namespace {

struct SprachDatenbank {
    std::unique_ptr<dao::Database> db;
    std::unique_ptr<dao::Recordset> rs;
};

SprachDatenbank& sprache1() {
    static SprachDatenbank instance;
    return instance;
}
SprachDatenbank& sprache2() {
    static SprachDatenbank instance;
    return instance;
}

void oeffnen(SprachDatenbank& s, const std::string& pfad) {
    s.rs.reset();
    s.db = dao::OpenDatabase(pfad);
    s.rs = s.db->OpenRecordset("Languages", dao::RecordsetType::Table);
    s.rs->Index("Counter");
}

long schluesselnummer(const std::string& schluessel) {
    const double n = numericValue(schluessel);
    return static_cast<long>(std::trunc(n));
}

} // namespace

void sprache_oeffnen(const std::string& pfad) {
    oeffnen(sprache1(), pfad);
    const std::string zweite = pfad_verbinden(Datenpfad, "language2.mdb");
    std::error_code ec;
    if (std::filesystem::exists(zweite, ec))
        oeffnen(sprache2(), zweite);
}

void sprache_schliessen() {
    for (SprachDatenbank* s : {&sprache1(), &sprache2()}) {
        s->rs.reset();
        s->db.reset();
    }
}

std::string sprachtext(const std::string& schluessel) {
    if (isBlank(schluessel))
        return "";
    const long n = schluesselnummer(schluessel);
    if (n == 0)
        return "";
    std::string ergebnis = "???";
    try { // errors of the lookup are ignored
        dao::Recordset& rs = *sprache1().rs;
        rs.Seek("=", Value(static_cast<long long>(n)));
        if (!rs.NoMatch()) {
            ergebnis = rs.get(Sprache).text();
            if (ergebnis.empty())
                ergebnis = rs.get("Deutsch").text();
        }
    } catch (const Error&) {
    }
    if (ergebnis.find('#') != std::string::npos) {
        replaceAll(ergebnis, "#PROGNAME#", Produktname);
        replaceAll(ergebnis, "#APPNAME#", Produktname);
        replaceAll(ergebnis, "#APPPATH#", Programmpfad);
        replaceAll(ergebnis, "#DATENPATH#", Datenpfad);
        replaceAll(ergebnis, "#MAINPATH#", Stammpfad);
        replaceAll(ergebnis, "#SUPPORTEMAIL#", "");
    }
    if (isBlank(ergebnis))
        return "??" + std::to_string(n) + "??";
    if (trimBlanks(ergebnis) == "XXX")
        return "";
    return ergebnis;
}

// --- formular_uebersetzen ----------------------------------------------------------------

namespace {

// P = sprachtext(P): the property holds its key.
void uebersetzen(PropertyBag& bag, const char* p) {
    fehler_ignorieren([&] { bag.set(p, Value(sprachtext(bag.text(p)))); });
}

// P = sprachtext(n) with n the number in Q; only where n > 0 if so asked.
void uebersetzen_nach(PropertyBag& bag, const char* p, const char* q, bool nurPositiv) {
    fehler_ignorieren([&] {
        const long n = schluesselnummer(bag.text(q));
        if (nurPositiv && n <= 0)
            return;
        bag.set(p, Value(sprachtext(std::to_string(n))));
    });
}

// A tooltip: translated with the short help on, emptied without.
void tipp(PropertyBag& bag, const char* p, const std::function<void()>& uebersetze) {
    if (Kurzhilfe == 1)
        uebersetze();
    else
        fehler_ignorieren([&] {
            bag.get(p);
            bag.set(p, Value(""));
        });
}

void menueknoepfe(Control& c) {
    if (!c.hasItems("MenuButtons"))
        return;
    for (PropertyBag& b : c.items("MenuButtons"))
        fehler_ignorieren([&] {
            if (b.text("Caption") != "-")
                uebersetzen(b, "Caption");
        });
}

void ballon(Control& c, const std::vector<const char*>& texte) {
    if (Kurzhilfe == 1) {
        c.set("BalloonTip", Value(true));
        c.set("ToolTipIcon", Value(1));
        for (const char* t : texte)
            uebersetzen(c, t);
    } else {
        c.set("BalloonTip", Value(false));
        for (const char* t : texte)
            fehler_ignorieren([&] {
                c.get(t);
                c.set(t, Value(""));
            });
    }
}

// A text box: its caption and unit, and its tips as balloons only where tips are wanted.
void textfeld_uebersetzen(Control& c) {
    uebersetzen(c, "Caption");
    uebersetzen(c, "UnitDescr");
    if (Kurzhilfe == 1) {
        ballon(c, {"ToolTipTitle", "ToolTipText", "tooltip"});
    } else {
        c.set("BalloonTip", Value(false));
        fehler_ignorieren([&] {
            c.get("tooltip");
            c.set("tooltip", Value(""));
        });
    }
    c.set("FontCharset", Value(0));
}

// The elements of a tab strip, tool bar, list view or status bar (`k` its class): their
// texts from their tags and their tips; the menus of a tool bar's buttons.
void elemente_uebersetzen(Control& c, const std::string& k) {
    const char* sammlung = k == "TabStrip"   ? "Tabs"
                           : k == "Toolbar"  ? "Buttons"
                           : k == "ListView" ? "ColumnHeaders"
                                             : "Panels";
    const char* text = k == "TabStrip" ? "Caption" : k == "Toolbar" ? "Caption" : "Text";
    if (c.hasItems(sammlung))
        for (PropertyBag& item : c.items(sammlung)) {
            if (k != "StatusBar")
                uebersetzen_nach(item, text, "Tag", false);
            tipp(item, "ToolTipText",
                 [&] { uebersetzen_nach(item, "ToolTipText", "ToolTipText", k == "ListView"); });
        }
    if (k == "Toolbar" && c.hasItems("ButtonMenus"))
        for (PropertyBag& m : c.items("ButtonMenus"))
            uebersetzen_nach(m, "Text", "Tag", false);
}

void steuerelement_uebersetzen(Control& c) {
    const std::string& k = c.className();
    if (k == "CheckBox") {
        uebersetzen_nach(c, "Caption", "Tag", true);
        tipp(c, "ToolTipText", [&] { uebersetzen_nach(c, "ToolTipText", "ToolTipText", true); });
    } else if (k == "Command") {
        uebersetzen(c, "Caption");
        menueknoepfe(c);
        for (const char* p : {"tooltip", "ToolTipTitle", "ToolTipText"})
            tipp(c, p, [&] { uebersetzen(c, p); });
    } else if (k == "Coolbar") {
        if (c.hasItems("Buttons"))
            for (PropertyBag& b : c.items("Buttons"))
                for (const char* p : {"ToolTipText", "ToolTipTitle", "Text"})
                    uebersetzen(b, p);
        menueknoepfe(c);
    } else if (k == "Label") {
        uebersetzen(c, "Caption");
        tipp(c, "ToolTipText", [&] { uebersetzen_nach(c, "ToolTipText", "ToolTipText", false); });
    } else if (k == "Menu") {
        fehler_ignorieren([&] {
            const long n = schluesselnummer(c.text("Caption"));
            if (n != 0)
                c.set("Caption", Value(sprachtext(std::to_string(n))));
        });
    } else if (k == "roLabel" || k == "sevLabel" || k == "sevOption" || k == "sevMonthView") {
        uebersetzen(c, "Caption");
        uebersetzen(c, "ToolTipText");
    } else if (k == "sevCheck") {
        uebersetzen(c, "Caption");
        for (const char* p : {"ToolTipText", "ToolTipTitle"})
            tipp(c, p, [&] { uebersetzen(c, p); });
    } else if (k == "sevFrame" || k == "Frame") {
        uebersetzen(c, "Caption");
        tipp(c, "ToolTipText", [&] { uebersetzen_nach(c, "ToolTipText", "ToolTipText", true); });
    } else if (k == "sevGrid") {
        uebersetzen(c, "Caption");
        ballon(c, {"ToolTipText", "ToolTipTitle"});
        c.set("FontCharset", Value(0));
    } else if (k == "sevTabStrip") {
        if (c.hasItems("Tabs"))
            for (PropertyBag& t : c.items("Tabs"))
                for (const char* p : {"Caption", "ToolTipText", "ToolTipTitle"})
                    uebersetzen(t, p);
    } else if (k == "sevText") {
        textfeld_uebersetzen(c);
    } else if (k == "sevWizard") {
        for (const char* p : {"BackBtnText", "CancelBtnText", "FinishBtnText", "HeaderDescrDefault",
                              "HeaderTitleDefault", "NextBtnText", "HelpBtnText"})
            uebersetzen(c, p);
    } else if (k == "sevWizardPage") {
        uebersetzen(c, "HeaderDescr");
        uebersetzen(c, "HeaderTitle");
    } else if (k == "RichTextBox") {
        tipp(c, "ToolTipText", [&] { uebersetzen(c, "ToolTipText"); });
    } else if (k == "TabStrip" || k == "Toolbar" || k == "ListView" || k == "StatusBar") {
        elemente_uebersetzen(c, k);
    } else if (k == "TreeView") {
        // nothing to translate
    } else {
        uebersetzen_nach(c, "Caption", "Tag", true);
        tipp(c, "ToolTipText", [&] { uebersetzen_nach(c, "ToolTipText", "ToolTipText", true); });
    }
}

} // namespace

void formular_uebersetzen(Form& form) {
    fehler_ignorieren([&] { form.set("MousePointer", Value(MausSanduhr)); });
    uebersetzen(form, "Caption");
    for (auto& c : form.controls())
        fehler_ignorieren([&] { steuerelement_uebersetzen(*c); });
}

} // namespace folio

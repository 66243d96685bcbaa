#include "wizard/verknuepfungen.h"

#include "frame/meldung.h"
#include "frame/platform.h"
#include "frame/sprache.h"
#include "selection/verknuepfungen_markieren.h"
#include "wizard/auswahl.h"
#include "wizard/grid_aufbau.h"

#include <utility>

namespace folio {

namespace {

// The closure's progress on the form's bar Personen_fortschritt.
class Balkenanzeige : public Huellenanzeige {
public:
    explicit Balkenanzeige(AuswahlForm& form) : form_(form) {}
    void balken(long long wert, long long maximum) override {
        Control& b = form_.Personen_fortschritt();
        b.set("Max", Value(maximum));
        b.set("Value", Value(wert));
        platform().repaint(form_, &b);
    }
    void ereignisse() override { platform().doEvents(); }

private:
    AuswahlForm& form_;
};

void abschliessen(AuswahlForm& form, const Huelle& h) {
    form.hat_ereignisse = h.hat_ereignisse;
    form.hat_orte = h.hat_orte;
    form.hat_dokumente = h.hat_dokumente;
    form.hat_notizen = h.hat_notizen;
    form.hat_bilder = h.hat_bilder;
    form.hat_adressen = h.hat_adressen;
    const std::pair<const char*, bool> knoepfe[] = {
        {"Ereignisse", h.hat_ereignisse}, {"Orte", h.hat_orte},     {"Dokumente", h.hat_dokumente},
        {"Notizen", h.hat_notizen},       {"Bilder", h.hat_bilder}, {"Adressen", h.hat_adressen}};
    for (const auto& [key, an] : knoepfe) {
        PropertyBag& knopf = form.knopf(1, key);
        knopf.set("Enabled", Value(an));
        knopf.set("Value", Value(0));
    }
    // The events are shown, whether there are any or not.
    form.knopf(1, "Ereignisse").set("Value", Value(1));
    grid2_aufbauen("Ereignisse");
    form.set("MousePointer", Value(MausNormal));
    form.Datengrid(1).set("Visible", Value(true));
    if (h.partner_fehlt)
        meldung(sprachtext(form.gedrueckt(0, "Ehepartner") ? "1661" : "1660"), 23);
}

} // namespace

void verknuepfungen_markieren() {
    AuswahlForm& form = Auswahl();
    if (form.verknuepfungen_aktuell)
        return;
    form.set("MousePointer", Value(MausSanduhr));
    form.Datengrid(1).set("Visible", Value(false));
    platform().doEvents();
    form.verknuepfungen_aktuell = true;
    form.hat_ereignisse = form.hat_orte = form.hat_notizen = form.hat_dokumente = form.hat_bilder =
        form.hat_adressen = false;

    Huelle h;
    try {
        Balkenanzeige anzeige(form);
        h = huelle_bilden(anzeige);
    } catch (...) {
        // The closure hasn't run: the next entry of the page starts it again.
        form.verknuepfungen_aktuell = false;
        form.set("MousePointer", Value(MausNormal));
        form.Datengrid(1).set("Visible", Value(true));
        throw;
    }
    abschliessen(form, h);
}

} // namespace folio

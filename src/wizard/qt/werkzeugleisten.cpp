#include "wizard/qt/werkzeugleisten.h"

#include "wizard/auswahl.h"
#include "wizard/personengrid.h"

#include <QAction>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>

namespace folio::qt {

namespace {

// The gap between groups of buttons, in pixels.
constexpr int Luecke = 15;

std::vector<PropertyBag>& knopfliste(int coolbar) {
    return Auswahl().control("Coolbar_Datengrid", coolbar).items("Buttons");
}

} // namespace

Werkzeugleiste::Werkzeugleiste(int coolbar, Ausfuehrung ausfuehrung, QWidget* parent)
    : QWidget(parent), coolbar_(coolbar), ausfuehrung_(std::move(ausfuehrung)) {
    auto* reihe = new QHBoxLayout(this);
    reihe->setContentsMargins(0, 0, 0, 0);
    reihe->setSpacing(0);
    if (coolbar_ == 1) {
        gruppe_ = new QButtonGroup(this);
        gruppe_->setExclusive(true);
    }
    const std::vector<PropertyBag>& knoepfe = knopfliste(coolbar_);
    for (std::size_t i = 0; i < knoepfe.size(); ++i) {
        const std::string key = knoepfe[i].text("Key");
        auto* knopf = new QToolButton(this);
        knopf->setToolButtonStyle(Qt::ToolButtonTextOnly);
        knoepfe_.emplace_back(key, knopf);
        // Over the persons the menu button comes first, then the switches of the relatives,
        // then the switch of the living, each group set off by a gap.
        if (coolbar_ == 0 && i > 0 && (i == 1 || i + 1 == knoepfe.size()))
            reihe->addSpacing(Luecke);
        reihe->addWidget(knopf);
        if (coolbar_ == 0 && i == 0) {
            knopf->setPopupMode(QToolButton::InstantPopup);
            auto* menue = new QMenu(knopf);
            Control& leiste = Auswahl().control("Coolbar_Datengrid", coolbar_);
            for (const PropertyBag& eintrag : leiste.items("MenuButtons")) {
                const std::string befehl_key = eintrag.text("Key");
                if (befehl_key == "leer") {
                    menue->addSeparator();
                    continue;
                }
                QAction* a = menue->addAction(q(eintrag.text("Caption")));
                befehle_.emplace_back(befehl_key, a);
                connect(a, &QAction::triggered, this, [this, befehl_key] { befehl(befehl_key); });
            }
            knopf->setMenu(menue);
            continue;
        }
        knopf->setCheckable(true);
        if (gruppe_)
            gruppe_->addButton(knopf);
        connect(knopf, &QToolButton::clicked, this, [this, key](bool an) { geklickt(key, an); });
    }
    reihe->addStretch(1);
    abgleichen();
}

QToolButton* Werkzeugleiste::knopf(const std::string& key) const {
    for (const auto& [k, knopf] : knoepfe_)
        if (k == key)
            return knopf;
    return nullptr;
}

void Werkzeugleiste::abgleichen() {
    const std::vector<PropertyBag>& knoepfe = knopfliste(coolbar_);
    // The form says which button is pressed; the group mustn't keep one pressed meanwhile.
    if (gruppe_)
        gruppe_->setExclusive(false);
    for (const PropertyBag& b : knoepfe) {
        QToolButton* knopf = this->knopf(b.text("Key"));
        if (!knopf)
            continue;
        knopf->setText(q(b.text("Text")));
        if (b.has("ToolTipTitle") || b.has("ToolTipText"))
            knopf->setToolTip(tipptext(b.has("ToolTipTitle") ? b.text("ToolTipTitle") : "",
                                       b.has("ToolTipText") ? b.text("ToolTipText") : ""));
        if (b.has("Width"))
            knopf->setMinimumWidth(static_cast<int>(b.get("Width").toInt()));
        knopf->setEnabled(!b.has("Enabled") || b.get("Enabled").toBool());
        if (knopf->isCheckable())
            knopf->setChecked(b.has("Value") && b.get("Value").toInt() == 1);
    }
    if (gruppe_)
        gruppe_->setExclusive(true);
    Control& leiste = Auswahl().control("Coolbar_Datengrid", coolbar_);
    for (const PropertyBag& eintrag : leiste.items("MenuButtons"))
        for (const auto& [key, a] : befehle_)
            if (key == eintrag.text("Key"))
                a->setText(q(eintrag.text("Caption")));
}

void Werkzeugleiste::geklickt(const std::string& key, bool an) {
    if (coolbar_ == 0)
        ausfuehrung_([&] { schalter_geklickt(key, an); });
    else
        ausfuehrung_([&] { tabellenknopf_geklickt(key); });
    // A switch may have brought another along (the spouses), and a refused action leaves
    // the buttons as they were.
    abgleichen();
    emit ausgefuehrt();
}

void Werkzeugleiste::befehl(const std::string& key) {
    ausfuehrung_([&] { markieren_befehl(coolbar_, key); });
    abgleichen();
    emit ausgefuehrt();
}

} // namespace folio::qt

#include "wizard/qt/assistent.h"

#include "engine/abbruch.h"
#include "frame/globals.h"
#include "frame/meldung.h"
#include "wizard/auswahl.h"
#include "wizard/formular.h"
#include "wizard/qt/dateiseite.h"
#include "wizard/qt/gridansicht.h"
#include "wizard/qt/optionsseiten.h"
#include "wizard/qt/qt_plattform.h"
#include "wizard/seiten.h"

#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace folio::qt {

namespace {

// The control that holds the title and description of a page, from 1.
Control& seitensteuerelement(int seite) {
    AuswahlForm& form = Auswahl();
    if (seite == 4)
        return form.control("sevWizardPage1");
    return form.control("sevWizardPage", seite == 5 ? 3 : seite - 1);
}

// A button's caption without the accelerator the way the host writes it ("<&Zurück"): Qt
// takes "&" the same way.
QString knopftext(const char* eigenschaft) {
    return q(Auswahl().sevWizard().text(eigenschaft));
}

} // namespace

Assistent::Assistent(QWidget* parent) : QWidget(parent) {
    AuswahlForm& form = Auswahl();
    auto* aussen = new QVBoxLayout(this);
    aussen->setContentsMargins(0, 0, 0, 0);
    aussen->setSpacing(0);
    aussen->addWidget(kopf());

    auto* mitte = new QHBoxLayout;
    seitenbild_ = new QLabel(this);
    seitenbild_->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    mitte->addWidget(seitenbild_);
    seiten_ = new QStackedWidget(this);
    auto tun = [this](const std::function<void()>& a) { ausfuehren(a); };
    dateiseite_ = new Dateiseite(tun, this);
    grids_[0] = new Gridansicht(0, this);
    grids_[1] = new Gridansicht(1, this);
    for (Gridansicht* g : grids_)
        g->ausfuehrung_setzen(tun);
    optionsseite_ = new Optionsseite(this);
    zielseite_ = new Zielseite(tun, this);
    for (QWidget* s : {static_cast<QWidget*>(dateiseite_), static_cast<QWidget*>(grids_[0]),
                       static_cast<QWidget*>(grids_[1]), static_cast<QWidget*>(optionsseite_),
                       static_cast<QWidget*>(zielseite_)})
        seiten_->addWidget(s);
    mitte->addWidget(seiten_, 1);
    mitte->setContentsMargins(8, 8, 8, 8);
    aussen->addLayout(mitte, 1);

    auto* linie = new QFrame(this);
    linie->setFrameShape(QFrame::HLine);
    linie->setFrameShadow(QFrame::Sunken);
    aussen->addWidget(linie);
    aussen->addWidget(knopfleiste());

    setWindowTitle(q(form.text("Caption")));
    const Control& wizard = form.sevWizard();
    resize(in_pixel(this, static_cast<int>(form.get("Width").toInt())),
           in_pixel(this, static_cast<int>(form.control("Coolbar").get("Height").toInt() +
                                           wizard.get("Height").toInt())));
    if (form.has("Left") && form.has("Top"))
        move(static_cast<int>(form.get("Left").toInt()) / TwipsProPixel,
             static_cast<int>(form.get("Top").toInt()) / TwipsProPixel);
    abgleichen();
}

QWidget* Assistent::kopf() {
    auto* kopf = new QFrame(this);
    kopf->setAutoFillBackground(true);
    kopf->setBackgroundRole(QPalette::Base);
    kopf->setFrameShape(QFrame::StyledPanel);
    kopf->setMinimumHeight(
        in_pixel(kopf, static_cast<int>(Auswahl().sevWizard().get("HeaderHeight").toInt())));
    auto* zeilen = new QVBoxLayout;
    titel_ = new QLabel(kopf);
    QFont fett = titel_->font();
    fett.setBold(true);
    fett.setPointSizeF(fett.pointSizeF() * 1.2);
    titel_->setFont(fett);
    beschreibung_ = new QLabel(kopf);
    beschreibung_->setWordWrap(true);
    zeilen->addWidget(titel_);
    zeilen->addWidget(beschreibung_);
    zeilen->addStretch(1);
    auto* reihe = new QHBoxLayout(kopf);
    reihe->addLayout(zeilen, 1);
    ziffer_ = new QLabel(kopf);
    QFont gross = ziffer_->font();
    gross.setPointSize(24);
    gross.setBold(true);
    ziffer_->setFont(gross);
    reihe->addWidget(ziffer_);
    return kopf;
}

QWidget* Assistent::knopfleiste() {
    auto* leiste = new QWidget(this);
    auto* reihe = new QHBoxLayout(leiste);
    version_ = new QLabel(leiste);
    QFont fett = version_->font();
    fett.setBold(true);
    version_->setFont(fett);
    const char* texte[] = {"HelpBtnText", "BackBtnText", "NextBtnText", "FinishBtnText",
                           "CancelBtnText"};
    for (std::size_t i = 0; i < knoepfe_.size(); ++i)
        knoepfe_[i] = new QPushButton(knopftext(texte[i]), leiste);
    reihe->addWidget(knoepfe_[0]);
    reihe->addSpacing(12);
    reihe->addWidget(version_);
    reihe->addStretch(1);
    for (std::size_t i = 1; i < knoepfe_.size(); ++i)
        reihe->addWidget(knoepfe_[i]);

    connect(knopf(Knopf::Hilfe), &QPushButton::clicked, this,
            [this] { ausfuehren([] { hilfe_geklickt(); }); });
    connect(knopf(Knopf::Zurueck), &QPushButton::clicked, this, [this] { wechseln(seite_ - 1); });
    connect(knopf(Knopf::Weiter), &QPushButton::clicked, this, [this] { wechseln(seite_ + 1); });
    connect(knopf(Knopf::Starten), &QPushButton::clicked, this,
            [this] { ausfuehren([] { beenden_geklickt(); }); });
    connect(knopf(Knopf::Beenden), &QPushButton::clicked, this, [this] { abbrechen(); });
    knopf(Knopf::Weiter)->setDefault(true);
    return leiste;
}

void Assistent::ausfuehren(const std::function<void()>& aktion) {
    if (beschaeftigt_)
        return;
    beschaeftigt_ = true;
    abgleichen();
    {
        Sanduhr sanduhr;
        try {
            aktion();
        } catch (const Abbruch&) {
            abbruch_zuruecksetzen();
        } catch (const std::exception& e) {
            meldung(e.what(), StilFehler, Produktname);
        }
    }
    beschaeftigt_ = false;
    abgleichen();
}

// The page change: the frame shows the page entered, then the page change event runs (on
// page 3 the closure, whose progress shows on the page meanwhile).
void Assistent::wechseln(int neu) {
    if (beschaeftigt_ || neu < 1 || neu > 5 || neu == seite_)
        return;
    const int alt = seite_;
    seite_ = neu;
    seiten_->setCurrentIndex(neu - 1);
    ausfuehren([alt, neu] { seite_gewechselt(alt, neu); });
}

void Assistent::abbrechen() {
    if (beschaeftigt_) {
        // Only a running export can be stopped; the form asks first.
        if (Auswahl().export_laeuft)
            abbrechen_geklickt();
        return;
    }
    if (abbrechen_geklickt()) {
        geschlossen_ = true;
        close();
    }
}

// Closing the window is Cancel: while an action runs it is refused (an export is asked to
// stop), else the form unloads.
void Assistent::closeEvent(QCloseEvent* ereignis) {
    if (geschlossen_) {
        ereignis->accept();
        return;
    }
    if (beschaeftigt_) {
        if (Auswahl().export_laeuft)
            abbrechen_geklickt();
        ereignis->ignore();
        return;
    }
    Form_Unload();
    geschlossen_ = true;
    ereignis->accept();
}

void Assistent::abgleichen() {
    AuswahlForm& form = Auswahl();
    Control& kopfsteuerung = seitensteuerelement(seite_);
    titel_->setText(q(kopfsteuerung.text("HeaderTitle")));
    beschreibung_->setText(q(kopfsteuerung.text("HeaderDescr")));
    ziffer_->setText(QString::number(seite_));
    const std::string bild = form.sevWizard().text("Picture");
    if (!bild.empty() && seitenbild_->pixmap().isNull())
        seitenbild_->setPixmap(QPixmap(q(bild)));
    for (PropertyBag& b : form.control("Coolbar").items("Buttons"))
        if (b.text("Key") == "Version")
            version_->setText(q(b.text("Text")));

    const bool frei = !beschaeftigt_ && !form.sevWizard().get("Busy").toBool();
    const bool weiter = form.sevWizard().get("NextEnabled").toBool();
    knopf(Knopf::Zurueck)->setEnabled(frei && seite_ > 1);
    knopf(Knopf::Weiter)->setEnabled(frei && seite_ < 5 && weiter);
    knopf(Knopf::Weiter)->setVisible(seite_ < 5);
    knopf(Knopf::Starten)->setVisible(seite_ == 5);
    knopf(Knopf::Starten)->setEnabled(frei && form.sevWizard().get("FinishEnabled").toBool());
    knopf(Knopf::Hilfe)->setEnabled(frei);
    knopf(Knopf::Beenden)->setEnabled(frei || form.export_laeuft);

    switch (seite_) {
    case 1:
        dateiseite_->abgleichen();
        break;
    case 2:
    case 3:
        grids_[static_cast<std::size_t>(seite_ - 2)]->abgleichen();
        break;
    case 4:
        optionsseite_->abgleichen();
        break;
    default:
        zielseite_->abgleichen();
        break;
    }
}

} // namespace folio::qt

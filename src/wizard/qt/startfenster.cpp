#include "wizard/qt/startfenster.h"

#include "frame/start.h"
#include "wizard/qt/qt_plattform.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPixmap>
#include <QProgressBar>
#include <QVBoxLayout>

namespace folio::qt {

namespace {

bool sichtbar(const Form& form) {
    return form.has("Visible") && form.get("Visible").toBool();
}

} // namespace

Startfenster::Startfenster(StartForm& form)
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint), form_(form) {
    auto* spalte = new QVBoxLayout(this);
    bild_ = new QLabel(this);
    bild_->setAlignment(Qt::AlignCenter);
    titel_ = new QLabel(this);
    titel_->setAlignment(Qt::AlignCenter);
    QFont f = titel_->font();
    f.setPointSize(18);
    f.setBold(true);
    titel_->setFont(f);
    balken_ = new QProgressBar(this);
    balken_->setTextVisible(false);
    spalte->addWidget(bild_, 1);
    spalte->addWidget(titel_);
    spalte->addWidget(balken_);
    setMinimumSize(420, 160);
}

void Startfenster::abgleichen() {
    const std::string bild = form_.control("Bild").text("Picture");
    if (!bild.empty() && bild_->pixmap().isNull())
        bild_->setPixmap(QPixmap(q(bild)));
    titel_->setText(q(form_.control("Titel", 0).text("Caption")));
    balken_zeigen(balken_, form_.control("Fortschritt"));
    setVisible(sichtbar(form_));
}

Fortschrittsdialog::Fortschrittsdialog(QWidget* parent) : QDialog(parent) {
    setModal(true);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    auto* spalte = new QVBoxLayout(this);
    info_ = new QLabel(this);
    balken_ = new QProgressBar(this);
    warten_ = new QProgressBar(this);
    warten_->setRange(0, 0); // a bar that runs without a measure
    spalte->addWidget(info_);
    spalte->addWidget(balken_);
    spalte->addWidget(warten_);
    setMinimumWidth(420);
}

void Fortschrittsdialog::abgleichen() {
    FortschrittForm& form = Fortschrittfrm();
    if (!form.geladen()) {
        hide();
        return;
    }
    setWindowTitle(q(form.text("Caption")));
    info_->setText(q(form.control("Info").text("Caption")));
    Control& update = form.control("Update");
    balken_zeigen(balken_, update);
    balken_->setVisible(update.get("Visible").toBool());
    warten_->setVisible(form.control("WaitBar").get("Visible").toBool());
    show();
}

void Fortschrittsdialog::keyPressEvent(QKeyEvent* ereignis) {
    if (ereignis->key() == Qt::Key_Escape) {
        Fortschrittfrm().taste(27);
        return;
    }
    QDialog::keyPressEvent(ereignis);
}

} // namespace folio::qt

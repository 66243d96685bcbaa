#include "wizard/qt/dateiseite.h"

#include "wizard/auswahl.h"
#include "wizard/dateiwahl.h"
#include "wizard/formular.h"
#include "wizard/qt/qt_plattform.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace folio::qt {

QTreeWidget* zweispaltige_liste(QWidget* eltern) {
    auto* liste = new QTreeWidget(eltern);
    liste->setColumnCount(2);
    liste->setHeaderHidden(true);
    liste->setRootIsDecorated(false);
    liste->setSelectionMode(QAbstractItemView::NoSelection);
    liste->header()->setStretchLastSection(true);
    return liste;
}

QLabel* titelleiste(QWidget* eltern) {
    auto* titel = new QLabel(eltern);
    QFont fett = titel->font();
    fett.setBold(true);
    titel->setFont(fett);
    titel->setAutoFillBackground(true);
    titel->setBackgroundRole(QPalette::Mid);
    return titel;
}

void liste_zeigen(QTreeWidget* liste, Control& dbgrid) {
    auto& spalten = dbgrid.items("Columns");
    for (std::size_t i = 0; i < spalten.size() && i < 2; ++i)
        liste->setColumnWidth(static_cast<int>(i),
                              in_pixel(liste, static_cast<int>(spalten[i].get("Width").toInt())));
    // The rows as they stand, so that a list shown again during a run keeps its place.
    const char* fett[] = {"InfoBold", "StatusBold"};
    auto& zeilen = dbgrid.items("Rows");
    QStringList stand;
    for (PropertyBag& z : zeilen) {
        stand << q(z.text("Info")) << q(z.text("Status"));
        for (const char* f : fett)
            stand << (z.has(f) && z.get(f).toBool() ? QStringLiteral("b") : QString());
        stand << (z.has("StatusColor") ? QString::number(z.get("StatusColor").toInt()) : QString());
    }
    if (liste->property("folio_stand").toStringList() == stand)
        return;
    liste->setProperty("folio_stand", stand);
    liste->clear();
    for (PropertyBag& z : zeilen) {
        auto* eintrag = new QTreeWidgetItem(liste, {q(z.text("Info")), q(z.text("Status"))});
        for (int spalte = 0; spalte < 2; ++spalte)
            if (z.has(fett[spalte]) && z.get(fett[spalte]).toBool()) {
                QFont f = eintrag->font(spalte);
                f.setBold(true);
                eintrag->setFont(spalte, f);
            }
        if (z.has("StatusColor"))
            eintrag->setForeground(1, farbe(static_cast<long>(z.get("StatusColor").toInt())));
    }
}

Dateiseite::Dateiseite(Ausfuehrung ausfuehren, QWidget* parent)
    : QWidget(parent), ausfuehren_(std::move(ausfuehren)) {
    auto* spalte = new QVBoxLayout(this);
    ueberschrift_ = new QLabel(this);
    ueberschrift_->setAlignment(Qt::AlignCenter);
    QFont f("Arial");
    f.setBold(true);
    f.setPointSizeF(ueberschrift_->font().pointSizeF() * 1.3);
    ueberschrift_->setFont(f);
    spalte->addWidget(ueberschrift_);

    auto* raster = new QGridLayout;
    ordner_titel_ = new QLabel(this);
    ordner_ = new QLineEdit(this);
    ordner_knopf_ = new QToolButton(this);
    ordner_knopf_->setText(QStringLiteral("…"));
    raster->addWidget(ordner_titel_, 0, 0);
    raster->addWidget(ordner_, 0, 1);
    raster->addWidget(ordner_knopf_, 0, 2);
    spalte->addLayout(raster);

    auto* unten = new QHBoxLayout;
    dateien_ = new QListWidget(this);
    unten->addWidget(dateien_, 2);
    auto* rechts = new QVBoxLayout;
    info_titel_ = titelleiste(this);
    info_ = zweispaltige_liste(this);
    rechts->addWidget(info_titel_);
    rechts->addWidget(info_, 1);
    unten->addLayout(rechts, 3);
    spalte->addLayout(unten, 1);

    connect(ordner_, &QLineEdit::textEdited, this, &Dateiseite::ordner_geaendert);
    connect(ordner_knopf_, &QToolButton::clicked, this, &Dateiseite::ordner_waehlen);
    auto waehlen = [this](QListWidgetItem* eintrag) {
        const int zeile = dateien_->row(eintrag);
        ausfuehren_([zeile] { datei_waehlen(zeile); });
    };
    connect(dateien_, &QListWidget::itemClicked, this, waehlen);
    connect(dateien_, &QListWidget::itemActivated, this, waehlen);
}

void Dateiseite::ordner_geaendert(const QString& text) {
    Auswahl().Verzeichnis(0).set("Text", Value(text.toStdString()));
    ausfuehren_([] { verzeichnis_geaendert(0); });
}

void Dateiseite::ordner_waehlen() {
    const QString ordner =
        QFileDialog::getExistingDirectory(this, ordner_titel_->text(), ordner_->text());
    if (ordner.isEmpty())
        return;
    ordner_->setText(ordner);
    ordner_geaendert(ordner);
}

void Dateiseite::abgleichen() {
    AuswahlForm& form = Auswahl();
    ueberschrift_->setText(q(form.control("roLabel1").text("Caption")));
    Control& verzeichnis = form.Verzeichnis(0);
    ordner_titel_->setText(q(verzeichnis.text("Caption")));
    ordner_titel_->setMinimumWidth(80); // the caption width of the box
    if (ordner_->text().toStdString() != verzeichnis.text("Text"))
        ordner_->setText(q(verzeichnis.text("Text")));

    auto& eintraege = form.Datei(0).items("List");
    QStringList namen;
    for (PropertyBag& e : eintraege)
        namen << q(e.text("Name"));
    QStringList gezeigt;
    for (int i = 0; i < dateien_->count(); ++i)
        gezeigt << dateien_->item(i)->text();
    const QSignalBlocker sperre(dateien_);
    if (namen != gezeigt) {
        dateien_->clear();
        dateien_->addItems(namen);
    }
    dateien_->setCurrentRow(static_cast<int>(form.Datei(0).get("ListIndex").toInt()));

    info_titel_->setText(q(form.DBGrid(0).text("Caption")));
    liste_zeigen(info_, form.DBGrid(0));
}

} // namespace folio::qt

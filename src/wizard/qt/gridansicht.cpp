#include "wizard/qt/gridansicht.h"

#include "wizard/auswahl.h"
#include "wizard/datengrid.h"
#include "wizard/grid_aufbau.h"
#include "wizard/personengrid.h"
#include "wizard/qt/filterkopf.h"
#include "wizard/qt/qt_plattform.h"
#include "wizard/qt/werkzeugleisten.h"

#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QScrollBar>
#include <QStyle>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>

namespace folio::qt {

namespace {

// The column settings are written a moment after the last change, not at every step of a
// drag.
constexpr int SpeichernNachMs = 300;

} // namespace

struct Gridansicht::Innen {
    int index = 0;
    Ausfuehrung ausfuehrung = [](const std::function<void()>& aktion) { aktion(); };
    Gridtabelle* modell = nullptr;
    QTableView* tabelle = nullptr;
    Filterkopf* kopf = nullptr;
    Werkzeugleiste* leiste = nullptr;
    QLabel* hinweis = nullptr; // page 3, while the closure runs: Label1 and its bar
    QProgressBar* fortschritt = nullptr;
    QTimer* speichern = nullptr;
    // The view is being brought in line with the model: what the header reports now isn't
    // the user's doing.
    bool im_abgleich = false;
};

Gridansicht::Gridansicht(int index, QWidget* parent) : QWidget(parent), innen_(new Innen) {
    Innen& d = *innen_;
    d.index = index;
    const Ausfuehrung tun = [this](const std::function<void()>& aktion) {
        innen_->ausfuehrung(aktion);
    };
    auto* spalte = new QVBoxLayout(this);
    spalte->setContentsMargins(0, 0, 0, 0);
    d.leiste = new Werkzeugleiste(index, tun, this);
    spalte->addWidget(d.leiste);
    if (index == 1) {
        d.hinweis = new QLabel(this);
        d.hinweis->setWordWrap(true);
        d.fortschritt = new QProgressBar(this);
        spalte->addWidget(d.hinweis);
        spalte->addWidget(d.fortschritt);
    }

    d.modell = new Gridtabelle(index, tun, this);
    d.tabelle = new QTableView(this);
    d.kopf = new Filterkopf(d.modell, tun, d.tabelle);
    d.tabelle->setHorizontalHeader(d.kopf);
    d.tabelle->setModel(d.modell);
    d.kopf->setSectionsMovable(true);
    d.kopf->setSectionsClickable(true);
    d.kopf->setHighlightSections(false);
    d.kopf->setSortIndicatorShown(true);
    d.kopf->setStretchLastSection(false);
    // The grid's widths count, down to its narrowest column.
    d.kopf->setMinimumSectionSize(8);
    d.kopf->setContextMenuPolicy(Qt::CustomContextMenu);
    d.tabelle->setSortingEnabled(false);
    d.tabelle->setEditTriggers(QAbstractItemView::NoEditTriggers);
    d.tabelle->setSelectionBehavior(QAbstractItemView::SelectRows);
    d.tabelle->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    d.tabelle->setWordWrap(false);
    QHeaderView* zeilenkopf = d.tabelle->verticalHeader();
    zeilenkopf->hide();
    // Rows of one height: a million of them cost nothing until they are shown.
    zeilenkopf->setSectionResizeMode(QHeaderView::Fixed);
    zeilenkopf->setDefaultSectionSize(d.tabelle->fontMetrics().height() + 6);
    spalte->addWidget(d.tabelle, 1);

    d.speichern = new QTimer(this);
    d.speichern->setSingleShot(true);
    d.speichern->setInterval(SpeichernNachMs);
    connect(d.speichern, &QTimer::timeout, this, [this] { einstellungen_speichern(); });

    connect(d.modell, &Gridtabelle::geaendert, this, [this] { ansicht_abgleichen(); });
    connect(d.leiste, &Werkzeugleiste::ausgefuehrt, this, [this] { abgleichen(); });
    connect(d.kopf, &QHeaderView::sectionClicked, this, [this](int i) { sortieren(i); });
    connect(d.kopf, &QHeaderView::sectionResized, this,
            [this](int i, int, int breite) { breite_geaendert(i, breite); });
    connect(d.kopf, &QHeaderView::sectionMoved, this, [this] { reihenfolge_geaendert(); });
    connect(d.kopf, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& ort) { spaltenmenue(ort); });
    connect(d.tabelle->verticalScrollBar(), &QScrollBar::valueChanged, this,
            [this] { sichtbar_melden(); });
    connect(d.tabelle->horizontalScrollBar(), &QScrollBar::valueChanged, d.kopf,
            [this] { innen_->kopf->zellen_platzieren(); });
    d.tabelle->viewport()->installEventFilter(this);

    abgleichen();
}

Gridansicht::~Gridansicht() {
    // The table and its header go before the model that they show, and without reporting
    // their last events here.
    innen_->tabelle->viewport()->removeEventFilter(this);
    delete innen_->tabelle;
}

void Gridansicht::ausfuehrung_setzen(Ausfuehrung ausfuehrung) {
    innen_->ausfuehrung = std::move(ausfuehrung);
}

QTableView* Gridansicht::tabelle() const {
    return innen_->tabelle;
}

Gridtabelle* Gridansicht::modell() const {
    return innen_->modell;
}

Filterkopf* Gridansicht::filterkopf() const {
    return innen_->kopf;
}

Werkzeugleiste* Gridansicht::werkzeugleiste() const {
    return innen_->leiste;
}

void Gridansicht::abgleichen() {
    // The model catches up with the grid and reports back (ansicht_abgleichen).
    innen_->modell->abgleichen();
}

// Everything but the rows, which the table reads from the model itself.
void Gridansicht::ansicht_abgleichen() {
    Innen& d = *innen_;
    spalten_abgleichen();
    sortanzeige();
    d.kopf->texte_abgleichen();
    d.leiste->abgleichen();
    AuswahlForm& form = Auswahl();
    const bool laeuft = !form.Datengrid(d.index).get("Visible").toBool();
    if (d.hinweis) {
        const Control& balken = form.Personen_fortschritt();
        d.hinweis->setText(q(form.control("Label1").text("Caption")));
        balken_zeigen(d.fortschritt, balken);
        d.hinweis->setVisible(laeuft);
        d.fortschritt->setVisible(laeuft);
    }
    d.tabelle->setVisible(!laeuft);
    sichtbar_melden();
}

// Widths, visibility and order of the sections as the grid's columns say. Where the columns
// leave room in the window, the wide text column takes it.
void Gridansicht::spalten_abgleichen() {
    Innen& d = *innen_;
    Datengrid& g = d.modell->grid();
    const int anzahl = std::min(g.Cols(), d.kopf->count());
    d.im_abgleich = true;
    std::vector<int> breiten(static_cast<std::size_t>(anzahl), 0);
    int summe = 0;
    for (int i = 0; i < anzahl; ++i) {
        const Spalte& sp = g.Columns(i + 1);
        if (d.kopf->isSectionHidden(i) == sp.Visible)
            d.kopf->setSectionHidden(i, !sp.Visible);
        if (sp.Visible) {
            breiten[static_cast<std::size_t>(i)] =
                std::max(in_pixel(d.tabelle, sp.Width), mindestbreite(i));
            summe += breiten[static_cast<std::size_t>(i)];
        }
    }
    const int weit = breitenspalte();
    if (weit >= 0 && weit < anzahl)
        breiten[static_cast<std::size_t>(weit)] +=
            std::max(d.tabelle->viewport()->width() - summe, 0);
    for (int i = 0; i < anzahl; ++i) {
        const int breite = breiten[static_cast<std::size_t>(i)];
        if (breite > 0 && d.kopf->sectionSize(i) != breite)
            d.kopf->resizeSection(i, breite);
    }
    // The places on the screen, from 1; equal places keep the grid's order.
    std::vector<int> folge(static_cast<std::size_t>(anzahl));
    std::iota(folge.begin(), folge.end(), 0);
    std::stable_sort(folge.begin(), folge.end(), [&g](int a, int b) {
        return g.Columns(a + 1).Position < g.Columns(b + 1).Position;
    });
    for (int platz = 0; platz < anzahl; ++platz) {
        const int von = d.kopf->visualIndex(folge[static_cast<std::size_t>(platz)]);
        if (von != platz)
            d.kopf->moveSection(von, platz);
    }
    d.im_abgleich = false;
    d.kopf->zellen_platzieren();
}

// The narrowest a column may be on the screen: the grid's minimum, and room for its caption
// (with the filter mark and the sort mark) or its tick box.
int Gridansicht::mindestbreite(int logisch) const {
    const Innen& d = *innen_;
    const Spalte& sp = d.modell->grid().Columns(logisch + 1);
    int breite = std::max(in_pixel(d.tabelle, sp.MinWidth), d.kopf->beschriftungsbreite(logisch));
    if (sp.Bearbeitbar) {
        const QStyle* stil = d.tabelle->style();
        breite = std::max(breite, stil->pixelMetric(QStyle::PM_IndicatorWidth) +
                                      2 * stil->pixelMetric(QStyle::PM_FocusFrameHMargin) + 4);
    }
    return breite;
}

// The wide text column, which fills the room that the others leave: the shown text column
// with the greatest minimum width, the first of equals; -1 for none.
int Gridansicht::breitenspalte() const {
    Datengrid& g = innen_->modell->grid();
    int weit = -1;
    for (int i = 1; i <= g.Cols(); ++i) {
        const Spalte& sp = g.Columns(i);
        if (sp.Visible && !sp.Bearbeitbar && !sp.Bildspalte &&
            (weit < 0 || sp.MinWidth > g.Columns(weit + 1).MinWidth))
            weit = i - 1;
    }
    return weit;
}

void Gridansicht::sortanzeige() {
    Innen& d = *innen_;
    Datengrid& g = d.modell->grid();
    for (int i = 1; i <= std::min(g.Cols(), d.kopf->count()); ++i) {
        const Spalte& sp = g.Columns(i);
        if (sp.SortState != SortKeine) {
            d.kopf->setSortIndicator(i - 1, sp.SortState == SortAb ? Qt::DescendingOrder
                                                                   : Qt::AscendingOrder);
            return;
        }
    }
    d.kopf->setSortIndicator(-1, Qt::AscendingOrder);
}

// A click on a caption sorts by its column, the other way round where it is sorted by it
// already, as far as the grid allows.
void Gridansicht::sortieren(int logisch) {
    Innen& d = *innen_;
    Datengrid& g = d.modell->grid();
    if (logisch < 0 || logisch >= g.Cols())
        return;
    const Spalte& sp = g.Columns(logisch + 1);
    const std::string sortierung = "[" + sp.Key + "]" + (sp.SortState == SortAuf ? " DESC" : "");
    const int index = d.index;
    d.ausfuehrung([&] {
        if (sortieren_erlaubt(index, sortierung))
            Auswahl().grid(index).DoSort(sortierung);
    });
    // The header turned its arrow already; the grid's sort decides.
    sortanzeige();
}

void Gridansicht::breite_geaendert(int logisch, int breite) {
    Innen& d = *innen_;
    Datengrid& g = d.modell->grid();
    if (d.im_abgleich || logisch >= g.Cols() || d.kopf->isSectionHidden(logisch))
        return;
    Spalte& sp = g.Columns(logisch + 1);
    const int mindestens = mindestbreite(logisch);
    if (breite < mindestens) {
        d.im_abgleich = true;
        d.kopf->resizeSection(logisch, mindestens);
        d.im_abgleich = false;
        breite = mindestens;
    }
    sp.Width = in_twips(d.tabelle, breite);
    d.speichern->start();
}

void Gridansicht::reihenfolge_geaendert() {
    Innen& d = *innen_;
    if (d.im_abgleich)
        return;
    Datengrid& g = d.modell->grid();
    for (int i = 0; i < std::min(g.Cols(), d.kopf->count()); ++i)
        g.Columns(i + 1).Position = d.kopf->visualIndex(i) + 1;
    d.speichern->start();
}

// The menu of the header: every column with a check mark where it is shown.
void Gridansicht::spaltenmenue(const QPoint& ort) {
    Innen& d = *innen_;
    Datengrid& g = d.modell->grid();
    QMenu menue(this);
    for (int i = 1; i <= g.Cols(); ++i) {
        const Spalte& sp = g.Columns(i);
        QAction* a = menue.addAction(q(sp.Caption.empty() ? sp.Key : sp.Caption));
        a->setCheckable(true);
        a->setChecked(sp.Visible);
        a->setData(i);
    }
    const QAction* gewaehlt = menue.exec(d.kopf->viewport()->mapToGlobal(ort));
    // The grid may have been set up anew while the menu was open.
    if (!gewaehlt || gewaehlt->data().toInt() > g.Cols())
        return;
    g.Columns(gewaehlt->data().toInt()).Visible = gewaehlt->isChecked();
    spalten_abgleichen();
    einstellungen_speichern();
}

// Tells the grid which rows are on the screen, so that a refresh reads those.
void Gridansicht::sichtbar_melden() {
    Innen& d = *innen_;
    const int erste = d.tabelle->rowAt(0);
    const int hoehe = std::max(d.tabelle->verticalHeader()->defaultSectionSize(), 1);
    d.modell->grid().sichtbar(erste < 0 ? 1 : erste + 1,
                              d.tabelle->viewport()->height() / hoehe + 2);
}

void Gridansicht::einstellungen_speichern() {
    Innen& d = *innen_;
    d.speichern->stop();
    Datengrid& g = d.modell->grid();
    if (g.Cols() == 0)
        return;
    spalteneinstellungen_speichern(g, "Stammfolio", g.Formularname, "Datengrid0_Cols",
                                   spalten_ini());
}

bool Gridansicht::eventFilter(QObject* objekt, QEvent* ereignis) {
    if (objekt == innen_->tabelle->viewport() && ereignis->type() == QEvent::Resize) {
        spalten_abgleichen();
        sichtbar_melden();
    }
    return QWidget::eventFilter(objekt, ereignis);
}

void Gridansicht::hideEvent(QHideEvent* ereignis) {
    // Leaving the page: what the user changed of the columns is kept now.
    if (innen_->speichern->isActive())
        einstellungen_speichern();
    QWidget::hideEvent(ereignis);
}

} // namespace folio::qt

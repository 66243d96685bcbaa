#include "wizard/qt/filterkopf.h"

#include "engine/errors.h"
#include "engine/value.h"
#include "wizard/datengrid.h"
#include "wizard/filter.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

namespace folio::qt {

// The drop-down list of a filter cell. It tells an entry picked from its open list from the
// text that the line edit happens to match, and opens the list where a plain combo box would
// step through its entries under the user's hands (arrow keys, wheel).
class Listenfeld : public QComboBox {
public:
    explicit Listenfeld(QWidget* parent) : QComboBox(parent) {}

    // The list is open, or has just closed with a pick.
    bool aus_der_liste() const { return offen_; }

    void showPopup() override {
        offen_ = true;
        QComboBox::showPopup();
    }
    void hidePopup() override {
        QComboBox::hidePopup();
        // The pick is reported right after the list closes.
        QTimer::singleShot(0, this, [this] { offen_ = false; });
    }

protected:
    void keyPressEvent(QKeyEvent* e) override {
        switch (e->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            showPopup();
            e->accept();
            return;
        default:
            QComboBox::keyPressEvent(e);
        }
    }
    void wheelEvent(QWheelEvent* e) override { e->ignore(); }

private:
    bool offen_ = false;
};

struct Filterkopf::Zelle {
    QWidget* feld = nullptr;       // the line edit or the list
    QLineEdit* text = nullptr;     // the line edit, the list's own for a list
    Listenfeld* liste = nullptr;   // null for a plain text cell
    std::vector<Value> schluessel; // the keys of the list's entries
    Value gewaehlt;                // the key of the entry picked, Null once the user types
    std::string gezeigt;           // the grid's filter text as last shown
};

Filterkopf::Filterkopf(Gridtabelle* tabelle, Ausfuehrung ausfuehrung, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent), tabelle_(tabelle), ausfuehrung_(std::move(ausfuehrung)) {
    {
        QLineEdit zeile;
        QComboBox liste;
        liste.setEditable(true);
        zellenhoehe_ = std::max(zeile.sizeHint().height(), liste.sizeHint().height());
    }
    connect(this, &QHeaderView::sectionResized, this, [this] { zellen_platzieren(); });
    connect(this, &QHeaderView::sectionMoved, this, [this] { zellen_platzieren(); });
    connect(this, &QHeaderView::sectionCountChanged, this, [this] { zellen_platzieren(); });
    connect(this, &QHeaderView::geometriesChanged, this, [this] { zellen_platzieren(); });
}

Filterkopf::~Filterkopf() = default;

QSize Filterkopf::sizeHint() const {
    QSize s = QHeaderView::sizeHint();
    s.setHeight(s.height() + zellenhoehe_);
    return s;
}

void Filterkopf::paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const {
    // The caption above, the cell below it.
    QHeaderView::paintSection(painter,
                              QRect(rect.x(), rect.y(), rect.width(), rect.height() - zellenhoehe_),
                              logicalIndex);
}

void Filterkopf::updateGeometries() {
    QHeaderView::updateGeometries();
    zellen_platzieren();
}

QWidget* Filterkopf::zelle(int spalte) const {
    const auto i = static_cast<std::size_t>(spalte - 1);
    if (spalte < 1 || i >= zellen_.size() || isSectionHidden(spalte - 1))
        return nullptr;
    return zellen_[i].feld;
}

void Filterkopf::zellen_platzieren() {
    Datengrid& g = tabelle_->grid();
    std::vector<std::string> schluessel;
    for (const Spalte& sp : g.spalten())
        schluessel.push_back(sp.Key);
    if (schluessel != schluessel_) {
        // The cell may be the one whose key brought this about: it goes once its event is
        // done.
        for (Zelle& z : zellen_)
            if (z.feld) {
                z.feld->hide();
                z.feld->deleteLater();
            }
        zellen_.clear();
        schluessel_ = std::move(schluessel);
    }
    const int anzahl = std::max(std::min(count(), g.Cols()), 0);
    for (std::size_t i = static_cast<std::size_t>(anzahl); i < zellen_.size(); ++i)
        if (zellen_[i].feld) {
            zellen_[i].feld->hide();
            zellen_[i].feld->deleteLater();
        }
    zellen_.resize(static_cast<std::size_t>(anzahl));
    const int oben = viewport()->height() - zellenhoehe_;
    for (int i = 0; i < anzahl; ++i) {
        Zelle* z = &zellen_[static_cast<std::size_t>(i)];
        // The grid's hidden columns, also before the header knows of them, get no cell.
        if (isSectionHidden(i) || !g.Columns(i + 1).Visible) {
            if (z->feld)
                z->feld->hide();
            continue;
        }
        if (!z->feld)
            z = &zelle_anlegen(i);
        z->feld->setGeometry(sectionViewportPosition(i), oben, sectionSize(i), zellenhoehe_);
        z->feld->show();
    }
}

// A cell as filterliste_fuellen says for the column: a list of the rows of a query or of
// fixed items, else a line edit.
Filterkopf::Zelle& Filterkopf::zelle_anlegen(int logisch) {
    Datengrid& g = tabelle_->grid();
    Filterliste liste;
    // A list that can't be read leaves a plain text cell.
    fehler_ignorieren([&] { liste = filterliste_fuellen(g, logisch + 1); });
    Zelle& z = zellen_[static_cast<std::size_t>(logisch)];
    if (liste.art == 0) {
        z.text = new QLineEdit(viewport());
        z.feld = z.text;
    } else {
        z.liste = new Listenfeld(viewport());
        z.liste->setEditable(true);
        z.liste->setInsertPolicy(QComboBox::NoInsert);
        z.liste->setCompleter(nullptr);
        z.liste->setMaxVisibleItems(liste.sichtbare_zeilen > 0 ? liste.sichtbare_zeilen : 10);
        z.liste->view()->setMinimumWidth(liste.breite / 15);
        for (const Filterliste::Eintrag& e : liste.eintraege) {
            z.liste->addItem(q(e.text));
            z.schluessel.push_back(e.schluessel);
        }
        z.text = z.liste->lineEdit();
        z.feld = z.liste;
        connect(z.liste, &QComboBox::activated, this, [this, feld = z.liste](int eintrag) {
            if (feld->aus_der_liste())
                waehlen(spalte_von(feld), eintrag);
        });
        z.liste->installEventFilter(this);
    }
    z.text->installEventFilter(this);
    z.feld->setContextMenuPolicy(Qt::PreventContextMenu);
    z.text->setContextMenuPolicy(Qt::PreventContextMenu);
    connect(z.text, &QLineEdit::textEdited, this, [this, feld = z.feld] {
        const int i = spalte_von(feld);
        if (i >= 0)
            zellen_[static_cast<std::size_t>(i)].gewaehlt = Value();
    });
    const Tooltip hilfe = filter_hilfe(g, logisch + 1);
    z.feld->setToolTip(tipptext(hilfe.titel, hilfe.text));
    zeigen(z, g.Columns(logisch + 1), true);
    return z;
}

int Filterkopf::spalte_von(QObject* objekt) const {
    for (std::size_t i = 0; i < zellen_.size(); ++i)
        if (objekt && (zellen_[i].feld == objekt || zellen_[i].text == objekt))
            return static_cast<int>(i);
    return -1;
}

void Filterkopf::texte_abgleichen(bool alle) {
    Datengrid& g = tabelle_->grid();
    for (std::size_t i = 0; i < zellen_.size() && static_cast<int>(i) < g.Cols(); ++i)
        if (zellen_[i].text)
            zeigen(zellen_[i], g.Columns(static_cast<int>(i) + 1), alle);
}

void Filterkopf::zeigen(Zelle& z, const Spalte& sp, bool alle) {
    if (alle || sp.Filter != z.gezeigt) {
        const QString text = q(sp.Filter);
        if (z.text->text() != text) {
            z.text->setText(text);
            z.gewaehlt = Value();
        }
        z.gezeigt = sp.Filter;
    }
    // A switched-off filter keeps its text, which doesn't count.
    const bool aus = !sp.Filter.empty() && sp.FilterShowDisabled;
    if (z.text->font().strikeOut() == aus)
        return;
    QFont schrift = z.text->font();
    schrift.setStrikeOut(aus);
    z.text->setFont(schrift);
    QPalette farben = palette();
    if (aus)
        farben.setColor(QPalette::Text, farben.color(QPalette::Disabled, QPalette::Text));
    z.text->setPalette(farben);
}

bool Filterkopf::eventFilter(QObject* objekt, QEvent* ereignis) {
    const int i = spalte_von(objekt);
    if (i < 0)
        return QHeaderView::eventFilter(objekt, ereignis);
    if (ereignis->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent*>(ereignis)->button() == Qt::RightButton) {
        umschalten(i);
        return true;
    }
    if (ereignis->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent*>(ereignis)->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            anwenden(i, zellen_[static_cast<std::size_t>(i)].text->text().toStdString());
            return true;
        case Qt::Key_Escape:
            abbrechen();
            return true;
        default:
            break;
        }
    }
    return QHeaderView::eventFilter(objekt, ereignis);
}

// The text of the cell becomes the column's filter, and the filters run.
void Filterkopf::anwenden(int logisch, const std::string& text) {
    const Value wahl = zellen_[static_cast<std::size_t>(logisch)].gewaehlt;
    ausfuehrung_([&] {
        Datengrid& g = tabelle_->grid();
        g.filterwahl = wahl;
        filter_uebernehmen(g, logisch + 1, text);
        filter_bestaetigen(g);
    });
    texte_abgleichen(true);
}

void Filterkopf::waehlen(int logisch, int eintrag) {
    if (logisch < 0)
        return;
    Zelle& z = zellen_[static_cast<std::size_t>(logisch)];
    if (eintrag < 0 || eintrag >= static_cast<int>(z.schluessel.size()))
        return;
    z.gewaehlt = z.schluessel[static_cast<std::size_t>(eintrag)];
    anwenden(logisch, z.liste->itemText(eintrag).toStdString());
}

void Filterkopf::umschalten(int logisch) {
    // The cells of the grid open no editor (a tick is set at once), so the grid is never in
    // its edit state when the filter row is clicked.
    ausfuehrung_([&] { filter_umschalten(tabelle_->grid(), logisch + 1, MausRechts, false); });
    texte_abgleichen(true);
}

void Filterkopf::abbrechen() {
    int taste = TasteEscape;
    ausfuehrung_([&] { filter_abbrechen(tabelle_->grid(), taste); });
    // On No the key is swallowed, and the cells keep what was typed.
    if (taste == TasteEscape)
        texte_abgleichen(true);
}

} // namespace folio::qt

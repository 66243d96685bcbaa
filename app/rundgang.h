// A walk through the wizard's window as a user goes: the sample tree chosen on page 1, a
// person ticked with ancestors and spouses and a filter set on page 2, a record struck out on
// page 3, the options chosen on page 4, the file written on page 5. The GUI tests and the
// screenshots take it step by step; `nach_seite` sees the window after each page's work.
#pragma once

#include "frame/platform.h"
#include "wizard/auswahl.h"
#include "wizard/qt/assistent.h"
#include "wizard/qt/dateiseite.h"
#include "wizard/qt/filterkopf.h"
#include "wizard/qt/gridansicht.h"
#include "wizard/qt/optionsseiten.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTableView>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

#include <functional>
#include <stdexcept>
#include <string>

namespace folio::rundgang {

struct Wahl {
    std::string datei = "Beispiel.SF6"; // on page 1
    int person = 35;                    // ticked on page 2, with ancestors and spouses
    std::string nachname_filter = "Hollerbach";
    bool streichen = true; // a record struck out on page 3
    std::string zielordner;
    std::string zielname = "Familie";
};

inline void warten() {
    QApplication::processEvents();
}

inline void klicken(QAbstractButton* knopf) {
    if (!knopf->isEnabled())
        throw std::runtime_error("the button \"" + knopf->text().toStdString() +
                                 "\" can't be pressed");
    // A check box or option button takes clicks on its box and its text only, which start
    // at its left edge.
    const bool kaestchen = qobject_cast<QCheckBox*>(knopf) || qobject_cast<QRadioButton*>(knopf);
    QTest::mouseClick(knopf, Qt::LeftButton, {},
                      kaestchen ? QPoint(6, knopf->height() / 2) : knopf->rect().center());
    warten();
}

// The button of a tool bar of the window whose text is the model's text of that key.
inline QAbstractButton* werkzeug(qt::Assistent& fenster, int coolbar, const char* key) {
    const QString text = QString::fromStdString(Auswahl().knopf(coolbar, key).text("Text"));
    for (QAbstractButton* b : fenster.grid(coolbar)->findChildren<QAbstractButton*>())
        if (b->text() == text)
            return b;
    throw std::runtime_error(std::string("no button ") + key);
}

// Ticks or clears the box of a row of a grid with a click on it, where it isn't so already.
inline void haken(qt::Assistent& fenster, int grid, std::int64_t zeile, bool an) {
    QTableView* tabelle = fenster.grid(grid)->tabelle();
    QAbstractItemModel* m = tabelle->model();
    for (int spalte = 0; spalte < m->columnCount(); ++spalte) {
        const QModelIndex i = m->index(static_cast<int>(zeile - 1), spalte);
        if (!(m->flags(i) & Qt::ItemIsUserCheckable))
            continue;
        if ((m->data(i, Qt::CheckStateRole).toInt() == Qt::Checked) == an)
            return;
        tabelle->scrollTo(i);
        warten();
        QStyleOptionViewItem option;
        option.initFrom(tabelle->viewport());
        option.rect = tabelle->visualRect(i);
        option.features = QStyleOptionViewItem::HasCheckIndicator;
        const QRect kaestchen = tabelle->style()->subElementRect(
            QStyle::SE_ItemViewItemCheckIndicator, &option, tabelle);
        QTest::mouseClick(tabelle->viewport(), Qt::LeftButton, {}, kaestchen.center());
        warten();
        return;
    }
    throw std::runtime_error("the grid has no tick column");
}

// Chooses an entry of the menu of "Markieren" on page 2.
inline void menue(qt::Assistent& fenster, const char* key) {
    QString text;
    for (PropertyBag& m : Auswahl().control("Coolbar_Datengrid", 0).items("MenuButtons"))
        if (m.text("Key") == key)
            text = QString::fromStdString(m.text("Caption"));
    auto* markieren = qobject_cast<QToolButton*>(werkzeug(fenster, 0, "Markieren"));
    if (!markieren || !markieren->menu())
        throw std::runtime_error("\"Markieren\" has no menu");
    for (QAction* a : markieren->menu()->actions())
        if (a->text() == text) {
            a->trigger();
            warten();
            return;
        }
    throw std::runtime_error(std::string("no menu entry ") + key);
}

inline std::int64_t zeile_von(int person) {
    Datengrid& g = Auswahl().grid(0);
    for (std::int64_t r = 1; r <= g.Rows(); ++r)
        if (g.Text("Counter", r) == std::to_string(person))
            return r;
    throw std::runtime_error("person " + std::to_string(person) + " isn't in the grid");
}

inline void gehen(qt::Assistent& fenster, const Wahl& wahl,
                  const std::function<void(int seite)>& nach_seite) {
    // Page 1: the file, chosen in the list.
    QListWidget* dateien = fenster.dateiseite()->dateien();
    const auto treffer = dateien->findItems(QString::fromStdString(wahl.datei), Qt::MatchExactly);
    if (treffer.isEmpty())
        throw std::runtime_error("the list doesn't show " + wahl.datei);
    dateien->scrollToItem(treffer.front());
    QTest::mouseClick(dateien->viewport(), Qt::LeftButton, {},
                      dateien->visualItemRect(treffer.front()).center());
    warten();
    nach_seite(1);
    klicken(fenster.knopf(qt::Assistent::Knopf::Weiter));

    // Page 2: nobody marked, then the person with ancestors (the question about the spouses
    // is answered OK), and a filter on the surname.
    menue(fenster, "Abwählen");
    klicken(werkzeug(fenster, 0, "Vorfahren"));
    haken(fenster, 0, zeile_von(wahl.person), true);
    if (!wahl.nachname_filter.empty()) {
        auto* zelle = qobject_cast<QLineEdit*>(
            fenster.grid(0)->filterkopf()->zelle(Auswahl().grid(0).GetCol("SURN")));
        if (!zelle)
            throw std::runtime_error("the surname has no filter cell");
        QTest::keyClicks(zelle, QString::fromStdString(wahl.nachname_filter));
        QTest::keyClick(zelle, Qt::Key_Return);
        warten();
    }
    nach_seite(2);
    klicken(fenster.knopf(qt::Assistent::Knopf::Weiter));

    // Page 3: the closure has run; the first record shown is struck out.
    if (wahl.streichen && Auswahl().grid(1).Rows() > 0)
        haken(fenster, 1, 1, false);
    nach_seite(3);
    klicken(fenster.knopf(qt::Assistent::Knopf::Weiter));

    // Page 4: Ansi, no privacy, strict 5.5, change stamps, a note.
    qt::Optionsseite* optionen = fenster.optionsseite();
    klicken(optionen->zeichensatz(0));
    for (int i = 0; i < 4; ++i)
        if (optionen->datenschutz(i)->isChecked())
            klicken(optionen->datenschutz(i));
    klicken(optionen->nur_55());
    klicken(optionen->aenderungsdatum());
    optionen->anmerkung()->setPlainText(QStringLiteral("Für Vetter Paul"));
    warten();
    nach_seite(4);
    klicken(fenster.knopf(qt::Assistent::Knopf::Weiter));

    // Page 5: the target typed in, and the start.
    qt::Zielseite* ziel = fenster.zielseite();
    ziel->ordner()->selectAll();
    QTest::keyClicks(ziel->ordner(), QString::fromStdString(wahl.zielordner));
    ziel->name()->selectAll();
    QTest::keyClicks(ziel->name(), QString::fromStdString(wahl.zielname));
    warten();
    klicken(fenster.knopf(qt::Assistent::Knopf::Starten));
    nach_seite(5);
}

} // namespace folio::rundgang

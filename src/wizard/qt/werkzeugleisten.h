// The tool bar over a grid, Coolbar_Datengrid(i). Over the persons: the menu button
// "Markieren" with its commands, and the switches "Vorfahren", "Nachfahren", "Ehepartner" and
// "Lebend". Over the linked records: one button per table, one of them pressed at a time.
// Texts, tooltips, states and widths are the buttons' as the form holds them.
#pragma once

#include "wizard/qt/gridtabelle.h"

#include <QWidget>

#include <string>
#include <utility>
#include <vector>

class QAction;
class QButtonGroup;
class QToolButton;

namespace folio::qt {

class Werkzeugleiste : public QWidget {
    Q_OBJECT
public:
    // `coolbar` 0: the persons' tool bar, 1: the tables of the linked records.
    Werkzeugleiste(int coolbar, Ausfuehrung ausfuehrung, QWidget* parent = nullptr);

    // Shows the buttons as the form holds them now.
    void abgleichen();

    // The button of a key, or null.
    QToolButton* knopf(const std::string& key) const;

signals:
    // A command or switch ran: the models may have changed.
    void ausgefuehrt();

private:
    void geklickt(const std::string& key, bool an);
    void befehl(const std::string& key);

    int coolbar_;
    Ausfuehrung ausfuehrung_;
    std::vector<std::pair<std::string, QToolButton*>> knoepfe_;
    std::vector<std::pair<std::string, QAction*>> befehle_; // the menu of "Markieren"
    QButtonGroup* gruppe_ = nullptr;                        // the tables, one pressed at a time
};

} // namespace folio::qt

// The first page on the screen: the folder of the family trees with its folder button, the
// list of their files, and the information on the tree chosen. Also the two-column lists
// DBGrid(0) and DBGrid(1), which page 5 shows too.
#pragma once

#include "wizard/qt/qt_plattform.h"

#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;
class QListWidget;
class QToolButton;
class QTreeWidget;

namespace folio {
class Control;
}

namespace folio::qt {

// Runs an action of the form as the window does (one at a time, failures shown).
// A list of two columns as the model DBGrid(i) holds it: its rows, bold cells, red text; and
// the bar above it with its caption.
QTreeWidget* zweispaltige_liste(QWidget* eltern);
QLabel* titelleiste(QWidget* eltern);
void liste_zeigen(QTreeWidget* liste, Control& dbgrid);

class Dateiseite : public QWidget {
    Q_OBJECT
public:
    Dateiseite(Ausfuehrung ausfuehren, QWidget* parent = nullptr);
    void abgleichen();

    QLineEdit* ordner() const { return ordner_; }
    QListWidget* dateien() const { return dateien_; }
    QTreeWidget* informationen() const { return info_; }

private:
    void ordner_geaendert(const QString& text);
    void ordner_waehlen();

    Ausfuehrung ausfuehren_;
    QLabel* ueberschrift_ = nullptr;
    QLabel* ordner_titel_ = nullptr;
    QLineEdit* ordner_ = nullptr;
    QToolButton* ordner_knopf_ = nullptr;
    QListWidget* dateien_ = nullptr;
    QLabel* info_titel_ = nullptr;
    QTreeWidget* info_ = nullptr;
};

} // namespace folio::qt

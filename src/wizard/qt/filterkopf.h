// The column headers of a grid with its filter row ("Auto-Filter") below the captions: one
// cell per shown column, kept under its section while columns are resized, moved or scrolled.
// A cell is a line edit, or a drop-down list where the column has one (the rows of a query,
// or fixed items). Enter or a pick from the list sets the filter and runs it, the right mouse
// button switches a filter off and on, Escape asks whether to drop what was typed.
#pragma once

#include "wizard/qt/gridtabelle.h"

#include <QHeaderView>

#include <string>
#include <vector>

class QLineEdit;

namespace folio {
struct Spalte;
}

namespace folio::qt {

class Listenfeld;

class Filterkopf : public QHeaderView {
    Q_OBJECT
public:
    Filterkopf(Gridtabelle* tabelle, Ausfuehrung ausfuehrung, QWidget* parent = nullptr);
    ~Filterkopf() override;

    // Shows the filter texts of the grid and whether each is switched off (grey, struck
    // out). A cell keeps what the user is typing unless the grid's text changed since it was
    // last shown there, or `alle` is set.
    void texte_abgleichen(bool alle = false);
    // Places the cells under their sections; the columns of a grid set up with other fields
    // get new cells.
    void zellen_platzieren();

    // The cell of the column at `spalte` (from 1): a QLineEdit or a QComboBox; null while the
    // column is hidden.
    QWidget* zelle(int spalte) const;

    QSize sizeHint() const override;
    // The width that the caption of a section needs, with its picture and the sort mark.
    int beschriftungsbreite(int logisch) const { return sectionSizeFromContents(logisch).width(); }

protected:
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override;
    void updateGeometries() override;
    bool eventFilter(QObject* objekt, QEvent* ereignis) override;

private:
    struct Zelle;

    Zelle& zelle_anlegen(int logisch);
    int spalte_von(QObject* objekt) const; // logical index of a cell's widget, or -1
    void anwenden(int logisch, const std::string& text);
    void waehlen(int logisch, int eintrag);
    void umschalten(int logisch);
    void abbrechen();
    void zeigen(Zelle& z, const Spalte& sp, bool alle);

    Gridtabelle* tabelle_;
    Ausfuehrung ausfuehrung_;
    int zellenhoehe_ = 0;
    std::vector<Zelle> zellen_;           // by logical index
    std::vector<std::string> schluessel_; // the keys of the columns that the cells are for
};

} // namespace folio::qt

// The rows and columns of a grid model Datengrid(i) as a Qt table model. A row is read from
// the grid only when the view asks for it; the column order of the view is the logical order
// of the grid (its column positions from 1), the order on the screen is the header's business.
#pragma once

#include "wizard/qt/qt_plattform.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>

#include <functional>
#include <string>
#include <vector>

namespace folio {
class Datengrid;
}

namespace folio::qt {

// A tooltip of the models, its title and its text (lines divided by CR LF), as one text.
QString tipptext(const std::string& titel, const std::string& text);

class Gridtabelle : public QAbstractTableModel {
    Q_OBJECT
public:
    // `index` 0: the persons, 1: the linked records.
    Gridtabelle(int index, Ausfuehrung ausfuehrung, QObject* parent = nullptr);

    int gridindex() const { return index_; }
    // The grid of the form as it stands now (the form may have been made anew).
    Datengrid& grid() const;

    // Listens to the grid's change notice and catches up with what changed since the last
    // time: a reset where the rows or columns are others, else the cells and the headers.
    void abgleichen();

    // The picture of the grid's collection at `nummer` (from 1); none for 0 or a missing file.
    QIcon bild(int nummer) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    // A tick set or cleared by the user goes to the grid's edit procedure; a refused tick
    // changes nothing.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

signals:
    // Anything of the grid changed: its rows, its columns, the state of its cells.
    void geaendert();

private:
    void grid_geaendert();

    int index_;
    Ausfuehrung ausfuehrung_;
    Datengrid* gehakt_ = nullptr; // the grid whose change notice reaches this model
    int zeilen_ = 0;
    std::vector<std::string> schluessel_; // the column keys as last shown
    mutable QHash<QString, QIcon> icons_; // by file
};

} // namespace folio::qt

#include "wizard/qt/gridtabelle.h"

#include "engine/errors.h"
#include "wizard/auswahl.h"
#include "wizard/datengrid.h"
#include "wizard/filter.h"
#include "wizard/personengrid.h"
#include "wizard/zeile_vorbereiten.h"

#include <QColor>
#include <QPointer>

#include <algorithm>

namespace folio::qt {

QString tipptext(const std::string& titel, const std::string& text) {
    QString t = q(text);
    t.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (titel.empty())
        return t;
    if (t.isEmpty())
        return q(titel);
    return q(titel) + QStringLiteral(": ") + t;
}

Gridtabelle::Gridtabelle(int index, Ausfuehrung ausfuehrung, QObject* parent)
    : QAbstractTableModel(parent), index_(index), ausfuehrung_(std::move(ausfuehrung)) {
    abgleichen();
}

Datengrid& Gridtabelle::grid() const {
    return Auswahl().grid(index_);
}

void Gridtabelle::abgleichen() {
    Datengrid& g = grid();
    // The hook is set only where it is missing (a grid made anew): it may be running now.
    if (!g.geaendert || gehakt_ != &g) {
        gehakt_ = &g;
        g.geaendert = [ich = QPointer<Gridtabelle>(this)] {
            if (ich)
                ich->grid_geaendert();
        };
    }
    grid_geaendert();
}

void Gridtabelle::grid_geaendert() {
    Datengrid& g = grid();
    std::vector<std::string> schluessel;
    schluessel.reserve(static_cast<std::size_t>(g.Cols()));
    for (const Spalte& sp : g.spalten())
        schluessel.push_back(sp.Key);
    const int zeilen = als_int(g.Rows());
    const bool neue_spalten = schluessel != schluessel_;
    if (neue_spalten || zeilen != zeilen_) {
        // Other rows: the view starts anew. The same rows in another state keep the view's
        // place, so that a tick or a refresh doesn't scroll.
        beginResetModel();
        schluessel_ = std::move(schluessel);
        zeilen_ = zeilen;
        endResetModel();
    } else if (!schluessel_.empty()) {
        const int spalten = static_cast<int>(schluessel_.size());
        if (zeilen_ > 0)
            emit dataChanged(index(0, 0), index(zeilen_ - 1, spalten - 1));
        emit headerDataChanged(Qt::Horizontal, 0, spalten - 1);
    }
    emit geaendert();
}

QIcon Gridtabelle::bild(int nummer) const {
    const std::vector<Bild>& icons = grid().Icons;
    if (nummer < 1 || nummer > static_cast<int>(icons.size()))
        return {};
    const std::string& datei = icons[static_cast<std::size_t>(nummer - 1)].datei;
    if (datei.empty())
        return {};
    const QString pfad = q(datei);
    auto it = icons_.find(pfad);
    if (it == icons_.end())
        it = icons_.insert(pfad, QIcon(pfad));
    return *it;
}

int Gridtabelle::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : zeilen_;
}

int Gridtabelle::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(schluessel_.size());
}

QVariant Gridtabelle::data(const QModelIndex& index, int role) const {
    Datengrid& g = grid();
    if (!index.isValid() || index.column() >= g.Cols() || index.row() >= g.Rows())
        return {};
    const Spalte& sp = g.Columns(index.column() + 1);
    QVariant ergebnis;
    // A row that can't be read shows empty; the grid reports a broken database elsewhere.
    fehler_ignorieren([&] {
        const Zeile& z = g.zeile(index.row() + 1);
        const Zeile::Zelle& zelle = z.zellen[static_cast<std::size_t>(index.column())];
        switch (role) {
        case Qt::DisplayRole:
            if (!sp.Bearbeitbar && !sp.Bildspalte)
                ergebnis = q(zelle.text);
            break;
        case Qt::DecorationRole:
            if (zelle.bild > 0)
                ergebnis = bild(zelle.bild);
            break;
        case Qt::CheckStateRole:
            if (sp.Bearbeitbar)
                ergebnis = ist_wahr(zelle.text) ? Qt::Checked : Qt::Unchecked;
            break;
        case Qt::ToolTipRole:
            if (!zelle.tooltip.empty())
                ergebnis = q(zelle.tooltip);
            break;
        case Qt::ForegroundRole:
            if (z.farbe != FarbeStandard)
                ergebnis = farbe(z.farbe);
            break;
        default:
            break;
        }
    });
    return ergebnis;
}

bool Gridtabelle::setData(const QModelIndex& index, const QVariant& value, int role) {
    Datengrid& g = grid();
    if (role != Qt::CheckStateRole || !index.isValid() || index.column() >= g.Cols() ||
        index.row() >= g.Rows() || !g.Columns(index.column() + 1).Bearbeitbar)
        return false;
    const std::string key = g.Columns(index.column() + 1).Key;
    const bool an = value.toInt() == Qt::Checked;
    bool gesetzt = false;
    ausfuehrung_([&] { gesetzt = zelle_aendern(index_, index.row() + 1, key, Value(an)); });
    return gesetzt;
}

Qt::ItemFlags Gridtabelle::flags(const QModelIndex& index) const {
    Datengrid& g = grid();
    if (!index.isValid() || index.column() >= g.Cols())
        return Qt::NoItemFlags;
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (g.Columns(index.column() + 1).Bearbeitbar)
        f |= Qt::ItemIsUserCheckable;
    return f;
}

QVariant Gridtabelle::headerData(int section, Qt::Orientation orientation, int role) const {
    Datengrid& g = grid();
    if (orientation != Qt::Horizontal || section < 0 || section >= g.Cols())
        return QAbstractTableModel::headerData(section, orientation, role);
    const Spalte& sp = g.Columns(section + 1);
    switch (role) {
    case Qt::DisplayRole:
        // The tick and picture columns are as narrow as their cells; the tooltip names them.
        if (sp.Bearbeitbar || sp.Bildspalte)
            return {};
        return q(sp.Caption);
    case Qt::DecorationRole:
        if (sp.Image == 1)
            return bild(1);
        return {};
    case Qt::ToolTipRole: {
        const Tooltip hilfe = spaltenkopf_hilfe(g, section + 1);
        const QString text = tipptext(hilfe.titel, hilfe.text);
        return text.isEmpty() ? QVariant() : QVariant(text);
    }
    default:
        return {};
    }
}

} // namespace folio::qt

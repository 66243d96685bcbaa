// A grid of the wizard on the screen: a table view over the model Datengrid(i) of the form,
// with the filter row under its column headers, and the tool bar above it (page 2: the
// selection commands and switches; page 3: the six tables of the linked records). The view
// mirrors the model and forwards what the user does; every rule lies in the model.
#pragma once

#include "wizard/qt/gridtabelle.h"

#include <QWidget>

#include <memory>

class QTableView;

namespace folio::qt {

class Filterkopf;
class Werkzeugleiste;

class Gridansicht : public QWidget {
    Q_OBJECT
public:
    // `index` 0: the persons (page 2), 1: the linked records (page 3).
    explicit Gridansicht(int index, QWidget* parent = nullptr);
    ~Gridansicht() override;

    // Shows the grid's columns, rows and tool bar as the model holds them now (after a set-up
    // of the grid, a page change, a command). Cheap enough to call after any action.
    void abgleichen();

    // How the user's actions run; by default at once. The window passes its own, which runs
    // one action at a time and shows a failure as a message.
    void ausfuehrung_setzen(Ausfuehrung ausfuehrung);

    QTableView* tabelle() const;
    Gridtabelle* modell() const;
    Filterkopf* filterkopf() const;
    Werkzeugleiste* werkzeugleiste() const;

protected:
    bool eventFilter(QObject* objekt, QEvent* ereignis) override;
    void hideEvent(QHideEvent* ereignis) override;

private:
    void ansicht_abgleichen();
    void spalten_abgleichen();
    int mindestbreite(int logisch) const;
    int breitenspalte() const;
    void sortanzeige();
    void sortieren(int logisch);
    void breite_geaendert(int logisch, int breite);
    void reihenfolge_geaendert();
    void spaltenmenue(const QPoint& ort);
    void sichtbar_melden();
    void einstellungen_speichern();

    struct Innen;
    std::unique_ptr<Innen> innen_;
};

} // namespace folio::qt

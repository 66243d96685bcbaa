// Pages 4 and 5 on the screen: the author's boxes, the note and the options of the export;
// the target, the summary, the progress of the run and its start button. Every box writes
// what the user types into its control at once; the page shows what the controls hold.
#pragma once

#include "wizard/qt/dateiseite.h"

#include <QWidget>

#include <vector>

class QCheckBox;
class QGroupBox;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;

namespace folio::qt {

// A box of the page and its control, kept in step in both directions.
class Bindung;

class Optionsseite : public QWidget {
    Q_OBJECT
public:
    explicit Optionsseite(QWidget* parent = nullptr);
    ~Optionsseite() override;
    void abgleichen();

    QCheckBox* datenschutz(int i) const { return datenschutz_[static_cast<std::size_t>(i)]; }
    QRadioButton* zeichensatz(int i) const { return zeichensatz_[static_cast<std::size_t>(i)]; }
    QCheckBox* nur_55() const { return nur_55_; }
    QCheckBox* aenderungsdatum() const { return aenderungsdatum_; }
    QPlainTextEdit* anmerkung() const { return anmerkung_; }
    QWidget* verfasser(int i) const { return verfasser_[static_cast<std::size_t>(i)]; }

private:
    std::vector<Bindung*> bindungen_;
    std::vector<std::pair<QGroupBox*, const char*>> rahmen_;
    std::vector<QWidget*> verfasser_;
    std::vector<QCheckBox*> datenschutz_;
    std::vector<QRadioButton*> zeichensatz_;
    QCheckBox* nur_55_ = nullptr;
    QCheckBox* aenderungsdatum_ = nullptr;
    QPlainTextEdit* anmerkung_ = nullptr;
};

class Zielseite : public QWidget {
    Q_OBJECT
public:
    Zielseite(Ausfuehrung ausfuehren, QWidget* parent = nullptr);
    ~Zielseite() override;
    void abgleichen();

    QLineEdit* ordner() const { return ordner_; }
    QLineEdit* name() const { return name_; }
    QPushButton* starten() const { return starten_; }
    QTreeWidget* zusammenfassung() const { return zusammenfassung_; }
    QPlainTextEdit* bericht() const { return bericht_; }

private:
    void name_waehlen();

    Ausfuehrung ausfuehren_;
    std::vector<Bindung*> bindungen_;
    std::vector<std::pair<QGroupBox*, const char*>> rahmen_;
    QLineEdit* ordner_ = nullptr;
    QLineEdit* name_ = nullptr;
    QTreeWidget* zusammenfassung_ = nullptr;
    QLabel* zusammenfassung_titel_ = nullptr;
    QProgressBar* fortschritt_ = nullptr;
    QPlainTextEdit* bericht_ = nullptr;
    QPushButton* starten_ = nullptr;
};

} // namespace folio::qt

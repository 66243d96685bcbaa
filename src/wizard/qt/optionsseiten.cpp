#include "wizard/qt/optionsseiten.h"

#include "wizard/auswahl.h"
#include "wizard/exportstart.h"
#include "wizard/formular.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <functional>

namespace folio::qt {

namespace {

// The longest text of the author's boxes but the remark.
constexpr int HoechstensZeichen = 255;

} // namespace

// A widget and its control: what the user changes goes into the control (and then to
// `geaendert`, where the form has a change event); `zeigen` puts the control's state back
// into the widget, and its caption into the label beside it.
class Bindung {
public:
    Bindung(Control& c, QLabel* beschriftung = nullptr)
        : control_(c), beschriftung_(beschriftung) {}
    virtual ~Bindung() = default;
    virtual void zeigen() {
        if (beschriftung_)
            beschriftung_->setText(q(control_.text("Caption")));
        widget()->setEnabled(!control_.has("Enabled") || control_.get("Enabled").toBool());
    }
    virtual QWidget* widget() const = 0;

protected:
    Control& control_;
    QLabel* beschriftung_;
};

namespace {

class Zeilenbindung : public Bindung {
public:
    Zeilenbindung(Control& c, QLineEdit* w, QLabel* l, std::function<void()> geaendert)
        : Bindung(c, l), w_(w) {
        QObject::connect(w, &QLineEdit::textEdited, w, [this, geaendert](const QString& t) {
            control_.set("Text", Value(t.toStdString()));
            if (geaendert)
                geaendert();
        });
    }
    void zeigen() override {
        Bindung::zeigen();
        if (w_->text().toStdString() != control_.text("Text"))
            w_->setText(q(control_.text("Text")));
    }
    QWidget* widget() const override { return w_; }

private:
    QLineEdit* w_;
};

class Textbindung : public Bindung {
public:
    Textbindung(Control& c, QPlainTextEdit* w, QLabel* l, int hoechstens) : Bindung(c, l), w_(w) {
        QObject::connect(w, &QPlainTextEdit::textChanged, w, [this, hoechstens] {
            QString t = w_->toPlainText();
            if (hoechstens > 0 && t.size() > hoechstens) {
                const QSignalBlocker sperre(w_);
                t.truncate(hoechstens);
                w_->setPlainText(t);
                w_->moveCursor(QTextCursor::End);
            }
            control_.set("Text", Value(t.toStdString()));
        });
    }
    void zeigen() override {
        Bindung::zeigen();
        if (w_->toPlainText().toStdString() != control_.text("Text")) {
            const QSignalBlocker sperre(w_);
            w_->setPlainText(q(control_.text("Text")));
        }
    }
    QWidget* widget() const override { return w_; }

private:
    QPlainTextEdit* w_;
};

// A check box holds 1 or 0, an option button True or False.
class Hakenbindung : public Bindung {
public:
    Hakenbindung(Control& c, QAbstractButton* w, bool option) : Bindung(c), w_(w), option_(option) {
        QObject::connect(w, &QAbstractButton::toggled, w, [this](bool an) {
            control_.set("Value", option_ ? Value(an) : Value(an ? 1 : 0));
        });
    }
    void zeigen() override {
        Bindung::zeigen();
        w_->setText(q(control_.text("Caption")));
        const bool an =
            option_ ? control_.get("Value").toBool() : control_.get("Value").toInt() == 1;
        if (w_->isChecked() != an) {
            const QSignalBlocker sperre(w_);
            w_->setChecked(an);
        }
    }
    QWidget* widget() const override { return w_; }

private:
    QAbstractButton* w_;
    bool option_;
};

QGroupBox* rahmen(QWidget* eltern, std::vector<std::pair<QGroupBox*, const char*>>& alle,
                  const char* name) {
    auto* r = new QGroupBox(eltern);
    alle.emplace_back(r, name);
    return r;
}

void rahmen_zeigen(const std::vector<std::pair<QGroupBox*, const char*>>& alle) {
    for (const auto& [r, name] : alle)
        r->setTitle(q(Auswahl().control(name).text("Caption")));
}

} // namespace

// --- Page 4 -------------------------------------------------------------------------------

Optionsseite::Optionsseite(QWidget* parent) : QWidget(parent) {
    AuswahlForm& form = Auswahl();
    auto* spalten = new QHBoxLayout(this);
    auto* links = new QVBoxLayout;
    auto* rechts = new QVBoxLayout;
    spalten->addLayout(links, 3);
    spalten->addLayout(rechts, 2);

    QGroupBox* autor = rahmen(this, rahmen_, "sevFrame1");
    auto* formular = new QFormLayout(autor);
    for (int i = 0; i < 7; ++i) {
        auto* beschriftung = new QLabel(autor);
        if (i == 1 || i == 6) {
            auto* w = new QPlainTextEdit(autor);
            w->setTabChangesFocus(true);
            w->setMaximumHeight(i == 1 ? 56 : 72);
            bindungen_.push_back(new Textbindung(form.Verfasser(i), w, beschriftung,
                                                 i == 1 ? HoechstensZeichen : 0));
            verfasser_.push_back(w);
            formular->addRow(beschriftung, w);
        } else {
            auto* w = new QLineEdit(autor);
            w->setMaxLength(HoechstensZeichen);
            bindungen_.push_back(new Zeilenbindung(form.Verfasser(i), w, beschriftung, nullptr));
            verfasser_.push_back(w);
            formular->addRow(beschriftung, w);
        }
    }
    links->addWidget(autor);
    QGroupBox* weitere = rahmen(this, rahmen_, "sevFrame2");
    auto* weitere_spalte = new QVBoxLayout(weitere);
    anmerkung_ = new QPlainTextEdit(weitere);
    anmerkung_->setTabChangesFocus(true);
    bindungen_.push_back(new Textbindung(form.Anmerkung(), anmerkung_, nullptr, 0));
    weitere_spalte->addWidget(anmerkung_);
    links->addWidget(weitere, 1);

    QGroupBox* schutz = rahmen(this, rahmen_, "sevFrame3");
    auto* schutz_spalte = new QVBoxLayout(schutz);
    for (int i = 0; i < 4; ++i) {
        auto* w = new QCheckBox(schutz);
        bindungen_.push_back(new Hakenbindung(form.Datenschutzcheck(i), w, false));
        datenschutz_.push_back(w);
        schutz_spalte->addWidget(w);
    }
    rechts->addWidget(schutz);
    QGroupBox* satz = rahmen(this, rahmen_, "sevFrame5");
    auto* satz_spalte = new QVBoxLayout(satz);
    for (int i = 0; i < 2; ++i) {
        auto* w = new QRadioButton(satz);
        bindungen_.push_back(new Hakenbindung(form.Zeichensatz(i), w, true));
        zeichensatz_.push_back(w);
        satz_spalte->addWidget(w);
    }
    rechts->addWidget(satz);
    QGroupBox* kompatibel = rahmen(this, rahmen_, "sevFrame6");
    auto* kompatibel_spalte = new QVBoxLayout(kompatibel);
    nur_55_ = new QCheckBox(kompatibel);
    aenderungsdatum_ = new QCheckBox(kompatibel);
    bindungen_.push_back(new Hakenbindung(form.nur_auf_55(), nur_55_, false));
    bindungen_.push_back(new Hakenbindung(form.Chancheck(), aenderungsdatum_, false));
    kompatibel_spalte->addWidget(nur_55_);
    kompatibel_spalte->addWidget(aenderungsdatum_);
    rechts->addWidget(kompatibel);
    rechts->addStretch(1);
}

Optionsseite::~Optionsseite() {
    for (Bindung* b : bindungen_)
        delete b;
}

void Optionsseite::abgleichen() {
    rahmen_zeigen(rahmen_);
    for (Bindung* b : bindungen_)
        b->zeigen();
}

// --- Page 5 -------------------------------------------------------------------------------

Zielseite::Zielseite(Ausfuehrung ausfuehren, QWidget* parent)
    : QWidget(parent), ausfuehren_(std::move(ausfuehren)) {
    AuswahlForm& form = Auswahl();
    auto* spalte = new QVBoxLayout(this);
    QGroupBox* ziel = rahmen(this, rahmen_, "ZielDBFrame");
    auto* raster = new QGridLayout(ziel);
    for (int i = 1; i <= 2; ++i) {
        auto* beschriftung = new QLabel(ziel);
        beschriftung->setMinimumWidth(100);
        auto* zeile = new QLineEdit(ziel);
        auto* knopf = new QToolButton(ziel);
        knopf->setText(QStringLiteral("…"));
        raster->addWidget(beschriftung, i - 1, 0);
        raster->addWidget(zeile, i - 1, 1);
        raster->addWidget(knopf, i - 1, 2);
        bindungen_.push_back(new Zeilenbindung(form.Verzeichnis(i), zeile, beschriftung, [this, i] {
            ausfuehren_([i] { verzeichnis_geaendert(i); });
        }));
        (i == 1 ? ordner_ : name_) = zeile;
        if (i == 1)
            connect(knopf, &QToolButton::clicked, this, [this, beschriftung] {
                const QString o =
                    QFileDialog::getExistingDirectory(this, beschriftung->text(), ordner_->text());
                if (o.isEmpty())
                    return;
                Auswahl().Verzeichnis(1).set("Text", Value(o.toStdString()));
                ausfuehren_([] { verzeichnis_geaendert(1); });
            });
        else
            connect(knopf, &QToolButton::clicked, this, &Zielseite::name_waehlen);
    }
    spalte->addWidget(ziel);

    zusammenfassung_titel_ = titelleiste(this);
    zusammenfassung_ = zweispaltige_liste(this);
    spalte->addWidget(zusammenfassung_titel_);
    spalte->addWidget(zusammenfassung_, 2);

    QGroupBox* lauf = rahmen(this, rahmen_, "sevFrame4");
    auto* lauf_spalte = new QVBoxLayout(lauf);
    fortschritt_ = new QProgressBar(lauf);
    bericht_ = new QPlainTextEdit(lauf);
    bericht_->setReadOnly(true);
    starten_ = new QPushButton(lauf);
    lauf_spalte->addWidget(fortschritt_);
    lauf_spalte->addWidget(bericht_, 1);
    lauf_spalte->addWidget(starten_, 0, Qt::AlignRight);
    spalte->addWidget(lauf, 1);
    connect(starten_, &QPushButton::clicked, this,
            [this] { ausfuehren_([] { Exportstarten(); }); });
}

Zielseite::~Zielseite() {
    for (Bindung* b : bindungen_)
        delete b;
}

// The button beside the file name: a file chosen in a dialogue gives folder and name.
void Zielseite::name_waehlen() {
    const QString datei = QFileDialog::getSaveFileName(
        this, q(Auswahl().Verzeichnis(2).text("Caption")),
        ordner_->text() + "/" + name_->text() + ".GED", QStringLiteral("GEDCOM (*.ged *.GED)"),
        nullptr, QFileDialog::DontConfirmOverwrite);
    if (datei.isEmpty())
        return;
    const QFileInfo info(datei);
    Auswahl().Verzeichnis(1).set("Text", Value(info.absolutePath().toStdString()));
    Auswahl().Verzeichnis(2).set("Text", Value(info.completeBaseName().toStdString()));
    ausfuehren_([] {
        verzeichnis_geaendert(1);
        verzeichnis_geaendert(2);
    });
}

void Zielseite::abgleichen() {
    AuswahlForm& form = Auswahl();
    rahmen_zeigen(rahmen_);
    for (Bindung* b : bindungen_)
        b->zeigen();
    zusammenfassung_titel_->setText(q(form.DBGrid(1).text("Caption")));
    liste_zeigen(zusammenfassung_, form.DBGrid(1));
    balken_zeigen(fortschritt_, form.Fortschritt());
    QString bericht = q(form.Fortschritttext().text("Text"));
    bericht.remove(QLatin1Char('\r'));
    if (bericht_->toPlainText() != bericht) {
        bericht_->setPlainText(bericht);
        bericht_->verticalScrollBar()->setValue(bericht_->verticalScrollBar()->maximum());
    }
    Control& start = form.control("Exportstarten");
    starten_->setText(q(start.text("Caption")));
    starten_->setEnabled(start.get("Enabled").toBool());
}

} // namespace folio::qt

// The wizard's window: a frame of our own with the header of the page (title, description,
// its number as one big digit), the side picture, the five pages, the buttons Help, Back,
// Next, Finish and Cancel, and the version at the foot. It mirrors the form Auswahl and
// forwards every action to the form's procedures; which button may be pressed is the form's
// decision (NextEnabled, FinishEnabled, Busy).
#pragma once

#include <QWidget>

#include <array>
#include <functional>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace folio::qt {

class Dateiseite;
class Gridansicht;
class Optionsseite;
class Zielseite;

class Assistent : public QWidget {
    Q_OBJECT
public:
    enum class Knopf { Hilfe, Zurueck, Weiter, Starten, Beenden };

    explicit Assistent(QWidget* parent = nullptr);

    // The page shown, from 1.
    int seite() const { return seite_; }
    QPushButton* knopf(Knopf k) const { return knoepfe_[static_cast<std::size_t>(k)]; }
    Dateiseite* dateiseite() const { return dateiseite_; }
    Gridansicht* grid(int i) const { return grids_[static_cast<std::size_t>(i)]; }
    Optionsseite* optionsseite() const { return optionsseite_; }
    Zielseite* zielseite() const { return zielseite_; }

    // Shows what the form's models hold now.
    void abgleichen();

    // Runs an action of the form: one at a time, with the busy pointer, a failure shown as a
    // message, and the window brought up to date afterwards. Nothing runs while another
    // action is under way (its pending events may bring in clicks).
    void ausfuehren(const std::function<void()>& aktion);

protected:
    void closeEvent(QCloseEvent* ereignis) override;

private:
    void wechseln(int neu);
    void abbrechen();
    QWidget* kopf();
    QWidget* knopfleiste();

    int seite_ = 1;
    bool beschaeftigt_ = false;
    bool geschlossen_ = false; // the form has unloaded
    QLabel* titel_ = nullptr;
    QLabel* beschreibung_ = nullptr;
    QLabel* ziffer_ = nullptr;
    QLabel* seitenbild_ = nullptr;
    QLabel* version_ = nullptr;
    QStackedWidget* seiten_ = nullptr;
    std::array<QPushButton*, 5> knoepfe_{};
    Dateiseite* dateiseite_ = nullptr;
    std::array<Gridansicht*, 2> grids_{};
    Optionsseite* optionsseite_ = nullptr;
    Zielseite* zielseite_ = nullptr;
};

} // namespace folio::qt

// The platform of the desktop program: message boxes as QMessageBox in the styles of the
// system (buttons, icon, default button, the check box "485 Meldung weiterhin anzeigen"),
// pending events through Qt's event loop, the help page in the user's browser. While a long
// pass lets events run, the windows that mirror the models are brought up to date.
#pragma once

#include "frame/platform.h"

#include <QElapsedTimer>
#include <QString>

#include <cstdint>
#include <string>

class QColor;
class QProgressBar;
class QWidget;

#include <functional>
#include <vector>

namespace folio {
class Control;
}

namespace folio::qt {

// A text of the models as Qt shows it.
inline QString q(const std::string& s) {
    return QString::fromStdString(s);
}

// A count of the models as Qt takes it, held within 0 and the largest int.
int als_int(std::int64_t n);

// A bar shows a progress control of the forms: its Max and its Value.
void balken_zeigen(QProgressBar* balken, const Control& control);

class QtPlattform : public Platform {
public:
    QtPlattform();
    ~QtPlattform() override;
    MessageAnswer showMessage(const MessageRequest& request) override;
    void doEvents() override;
    void repaint(Form& form, Control* control) override;
    void sleep(int milliseconds) override;
    int screenWidth() const override;
    int screenHeight() const override;
    void oeffnen(const std::string& datei) override;

    // What mirrors a model on the screen: called when pending events run, at most every few
    // hundredths of a second, so that a pass over a million records isn't slowed by it.
    std::vector<std::function<void()>> abgleicher;

private:
    void abgleichen(bool sofort);
    QElapsedTimer seit_abgleich_;
};

// Qt's own texts (the buttons of a message box, the dialogues for files and folders) in the
// language of the program, where Qt's translations are installed. Called once the language
// is known, and again when it changes.
void qt_texte_laden();

// The platform in use, where it is the desktop's; null otherwise (tests, command line).
QtPlattform* qt_plattform();

// Runs an action of the user on the models: at once, or as the window runs them (one at a
// time, with the busy pointer and a failure shown as a message).
using Ausfuehrung = std::function<void(const std::function<void()>&)>;

// The forms measure in twips, 15 to the pixel of a screen on which a digit of their font is
// 6 pixels wide. Where the font of a widget is wider, its measures grow alike, so that what
// fitted a column or a window fits it here too.
constexpr int TwipsProPixel = 15;
int in_pixel(const QWidget* w, int twips);
int in_twips(const QWidget* w, int pixel);

// A colour of the forms: red + 256 * green + 65536 * blue.
QColor farbe(long wert);

// The busy pointer for as long as it lives.
class Sanduhr {
public:
    Sanduhr();
    ~Sanduhr();
    Sanduhr(const Sanduhr&) = delete;
    Sanduhr& operator=(const Sanduhr&) = delete;
};

} // namespace folio::qt

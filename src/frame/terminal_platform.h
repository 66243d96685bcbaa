// The platform of the command line: messages go to the standard error stream, every line
// behind the program's name, questions get their default answer (the first button), and
// there is no window to paint. Where the stream is a terminal, a progress bar stands on its
// last line while long work runs.
#pragma once

#include "frame/platform.h"

#include <chrono>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

namespace folio {

// What the bar shows: a label and how far the work is.
struct Fortschrittsstand {
    std::string text;
    long long wert = 0;
    long long maximum = 100;
};

class TerminalPlatform : public Platform {
public:
    explicit TerminalPlatform(std::ostream& out, bool balken = false, std::string praefix = "")
        : out_(out), balken_(balken), praefix_(std::move(praefix)) {}
    MessageAnswer showMessage(const MessageRequest& request) override;
    // The bar is redrawn from the source when events run, at most ten times a second. A stop
    // asked for (a signal) raises Abbruch here.
    void doEvents() override;
    void repaint(Form&, Control*) override { zeichnen(false); }

    // Where the bar takes its state from; none (the default) shows no bar.
    void fortschritt_quelle(std::function<std::optional<Fortschrittsstand>()> quelle) {
        quelle_ = std::move(quelle);
    }
    // Takes the bar off its line.
    void fortschritt_beenden();

private:
    void zeichnen(bool sofort);
    std::ostream& out_;
    bool balken_;
    std::string praefix_;
    bool sichtbar_ = false;
    std::function<std::optional<Fortschrittsstand>()> quelle_;
    std::chrono::steady_clock::time_point zuletzt_{};
    std::string letzte_zeile_;
};

} // namespace folio

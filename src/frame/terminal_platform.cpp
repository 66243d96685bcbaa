#include "frame/terminal_platform.h"

#include "engine/abbruch.h"
#include "engine/text_util.h"

#include <algorithm>
#include <ostream>
#include <sstream>

namespace folio {

MessageAnswer TerminalPlatform::showMessage(const MessageRequest& request) {
    fortschritt_beenden();
    // Without a name of its own, the box's title stands in front of its text.
    std::string text = request.text;
    if (praefix_.empty() && !request.title.empty())
        text = request.title + ": " + text;
    std::istringstream zeilen(text);
    for (std::string zeile; std::getline(zeilen, zeile);) {
        std::erase(zeile, '\r');
        if (isBlank(zeile))
            continue;
        out_ << (praefix_.empty() ? "" : praefix_ + ": ") << zeile << "\n";
    }
    out_.flush();
    // The first button of the box: OK, Yes, or Abort/Retry where those are offered.
    const int buttons = request.style & 7;
    const int answer = buttons == 2 ? 3 : buttons == 3 || buttons == 4 ? 6 : buttons == 5 ? 4 : 1;
    return {answer, request.checkboxValue};
}

void TerminalPlatform::doEvents() {
    abbruch_pruefen();
    zeichnen(false);
}

void TerminalPlatform::zeichnen(bool sofort) {
    if (!balken_ || !quelle_)
        return;
    const auto jetzt = std::chrono::steady_clock::now();
    if (!sofort && jetzt - zuletzt_ < std::chrono::milliseconds(100))
        return;
    zuletzt_ = jetzt;
    const std::optional<Fortschrittsstand> stand = quelle_();
    if (!stand)
        return;
    constexpr int Breite = 30;
    const long long maximum = std::max(1LL, stand->maximum);
    const long long wert = std::clamp(stand->wert, 0LL, maximum);
    const int voll = static_cast<int>(wert * Breite / maximum);
    std::string text = stand->text;
    // The label is cut to the width of a usual terminal, by characters.
    constexpr std::size_t Zeichen = 36;
    if (utf8Length(text) > Zeichen)
        text = utf8Left(text, Zeichen - 1) + "…";
    std::string zeile = "[" + std::string(voll, '#') + std::string(Breite - voll, '.') + "] " +
                        std::to_string(wert * 100 / maximum) + "% " + text;
    if (zeile == letzte_zeile_)
        return;
    const std::size_t alte = utf8Length(letzte_zeile_), neue = utf8Length(zeile);
    letzte_zeile_ = zeile;
    if (alte > neue)
        zeile += std::string(alte - neue, ' ');
    out_ << '\r' << zeile << std::flush;
    sichtbar_ = true;
}

void TerminalPlatform::fortschritt_beenden() {
    if (!sichtbar_)
        return;
    out_ << '\r' << std::string(utf8Length(letzte_zeile_), ' ') << '\r' << std::flush;
    sichtbar_ = false;
    letzte_zeile_.clear();
}

} // namespace folio

#include "frame/terminal_platform.h"

#include <ostream>

namespace folio {

MessageAnswer TerminalPlatform::showMessage(const MessageRequest& request) {
    if (!request.title.empty())
        out_ << request.title << ": ";
    out_ << request.text << "\n";
    out_.flush();
    // The first button of the box: OK, Yes, or Abort/Retry where those are offered.
    const int buttons = request.style & 7;
    const int answer = buttons == 2 ? 3 : buttons == 3 || buttons == 4 ? 6 : buttons == 5 ? 4 : 1;
    return {answer, request.checkboxValue};
}

} // namespace folio

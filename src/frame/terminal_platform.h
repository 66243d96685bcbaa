// The platform of the command line: messages go to the standard error stream, questions get
// their default answer (the first button), and there is no window to paint.
#pragma once

#include "frame/platform.h"

#include <iosfwd>

namespace folio {

class TerminalPlatform : public Platform {
public:
    explicit TerminalPlatform(std::ostream& out) : out_(out) {}
    MessageAnswer showMessage(const MessageRequest& request) override;

private:
    std::ostream& out_;
};

} // namespace folio

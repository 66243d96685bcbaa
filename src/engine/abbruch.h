// Stopping work on request: a signal (Ctrl-C, SIGTERM) asks for it, and the work unwinds at
// the next point that looks: a statement of the database in progress is interrupted, and
// the output and the platform's event loop check before they go on. Unwinding rolls back
// what the run changed and removes what it half wrote, as any failure does.
#pragma once

#include <exception>
#include <string>

namespace folio {

// The work was stopped on request. Deliberately no folio::Error: stretches that run "with
// errors ignored" must not swallow it.
class Abbruch : public std::exception {
public:
    explicit Abbruch(int signal)
        : signal_(signal), text_("stopped by signal " + std::to_string(signal)) {}
    int signal() const noexcept { return signal_; }
    const char* what() const noexcept override { return text_.c_str(); }

private:
    int signal_;
    std::string text_;
};

// Asks for a stop; safe to call from a signal handler.
void abbruch_anfordern(int signal) noexcept;
// The signal that asked for a stop, 0 while none did.
int abbruch_angefordert() noexcept;
// Raises Abbruch where a stop was asked for.
void abbruch_pruefen();
// Forgets a request (for tests, and for a program that goes on after a stopped run).
void abbruch_zuruecksetzen() noexcept;

} // namespace folio

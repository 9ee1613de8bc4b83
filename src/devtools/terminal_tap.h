#pragma once
// The Terminal (runtime/services.h) the developer terminal installs: it keeps every line in a
// TerminalLog and hands it on to the terminal it replaced, so what stderr shows stays as it was.

#include <memory>

#include "devtools/terminal_log.h"
#include "runtime/services.h"

namespace veldra {

class TerminalTap final : public Terminal {
public:
    explicit TerminalTap(std::unique_ptr<Terminal> replaced) : replaced_(std::move(replaced)) {
        verbose = replaced_->verbose;
    }
    void println(LogLevel level, std::string_view line) override;

    // Makes a tap the services' terminal; returns it (owned by `services`).
    static TerminalTap& install(Services& services);
    // Puts back the terminal `tap` replaced, when `tap` is still the services' terminal.
    static void uninstall(Services& services, TerminalTap& tap);

    TerminalLog log;

private:
    std::unique_ptr<Terminal> replaced_;
};

}  // namespace veldra

#include "devtools/terminal_tap.h"

namespace veldra {

void TerminalTap::println(LogLevel level, std::string_view line) {
    log.add(level, line);
    replaced_->verbose = verbose;
    replaced_->println(level, line);
}

TerminalTap& TerminalTap::install(Services& services) {
    auto tap = std::make_unique<TerminalTap>(std::move(services.terminal));
    TerminalTap& installed = *tap;
    services.terminal = std::move(tap);
    return installed;
}

void TerminalTap::uninstall(Services& services, TerminalTap& tap) {
    if (services.terminal.get() != &tap)
        return;
    // Moved out first: the tap goes when the services let go of it.
    std::unique_ptr<Terminal> replaced = std::move(tap.replaced_);
    services.terminal = std::move(replaced);
}

}  // namespace veldra

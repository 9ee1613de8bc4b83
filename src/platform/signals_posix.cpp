#include "platform/signals.h"

#include <csignal>

namespace veldra::platform {

void ignore_broken_pipes() {
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace veldra::platform

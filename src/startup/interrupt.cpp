#include "startup/interrupt.h"

#include <csignal>

namespace veldra {

namespace {
// The one piece of process-wide state: a signal handler can reach nothing else.
volatile std::sig_atomic_t interrupted = 0;

extern "C" void on_interrupt(int) {
    interrupted = 1;
}
}  // namespace

void install_interrupt_handler() {
    std::signal(SIGINT, on_interrupt);
    std::signal(SIGTERM, on_interrupt);
}

bool interrupt_requested() {
    return interrupted != 0;
}

}  // namespace veldra

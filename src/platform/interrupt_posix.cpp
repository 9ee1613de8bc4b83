#include "platform/interrupt.h"

#include <signal.h>

#include <csignal>

namespace veldra {

namespace {
// The one piece of process-wide state: a signal handler can reach nothing else. 0 until a
// signal arrives, then its number.
volatile std::sig_atomic_t interrupted = 0;

// The first signal is the one that stopped the program; a second one changes nothing.
extern "C" void on_interrupt(int signal_number) {
    if (interrupted == 0)
        interrupted = signal_number;
}

bool ignored_by_parent(int signal_number) {
    struct sigaction current {};
    return sigaction(signal_number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

// SA_RESTART: a read or write the signal lands in goes on, and the loop sees the flag after it.
void set_handler(int signal_number, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(signal_number, &action, nullptr);
}
}  // namespace

void install_interrupt_handler() {
    if (!ignored_by_parent(SIGINT))
        set_handler(SIGINT, on_interrupt);
    set_handler(SIGTERM, on_interrupt);
}

void restore_default_interrupt_handling() {
    if (!ignored_by_parent(SIGINT))
        set_handler(SIGINT, SIG_DFL);
    set_handler(SIGTERM, SIG_DFL);
}

bool interrupt_requested() {
    return interrupted != 0;
}

const char* interrupt_signal_name() {
    return interrupted == SIGTERM ? "SIGTERM" : "SIGINT (Ctrl-C)";
}

}  // namespace veldra

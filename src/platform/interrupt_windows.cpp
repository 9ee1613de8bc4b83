#include <windows.h>

#include <atomic>

#include "platform/interrupt.h"

namespace veldra {

namespace {
// The console runs the handler on a thread of its own: the flag is all it touches. 0 until an
// event arrives, then the event's number + 1 (CTRL_C_EVENT is 0).
std::atomic<DWORD> interrupted{0};

// The first event is the one that stopped the program; a second one changes nothing. TRUE:
// handled, the process goes on to stop between frames. Closing the console window or logging
// off gives a few seconds only; the frame loop usually makes it.
BOOL WINAPI on_console_event(DWORD event) {
    switch (event) {
        case CTRL_C_EVENT:
        case CTRL_BREAK_EVENT:
        case CTRL_CLOSE_EVENT:
        case CTRL_LOGOFF_EVENT:
        case CTRL_SHUTDOWN_EVENT: {
            DWORD none = 0;
            interrupted.compare_exchange_strong(none, event + 1);
            return TRUE;
        }
        default:
            return FALSE;
    }
}
}  // namespace

// A console that started the program with Ctrl-C disabled (a batch file's "start /b") keeps it
// disabled: the handler is still installed, and the system simply never calls it for Ctrl-C.
void install_interrupt_handler() {
    SetConsoleCtrlHandler(on_console_event, TRUE);
}

void restore_default_interrupt_handling() {
    SetConsoleCtrlHandler(on_console_event, FALSE);
}

bool interrupt_requested() {
    return interrupted.load() != 0;
}

const char* interrupt_signal_name() {
    switch (interrupted.load()) {
        case CTRL_BREAK_EVENT + 1:
            return "Ctrl-Break";
        case CTRL_CLOSE_EVENT + 1:
            return "the console window closing";
        case CTRL_LOGOFF_EVENT + 1:
        case CTRL_SHUTDOWN_EVENT + 1:
            return "Windows logging off or shutting down";
        default:
            return "Ctrl-C";
    }
}

}  // namespace veldra

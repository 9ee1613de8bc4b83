#pragma once
// Ctrl-C (SIGINT) and SIGTERM, in every mode. The handler only notes the signal: the frame loop
// sees it after the frame in progress and ends the mode the way closing the window does, so
// every finished record is on disk (startup/run_program.cpp); a running batch stops after the trial
// in progress, so its output stays a valid file. Either way the program exits with status 130.
//
// A SIGINT that the parent set to ignored stays ignored: a shell starts background jobs of a
// script that way, so that a Ctrl-C at the terminal stops the script and not its jobs. SIGTERM
// is always caught.

namespace veldra {

inline constexpr int EXIT_INTERRUPTED = 130;

void install_interrupt_handler();
// Back to the system's default (the process ends at once), for work that cannot stop between
// steps of its own; a SIGINT the parent ignores stays ignored.
void restore_default_interrupt_handling();

bool interrupt_requested();
// "SIGINT (Ctrl-C)" or "SIGTERM": the signal that asked, for the log.
const char* interrupt_signal_name();

}  // namespace veldra

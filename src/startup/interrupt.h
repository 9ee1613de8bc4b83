#pragma once
// Ctrl-C during a shell run: the first one asks the running batch to stop after the trial in
// progress, so its output stays a valid file; the program then exits with status 130.

namespace veldra {

inline constexpr int EXIT_INTERRUPTED = 130;

void install_interrupt_handler();
bool interrupt_requested();

}  // namespace veldra

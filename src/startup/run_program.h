#pragma once
// The program from main() to exit: reads the command line, makes the application state with
// its services, starts the first room (which holds obj_init) and runs frames until the game
// ends.

namespace veldra {

struct AppState;

int run_program(int argc, char** argv);

// Ends the game after this frame; the program returns `status`.
void end_program(AppState& app, int status);

}  // namespace veldra

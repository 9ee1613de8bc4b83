#pragma once
// The program from main() to exit: reads the command line, makes the context and the services,
// starts the first room (which holds obj_init) and runs frames until the game ends.

#include <string>
#include <vector>

namespace veldra {

int run_program(int argc, char** argv);

// What the program was started with; obj_init reads its parameters from here.
struct ProgramArguments {
    std::vector<std::string> arguments;
};

void end_program(int status);

}  // namespace veldra

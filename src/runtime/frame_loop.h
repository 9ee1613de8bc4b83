#pragma once
// One frame of the program, the same with a window and without: the services decide whether
// input comes from devices or a script, and whether the drawing reaches a screen.

#include <cstddef>

namespace veldra {

class Runtime;
struct Services;

// Returns how many draw commands the frame showed (0 before anything is on screen).
std::size_t run_program_frame(Runtime& runtime, Services& services);

}  // namespace veldra

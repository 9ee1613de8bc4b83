#pragma once
// One frame of the program, the same with a window and without: the services decide whether
// input comes from devices or a script, and whether the drawing reaches a screen.

namespace veldra {

class Runtime;
struct Services;

void run_program_frame(Runtime& runtime, Services& services);

}  // namespace veldra

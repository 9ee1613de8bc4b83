#pragma once

namespace veldra {

// The last start-up step: decides from the program parameters what the program does.
void choose_run_mode();

}  // namespace veldra

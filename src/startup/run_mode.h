#pragma once

namespace veldra {

struct AppState;

// The last start-up step: decides from the program parameters what the program does.
void choose_run_mode(AppState& app);

}  // namespace veldra

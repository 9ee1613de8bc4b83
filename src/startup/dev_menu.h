#pragma once
// The developer menu: what a researcher sees when the program starts without a run mode. It
// starts sessions, generates level sets, runs auto runs with a progress bar in the window, and
// plays single levels.

#include "ui/popup_menu.h"

namespace veldra {

struct AppState;

MenuDefinition make_dev_menu(AppState& app, bool is_remote_defined);

// Opens it as a persistent popup once the configured server (API_ENV) answered the connection
// test, or "Failed to connect to the server." was shown.
void open_dev_menu(AppState& app);

}  // namespace veldra

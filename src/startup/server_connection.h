#pragma once
// The game's link to the research server: the API client made at start-up from API_ENV, and
// the connection test that runs, under "Connecting...", before anything talks to the server.

#include <string>

#include "async/promise.h"

namespace veldra {

struct AppState;
class obj_api;

// Makes the API client (API) for API_ENV's address, with "/" added when it lacks one.
void create_api_client(AppState& app);

// The client made by create_api_client.
obj_api& api_client(AppState& app);

// Whether ".api_env.json" names a server at all.
bool is_remote_defined(const AppState& app);

// What to do when it does not: said instead of a failed connection, which would send the
// researcher looking for a network fault.
std::string no_server_configured_text();

// Shows "Connecting..." while the server's root is asked; fulfilled with whether it answered.
// Without a configured server, false at once and nothing is sent.
Promise<bool> connect_to_server(AppState& app);

}  // namespace veldra

#pragma once
// Server sessions started with user_id= or from the developer menu: the connection to the
// research server, the check that the user is registered, and the session's screens in the
// window or, headless, a session that plays itself and ends the program when it is done.

#include <string>
#include <vector>

#include "async/promise.h"
#include "util/rng.h"

namespace veldra {

struct AppState;

// Plays `level_filenames` for `user_id` against the server. Refuses (with a message, returning
// false) when a session is already running, a level cannot be loaded or the autosave cannot be
// made.
bool start_server_session(AppState& app, std::vector<std::string> level_filenames,
                          std::string user_id, Rng rng);

// Checks that `user_id` is registered and starts a session of the configuration's levels
// (shuffled when shuffle_levels asks); fulfilled with whether it started. Each refusal is shown
// as a message ("User ID ... is not registered.").
Promise<bool> start_server_session_for_user(AppState& app, const std::string& user_id);

// Connects, checks that `user_id` is registered and starts a session of the configuration's
// levels (shuffled when shuffle_levels asks). Headless, the program ends with the session, or
// with status 1 when the server cannot be used (2 when none is configured).
void start_server_user_mode(AppState& app, const std::string& user_id);

}  // namespace veldra

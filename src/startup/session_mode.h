#pragma once
// Local sessions started from the developer menu or with demo=1: the session's screens in the
// window, the autosave beside the log, and a confirmation before the window closes in the middle
// of a session.

#include <optional>
#include <string>
#include <vector>

#include "runtime/append_file.h"
#include "util/rng.h"

namespace veldra {

struct AppState;

// Plays `level_filenames` for `user_id`; `repeat` starts over after the last level. Refuses
// (with a message, returning false) when a session is already running, a level cannot be
// loaded or its autosave cannot be made, so a typo in the configuration or a folder that
// cannot be written is found before a participant sits down.
bool start_local_session(AppState& app, std::vector<std::string> level_filenames,
                         std::string user_id, Rng rng, bool repeat = false);

// Every level can be loaded; else a message names the first that cannot.
bool session_levels_loadable(AppState& app, const std::vector<std::string>& level_filenames);

// The session's autosave beside the log, made before the first trial so that a participant never
// plays a session whose results cannot be kept; nullopt, with the reason shown, when it cannot.
std::optional<AppendFile> create_session_autosave(AppState& app, const std::string& user_id);

// A local or a server session is being played.
bool session_in_progress(const AppState& app);

// Closing the window while a session is in progress asks the participant first (the level in
// progress would be lost); a finished or stopped session closes at once.
void ask_before_leaving_session(AppState& app);

// The configuration's levels, in order, as the session plays them.
std::vector<std::string> configured_levels(const AppState& app);

// demo=1: a local session of the configuration's levels for "DEMO_USER" at once.
void start_demo_mode(AppState& app);

}  // namespace veldra

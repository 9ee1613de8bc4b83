#pragma once
// The developer's persistent preferences, kept in debug/debug_settings.json under the working
// directory. A missing or malformed file is not an error: the defaults apply silently.

#include <optional>
#include <string>

namespace veldra {

class Files;

struct DebugSettings {
    bool show_pathfinding = true;
    bool show_sight_ranges = true;
    bool show_exploration_ranges = true;
    bool show_attack_ranges = true;
    bool show_player_actions = true;
    bool show_human_actions = true;
    bool show_ids = true;
    bool show_energies = true;
    bool show_log = true;
    bool show_trait_data = true;
    std::string custom_config;
    std::string lang = "en";
    std::string dev_session_user_id = "test_user";
};

inline constexpr const char* DEBUG_SETTINGS_PATH = "debug/debug_settings.json";

std::optional<DebugSettings> _load_debug_settings_from_file(Files& files, const std::string& path);
// Creates the file's folder when missing.
bool _save_debug_settings_to_file(Files& files, const DebugSettings& settings,
                                  const std::string& path);

// The settings in DEBUG_SETTINGS_PATH, or the defaults: what start-up puts into Debugs.
DebugSettings load_active_debug_settings(Files& files);
void save_active_debug_settings(Files& files, const DebugSettings& settings);

}  // namespace veldra

#include "config/debug_settings.h"

#include <filesystem>
#include <nlohmann/json.hpp>

#include "runtime/files.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "runtime/utf8_path.h"
#include "serial/json.h"

namespace veldra {

namespace {

// Each field with the name it has in the file; one list serves loading and saving.
template <class Visitor>
void visit_fields(DebugSettings& s, Visitor&& visit) {
    visit("show_pathfinding", s.show_pathfinding);
    visit("show_sight_ranges", s.show_sight_ranges);
    visit("show_exploration_ranges", s.show_exploration_ranges);
    visit("show_attack_ranges", s.show_attack_ranges);
    visit("show_player_actions", s.show_player_actions);
    visit("show_human_actions", s.show_human_actions);
    visit("show_ids", s.show_ids);
    visit("show_energies", s.show_energies);
    visit("show_log", s.show_log);
    visit("show_trait_data", s.show_trait_data);
    visit("custom_config", s.custom_config);
    visit("lang", s.lang);
    visit("dev_session_user_id", s.dev_session_user_id);
}

// A value of another type is taken only where the default is a bool: numbers are true above
// 0.5, as the runtime converts them; anything else keeps the default.
void take(const nlohmann::ordered_json& value, bool& field) {
    if (value.is_boolean())
        field = value.get<bool>();
    else if (value.is_number())
        field = value.get<double>() > 0.5;
}

void take(const nlohmann::ordered_json& value, std::string& field) {
    if (value.is_string())
        field = value.get<std::string>();
}

}  // namespace

std::optional<DebugSettings> _load_debug_settings_from_file(Files& files, const std::string& path) {
    // Missing, unreadable or malformed settings mean defaults, silently: they are a developer's
    // preferences, never research data.
    const FileText text = files.read(path, MAX_SETTINGS_FILE_BYTES);
    if (!text)
        return std::nullopt;
    const JsonDocument document = json_parse_document(*text.text);
    const auto& root = document.json;
    if (!document || !root.is_object())
        return std::nullopt;
    DebugSettings settings;
    visit_fields(settings, [&](const char* name, auto& field) {
        if (auto it = root.find(name); it != root.end())
            take(*it, field);
    });
    return settings;
}

bool _save_debug_settings_to_file(Files& files, const DebugSettings& settings,
                                  const std::string& path) {
    nlohmann::ordered_json root = nlohmann::ordered_json::object();
    DebugSettings copy = settings;
    visit_fields(copy, [&](const char* name, auto& field) { root[name] = field; });
    // A folder that cannot be made shows up as the write's failure just below.
    const auto parent = utf8_path(path).parent_path();
    if (!parent.empty())
        files.create_directories(path_utf8(parent));
    const std::string problem = files.write(path, root.dump(4) + "\n");
    if (!problem.empty()) {
        log_warning("Failed to save debug settings to \"" + path + "\": " + problem + ".");
        return false;
    }
    return true;
}

DebugSettings load_active_debug_settings(Files& files) {
    return _load_debug_settings_from_file(files, DEBUG_SETTINGS_PATH).value_or(DebugSettings{});
}

void save_active_debug_settings(Files& files, const DebugSettings& settings) {
    _save_debug_settings_to_file(files, settings, DEBUG_SETTINGS_PATH);
}

}  // namespace veldra

#include "batch/auto_run_fingerprint.h"

#include <cstdio>
#include <filesystem>

#include "config/game_configurations.h"
#include "runtime/files.h"
#include "runtime/log.h"
#include "runtime/paths.h"
#include "runtime/utf8_path.h"
#include "serial/json.h"
#include "util/digest.h"
#include "veldra_version.h"

namespace veldra {

namespace {

bool add_file(Files& files, Digest& digest, const std::string& path, std::size_t max_bytes) {
    const FileText text = files.read(path, max_bytes);
    if (!text) {
        log_error("Cannot fingerprint the run: \"" + path + "\" " + text.error + ".");
        return false;
    }
    digest.add(path);
    digest.add(*text.text);
    return true;
}

}  // namespace

std::string auto_run_fingerprint_path(const std::string& output) {
    return output + ".fingerprint";
}

std::optional<std::string> auto_run_identity(Files& files, const ProgramParameters& params,
                                             const ConfigsState& game, double seed,
                                             const AutoRunConfigs& configs) {
    Digest digest;
    digest.add(BUILD_VERSION);
    char seed_text[32];
    std::snprintf(seed_text, sizeof seed_text, "%.17g", seed);
    digest.add(seed_text);
    for (const std::string& path : game.loaded_paths)
        if (!add_file(files, digest, path, MAX_CONFIGURATION_FILE_BYTES))
            return std::nullopt;
    if (!add_file(files, digest, resolve_user_path(*params.auto_run_config),
                  MAX_AUTO_RUN_FILE_BYTES))
        return std::nullopt;
    for (const std::string& level : configs.levels)
        if (!add_file(files, digest, resolve_user_path(level), MAX_LEVEL_FILE_BYTES))
            return std::nullopt;
    return digest.hex();
}

bool auto_run_write_fingerprint(Files& files, const std::string& output,
                                const AutoRunFingerprint& fingerprint) {
    // A device or a pipe as the output (/dev/stdout) has nothing to resume or merge, and the
    // fingerprint would land in /dev.
    std::error_code error_code;
    const auto status = std::filesystem::status(utf8_path(output), error_code);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        return true;
    nlohmann::ordered_json json;
    json["identity"] = fingerprint.identity;
    json["runs"] = fingerprint.runs;
    json["first"] = fingerprint.range.first;
    json["last"] = fingerprint.range.last;
    const std::string path = auto_run_fingerprint_path(output);
    const std::string error = files.write(path, json.dump(4) + "\n");
    if (!error.empty()) {
        log_error("Failed to write \"" + path + "\": " + error + ".");
        return false;
    }
    return true;
}

std::optional<AutoRunFingerprint> auto_run_read_fingerprint(Files& files, const std::string& output,
                                                            std::string& why) {
    const std::string path = auto_run_fingerprint_path(output);
    const FileText text = files.read(path, MAX_SETTINGS_FILE_BYTES);
    if (!text) {
        why = "\"" + path + "\" " + text.error;
        return std::nullopt;
    }
    const JsonDocument document = json_parse_document(*text.text);
    const auto& json = document.json;
    const auto whole = [&](const char* key) {
        return json.is_object() && json.contains(key) && json[key].is_number_unsigned();
    };
    if (!document || !json.contains("identity") || !json["identity"].is_string() ||
        !whole("runs") || !whole("first") || !whole("last")) {
        why = "\"" + path + "\" is not a fingerprint file";
        return std::nullopt;
    }
    AutoRunFingerprint fingerprint;
    fingerprint.identity = json["identity"].get<std::string>();
    fingerprint.runs = json["runs"].get<std::size_t>();
    fingerprint.range = {json["first"].get<std::size_t>(), json["last"].get<std::size_t>()};
    if (fingerprint.range.first > fingerprint.range.last ||
        fingerprint.range.last > fingerprint.runs) {
        why = "\"" + path + "\" names an impossible part of the run list";
        return std::nullopt;
    }
    return fingerprint;
}

}  // namespace veldra

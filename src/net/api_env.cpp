#include "net/api_env.h"

#include <nlohmann/json.hpp>

#include "runtime/callstack.h"
#include "runtime/files.h"
#include "runtime/log.h"
#include "runtime/once.h"
#include "runtime/paths.h"
#include "serial/json.h"

namespace veldra {

namespace {
std::optional<std::string> string_field(const nlohmann::ordered_json& root, const char* key) {
    auto it = root.find(key);
    if (it == root.end() || !it->is_string())
        return std::nullopt;
    return it->get<std::string>();
}
}  // namespace

void initialize_api_env(Files& files, ApiEnv& env) {
    VELDRA_SCOPE();
    if (!once_only_first_call(env.initialized))
        return;
    env.remote_url = env.api_username = env.api_password = env.ca_file = std::nullopt;
    const std::string path = resolve_user_path(API_ENV_FILENAME);
    const FileText text = files.read(path, MAX_SETTINGS_FILE_BYTES);
    const JsonDocument document = json_parse_document(text ? *text.text : std::string());
    const auto& root = document.json;
    if (!text || !document || !root.is_object()) {
        log_error("Couldn't find API configuration file \".api_env.json\".");
        // A file that is there but wrong needs saying so, or its owner looks for a missing one.
        if (text || text.error != FILE_MISSING_REASON)
            log_error("\"" + path + "\": " +
                      (!text       ? text.error
                       : !document ? document.error
                                   : std::string("not a JSON object with the keys "
                                                 "remote_url, api_username and "
                                                 "api_password")));
        return;
    }
    env.remote_url = string_field(root, "remote_url");
    env.api_username = string_field(root, "api_username");
    env.api_password = string_field(root, "api_password");
    env.ca_file = string_field(root, "ca_file");
    // Without this the first sign of a mistyped path would be a refused HTTPS connection.
    if (env.ca_file && !files.exists(resolve_user_path(*env.ca_file)))
        log_error("The certificate file \"" + *env.ca_file + "\" named by ca_file in \"" + path +
                  "\" does not exist.");
}

}  // namespace veldra

#include "server/credentials_file.h"

#include "runtime/file_io.h"
#include "serial/json.h"

namespace veldra {

namespace {

CredentialsRead failed(const std::string& path, const std::string& reason) {
    return CredentialsRead{.credentials = std::nullopt,
                           .error = "credentials file \"" + path + "\": " + reason};
}

}  // namespace

CredentialsRead read_credentials_file(const std::string& path) {
    const FileText file = read_whole_file(path, MAX_SETTINGS_FILE_BYTES);
    if (!file)
        return failed(path, file.error);
    const JsonDocument document = json_parse_document(*file.text);
    // The reader quotes what it read last, which may be the password: say only where and what.
    if (!document)
        return failed(path, document.error.substr(0, document.error.find("; last read")));
    const auto& json = document.json;
    if (!json.is_object() || !json.contains("api_username") || !json.contains("api_password") ||
        !json["api_username"].is_string() || !json["api_password"].is_string())
        return failed(path, "needs the texts \"api_username\" and \"api_password\"");
    BasicCredentials credentials{.username = json["api_username"].get<std::string>(),
                                 .password = json["api_password"].get<std::string>()};
    // Basic authentication splits at the first ":", so a name with one could never match.
    if (credentials.username.empty() || credentials.username.find(':') != std::string::npos)
        return failed(path, "\"api_username\" must be non-empty and without \":\"");
    if (credentials.password.empty())
        return failed(path, "\"api_password\" must not be empty");
    return CredentialsRead{.credentials = std::move(credentials), .error = {}};
}

}  // namespace veldra

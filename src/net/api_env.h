#pragma once
// Where the research server is and how to sign in: the file ".api_env.json", looked up in the
// working directory, then in the data directory. Without it every request fails, and the game
// still runs (local sessions, auto runs).

#include <optional>
#include <string>

namespace veldra {

class Files;

struct ApiEnv {
    std::optional<std::string> remote_url;
    std::optional<std::string> api_username;
    std::optional<std::string> api_password;
    // PEM file of the certificate authorities that vouch for the server (one with a
    // self-signed certificate); none: the system's store. Relative to the working directory.
    std::optional<std::string> ca_file;
    bool initialized = false;  // the once-only flag of initialize_api_env
};

inline constexpr const char* API_ENV_FILENAME = ".api_env.json";

// Once-only: sets API_ENV from the file, read through `files`, or to an empty environment with an
// error logged.
void initialize_api_env(Files& files, ApiEnv& env);

}  // namespace veldra

#pragma once
// The command line of veldra-server: `key=value` arguments, as the game takes its own, plus
// --help. Unlike the game, an unknown key is an error: a mistyped limit must not leave a study
// server running with the default.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veldra {

enum class ServerMode {
    help,        // print the parameters and exit
    serve,       // answer requests until SIGTERM or SIGINT
    export_csv,  // write the records as the game's CSV and exit
    backup,      // copy the database and exit
};

struct ServerOptions {
    ServerMode mode = ServerMode::serve;
    std::string database;
    std::string address = "127.0.0.1";
    int port = 8080;
    std::string credentials_file;
    std::string users_file;
    std::vector<std::string> user_ids;
    std::string cert_file;
    std::string key_file;
    std::size_t max_body = 64 * 1024;  // bytes; a record is well under 2 KiB
    double rate_limit = 20;            // requests per second per address; 0 for none
    std::string admin_password_file;   // "" leaves the researcher's page off
    std::size_t levels = 0;            // levels of the study, for "finished"; 0 when not given
    std::string export_file;
    std::string backup_file;
};

struct ServerOptionsRead {
    std::optional<ServerOptions> options;
    std::string error;  // for stderr, followed by a pointer to --help
};

// `arguments` without the program's own path.
ServerOptionsRead read_server_options(const std::vector<std::string>& arguments);

// The text of --help: usage, every parameter with its meaning and default.
std::string server_help_text();

}  // namespace veldra

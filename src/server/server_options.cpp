#include "server/server_options.h"

#include <array>
#include <cstdint>

#include "server/participant_ids.h"
#include "util/text.h"

namespace veldra {

namespace {

struct ParameterInfo {
    std::string_view name;
    std::string_view help;
};

constexpr std::array<ParameterInfo, 14> PARAMETERS = {{
    {"db", "SQLite database file of the study; made when missing (required)"},
    {"address", "address to listen on (default 127.0.0.1; 0.0.0.0 for every interface)"},
    {"port", "TCP port (default 8080; 0 picks a free one, printed on the first line)"},
    {"credentials",
     "JSON file with \"api_username\" and \"api_password\" (the game's .api_env.json will do); "
     "required to serve"},
    {"users", "file of participant ids to register, one per line (# starts a comment)"},
    {"user_ids", "ID,ID,...: participant ids to register"},
    {"cert", "PEM certificate file: serve HTTPS instead of HTTP (needs key=)"},
    {"key", "PEM private key file of cert="},
    {"max_body", "largest request body in bytes (default 65536); larger ones get 413"},
    {"rate_limit",
     "requests per second per client address, in bursts of up to twice that (default 20; 0 "
     "turns the limit off); more get 429"},
    {"admin_password_file",
     "file holding the password of the researcher's page at /admin/ (user name admin); "
     "without it the page is off"},
    {"levels",
     "number of levels in the study: a participant with records of that many levels counts "
     "as finished (default: as many as the most advanced participant)"},
    {"export",
     "FILE.csv: write every stored record as the game's CSV (header and 33 columns) "
     "and exit"},
    {"backup",
     "FILE: copy the database through SQLite's online backup and exit; safe while a "
     "server runs on it"},
}};

bool is_parameter(std::string_view name) {
    for (const ParameterInfo& info : PARAMETERS)
        if (info.name == name)
            return true;
    return false;
}

// Applies one key=value; the error text when the value is wrong.
std::string apply(ServerOptions& options, const std::string& key, const std::string& value) {
    if (key == "db") {
        options.database = value;
    } else if (key == "address") {
        options.address = value;
    } else if (key == "port") {
        if (const std::string problem = whole_number_problem(value, 0, 65535); !problem.empty())
            return "port=" + value + " " + problem;
        options.port = static_cast<int>(*try_string_to_whole_number(value, 0, 65535));
    } else if (key == "credentials") {
        options.credentials_file = value;
    } else if (key == "users") {
        options.users_file = value;
    } else if (key == "user_ids") {
        ParticipantIds ids = participant_ids_from_list(value);
        if (!ids.error.empty())
            return "user_ids: " + ids.error;
        options.user_ids.insert(options.user_ids.end(), ids.ids.begin(), ids.ids.end());
    } else if (key == "cert") {
        options.cert_file = value;
    } else if (key == "key") {
        options.key_file = value;
    } else if (key == "max_body") {
        constexpr std::uint64_t most = 64u << 20;
        if (const std::string problem = whole_number_problem(value, 1, most); !problem.empty())
            return "max_body=" + value + " " + problem;
        options.max_body = *try_string_to_whole_number(value, 1, most);
    } else if (key == "rate_limit") {
        const std::optional<double> rate = try_string_to_real(value);
        if (!rate || *rate < 0)
            return "rate_limit=" + value + " is not a number of at least 0";
        options.rate_limit = *rate;
    } else if (key == "admin_password_file") {
        options.admin_password_file = value;
    } else if (key == "levels") {
        if (const std::string problem = whole_number_problem(value, 1, 100000); !problem.empty())
            return "levels=" + value + " " + problem;
        options.levels = *try_string_to_whole_number(value, 1, 100000);
    } else if (key == "export") {
        options.export_file = value;
    } else if (key == "backup") {
        options.backup_file = value;
    }
    return {};
}

ServerOptionsRead refused(std::string error) {
    return ServerOptionsRead{.options = std::nullopt, .error = std::move(error)};
}

}  // namespace

ServerOptionsRead read_server_options(const std::vector<std::string>& arguments) {
    ServerOptions options;
    // Asking for help wins over any mistake beside it: the help says how to mend it.
    for (const std::string& argument : arguments) {
        if (argument == "--help" || argument == "-h" || argument == "help") {
            options.mode = ServerMode::help;
            return ServerOptionsRead{.options = options, .error = {}};
        }
    }
    for (const std::string& argument : arguments) {
        const std::size_t equals = argument.find('=');
        if (equals == std::string::npos)
            return refused("\"" + argument + "\" is not of the form key=value");
        const std::string key = argument.substr(0, equals);
        if (!is_parameter(key))
            return refused("unknown parameter \"" + key + "\"");
        if (const std::string error = apply(options, key, argument.substr(equals + 1));
            !error.empty())
            return refused(error);
    }
    if (options.database.empty())
        return refused("db=FILE is required");
    if (!options.export_file.empty() && !options.backup_file.empty())
        return refused("export= and backup= are separate runs: give one of them");
    if (!options.export_file.empty())
        options.mode = ServerMode::export_csv;
    else if (!options.backup_file.empty())
        options.mode = ServerMode::backup;
    else if (options.credentials_file.empty())
        return refused("credentials=FILE is required to serve");
    if (options.cert_file.empty() != options.key_file.empty())
        return refused("cert= and key= go together");
    return ServerOptionsRead{.options = std::move(options), .error = {}};
}

std::string server_help_text() {
    std::string text =
        "veldra-server: the study server that Veldra's online sessions report trial records "
        "to.\n\n"
        "usage: veldra-server db=FILE credentials=FILE [users=FILE] [user_ids=ID,...] "
        "[key=value ...]\n"
        "       veldra-server db=FILE export=FILE.csv\n"
        "       veldra-server db=FILE backup=FILE\n\n"
        "Stops cleanly on SIGTERM or Ctrl-C. Parameters:\n";
    for (const ParameterInfo& info : PARAMETERS)
        text += "  " + std::string(info.name) + "=\n      " + std::string(info.help) + "\n";
    return text;
}

}  // namespace veldra

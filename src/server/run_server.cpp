#include "server/run_server.h"

#include <cstdio>
#include <ctime>
#include <exception>
#include <string>
#include <vector>

#include "runtime/file_io.h"
#include "server/admin_password_file.h"
#include "server/credentials_file.h"
#include "server/http_service.h"
#include "server/participant_ids.h"
#include "server/request_log.h"
#include "server/stop_signals.h"
#include "server/trial_export.h"
#include "server/trial_store.h"
#include "trials/trial_data.h"

namespace veldra {

namespace {

// A study's participant list: tens of thousands of short ids at most.
constexpr std::size_t MAX_USERS_FILE_BYTES = 16u << 20;

void say(const std::string& text) {
    write_log_line(timestamped_log_line(std::time(nullptr), text));
}

int fail(const std::string& message) {
    std::fprintf(stderr, "veldra-server: %s\n", message.c_str());
    return 1;
}

// Every id from users= and user_ids=; an error text instead when one is bad.
std::string collect_participant_ids(const ServerOptions& options, std::vector<std::string>& out) {
    out = options.user_ids;
    if (options.users_file.empty())
        return {};
    const FileText file = read_whole_file(options.users_file, MAX_USERS_FILE_BYTES);
    if (!file)
        return "users file \"" + options.users_file + "\": " + file.error;
    const ParticipantIds ids = participant_ids_from_lines(*file.text);
    if (!ids.error.empty())
        return "users file \"" + options.users_file + "\", " + ids.error;
    out.insert(out.end(), ids.ids.begin(), ids.ids.end());
    return {};
}

// The researcher's page's settings; nullopt (the page off) without admin_password_file=.
// Throws std::runtime_error with the reason when the file cannot be used.
std::optional<AdminSettings> admin_settings(const ServerOptions& options,
                                            const BasicCredentials& api) {
    if (options.admin_password_file.empty())
        return std::nullopt;
    AdminPasswordRead read = read_admin_password_file(options.admin_password_file);
    if (!read.password)
        throw std::runtime_error(read.error);
    // Participants have the API password: the same text would open the page to all of them.
    if (*read.password == api.password)
        throw std::runtime_error("the admin password must differ from the game's API password");
    return AdminSettings{.password = std::move(*read.password),
                         .form_token = make_form_token(),
                         .levels_to_finish = options.levels};
}

int serve(const ServerOptions& options) {
    const CredentialsRead credentials = read_credentials_file(options.credentials_file);
    if (!credentials.credentials)
        return fail(credentials.error);
    std::optional<AdminSettings> admin = admin_settings(options, *credentials.credentials);
    const bool page_on = admin.has_value();
    std::vector<std::string> user_ids;
    if (const std::string error = collect_participant_ids(options, user_ids); !error.empty())
        return fail(error);

    TrialStore store(options.database, SqliteOpen::create);
    store.register_users(user_ids);
    StudyHttpService service(store, *credentials.credentials, std::move(admin), options);
    const int port = service.bind();
    // After the service, so that the watching thread has ended before the service goes; before
    // run(), which starts the threads that must inherit the blocked signals.
    StopSignals signals;
    signals.watch([&service] { return service.stop(); });
    // The first line says where, so that a script (or a test) starting us on port 0 can read it.
    say(std::string("listening on ") + (service.is_https() ? "https" : "http") + "://" +
        options.address + ":" + std::to_string(port) + "/ with " + std::to_string(user_ids.size()) +
        " participant ids given");
    say(page_on ? "researcher's page at /admin/"
                : "researcher's page off: no admin_password_file= given");
    const bool listened = service.run();
    signals.finished();
    if (!listened)
        return fail("stopped listening on " + options.address + " port " + std::to_string(port));
    say("stopped");
    return 0;
}

int run_mode(const ServerOptions& options) {
    // Built on first use from the game's dynamic values, which are not shared between threads:
    // here, before any serving thread exists.
    trial_data_get_flattened_names();
    switch (options.mode) {
        case ServerMode::help:
            break;
        case ServerMode::serve:
            return serve(options);
        case ServerMode::export_csv: {
            TrialStore store(options.database, SqliteOpen::existing);
            if (const std::string error = export_trial_records(store, options.export_file);
                !error.empty())
                return fail(error);
            return 0;
        }
        case ServerMode::backup: {
            TrialStore store(options.database, SqliteOpen::existing);
            store.backup_to(options.backup_file);
            return 0;
        }
    }
    return 0;
}

}  // namespace

int run_server(int argc, char** argv) {
    const ServerOptionsRead read =
        read_server_options(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
    if (!read.options) {
        std::fprintf(stderr, "veldra-server: %s (see veldra-server --help)\n", read.error.c_str());
        return 2;
    }
    if (read.options->mode == ServerMode::help) {
        std::fputs(server_help_text().c_str(), stdout);
        return 0;
    }
    try {
        return run_mode(*read.options);
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}

}  // namespace veldra

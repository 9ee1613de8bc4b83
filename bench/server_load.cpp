// The study server under load: CLIENTS concurrent clients post RECORDS distinct trial records
// (registered participants, every record a different level or seed) to one veldra-server on
// 127.0.0.1, and the records per second and the latency of an answered record are printed.
//
// With --kill the server is killed with SIGKILL twice during the load and started again on the
// same database and port; clients retry until their record is answered with a 2xx (the server
// stores a record once however often it arrives). Either way the run ends by checking the
// database: every record answered 2xx is there exactly once, and nothing else is.
//
//   build/bench/server_load [--kill] [--clients=200] [--records=20000]
//
// Only 127.0.0.1 is ever spoken to; every request has a timeout and the whole run a deadline
// (ten minutes), so it stops by itself. Not part of the tests: its figures are timings.

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include <httplib.h>

#include "runtime/file_io.h"
#include "serial/json.h"
#include "server/sqlite_connection.h"
#include "trials/trial_data.h"

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr auto DEADLINE = std::chrono::minutes(10);
constexpr int LEVELS = 20;

struct Settings {
    bool kill = false;
    int clients = 200;
    int records = 20000;
};

// The veldra-server child, its output in a file (a pipe nobody drained would stop it).
class Server {
public:
    Server(std::filesystem::path folder) : folder_(std::move(folder)) {}
    ~Server() {
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }
    // Starts it and waits (at most 30 s) for its first line; the port it listens on, 0 on failure.
    int start(int port) {
        const std::string log =
            (folder_ / ("server" + std::to_string(starts_++) + ".log")).string();
        pid_ = fork();
        if (pid_ == 0) {
            const int out = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            dup2(out, STDOUT_FILENO);
            std::vector<std::string> arguments = {
                VELDRA_SERVER_PROGRAM,
                "db=" + (folder_ / "study.sqlite").string(),
                "credentials=" + (folder_ / "api_env.json").string(),
                "users=" + (folder_ / "users.txt").string(),
                "address=127.0.0.1",
                "port=" + std::to_string(port),
                "rate_limit=0"};
            std::vector<char*> argv;
            for (std::string& argument : arguments)
                argv.push_back(argument.data());
            argv.push_back(nullptr);
            execv(argv[0], argv.data());
            _exit(127);
        }
        const std::string start = "listening on http://127.0.0.1:";
        for (int i = 0; i < 3000; ++i) {
            const veldra::FileText text = veldra::read_whole_file(log, 1u << 20);
            if (text.text && text.text->find('\n') != std::string::npos) {
                const std::size_t at = text.text->find(start);
                return at == std::string::npos ? 0
                                               : std::stoi(text.text->substr(at + start.size()));
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return 0;
    }
    void kill_now() {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }
    int terminate() {
        kill(pid_, SIGTERM);
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    std::filesystem::path folder_;
    pid_t pid_ = -1;
    int starts_ = 0;
};

struct Record {
    std::string user_id;
    std::string level_file;
    double seed = 0;
    std::string json;
};

std::vector<Record> make_records(const Settings& settings) {
    std::vector<Record> records;
    const int per_client = (settings.records + settings.clients - 1) / settings.clients;
    for (int i = 0; i < settings.records; ++i) {
        veldra::TrialData data;
        data.user_id = "L" + std::to_string(i / per_client);
        data.config_version = "c1";
        data.game_version = "1.0.0.0";
        data.seed = 1000 + i;
        data.level_info.filename = "levels/level_" + std::to_string(i % LEVELS) + ".txt";
        data.level_info.num_humans_per_type = {0, 1, 0, 2, 0, 0, 0, 0, 0, 0};
        data.traits = veldra::PersonalityTraits{.openness = 1,
                                                .conscientiousness = -2,
                                                .extraversion = 0.5,
                                                .agreeableness = 3,
                                                .neuroticism = -0.25};
        data.result.trial_score = i % 97;
        records.push_back(
            Record{.user_id = *data.user_id,
                   .level_file = data.level_info.filename,
                   .seed = data.seed,
                   .json = veldra::json_stringify(veldra::trial_data_to_value(data), false)});
    }
    return records;
}

double percentile(std::vector<double> values, double fraction) {
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const auto at = static_cast<std::size_t>(fraction * static_cast<double>(values.size() - 1));
    return values[at];
}

Settings read_settings(int argc, char** argv) {
    Settings settings;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--kill")
            settings.kill = true;
        else if (argument.rfind("--clients=", 0) == 0)
            settings.clients = std::clamp(std::stoi(argument.substr(10)), 1, 1000);
        else if (argument.rfind("--records=", 0) == 0)
            settings.records = std::clamp(std::stoi(argument.substr(10)), 1, 1000000);
        else
            throw std::runtime_error("usage: server_load [--kill] [--clients=N] [--records=N]");
    }
    return settings;
}

}  // namespace

int main(int argc, char** argv) try {
    const Settings settings = read_settings(argc, argv);
    signal(SIGPIPE, SIG_IGN);
    veldra::trial_data_get_flattened_names();
    const std::vector<Record> records = make_records(settings);

    char folder_template[] = "/tmp/veldra_server_load_XXXXXX";
    const std::filesystem::path folder = mkdtemp(folder_template);
    std::ofstream(folder / "api_env.json") << R"({"api_username": "load", "api_password": "pw"})";
    {
        std::ofstream users(folder / "users.txt");
        std::set<std::string> ids;
        for (const Record& record : records)
            if (ids.insert(record.user_id).second)
                users << record.user_id << "\n";
    }
    Server server(folder);
    const int port = server.start(0);
    if (port <= 0)
        throw std::runtime_error("the server did not start; see " + folder.string());

    std::atomic<int> answered{0};
    std::atomic<int> retries{0};
    std::atomic<int> unanswered{0};  // of the retries: no answer at all (refused, reset, timeout)
    std::atomic<bool> stopping{false};
    std::vector<char> acknowledged(records.size(), 0);
    std::vector<double> latencies(records.size(), -1);
    const Clock::time_point started = Clock::now();
    const Clock::time_point deadline = started + DEADLINE;

    std::vector<std::thread> clients;
    for (int c = 0; c < settings.clients; ++c) {
        clients.emplace_back([&, c] {
            httplib::Client client("127.0.0.1", port);
            client.set_basic_auth("load", "pw");
            client.set_connection_timeout(10);
            client.set_read_timeout(30);
            client.set_write_timeout(10);
            for (std::size_t i = static_cast<std::size_t>(c); i < records.size();
                 i += static_cast<std::size_t>(settings.clients)) {
                const Clock::time_point first_try = Clock::now();
                while (!stopping && Clock::now() < deadline) {
                    const auto answer =
                        client.Post("/api/game/trials", records[i].json, "application/json");
                    if (answer && answer->status >= 200 && answer->status < 300) {
                        acknowledged[i] = 1;
                        latencies[i] = Seconds(Clock::now() - first_try).count();
                        ++answered;
                        break;
                    }
                    ++retries;
                    if (!answer)
                        ++unanswered;
                    std::this_thread::sleep_for(std::chrono::milliseconds(50));
                }
            }
        });
    }

    int kills = 0;
    if (settings.kill) {
        for (const int fraction : {1, 2}) {
            const int mark = settings.records * fraction / 3;
            while (answered < mark && Clock::now() < deadline)
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            server.kill_now();
            ++kills;
            if (server.start(port) != port)
                throw std::runtime_error("the server did not start again on port " +
                                         std::to_string(port));
        }
    }
    for (std::thread& client : clients)
        client.join();
    const double elapsed = Seconds(Clock::now() - started).count();
    stopping = true;
    const int server_exit = server.terminate();

    // The database against what the clients were told.
    std::set<std::tuple<std::string, std::string, double>> stored;
    std::size_t rows = 0;
    {
        veldra::SqliteConnection db((folder / "study.sqlite").string(),
                                    veldra::SqliteOpen::existing);
        veldra::SqliteStatement query(db, "SELECT user_id, level_file, seed FROM trials");
        while (query.step()) {
            ++rows;
            stored.emplace(query.column_text(0), query.column_text(1), query.column_double(2));
        }
    }
    std::size_t acknowledged_count = 0;
    std::size_t missing = 0;
    std::vector<double> answered_latencies;
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (!acknowledged[i])
            continue;
        ++acknowledged_count;
        answered_latencies.push_back(latencies[i]);
        if (!stored.contains({records[i].user_id, records[i].level_file, records[i].seed}))
            ++missing;
    }
    const std::size_t duplicates = rows - stored.size();
    const std::size_t unacknowledged_stored = stored.size() - (acknowledged_count - missing);

    std::printf("clients %d, records %zu, server kills %d\n", settings.clients, records.size(),
                kills);
    std::printf("answered 2xx      %zu in %.1f s: %.0f records/s\n", acknowledged_count, elapsed,
                static_cast<double>(acknowledged_count) / elapsed);
    std::printf("latency median    %.1f ms\n", 1000 * percentile(answered_latencies, 0.5));
    std::printf("latency 99th pct  %.1f ms\n", 1000 * percentile(answered_latencies, 0.99));
    std::printf("retried requests  %d (%d without an answer, %d with a status other than 2xx)\n",
                retries.load(), unanswered.load(), retries.load() - unanswered.load());
    std::printf(
        "in the database   %zu rows: %zu answered records missing, %zu twice, "
        "%zu stored without a 2xx\n",
        rows, missing, duplicates, unacknowledged_stored);
    const bool ok =
        acknowledged_count == records.size() && missing == 0 && duplicates == 0 && server_exit == 0;
    std::printf("%s\n", ok ? "ok" : "FAILED");
    if (ok)
        std::filesystem::remove_all(folder);
    else
        std::printf("kept %s\n", folder.string().c_str());
    return ok ? 0 : 1;
} catch (const std::exception& error) {
    std::fprintf(stderr, "server_load: %s\n", error.what());
    return 2;
}

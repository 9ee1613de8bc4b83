// A parallel auto run: the run list is split into contiguous shards, each played by a worker
// process of this same program, and the parent appends each shard's lines to the output as
// soon as every shard before it is done. The output is byte for byte what one process writes.

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/paths.h"
#include "startup/auto_run_files.h"
#include "startup/auto_run_mode.h"
#include "startup/interrupt.h"
#include "startup/progress_line.h"
#include "trials/auto_run_plan.h"
#include "trials/auto_runner.h"
#include "trials/trial_data.h"

extern char** environ;

namespace veldra {

namespace {

struct Worker {
    std::string part;
    pid_t pid = -1;
    std::optional<int> exit_status;
    std::size_t lines_seen = 0;  // newlines read so far, header included
    std::uintmax_t bytes_seen = 0;
};

pid_t spawn_worker(const ProgramParameters& params, const AutoRunJobsRequest& request, std::size_t k,
                   const std::string& part) {
    std::vector<std::string> args = {std::filesystem::read_symlink("/proc/self/exe").string(),
                                     "headless=1",
                                     "auto_run_config=" + *params.auto_run_config,
                                     "auto_run_output=" + part,
                                     "auto_run_seed=" + number_to_string(request.seed),
                                     "auto_run_shard=" + std::to_string(k) + "/" + std::to_string(request.jobs)};
    if (params.config) args.push_back("config=" + *params.config);
    if (params.lang) args.push_back("lang=" + *params.lang);
    std::vector<char*> argv;
    for (auto& arg : args) argv.push_back(arg.data());
    argv.push_back(nullptr);
    std::vector<std::string> env_strings = {"VELDRA_AUTO_RUN_WORKER=1"};
    for (char** e = environ; *e; ++e) env_strings.emplace_back(*e);
    std::vector<char*> envp;
    for (auto& entry : env_strings) envp.push_back(entry.data());
    envp.push_back(nullptr);
    pid_t pid = -1;
    if (posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), envp.data()) != 0) return -1;
    return pid;
}

// Counts new complete lines of a worker's part without reading it again from the start.
void count_new_lines(Worker& worker) {
    std::FILE* file = std::fopen(worker.part.c_str(), "rb");
    if (!file) return;
    std::fseek(file, static_cast<long>(worker.bytes_seen), SEEK_SET);
    char buffer[8192];
    std::size_t read = 0;
    while ((read = std::fread(buffer, 1, sizeof buffer, file)) > 0) {
        for (std::size_t i = 0; i < read; ++i) worker.lines_seen += buffer[i] == '\n';
        worker.bytes_seen += read;
    }
    std::fclose(file);
}

// The number of runs, after checking the auto-run file and its levels; nullopt (logged) when
// either is unusable.
std::optional<std::size_t> run_count(const ProgramParameters& params, double seed) {
    auto configs = auto_run_read_and_check(resolve_user_path(*params.auto_run_config));
    if (!configs) return std::nullopt;
    Rng rng(seed);
    return auto_run_build_run_list(*configs, rng).size();
}

}  // namespace

int run_auto_run_jobs(const ProgramParameters& params, const AutoRunJobsRequest& request) {
    // Checked once here so a bad file gives one message, not one per worker.
    const auto counted = run_count(params, request.seed);
    if (!counted) return 1;
    const std::size_t total = *counted;
    std::FILE* output = std::fopen(request.output.c_str(), "wb");
    if (!output) {
        log_error("Failed to open file for writing.");
        log_error("Output \"" + request.output + "\" cannot be written.");
        return 1;
    }
    const std::string header = trial_data_as_csv_headers();
    std::fwrite(header.data(), 1, header.size(), output);
    std::fflush(output);

    std::vector<Worker> workers(request.jobs);
    for (std::size_t k = 0; k < workers.size(); ++k) {
        workers[k].part = request.output + ".part-" + std::to_string(k + 1) + "-of-" + std::to_string(request.jobs);
        workers[k].pid = spawn_worker(params, request, k + 1, workers[k].part);
        if (workers[k].pid < 0) {
            log_error("Failed to start worker process " + std::to_string(k + 1) + ".");
            workers[k].exit_status = 1;
        }
    }

    ProgressLine progress("auto run (" + std::to_string(request.jobs) + " jobs):");
    std::size_t appended = 0;
    bool failed = false;
    bool forwarded_interrupt = false;
    while (appended < workers.size()) {
        for (Worker& worker : workers) {
            if (worker.exit_status || worker.pid < 0) continue;
            int status = 0;
            if (waitpid(worker.pid, &status, WNOHANG) == worker.pid)
                worker.exit_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        if (interrupt_requested() && !forwarded_interrupt) {
            for (Worker& worker : workers)
                if (!worker.exit_status && worker.pid > 0) kill(worker.pid, SIGINT);
            forwarded_interrupt = true;
        }
        // Parts join the output strictly in order; a part that stopped early (interrupt,
        // failure) still contributes its whole lines, and nothing after it does.
        while (appended < workers.size() && workers[appended].exit_status) {
            Worker& worker = workers[appended];
            if (std::filesystem::exists(worker.part)) auto_run_append_part(output, worker.part);
            if (*worker.exit_status != 0) {
                failed = true;
                if (*worker.exit_status != EXIT_INTERRUPTED)
                    log_error("Worker " + std::to_string(appended + 1) + " of " + std::to_string(workers.size()) +
                              " failed with exit status " + std::to_string(*worker.exit_status) + ".");
                break;
            }
            std::error_code error;
            std::filesystem::remove(worker.part, error);
            ++appended;
        }
        if (failed) break;
        std::size_t done = 0;
        for (Worker& worker : workers) {
            count_new_lines(worker);
            done += worker.lines_seen > 0 ? worker.lines_seen - 1 : 0;
        }
        progress.update(std::min(done, total), total);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    if (failed) {
        for (Worker& worker : workers)
            if (!worker.exit_status && worker.pid > 0) kill(worker.pid, SIGINT);
        for (Worker& worker : workers)
            if (!worker.exit_status && worker.pid > 0) waitpid(worker.pid, nullptr, 0);
        for (Worker& worker : workers) {
            std::error_code error;
            std::filesystem::remove(worker.part, error);
        }
    }
    std::fclose(output);
    const double seconds = progress.finish();
    if (failed) return interrupt_requested() ? EXIT_INTERRUPTED : 1;
    std::printf("Auto run done: %zu trials in %.1f s (%.1f trials/s) with %zu jobs; results in \"%s\".\n", total,
                seconds, seconds > 0 ? static_cast<double>(total) / seconds : 0.0, request.jobs, request.output.c_str());
    return 0;
}

}  // namespace veldra

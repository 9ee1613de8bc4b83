// A parallel auto run: the run list is split into contiguous chunks, several per job, and each
// chunk is played by a worker process of this same program; at most `jobs` run at once and a
// free job takes the next chunk. Trials on large levels cost several times those on small
// ones, so one chunk per job would leave a job idle while the one with the large levels
// finishes. The parent appends each chunk's lines to the output as soon as every chunk before
// it is done, so the output is byte for byte what one process writes.

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
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

// Chunks per job: enough that the last ones are short, few enough that starting a process
// (reading the configuration and the levels) stays a small share of a chunk.
constexpr std::size_t chunks_per_job = 8;

struct Worker {
    std::string part;
    std::size_t runs = 0;  // runs of the chunk
    bool started = false;
    pid_t pid = -1;
    std::optional<int> exit_status;
    std::size_t lines_seen = 0;  // newlines read so far, header included
    std::uintmax_t bytes_seen = 0;
};

// Plays the k-th of n chunks of the run list into `part`.
pid_t spawn_worker(const ProgramParameters& params, double seed, std::size_t k, std::size_t n,
                   const std::string& part) {
    std::vector<std::string> args = {
        std::filesystem::read_symlink("/proc/self/exe").string(),
        "headless=1",
        "auto_run_config=" + *params.auto_run_config,
        "auto_run_output=" + part,
        "auto_run_seed=" + number_to_string(seed),
        "auto_run_shard=" + std::to_string(k) + "/" + std::to_string(n)};
    if (params.config)
        args.push_back("config=" + *params.config);
    if (params.lang)
        args.push_back("lang=" + *params.lang);
    std::vector<char*> argv;
    for (auto& arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    std::vector<std::string> env_strings = {"VELDRA_AUTO_RUN_WORKER=1"};
    for (char** e = environ; *e; ++e)
        env_strings.emplace_back(*e);
    std::vector<char*> envp;
    for (auto& entry : env_strings)
        envp.push_back(entry.data());
    envp.push_back(nullptr);
    pid_t pid = -1;
    if (posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), envp.data()) != 0)
        return -1;
    return pid;
}

// Counts new complete lines of a worker's part without reading it again from the start.
void count_new_lines(Worker& worker) {
    std::FILE* file = std::fopen(worker.part.c_str(), "rb");
    if (!file)
        return;
    std::fseek(file, static_cast<long>(worker.bytes_seen), SEEK_SET);
    char buffer[8192];
    std::size_t read = 0;
    while ((read = std::fread(buffer, 1, sizeof buffer, file)) > 0) {
        for (std::size_t i = 0; i < read; ++i)
            worker.lines_seen += buffer[i] == '\n';
        worker.bytes_seen += read;
    }
    std::fclose(file);
}

// The number of runs, after checking the auto-run file and its levels; nullopt (logged) when
// either is unusable.
std::optional<std::size_t> run_count(const ProgramParameters& params, double seed) {
    auto configs = auto_run_read_and_check(resolve_user_path(*params.auto_run_config));
    if (!configs)
        return std::nullopt;
    Rng rng(seed);
    return auto_run_build_run_list(*configs, rng).size();
}

}  // namespace

int run_auto_run_jobs(const ProgramParameters& params, const AutoRunJobsRequest& request) {
    // Checked once here so a bad file gives one message, not one per worker.
    const auto counted = run_count(params, request.seed);
    if (!counted)
        return 1;
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

    const std::size_t chunk_count =
        std::max<std::size_t>(1, std::min(total, request.jobs * chunks_per_job));
    std::vector<Worker> chunks(chunk_count);
    for (std::size_t k = 0; k < chunk_count; ++k) {
        chunks[k].part = request.output + ".part-" + std::to_string(k + 1) + "-of-" +
                         std::to_string(chunk_count);
        const RunRange range = auto_run_shard_range(total, k + 1, chunk_count);
        chunks[k].runs = range.last - range.first;
    }

    ProgressLine progress("auto run (" + std::to_string(request.jobs) + " jobs):");
    std::size_t next_to_start = 0;
    std::size_t running = 0;
    std::size_t appended = 0;
    std::size_t appended_runs = 0;
    bool failed = false;
    bool forwarded_interrupt = false;
    auto last_progress = std::chrono::steady_clock::now();
    while (appended < chunks.size()) {
        while (running < request.jobs && next_to_start < chunks.size() && !interrupt_requested()) {
            Worker& chunk = chunks[next_to_start++];
            chunk.started = true;
            chunk.pid = spawn_worker(params, request.seed, next_to_start, chunk_count, chunk.part);
            if (chunk.pid < 0) {
                log_error("Failed to start worker process " + std::to_string(next_to_start) + ".");
                chunk.exit_status = 1;
            } else {
                ++running;
            }
        }
        for (Worker& chunk : chunks) {
            if (!chunk.started || chunk.exit_status)
                continue;
            int status = 0;
            if (waitpid(chunk.pid, &status, WNOHANG) == chunk.pid) {
                chunk.exit_status =
                    WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
                --running;
            }
        }
        if (interrupt_requested() && !forwarded_interrupt) {
            for (Worker& chunk : chunks)
                if (chunk.started && !chunk.exit_status)
                    kill(chunk.pid, SIGINT);
            forwarded_interrupt = true;
        }
        // Chunks join the output strictly in order; a chunk that stopped early (interrupt,
        // failure) still contributes its whole lines, and nothing after it does. A chunk never
        // started because of an interrupt ends the output there.
        while (appended < chunks.size() && chunks[appended].exit_status) {
            Worker& chunk = chunks[appended];
            if (std::filesystem::exists(chunk.part))
                auto_run_append_part(output, chunk.part);
            if (*chunk.exit_status != 0) {
                failed = true;
                if (*chunk.exit_status != EXIT_INTERRUPTED)
                    log_error("Worker " + std::to_string(appended + 1) + " of " +
                              std::to_string(chunks.size()) + " failed with exit status " +
                              std::to_string(*chunk.exit_status) + ".");
                break;
            }
            std::error_code error;
            std::filesystem::remove(chunk.part, error);
            appended_runs += chunk.runs;
            ++appended;
        }
        if (!failed && appended < chunks.size() && !chunks[appended].started &&
            interrupt_requested())
            failed = true;
        if (failed)
            break;
        const auto now = std::chrono::steady_clock::now();
        if (now - last_progress >= std::chrono::milliseconds(100)) {
            std::size_t done = appended_runs;
            for (std::size_t k = appended; k < chunks.size() && chunks[k].started; ++k) {
                count_new_lines(chunks[k]);
                done += chunks[k].lines_seen > 0 ? chunks[k].lines_seen - 1 : 0;
            }
            progress.update(std::min(done, total), total);
            last_progress = now;
        }
        // Short, so that a job freed by a finished chunk is not left idle for long.
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    if (failed) {
        for (Worker& chunk : chunks)
            if (chunk.started && !chunk.exit_status)
                kill(chunk.pid, SIGINT);
        for (Worker& chunk : chunks)
            if (chunk.started && !chunk.exit_status)
                waitpid(chunk.pid, nullptr, 0);
        for (Worker& chunk : chunks) {
            std::error_code error;
            std::filesystem::remove(chunk.part, error);
        }
    }
    std::fclose(output);
    const double seconds = progress.finish();
    if (failed && interrupt_requested()) {
        const std::size_t written = auto_run_count_finished_runs(request.output).value_or(0);
        std::printf(
            "Auto run interrupted: %zu of %zu trials in %.1f s; results in \"%s\", which "
            "auto_run_resume=1 "
            "continues.\n",
            written, total, seconds, request.output.c_str());
        return EXIT_INTERRUPTED;
    }
    if (failed)
        return 1;
    std::printf(
        "Auto run done: %zu trials in %.1f s (%.1f trials/s) with %zu jobs; results in \"%s\".\n",
        total, seconds, seconds > 0 ? static_cast<double>(total) / seconds : 0.0, request.jobs,
        request.output.c_str());
    return 0;
}

}  // namespace veldra

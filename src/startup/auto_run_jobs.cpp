// A parallel auto run: the run list is split into contiguous chunks that shrink towards its
// end, and `jobs` worker processes of this same program play them, each taking the next chunk
// as soon as it finishes one. Trials on large levels cost several times those on small ones, so
// one fixed part per job would leave a job idle while the one with the large levels finishes;
// small last chunks let the jobs finish together. A worker lives for the whole run and is sent
// its chunks over a pipe, so many chunks cost one process start per job, not one per chunk.
// The parent appends each chunk's lines to the output as soon as every chunk before it is done,
// so the output is byte for byte what one process writes.

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "runtime/file_io.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/paths.h"
#include "startup/auto_run_files.h"
#include "startup/auto_run_fingerprint.h"
#include "startup/auto_run_mode.h"
#include "startup/interrupt.h"
#include "startup/progress_line.h"
#include "trials/auto_run_plan.h"
#include "trials/auto_runner.h"
#include "trials/trial_data.h"

extern char** environ;

namespace veldra {

namespace {

struct Chunk {
    RunRange range;
    std::string part;
    bool started = false;
    std::optional<int> exit_status;  // 0 when its worker reported it done
    std::size_t lines_seen = 0;      // newlines read so far, header included
    std::uintmax_t bytes_seen = 0;
};

struct Worker {
    pid_t pid = -1;
    int command_fd = -1;  // the worker's standard input
    int reply_fd = -1;    // its answers, one "done" line per chunk
    std::optional<std::size_t> chunk;
    bool exited = false;
};

// Starts a worker with pipes for its commands and answers; false (nothing left open) on failure.
bool spawn_worker(const ProgramParameters& params, double seed, Worker& worker) {
    int commands[2];
    int replies[2];
    if (pipe2(commands, O_CLOEXEC) != 0)
        return false;
    if (pipe2(replies, O_CLOEXEC) != 0) {
        close(commands[0]);
        close(commands[1]);
        return false;
    }
    std::vector<std::string> args = {std::filesystem::read_symlink("/proc/self/exe").string(),
                                     "headless=1", "auto_run_config=" + *params.auto_run_config,
                                     "auto_run_seed=" + number_to_string(seed)};
    if (params.config)
        args.push_back("config=" + *params.config);
    if (params.lang)
        args.push_back("lang=" + *params.lang);
    std::vector<char*> argv;
    for (auto& arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    std::vector<std::string> env_strings = {std::string(auto_run_worker_environment) + "=1"};
    for (char** e = environ; *e; ++e)
        env_strings.emplace_back(*e);
    std::vector<char*> envp;
    for (auto& entry : env_strings)
        envp.push_back(entry.data());
    envp.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, commands[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, replies[1], auto_run_worker_reply_fd);
    const bool spawned =
        posix_spawn(&worker.pid, argv[0], &actions, nullptr, argv.data(), envp.data()) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(commands[0]);
    close(replies[1]);
    if (!spawned) {
        close(commands[1]);
        close(replies[0]);
        return false;
    }
    worker.command_fd = commands[1];
    worker.reply_fd = replies[0];
    fcntl(worker.reply_fd, F_SETFL, O_NONBLOCK);
    return true;
}

void close_commands(Worker& worker) {
    if (worker.command_fd >= 0)
        close(worker.command_fd);
    worker.command_fd = -1;
}

bool send_chunk(Worker& worker, const Chunk& chunk) {
    const std::string line = std::to_string(chunk.range.first) + " " +
                             std::to_string(chunk.range.last) + " " + chunk.part + "\n";
    return write(worker.command_fd, line.data(), line.size()) == static_cast<ssize_t>(line.size());
}

// Reads the worker's answers; true when it reported its chunk done.
bool read_done(Worker& worker) {
    char buffer[64];
    bool done = false;
    ssize_t got = 0;
    while ((got = read(worker.reply_fd, buffer, sizeof buffer)) > 0)
        done = done || std::find(buffer, buffer + got, '\n') != buffer + got;
    return done;
}

// Counts new complete lines of a chunk's part without reading it again from the start.
void count_new_lines(Chunk& chunk) {
    std::FILE* file = std::fopen(chunk.part.c_str(), "rb");
    if (!file)
        return;
    std::fseek(file, static_cast<long>(chunk.bytes_seen), SEEK_SET);
    char buffer[8192];
    std::size_t read = 0;
    while ((read = std::fread(buffer, 1, sizeof buffer, file)) > 0) {
        for (std::size_t i = 0; i < read; ++i)
            chunk.lines_seen += buffer[i] == '\n';
        chunk.bytes_seen += read;
    }
    std::fclose(file);
}

}  // namespace

int run_auto_run_jobs(const ProgramParameters& params, const AutoRunJobsRequest& request) {
    const std::size_t total = request.run.runs;
    std::FILE* output = std::fopen(request.output.c_str(), "wb");
    if (!output) {
        log_error("Failed to open file for writing.");
        log_error("Output \"" + request.output +
                  "\" cannot be opened: " + system_error_text(errno) + ".");
        return 1;
    }
    if (!auto_run_write(output, request.output, trial_data_as_csv_headers()) ||
        !auto_run_write_fingerprint(request.output, {request.run.identity, total, {0, total}})) {
        std::fclose(output);
        return 1;
    }

    const std::vector<RunRange> ranges = auto_run_guided_chunks(total, request.jobs);
    std::vector<Chunk> chunks(ranges.size());
    for (std::size_t k = 0; k < chunks.size(); ++k) {
        chunks[k].range = ranges[k];
        chunks[k].part = request.output + ".part-" + std::to_string(k + 1) + "-of-" +
                         std::to_string(chunks.size());
    }
    // A worker that finds its parent gone must not be killed by writing to a closed pipe.
    signal(SIGPIPE, SIG_IGN);
    std::vector<Worker> workers(std::min(request.jobs, chunks.size()));
    for (std::size_t w = 0; w < workers.size(); ++w) {
        if (!spawn_worker(params, request.seed, workers[w])) {
            log_error("Failed to start worker process " + std::to_string(w + 1) + ".");
            workers[w].exited = true;
        }
    }

    ProgressLine progress("auto run (" + std::to_string(request.jobs) + " jobs):");
    std::size_t next_to_start = 0;
    std::size_t appended = 0;
    std::size_t appended_runs = 0;
    bool failed = std::all_of(workers.begin(), workers.end(), [](auto& w) { return w.exited; });
    bool forwarded_interrupt = false;
    auto last_progress = std::chrono::steady_clock::now();
    while (!failed && appended < chunks.size()) {
        for (Worker& worker : workers) {
            if (worker.exited)
                continue;
            if (worker.chunk && read_done(worker)) {
                chunks[*worker.chunk].exit_status = 0;
                worker.chunk.reset();
            }
            if (!worker.chunk && worker.command_fd >= 0) {
                if (next_to_start < chunks.size() && !interrupt_requested()) {
                    Chunk& chunk = chunks[next_to_start];
                    chunk.started = true;
                    worker.chunk = next_to_start++;
                    if (!send_chunk(worker, chunk))
                        close_commands(worker);  // the worker is gone; its exit is read below
                } else {
                    close_commands(worker);  // nothing more to do: the worker ends
                }
            }
            int status = 0;
            if (waitpid(worker.pid, &status, WNOHANG) == worker.pid) {
                worker.exited = true;
                close_commands(worker);
                // A "done" written just before exiting still counts.
                if (worker.chunk && read_done(worker)) {
                    chunks[*worker.chunk].exit_status = 0;
                    worker.chunk.reset();
                }
                const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
                if (worker.chunk)
                    chunks[*worker.chunk].exit_status = code == 0 ? 1 : code;
                else if (code != 0 && code != EXIT_INTERRUPTED)
                    log_error("A worker process failed with exit status " + std::to_string(code) +
                              ".");
                close(worker.reply_fd);
            }
        }
        if (interrupt_requested() && !forwarded_interrupt) {
            for (Worker& worker : workers)
                if (!worker.exited)
                    kill(worker.pid, SIGINT);
            forwarded_interrupt = true;
        }
        // Chunks join the output strictly in order; a chunk that stopped early (interrupt,
        // failure) still contributes its whole lines, and nothing after it does.
        while (appended < chunks.size() && chunks[appended].exit_status) {
            Chunk& chunk = chunks[appended];
            if (std::filesystem::exists(chunk.part) &&
                !auto_run_append_part(output, request.output, chunk.part)) {
                failed = true;
                break;
            }
            if (*chunk.exit_status != 0) {
                failed = true;
                if (*chunk.exit_status != EXIT_INTERRUPTED)
                    log_error("The worker playing runs " + std::to_string(chunk.range.first + 1) +
                              " to " + std::to_string(chunk.range.last) +
                              " failed with exit status " + std::to_string(*chunk.exit_status) +
                              ".");
                break;
            }
            std::error_code error;
            std::filesystem::remove(chunk.part, error);
            appended_runs += chunk.range.last - chunk.range.first;
            ++appended;
        }
        // Stopped before every chunk was handed out, or every worker gone with chunks left.
        const bool no_worker_left =
            std::all_of(workers.begin(), workers.end(), [](auto& w) { return w.exited; });
        if (!failed && appended < chunks.size() && !chunks[appended].exit_status &&
            (no_worker_left || (interrupt_requested() && !chunks[appended].started)))
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
        // Short, so that a worker that finished a chunk is not left idle for long.
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    for (Worker& worker : workers) {
        if (worker.exited)
            continue;
        close_commands(worker);
        if (failed)
            kill(worker.pid, SIGINT);
        waitpid(worker.pid, nullptr, 0);
        close(worker.reply_fd);
    }
    for (Chunk& chunk : chunks) {
        std::error_code error;
        std::filesystem::remove(chunk.part, error);
    }
    if (std::fclose(output) != 0 && !failed) {
        log_error("Failed to write \"" + request.output + "\": " + system_error_text(errno) + ".");
        failed = true;
    }
    const double seconds = progress.finish();
    if (failed && interrupt_requested()) {
        const std::size_t written = auto_run_count_finished_runs(request.output, total).value_or(0);
        std::printf(
            "Auto run interrupted: %zu of %zu trials in %.1f s; results in \"%s\", which "
            "auto_run_resume=1 continues.\n",
            written, total, seconds, request.output.c_str());
        return EXIT_INTERRUPTED;
    }
    if (failed)
        return 1;
    std::printf(
        "Auto run done: %zu trials in %.1f s (%.1f trials/s) with %zu jobs; results in "
        "\"%s\".\n",
        total, seconds, seconds > 0 ? static_cast<double>(total) / seconds : 0.0, request.jobs,
        request.output.c_str());
    return 0;
}

}  // namespace veldra

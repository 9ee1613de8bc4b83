// A parallel auto run: the run list is split into contiguous chunks that shrink towards its
// end, and `jobs` worker processes of this same program play them, each taking the next chunk
// as soon as it finishes one. Trials on large levels cost several times those on small ones, so
// one fixed part per job would leave a job idle while the one with the large levels finishes;
// small last chunks let the jobs finish together. A worker lives for the whole run and is sent
// its chunks over a pipe, so many chunks cost one process start per job, not one per chunk.
// The parent appends each chunk's lines to the output as soon as every chunk before it is done,
// so the output is byte for byte what one process writes.
//
// AutoRunScheduler makes every decision; this file only carries them out and sleeps on the
// workers' answers in between.

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "batch/auto_run_files.h"
#include "batch/auto_run_fingerprint.h"
#include "batch/auto_run_jobs.h"
#include "batch/auto_run_scheduler.h"
#include "batch/auto_run_worker_process.h"
#include "creatures/trial_world.h"
#include "platform/interrupt.h"
#include "platform/progress_line.h"
#include "platform/signals.h"
#include "platform/wait_for_input.h"
#include "runtime/file_io.h"
#include "runtime/log.h"
#include "runtime/utf8_path.h"
#include "trials/auto_run_plan.h"
#include "trials/trial_data.h"

namespace veldra {

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto PROGRESS_INTERVAL = std::chrono::milliseconds(100);

// How far a chunk's part file has grown, for the progress line.
struct PartProgress {
    std::size_t lines_seen = 0;  // newlines read so far, header included
    std::uintmax_t bytes_seen = 0;
};

struct ParallelRun {
    Files& files;
    const AutoRunJobsRequest& request;
    std::FILE* output;
    std::vector<RunRange> ranges;
    std::vector<std::string> parts;
    std::vector<PartProgress> part_progress;
    AutoRunScheduler scheduler;
    std::vector<std::optional<AutoRunWorkerProcess>> workers;  // nullopt: never started
};

// Counts new complete lines of a chunk's part without reading it again from the start.
void count_new_lines(const std::string& part, PartProgress& progress) {
    std::string why;
    std::FILE* file = open_file(part, "rb", why);
    if (!file)
        return;  // not there yet: counted at the next look
    std::fseek(file, static_cast<long>(progress.bytes_seen), SEEK_SET);
    char buffer[8192];
    std::size_t read = 0;
    while ((read = std::fread(buffer, 1, sizeof buffer, file)) > 0) {
        for (std::size_t i = 0; i < read; ++i)
            progress.lines_seen += buffer[i] == '\n';
        progress.bytes_seen += read;
    }
    std::fclose(file);
}

void start_workers(ParallelRun& run, const ProgramParameters& params) {
    for (std::size_t w = 0; w < run.workers.size(); ++w) {
        run.workers[w] = AutoRunWorkerProcess::start(params, run.request.seed);
        if (!run.workers[w]) {
            log_error("Failed to start worker process " + std::to_string(w + 1) + ".");
            run.scheduler.worker_lost(w);
        }
    }
}

void forward_interrupt(ParallelRun& run) {
    run.scheduler.interrupt();
    for (auto& worker : run.workers)
        if (worker && worker->running())
            worker->interrupt();
}

void hand_out_chunks(ParallelRun& run) {
    for (const auto& order : run.scheduler.handouts()) {
        AutoRunWorkerProcess& worker = *run.workers[order.worker];
        if (order.chunk)
            worker.send_chunk(run.ranges[*order.chunk], run.parts[*order.chunk]);
        else
            worker.close_commands();
    }
}

// Chunks join the output strictly in order; a chunk that stopped early (interrupt, failure)
// still contributes its whole lines, and nothing after it does.
void join_ended_chunks(ParallelRun& run) {
    while (const auto ended = run.scheduler.next_to_join()) {
        const std::string& part = run.parts[ended->chunk];
        if (std::filesystem::exists(utf8_path(part)) &&
            !auto_run_append_part(run.files, run.output, run.request.output, part)) {
            run.scheduler.fail();
            return;
        }
        if (ended->status != 0 && ended->status != EXIT_INTERRUPTED) {
            const RunRange& range = run.ranges[ended->chunk];
            log_error("The worker playing runs " + std::to_string(range.first + 1) + " to " +
                      std::to_string(range.last) + " failed with exit status " +
                      std::to_string(ended->status) + ".");
        }
        if (ended->status == 0) {
            std::error_code error;
            std::filesystem::remove(utf8_path(part), error);
        }
        run.scheduler.joined();
    }
}

void worker_ended(ParallelRun& run, std::size_t w) {
    const int status = run.workers[w]->wait();
    if (!run.scheduler.worker_ended(w, status) && status != 0 && status != EXIT_INTERRUPTED)
        log_error("A worker process failed with exit status " + std::to_string(status) + ".");
}

// Sleeps until a worker answers or ends, the timeout passes or a signal arrives, and passes on
// what the workers said.
void wait_for_workers(ParallelRun& run, Clock::duration timeout) {
    std::vector<int> fds;
    std::vector<std::size_t> owners;
    for (std::size_t w = 0; w < run.workers.size(); ++w) {
        if (run.workers[w] && run.workers[w]->running()) {
            fds.push_back(run.workers[w]->reply_fd());
            owners.push_back(w);
        }
    }
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(timeout);
    for (std::size_t ready : platform::wait_for_input(fds, milliseconds)) {
        const std::size_t w = owners[ready];
        switch (run.workers[w]->read_reply()) {
            case AutoRunWorkerProcess::Reply::chunk_done:
                run.scheduler.chunk_done(w);
                break;
            case AutoRunWorkerProcess::Reply::ended:
                worker_ended(run, w);
                break;
            case AutoRunWorkerProcess::Reply::nothing_yet:
                break;
        }
    }
}

void show_progress(ParallelRun& run, ProgressLine& progress) {
    const std::size_t total = run.request.run.runs;
    std::size_t done = run.scheduler.joined_runs();
    const auto [first, last] = run.scheduler.chunks_in_play();
    for (std::size_t k = first; k < last; ++k) {
        count_new_lines(run.parts[k], run.part_progress[k]);
        const std::size_t lines = run.part_progress[k].lines_seen;
        done += lines > 0 ? lines - 1 : 0;
    }
    progress.update(std::min(done, total), total);
}

// Workers still running after the run: a failed run stops them after their trial in progress,
// a finished one lets them see the end of their input.
void stop_workers(ParallelRun& run, bool failed) {
    for (auto& worker : run.workers) {
        if (!worker || !worker->running())
            continue;
        worker->close_commands();
        if (failed)
            worker->interrupt();
        worker->wait();
    }
}

// Plays the whole list; false when the run failed or was interrupted.
bool play_chunks(ParallelRun& run, const ProgramParameters& params, ProgressLine& progress) {
    // A worker that finds its parent gone must not be killed by writing to a closed pipe.
    platform::ignore_broken_pipes();
    start_workers(run, params);
    bool forwarded_interrupt = false;
    auto next_progress = Clock::now() + PROGRESS_INTERVAL;
    for (;;) {
        if (interrupt_requested() && !forwarded_interrupt) {
            forward_interrupt(run);
            forwarded_interrupt = true;
        }
        hand_out_chunks(run);
        join_ended_chunks(run);
        if (run.scheduler.finished() || run.scheduler.failed())
            break;
        const auto now = Clock::now();
        if (now >= next_progress) {
            show_progress(run, progress);
            next_progress = now + PROGRESS_INTERVAL;
        }
        // A Ctrl-C that lands just before the wait begins is seen when it times out, at the
        // next progress update.
        wait_for_workers(run, next_progress - now);
    }
    const bool failed = run.scheduler.failed();
    stop_workers(run, failed);
    return !failed;
}

}  // namespace

int run_auto_run_jobs(Files& files, const ProgramParameters& params,
                      const AutoRunJobsRequest& request) {
    const std::size_t total = request.run.runs;
    std::string why;
    std::FILE* output = open_file(request.output, "wb", why);
    if (!output) {
        log_error("Failed to open file for writing.");
        log_error("Output \"" + request.output + "\" cannot be opened: " + why + ".");
        return 1;
    }
    if (!auto_run_write(output, request.output, trial_data_as_csv_headers()) ||
        !auto_run_write_fingerprint(files, request.output,
                                    {request.run.identity, total, {0, total}})) {
        std::fclose(output);
        return 1;
    }

    std::vector<RunRange> ranges = auto_run_guided_chunks(total, request.jobs);
    std::vector<std::string> parts;
    for (std::size_t k = 0; k < ranges.size(); ++k)
        parts.push_back(request.output + ".part-" + std::to_string(k + 1) + "-of-" +
                        std::to_string(ranges.size()));
    const std::size_t workers = std::min(request.jobs, ranges.size());
    ParallelRun run{files,
                    request,
                    output,
                    ranges,
                    parts,
                    std::vector<PartProgress>(ranges.size()),
                    AutoRunScheduler(ranges, workers),
                    std::vector<std::optional<AutoRunWorkerProcess>>(workers)};

    ProgressLine progress("auto run (" + std::to_string(request.jobs) + " jobs):");
    bool failed = !play_chunks(run, params, progress);
    for (const std::string& part : run.parts) {
        std::error_code error;
        std::filesystem::remove(utf8_path(part), error);
    }
    if (std::fclose(output) != 0 && !failed) {
        log_error("Failed to write \"" + request.output + "\": " + system_error_text(errno) + ".");
        failed = true;
    }
    const double seconds = progress.finish();
    if (failed && interrupt_requested()) {
        const std::size_t written =
            auto_run_count_finished_runs(files, request.output, total).value_or(0);
        std::printf(
            "Auto run interrupted: %zu of %zu trials in %.1f s; results in \"%s\", which "
            "auto_run_resume=1 continues.\n",
            written, total, seconds, request.output.c_str());
        return EXIT_INTERRUPTED;
    }
    if (failed)
        return 1;
    std::uint64_t zero_weight_errors = 0;
    for (const auto& worker : run.workers)
        zero_weight_errors += worker ? worker->zero_weight_errors() : 0;
    std::printf(
        "Auto run done: %zu trials in %.1f s (%.1f trials/s) with %zu jobs; results in "
        "\"%s\".\n",
        total, seconds, seconds > 0 ? static_cast<double>(total) / seconds : 0.0, request.jobs,
        request.output.c_str());
    log_zero_total_weight_summary(zero_weight_errors);
    return 0;
}

}  // namespace veldra

#include "startup/auto_run_mode.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "batch/auto_run_files.h"
#include "batch/auto_run_fingerprint.h"
#include "batch/auto_run_jobs.h"
#include "config/game_configurations.h"
#include "platform/child_process.h"
#include "platform/file_descriptor.h"
#include "platform/interrupt.h"
#include "platform/progress_line.h"
#include "runtime/file_io.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/paths.h"
#include "runtime/random_source.h"
#include "runtime/runtime.h"
#include "runtime/utf8_path.h"
#include "startup/app_state.h"
#include "startup/parameter_values.h"
#include "startup/run_program.h"
#include "trials/auto_runner.h"
#include "util/text.h"

namespace veldra {

namespace {

bool is_worker() {
    return std::getenv(auto_run_worker_environment) != nullptr;
}

struct WorkerChunk {
    RunRange range;
    std::string part;
};

// The next chunk from the parent; nullopt at the end of the input (or a line that makes no
// sense, which only a broken parent would send).
std::optional<WorkerChunk> read_worker_chunk() {
    char line[8192];
    if (!std::fgets(line, sizeof line, stdin))
        return std::nullopt;
    unsigned long long first = 0;
    unsigned long long last = 0;
    int consumed = 0;
    // Exactly one space before the part: a path may itself begin with spaces.
    if (std::sscanf(line, "%llu %llu%n", &first, &last, &consumed) < 2 || first > last ||
        line[consumed] != ' ')
        return std::nullopt;
    std::string part = line + consumed + 1;
    if (!part.empty() && part.back() == '\n')
        part.pop_back();
    if (part.empty())
        return std::nullopt;
    return WorkerChunk{{static_cast<std::size_t>(first), static_cast<std::size_t>(last)}, part};
}

// Plays chunks until the parent has no more. One process serves the whole run, so a chunk
// costs no process start, no configuration load and no level reads.
void play_worker_chunks(AppState& app, const ProgramParameters& params, double seed) {
    // The previous chunk's runner has finished; it would only pile up.
    app.runtime.for_each<obj_auto_runner>(
        [&app](obj_auto_runner& runner) { app.runtime.instance_destroy(runner.id()); });
    const auto chunk = read_worker_chunk();
    if (!chunk)
        return end_program(app, 0);
    AutoRunModeState& slot = app.auto_run;
    slot.rng.emplace(seed);  // every chunk draws the same list
    AutoRunOptions options;
    options.range = chunk->range;
    options.should_stop = [] { return interrupt_requested(); };
    auto_run_trials(app.sim, resolve_user_path(*params.auto_run_config), chunk->part, *slot.rng,
                    seed, std::move(options))
        .and_then([&app, params, seed](bool completed) {
            if (!completed)
                return end_program(app, interrupt_requested() ? EXIT_INTERRUPTED : 1);
            const std::string done =
                "done " + std::to_string(app.sim.world.zero_weight_errors) + "\n";
            if (!platform::write_all(auto_run_worker_reply_fd, done))
                return end_program(app, 1);
            play_worker_chunks(app, params, seed);
        })
        .and_catch([&app](const Value& reason) {
            if (!reason.is_undefined())
                log_error(to_string(reason));
            end_program(app, 1);
        });
}

// Where the run continues in an existing output, after checking that the output belongs to
// this run; nullopt (logged) when it does not.
std::optional<std::size_t> runs_to_skip(Files& files, const std::string& output,
                                        const AutoRunFingerprint& fingerprint) {
    std::error_code error;
    if (!std::filesystem::exists(utf8_path(output), error) ||
        std::filesystem::file_size(utf8_path(output), error) == 0)
        return 0;
    std::string why;
    const auto written = auto_run_read_fingerprint(files, output, why);
    if (!written) {
        log_error("Cannot resume \"" + output + "\": " + why +
                  ". Only a file this program wrote for the same run can be continued.");
        return std::nullopt;
    }
    if (!(*written == fingerprint)) {
        log_error("Cannot resume \"" + output +
                  "\": it was written by another run (another seed, configuration, auto-run "
                  "file, level, shard or program version). Start it afresh without "
                  "auto_run_resume, or give the parameters of the run that wrote it.");
        return std::nullopt;
    }
    return auto_run_count_finished_runs(files, output,
                                        fingerprint.range.last - fingerprint.range.first);
}

void run_in_this_process(AppState& app, const ProgramParameters& params, double seed,
                         const PreparedRun& run, std::pair<std::size_t, std::size_t> shard,
                         bool resume) {
    const std::string& output = *params.auto_run_output;
    const AutoRunFingerprint fingerprint{run.identity, run.runs,
                                         auto_run_shard_range(run.runs, shard.first, shard.second)};
    AutoRunOptions options;
    options.shard_k = shard.first;
    options.shard_n = shard.second;
    if (resume) {
        const auto done = runs_to_skip(*app.services.files, output, fingerprint);
        if (!done)
            return end_program(app, 1);
        options.already_done = *done;
        if (*done > 0)
            log("Resuming after " + std::to_string(*done) + " finished runs in \"" + output +
                "\".");
    }
    if (options.already_done == 0) {
        // Opened here first so that an output that cannot be written fails with the game's
        // text before its fingerprint is written beside it.
        std::string why;
        std::FILE* probe = open_file(output, "wb", why);
        if (!probe) {
            log_error("Failed to open file for writing.");
            log_error("Output \"" + output + "\" cannot be opened: " + why + ".");
            return end_program(app, 1);
        }
        std::fclose(probe);
        if (!auto_run_write_fingerprint(*app.services.files, output, fingerprint))
            return end_program(app, 1);
    }
    AutoRunModeState& slot = app.auto_run;
    slot.rng.emplace(seed);
    slot.progress = std::make_unique<ProgressLine>("auto run:");
    options.on_progress = [&slot](std::size_t done, std::size_t total) {
        slot.runs_done = done;
        if (slot.progress)
            slot.progress->update(done, total);
    };
    options.should_stop = [] { return interrupt_requested(); };
    const std::size_t resumed = options.already_done;
    auto_run_trials(app.sim, resolve_user_path(*params.auto_run_config), output, *slot.rng, seed,
                    std::move(options))
        .and_then([&app, &slot, output, resumed](bool completed) {
            const double seconds = slot.progress ? slot.progress->finish() : 0;
            const std::size_t new_runs = slot.runs_done > resumed ? slot.runs_done - resumed : 0;
            const char* how = completed ? "done" : interrupt_requested() ? "interrupted" : "failed";
            std::printf("Auto run %s: %zu trials in %.1f s (%.1f trials/s); results in \"%s\".\n",
                        how, new_runs, seconds,
                        seconds > 0 ? static_cast<double>(new_runs) / seconds : 0.0,
                        output.c_str());
            app.sim.world.log_zero_total_weight_summary();
            end_program(app, completed ? 0 : (interrupt_requested() ? EXIT_INTERRUPTED : 1));
        })
        .and_catch([&app, &slot](const Value& reason) {
            if (slot.progress)
                slot.progress->finish();
            if (!reason.is_undefined())
                log_error(to_string(reason));
            end_program(app, 1);
        });
}

// Checks shared by every way of running a batch, before any file is written: the auto-run file
// and its levels, the length of the run list, and that the output is none of the run's inputs.
// nullopt when the program was ended with the reason.
std::optional<PreparedRun> prepare_run(AppState& app, const ProgramParameters& params,
                                       double seed) {
    const std::string configs_path = resolve_user_path(*params.auto_run_config);
    auto configs = auto_run_read_and_check(app.sim, configs_path);
    if (!configs) {
        end_program(app, 1);
        return std::nullopt;
    }
    std::vector<std::string> inputs = app.sim.configs.loaded_paths;
    inputs.push_back(configs_path);
    for (const std::string& level : configs->levels)
        inputs.push_back(resolve_user_path(level));
    if (params.log_output_file)
        inputs.push_back(*params.log_output_file);
    if (const auto input = auto_run_output_clobbers(*params.auto_run_output, inputs)) {
        bad_parameter(app, "auto_run_output", *params.auto_run_output,
                      "would overwrite \"" + *input +
                          "\", which the run reads. Choose another "
                          "output file.");
        return std::nullopt;
    }
    auto identity = auto_run_identity(*app.services.files, params, app.sim.configs, seed, *configs);
    if (!identity) {
        end_program(app, 1);
        return std::nullopt;
    }
    return PreparedRun{auto_run_count_runs(*configs, app.sim.configs), std::move(*identity)};
}

}  // namespace

void start_auto_run_mode(AppState& app, const ProgramParameters& params) {
    app.mode_stops_on_interrupt = true;
    if (!is_worker() && (!params.auto_run_output || string_trim(*params.auto_run_output).empty()))
        return bad_parameter(app, "auto_run_output", params.auto_run_output.value_or(""),
                             "is needed: headless runs ask no questions.");
    double seed = random_seed_value();
    if (params.auto_run_seed) {
        const auto parsed = parse_seed_value(*params.auto_run_seed);
        if (!parsed)
            return bad_parameter(app, "auto_run_seed", *params.auto_run_seed, SEED_PROBLEM);
        seed = *parsed;
    }
    if (is_worker())
        return play_worker_chunks(app, params, seed);
    std::uint64_t jobs = 1;
    if (params.auto_run_jobs) {
        const auto parsed = try_string_to_whole_number(*params.auto_run_jobs, 1, MAX_AUTO_RUN_JOBS);
        if (!parsed)
            return bad_parameter(
                app, "auto_run_jobs", *params.auto_run_jobs,
                "is not a whole number from 1 to " + std::to_string(MAX_AUTO_RUN_JOBS) + ".");
        jobs = *parsed;
    }
    bool resume = false;
    if (params.auto_run_resume) {
        const auto parsed = parse_switch_value(*params.auto_run_resume);
        if (!parsed)
            return bad_parameter(app, "auto_run_resume", *params.auto_run_resume,
                                 "must be 1 (continue the output file) or 0 (start afresh).");
        resume = *parsed;
    }
    std::pair<std::size_t, std::size_t> shard{1, 1};
    if (params.auto_run_shard) {
        const auto parsed = parse_shard(*params.auto_run_shard);
        if (!parsed)
            return bad_parameter(app, "auto_run_shard", *params.auto_run_shard,
                                 "must be K/N with whole numbers 1 <= K <= N <= " +
                                     std::to_string(MAX_AUTO_RUN_RUNS) + ".");
        shard = *parsed;
    }
    if (jobs > 1 && (params.auto_run_shard || resume))
        return bad_parameter(app, "auto_run_jobs", *params.auto_run_jobs,
                             "works on a whole run: use it without auto_run_shard and "
                             "auto_run_resume.");
    const auto run = prepare_run(app, params, seed);
    if (!run)
        return;
    if (shard.second > std::max<std::size_t>(run->runs, 1))
        return bad_parameter(app, "auto_run_shard", *params.auto_run_shard,
                             "asks for more parts than the run list has runs (" +
                                 std::to_string(run->runs) + "): every part would not get one.");
    if (jobs > 1 && !platform::child_processes_supported()) {
        // Same lines, same order: only slower. Better than refusing a script written on Linux.
        log_warning("auto_run_jobs=" + std::to_string(jobs) +
                    ": this build cannot start worker processes yet, so the run is played by "
                    "this one process (the results are the same, only slower).");
        jobs = 1;
    }
    if (jobs > 1)
        return end_program(app, run_auto_run_jobs(*app.services.files, params,
                                                  {static_cast<std::size_t>(jobs), seed,
                                                   *params.auto_run_output, *run}));
    run_in_this_process(app, params, seed, *run, shard, resume);
}

void start_auto_run_merge_mode(AppState& app, const ProgramParameters& params) {
    if (!params.auto_run_output || string_trim(*params.auto_run_output).empty())
        return bad_parameter(app, "auto_run_output", params.auto_run_output.value_or(""),
                             "is needed by auto_run_merge: the file to write.");
    std::vector<std::string> parts;
    for (const std::string& part : string_split(*params.auto_run_merge, ','))
        if (!string_trim(part).empty())
            parts.push_back(string_trim(part));
    if (parts.empty())
        return bad_parameter(app, "auto_run_merge", *params.auto_run_merge,
                             "needs the part files: auto_run_merge=PART1,PART2,...");
    const bool ok = auto_run_merge_parts(*app.services.files, parts, *params.auto_run_output);
    if (ok)
        std::printf("Merged %zu parts into \"%s\".\n", parts.size(),
                    params.auto_run_output->c_str());
    end_program(app, ok ? 0 : 1);
}

}  // namespace veldra

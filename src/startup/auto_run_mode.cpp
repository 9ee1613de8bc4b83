#include "startup/auto_run_mode.h"

#include <unistd.h>
#include <cstdio>

#include <cstdlib>
#include <memory>

#include "runtime/context.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/paths.h"
#include "runtime/random_source.h"
#include "runtime/runtime.h"
#include "startup/auto_run_files.h"
#include "startup/interrupt.h"
#include "startup/program.h"
#include "startup/progress_line.h"
#include "trials/auto_runner.h"
#include "util/text.h"

namespace veldra {

namespace {

// What the batch needs to outlive the start-up call.
struct AutoRunModeSlot {
    std::optional<Rng> rng;
    std::unique_ptr<ProgressLine> progress;
    std::size_t runs_done = 0;
};

void bad_parameter(const std::string& message) {
    log_error(message);
    end_program(2);
}

std::optional<std::size_t> whole_number_at_least_1(const std::optional<std::string>& text) {
    if (!text)
        return 1;
    auto value = try_string_to_real(*text);
    if (!value || *value < 1 || *value != static_cast<double>(static_cast<std::size_t>(*value)))
        return std::nullopt;
    return static_cast<std::size_t>(*value);
}

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
    if (std::sscanf(line, "%llu %llu %n", &first, &last, &consumed) < 2 || first > last)
        return std::nullopt;
    std::string part = string_trim(line + consumed);
    if (part.empty())
        return std::nullopt;
    return WorkerChunk{{static_cast<std::size_t>(first), static_cast<std::size_t>(last)}, part};
}

// Plays chunks until the parent has no more. One process serves the whole run, so a chunk
// costs no process start, no configuration load and no level reads.
void play_worker_chunks(const ProgramParameters& params, double seed) {
    // The previous chunk's runner has finished; it would only pile up.
    rt().for_each<obj_auto_runner>(
        [](obj_auto_runner& runner) { rt().instance_destroy(runner.id()); });
    const auto chunk = read_worker_chunk();
    if (!chunk)
        return end_program(0);
    auto& slot = ctx().slot<AutoRunModeSlot>();
    slot.rng.emplace(seed);  // every chunk draws the same list
    AutoRunOptions options;
    options.range = chunk->range;
    options.should_stop = [] { return interrupt_requested(); };
    auto_run_trials(resolve_user_path(*params.auto_run_config), chunk->part, *slot.rng, seed,
                    std::move(options))
        .and_then([params, seed](const Value& completed) {
            if (!completed.as_bool())
                return end_program(interrupt_requested() ? EXIT_INTERRUPTED : 1);
            if (write(auto_run_worker_reply_fd, "done\n", 5) != 5)
                return end_program(1);
            play_worker_chunks(params, seed);
        })
        .and_catch([](const Value& reason) {
            if (!reason.is_undefined())
                log_error(to_string(reason));
            end_program(1);
        });
}

void run_in_this_process(const ProgramParameters& params, double seed, std::size_t shard_k,
                         std::size_t shard_n) {
    const std::string& output = *params.auto_run_output;
    // Checked here as well, so a bad file ends the run with its message and nothing else.
    if (!auto_run_read_and_check(resolve_user_path(*params.auto_run_config)))
        return end_program(1);
    AutoRunOptions options;
    options.shard_k = shard_k;
    options.shard_n = shard_n;
    if (params.auto_run_resume == "1") {
        auto done = auto_run_count_finished_runs(output);
        if (!done) {
            end_program(1);
            return;
        }
        options.already_done = *done;
        if (*done > 0)
            log("Resuming after " + std::to_string(*done) + " finished runs in \"" + output +
                "\".");
    }
    auto& slot = ctx().slot<AutoRunModeSlot>();
    slot.rng.emplace(seed);
    slot.progress = std::make_unique<ProgressLine>("auto run:");
    options.on_progress = [&slot](std::size_t done, std::size_t total) {
        slot.runs_done = done;
        if (slot.progress)
            slot.progress->update(done, total);
    };
    options.should_stop = [] { return interrupt_requested(); };
    const std::size_t resumed = options.already_done;
    auto_run_trials(resolve_user_path(*params.auto_run_config), output, *slot.rng, seed,
                    std::move(options))
        .and_then([&slot, output, resumed](const Value& completed) {
            const double seconds = slot.progress ? slot.progress->finish() : 0;
            const std::size_t new_runs = slot.runs_done > resumed ? slot.runs_done - resumed : 0;
            std::printf("Auto run %s: %zu trials in %.1f s (%.1f trials/s); results in \"%s\".\n",
                        completed.as_bool() ? "done" : "interrupted", new_runs, seconds,
                        seconds > 0 ? static_cast<double>(new_runs) / seconds : 0.0,
                        output.c_str());
            end_program(completed.as_bool() ? 0 : (interrupt_requested() ? EXIT_INTERRUPTED : 1));
        })
        .and_catch([&slot](const Value& reason) {
            if (slot.progress)
                slot.progress->finish();
            if (!reason.is_undefined())
                log_error(to_string(reason));
            end_program(1);
        });
}

}  // namespace

void start_auto_run_mode(const ProgramParameters& params) {
    install_interrupt_handler();
    if (!is_worker() && (!params.auto_run_output || params.auto_run_output->empty())) {
        bad_parameter("auto_run_output=FILE is needed: headless runs ask no questions.");
        return;
    }
    double seed = random_seed_value();
    if (params.auto_run_seed) {
        auto parsed = try_string_to_real(*params.auto_run_seed);
        if (!parsed) {
            bad_parameter("auto_run_seed=" + *params.auto_run_seed + " is not a number.");
            return;
        }
        seed = *parsed;
    }
    if (is_worker())
        return play_worker_chunks(params, seed);
    const auto jobs = whole_number_at_least_1(params.auto_run_jobs);
    if (!jobs) {
        bad_parameter("auto_run_jobs=" + *params.auto_run_jobs +
                      " is not a whole number of at least 1.");
        return;
    }
    std::pair<std::size_t, std::size_t> shard{1, 1};
    if (params.auto_run_shard) {
        auto parsed = parse_shard(*params.auto_run_shard);
        if (!parsed) {
            bad_parameter("auto_run_shard=" + *params.auto_run_shard +
                          " must be K/N with 1 <= K <= N.");
            return;
        }
        shard = *parsed;
    }
    if (*jobs > 1) {
        if (params.auto_run_shard || params.auto_run_resume == "1") {
            bad_parameter(
                "auto_run_jobs works on a whole run: use it without auto_run_shard and "
                "auto_run_resume.");
            return;
        }
        end_program(run_auto_run_jobs(params, {*jobs, seed, *params.auto_run_output}));
        return;
    }
    run_in_this_process(params, seed, shard.first, shard.second);
}

void start_auto_run_merge_mode(const ProgramParameters& params) {
    if (!params.auto_run_output || params.auto_run_output->empty()) {
        bad_parameter("auto_run_merge needs auto_run_output=FILE: the file to write.");
        return;
    }
    std::vector<std::string> parts;
    for (const std::string& part : string_split(*params.auto_run_merge, ','))
        if (!string_trim(part).empty())
            parts.push_back(string_trim(part));
    if (parts.empty()) {
        bad_parameter("auto_run_merge needs the part files: auto_run_merge=PART1,PART2,...");
        return;
    }
    const bool ok = auto_run_merge_parts(parts, *params.auto_run_output);
    if (ok)
        std::printf("Merged %zu parts into \"%s\".\n", parts.size(),
                    params.auto_run_output->c_str());
    end_program(ok ? 0 : 1);
}

}  // namespace veldra

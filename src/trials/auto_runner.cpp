#include "trials/auto_runner.h"

#include <algorithm>
#include <cerrno>

#include "async/room_goer.h"
#include "config/game_configurations.h"
#include "runtime/file_io.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/paths.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"
#include "trials/trial_data.h"
#include "trials/trial_level_info.h"
#include "veldra_version.h"
#include "world/level_file.h"

namespace veldra {

namespace {

const Level* auto_run_level(SimulationState& sim, const std::string& filename) {
    auto& levels = sim.auto_run_levels;
    if (auto it = levels.find(filename); it != levels.end())
        return &it->second;
    auto level = level_load_for_trial(sim.files, sim.cell_types, resolve_user_path(filename));
    if (!level)
        return nullptr;
    return &levels.emplace(filename, std::move(*level)).first->second;
}

}  // namespace

obj_auto_runner::~obj_auto_runner() {
    if (file_)
        std::fclose(file_);
}

bool obj_auto_runner::reopen(const char* mode) {
    if (file_)
        std::fclose(file_);
    std::string why;
    file_ = open_file(output_csv_filename_, mode, why);
    if (!file_) {
        log_error("Failed to open file for writing.");
        log_error("Output \"" + output_csv_filename_ + "\" cannot be opened: " + why + ".");
    }
    return file_ != nullptr;
}

bool obj_auto_runner::initialize(const AutoRunConfigs& configs,
                                 const std::string& output_csv_filename, Rng& rng,
                                 std::function<void(bool)> callback, AutoRunOptions options) {
    output_csv_filename_ = output_csv_filename;
    callback_ = std::move(callback);
    params = auto_run_build_run_list(configs, sim_.configs, rng);
    options_ = std::move(options);
    range_ = options_.range
                 ? *options_.range
                 : auto_run_shard_range(params.size(), options_.shard_k, options_.shard_n);
    range_.last = std::min(range_.last, params.size());
    range_.first = std::min(range_.first, range_.last);
    current_param_index = std::min(range_.first + options_.already_done, range_.last);
    running = false;
    const bool resuming = options_.already_done > 0;
    if (!reopen(resuming ? "ab" : "wb"))
        return false;
    return resuming || write_line(trial_data_as_csv_headers());
}

bool obj_auto_runner::write_line(const std::string& line) {
    const std::string error = write_all_and_flush(file_, line);
    if (!error.empty())
        log_error("Failed to write \"" + output_csv_filename_ + "\": " + error + ".");
    return error.empty();
}

void obj_auto_runner::finish(bool completed) {
    if (finished_)
        return;
    finished_ = true;
    if (file_) {
        std::fclose(file_);
        file_ = nullptr;
    }
    if (callback_)
        callback_(completed);
}

void obj_auto_runner::on_step() {
    if (running || finished_)
        return;
    if (current_param_index >= range_.last) {
        finish(true);
        return;
    }
    if (options_.should_stop && options_.should_stop()) {
        finish(false);
        return;
    }
    // Every line written so far is on disk before the next trial starts.
    if (!reopen("ab")) {
        finish(false);
        return;
    }
    gc_collect();
    running = true;
    const AutoRunParams& run = params[current_param_index];
    auto_run_trial(sim_, run.filename, static_cast<std::int64_t>(current_param_index), run.traits,
                   run.seed, total_score)
        .and_then([this](const TrialData& record) {
            total_score += record.result.trial_score;
            // A line that did not reach the disk ends the batch: going on would leave a gap.
            if (!write_line(trial_data_as_csv(record))) {
                finish(false);
                return;
            }
            running = false;
            ++current_param_index;
            if (options_.on_progress)
                options_.on_progress(current_param_index - range_.first,
                                     range_.last - range_.first);
        })
        .and_catch([this](const Value& reason) {
            runtime().services().dialogs->show_message(to_string(reason));
            log_error("Auto run #" + std::to_string(current_param_index) +
                      " failed: " + to_string(reason));
            finish(false);
        });
}

void obj_auto_runner::on_clean_up() {
    if (file_) {
        std::fclose(file_);
        file_ = nullptr;
    }
}

std::optional<AutoRunConfigs> auto_run_read_and_check(SimulationState& sim,
                                                      const std::string& configs_filename) {
    auto configs = read_auto_run_configs(sim.files, configs_filename, sim.configs);
    if (!configs)
        return std::nullopt;
    for (const std::string& level : configs->levels)
        if (!auto_run_level(sim, level))
            return std::nullopt;
    return configs;
}

Promise<bool> auto_run_trials(SimulationState& sim, const std::string& configs_filename,
                              const std::string& output_csv_filename, Rng& rng, double seed,
                              AutoRunOptions options) {
    auto configs = auto_run_read_and_check(sim, configs_filename);
    if (!configs)
        return promise_reject<bool>(Value());  // each failure is logged already
    log("Starting auto runs of one or more trials...");
    log("Auto run configurations: \"" + configs_filename + "\"");
    log("Auto run output file: \"" + output_csv_filename + "\"");
    log("Auto run seed: \"" + number_to_string(seed) + "\"");
    auto& runner = sim.runtime.instance_create<obj_auto_runner>(0, 0, "Instances", sim);
    runner.persistent = true;
    // The callback is set once the promise exists; the runner calls it from a later step.
    auto resolve_slot = std::make_shared<Resolve<bool>>();
    auto done = [resolve_slot](bool completed) {
        if (completed)
            log("Auto runs completed.");
        (*resolve_slot)(completed);
    };
    if (!runner.initialize(*configs, output_csv_filename, rng, done, std::move(options))) {
        sim.runtime.instance_destroy(runner.id());
        return promise_resolve(false);  // not completed; the reason is logged already
    }
    return Promise<bool>(
        [resolve_slot](const Resolve<bool>& resolve, const Reject&) { *resolve_slot = resolve; });
}

Promise<TrialData> auto_run_trial(SimulationState& sim, const std::string& level_filename,
                                  std::int64_t play_order, const PersonalityTraits& traits,
                                  double seed, double total_score_before_this_trial) {
    if (obj_trial* previous = sim.current_trial())
        sim.runtime.instance_destroy(previous->id());
    log("Starting auto run #" + std::to_string(play_order));
    Runtime& runtime = sim.runtime;
    return room_goto_or_restart(runtime, runtime.room_find("rm_game")).and_then([=, &sim]() {
        const Level* level = auto_run_level(sim, level_filename);
        if (!level)
            return promise_reject<TrialData>(
                Value("Failed to read level \"" + level_filename + "\"."));
        auto& trial = sim.runtime.instance_create<obj_trial>(0, 0, "Instances", sim);
        sim.trial.trial = trial.id();
        trial.initialize(*level, seed, true, sim.configs->game_speed,
                         total_score_before_this_trial);
        TrialData data;
        data.config_version = sim.configs->configuration_version;
        data.game_version = BUILD_VERSION;
        data.seed = seed;
        data.level_info =
            trial_level_info_from_level(sim.cell_types, *level, level_filename, play_order);
        data.traits = traits;
        data.result = std::get<TrialResult>(trial.start(traits));
        return promise_resolve(std::move(data));
    });
}

}  // namespace veldra

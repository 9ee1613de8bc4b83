#pragma once
// Unattended research batches: every level of an auto-run file against every combination of
// the configuration's trait values, each trial appended to a CSV file as soon as it ends. The
// runner is one persistent entity that starts one run per free step; each run goes to the game
// room afresh, so nothing of a trial outlives it.

#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "async/promise.h"
#include "runtime/instance.h"
#include "trials/auto_run_plan.h"
#include "trials/trial_data.h"
#include "world/level.h"

namespace veldra {

struct AutoRunOptions {
    std::size_t shard_k = 1;  // this process plays the K-th of N contiguous parts of the list
    std::size_t shard_n = 1;
    std::optional<RunRange> range;  // an explicit part of the list instead (parallel workers)
    std::size_t already_done =
        0;  // runs of that part already in the file (resuming): appended after
    std::function<void(std::size_t done, std::size_t total)> on_progress;
    std::function<bool()> should_stop;  // asked before each run: an interrupted batch ends cleanly
};

struct SimulationState;

class obj_auto_runner : public Instance {
    VELDRA_OBJECT(obj_auto_runner, Instance)
public:
    explicit obj_auto_runner(SimulationState& sim) : sim_(sim) {}
    ~obj_auto_runner() override;
    void on_step() override;
    void on_clean_up() override;

    // Builds the run list and opens the output (writing the header unless resuming). False when
    // the output cannot be opened ("Failed to open file for writing." is logged, then the path
    // and the system's reason) or written.
    bool initialize(const AutoRunConfigs& configs, const std::string& output_csv_filename, Rng& rng,
                    std::function<void(bool completed)> callback, AutoRunOptions options = {});

    std::vector<AutoRunParams> params;
    std::size_t current_param_index = 0;
    bool running = false;
    double total_score = 0;

private:
    SimulationState& sim_;

    bool reopen(const char* mode);
    bool write_line(const std::string& line);
    void finish(bool completed);

    std::string output_csv_filename_;
    std::FILE* file_ = nullptr;
    std::function<void(bool)> callback_;
    AutoRunOptions options_;
    RunRange range_;
    bool finished_ = false;
};

// Reads the auto-run file, checks every level can be read, logs the start lines and runs the
// batch. Fulfilled with true when every run is done, with false when stopped early or when
// the output cannot be written; rejected when the file or a level is unusable.
Promise<bool> auto_run_trials(SimulationState& sim, const std::string& configs_filename,
                              const std::string& output_csv_filename, Rng& rng, double seed,
                              AutoRunOptions options = {});

// Reads the auto-run file and every level it names (each failure logged). The check
// auto_run_trials makes first; a shell run makes it before anything starts.
std::optional<AutoRunConfigs> auto_run_read_and_check(SimulationState& sim,
                                                      const std::string& configs_filename);

// One automatic trial; fulfilled with its record.
Promise<TrialData> auto_run_trial(SimulationState& sim, const std::string& level_filename,
                                  std::int64_t play_order, const PersonalityTraits& traits,
                                  double seed, double total_score_before_this_trial);

}  // namespace veldra

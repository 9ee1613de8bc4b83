#pragma once
// The run list of an auto run: every level of the auto-run file, with every combination of the
// trait values the configuration offers, a given number of times each. Seeds are drawn in list
// order, so one seed reproduces the whole list, and any contiguous part of it can run anywhere.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "config/personality_traits.h"
#include "util/rng.h"

namespace veldra {

struct ConfigsState;
class Files;

// The most runs one auto run may list. Each run is held in memory with its seed before the first
// trial starts, so a slip of the keyboard (1e9 runs per permutation) must not take the machine
// down; a larger study splits into several auto-run files or seeds.
inline constexpr std::size_t MAX_AUTO_RUN_RUNS = 10'000'000;

struct AutoRunConfigs {
    std::vector<std::string> levels;  // as written in the file
    double num_runs_per_permutation = 0;
};

struct AutoRunParams {
    PersonalityTraits traits;
    std::string filename;  // as written in the auto-run file
    double seed = 0;
};

// Reads the auto-run file; on failure logs "Failed to read auto-run configurations." and a line
// naming the file and the problem (the line and column of a JSON error, a run list longer than
// MAX_AUTO_RUN_RUNS with the configuration's trait options).
std::optional<AutoRunConfigs> read_auto_run_configs(Files& files, const std::string& path,
                                                    const ConfigsState& game);

// How many runs the list of `configs` holds with the configuration's trait options; saturates
// instead of overflowing, so anything above MAX_AUTO_RUN_RUNS compares as too many.
std::size_t auto_run_count_runs(const AutoRunConfigs& configs, const ConfigsState& game);

// Levels, then trait combinations (openness outermost), then repetitions; one seed per run,
// rng_irandom(2^32), in that order.
std::vector<AutoRunParams> auto_run_build_run_list(const AutoRunConfigs& configs,
                                                   const ConfigsState& game, Rng& rng);

// The K-th (1-based) of N contiguous, nearly equal ranges of `count` runs: [first, last).
struct RunRange {
    std::size_t first = 0;
    std::size_t last = 0;

    bool operator==(const RunRange&) const = default;
};
RunRange auto_run_shard_range(std::size_t count, std::size_t k, std::size_t n);

// Contiguous chunks covering [0, count) in order, for `jobs` processes that each take the next
// chunk when they finish one: every chunk a fixed share of the runs still left, so the first are
// long (few processes to start) and the last short (the jobs finish close together), but none
// shorter than a 64th of a job's share. One empty chunk when count is 0.
std::vector<RunRange> auto_run_guided_chunks(std::size_t count, std::size_t jobs);

// "K/N" with 1 <= K <= N; nullopt otherwise.
std::optional<std::pair<std::size_t, std::size_t>> parse_shard(const std::string& text);

}  // namespace veldra

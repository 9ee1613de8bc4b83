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
// naming the file and the problem.
std::optional<AutoRunConfigs> read_auto_run_configs(const std::string& path);

// Levels, then trait combinations (openness outermost), then repetitions; one seed per run,
// rng_irandom(2^32), in that order.
std::vector<AutoRunParams> auto_run_build_run_list(const AutoRunConfigs& configs, Rng& rng);

// The K-th (1-based) of N contiguous, nearly equal ranges of `count` runs: [first, last).
struct RunRange {
    std::size_t first = 0;
    std::size_t last = 0;
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

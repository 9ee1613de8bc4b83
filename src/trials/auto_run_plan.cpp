#include "trials/auto_run_plan.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "config/game_configurations.h"
#include "config/json_comments.h"
#include "creatures/personality_sources.h"
#include "runtime/files.h"
#include "runtime/log.h"
#include "serial/json.h"
#include "util/text.h"

namespace veldra {

namespace {

std::optional<AutoRunConfigs> fail(const std::string& path, const std::string& problem) {
    log_error("Failed to read auto-run configurations.");
    log_error("Auto-run file \"" + path + "\": " + problem);
    return std::nullopt;
}

std::vector<double> option_values(const ConfigsState& game, const char* key) {
    std::vector<double> values;
    const Value options = game.value(key);
    if (!options.is_array())
        return values;  // no configuration loaded: no combinations
    for (std::size_t i = 0; i < options.size(); ++i)
        if (options.at(i).is_number())
            values.push_back(options.at(i).as_number());
    return values;
}

std::size_t saturating_multiply(std::size_t a, std::size_t b) {
    if (a != 0 && b > std::numeric_limits<std::size_t>::max() / a)
        return std::numeric_limits<std::size_t>::max();
    return a * b;
}

}  // namespace

std::size_t auto_run_count_runs(const AutoRunConfigs& configs, const ConfigsState& game) {
    std::size_t combinations = 1;
    for (const char* key : {"options_openness", "options_conscientiousness", "options_extraversion",
                            "options_agreeableness", "options_neuroticism"})
        combinations = saturating_multiply(combinations, option_values(game, key).size());
    const std::size_t per_level = saturating_multiply(
        combinations, static_cast<std::size_t>(configs.num_runs_per_permutation));
    return saturating_multiply(per_level, configs.levels.size());
}

std::optional<AutoRunConfigs> read_auto_run_configs(Files& files, const std::string& path,
                                                    const ConfigsState& game) {
    const FileText text = files.read(path, MAX_AUTO_RUN_FILE_BYTES);
    if (!text)
        return fail(path, text.error + ".");
    const JsonDocument document = json_parse_document(_json_remove_comments(*text.text));
    if (!document)
        return fail(path, document.error + ".");
    const auto& root = document.json;
    if (!root.is_object())
        return fail(path, "the file must hold one JSON object.");
    AutoRunConfigs configs;
    auto levels = root.find("levels");
    if (levels == root.end() || !levels->is_array())
        return fail(path, "\"levels\" must be an array of level file names.");
    for (const auto& level : *levels) {
        if (!level.is_string())
            return fail(path, "\"levels\" must hold only file names (strings).");
        configs.levels.push_back(level.get<std::string>());
    }
    auto runs = root.find("num_runs_per_permutation");
    // Compared as a double first: a huge or fractional number must not reach an integer cast.
    const double most = static_cast<double>(MAX_AUTO_RUN_RUNS);
    if (runs == root.end() || !runs->is_number() || !(runs->get<double>() >= 0) ||
        runs->get<double>() > most || runs->get<double>() != std::floor(runs->get<double>()))
        return fail(path, "\"num_runs_per_permutation\" must be a whole number from 0 to " +
                              std::to_string(MAX_AUTO_RUN_RUNS) + ".");
    configs.num_runs_per_permutation = runs->get<double>();
    if (const std::size_t count = auto_run_count_runs(configs, game); count > MAX_AUTO_RUN_RUNS)
        return fail(path, "the run list would hold " +
                              (count == std::numeric_limits<std::size_t>::max()
                                   ? std::string("more than 2^64")
                                   : std::to_string(count)) +
                              " runs (levels x trait combinations x num_runs_per_permutation); "
                              "at most " +
                              std::to_string(MAX_AUTO_RUN_RUNS) + " fit in one auto run.");
    return configs;
}

std::vector<AutoRunParams> auto_run_build_run_list(const AutoRunConfigs& configs,
                                                   const ConfigsState& game, Rng& rng) {
    const auto combinations = personality_traits_make_all_permutations(
        option_values(game, "options_openness"), option_values(game, "options_conscientiousness"),
        option_values(game, "options_extraversion"), option_values(game, "options_agreeableness"),
        option_values(game, "options_neuroticism"));
    std::vector<AutoRunParams> runs;
    runs.reserve(configs.levels.size() * combinations.size() *
                 static_cast<std::size_t>(configs.num_runs_per_permutation));
    for (const std::string& level : configs.levels)
        for (const PersonalityTraits& traits : combinations)
            for (double i = 0; i < configs.num_runs_per_permutation; ++i)
                runs.push_back({traits, level, static_cast<double>(rng.rng_irandom(4294967296.0))});
    return runs;
}

RunRange auto_run_shard_range(std::size_t count, std::size_t k, std::size_t n) {
    return {count * (k - 1) / n, count * k / n};
}

std::vector<RunRange> auto_run_guided_chunks(std::size_t count, std::size_t jobs) {
    jobs = std::max<std::size_t>(jobs, 1);
    const std::size_t shortest = std::max<std::size_t>(1, count / (jobs * 64));
    std::vector<RunRange> chunks;
    std::size_t first = 0;
    do {
        const std::size_t left = count - first;
        const std::size_t size = std::min(left, std::max(shortest, left / (2 * jobs)));
        chunks.push_back({first, first + size});
        first += size;
    } while (first < count);
    return chunks;
}

std::optional<std::pair<std::size_t, std::size_t>> parse_shard(const std::string& text) {
    const auto parts = string_split(text, '/');
    if (parts.size() != 2)
        return std::nullopt;
    // Bounded so that the shard arithmetic (count * k) cannot overflow.
    const auto n = try_string_to_whole_number(parts[1], 1, MAX_AUTO_RUN_RUNS);
    const auto k = n ? try_string_to_whole_number(parts[0], 1, *n) : std::nullopt;
    if (!k)
        return std::nullopt;
    return std::pair{static_cast<std::size_t>(*k), static_cast<std::size_t>(*n)};
}

}  // namespace veldra

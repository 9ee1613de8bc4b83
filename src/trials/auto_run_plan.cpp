#include "trials/auto_run_plan.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "config/game_configurations.h"
#include "config/json_comments.h"
#include "creatures/personality_traits.h"
#include "runtime/log.h"
#include "util/text.h"

namespace veldra {

namespace {

std::optional<AutoRunConfigs> fail(const std::string& path, const std::string& problem) {
    log_error("Failed to read auto-run configurations.");
    log_error("Auto-run file \"" + path + "\": " + problem);
    return std::nullopt;
}

std::vector<double> option_values(const char* key) {
    std::vector<double> values;
    const Value options = config_value(key);
    for (std::size_t i = 0; i < options.size(); ++i)
        if (options.at(i).is_number())
            values.push_back(options.at(i).as_number());
    return values;
}

}  // namespace

std::optional<AutoRunConfigs> read_auto_run_configs(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return fail(path, "the file cannot be opened.");
    std::stringstream text;
    text << in.rdbuf();
    const auto root = nlohmann::json::parse(_json_remove_comments(text.str()), nullptr,
                                            /*allow_exceptions=*/false);
    if (root.is_discarded())
        return fail(path, "not valid JSON.");
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
    if (runs == root.end() || !runs->is_number() || runs->get<double>() < 0 ||
        runs->get<double>() != std::floor(runs->get<double>()))
        return fail(path, "\"num_runs_per_permutation\" must be a whole number of at least 0.");
    configs.num_runs_per_permutation = runs->get<double>();
    return configs;
}

std::vector<AutoRunParams> auto_run_build_run_list(const AutoRunConfigs& configs, Rng& rng) {
    const auto combinations = personality_traits_make_all_permutations(
        option_values("options_openness"), option_values("options_conscientiousness"),
        option_values("options_extraversion"), option_values("options_agreeableness"),
        option_values("options_neuroticism"));
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
    const auto k = try_string_to_real(parts[0]);
    const auto n = try_string_to_real(parts[1]);
    if (!k || !n || *k != std::floor(*k) || *n != std::floor(*n) || *k < 1 || *n < 1 || *k > *n)
        return std::nullopt;
    return std::pair{static_cast<std::size_t>(*k), static_cast<std::size_t>(*n)};
}

}  // namespace veldra

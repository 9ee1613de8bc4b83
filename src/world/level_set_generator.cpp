#include "world/level_set_generator.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "runtime/files.h"
#include "runtime/log.h"
#include "runtime/utf8_path.h"
#include "serial/json.h"
#include "util/rng.h"
#include "world/level_file.h"
#include "world/level_generator.h"

namespace veldra {

namespace {

constexpr int MAX_LEVEL_COUNT = 99999;
constexpr int MAX_AMOUNT = 1000000;

struct LevelSetRequest {
    int width = 0;
    int height = 0;
    int count = 0;
    std::vector<int> monster_amounts;
    std::vector<int> food_amounts;
    std::vector<int> human_amounts;
    std::vector<int> sand_amounts;
    std::optional<double> seed;
};

// Collects the first problem of a file; later checks are skipped once one is found.
class RequestReader {
public:
    RequestReader(const nlohmann::json& root, const std::string& path) : root_(root), path_(path) {}

    const std::optional<std::string>& problem() const { return problem_; }

    int whole_number(const char* key, int low, int high) {
        const double value = number(key).value_or(low);
        if (!problem_ && (value != std::floor(value) || value < low || value > high)) {
            fail(fmt::format("\"{}\" must be a whole number from {} to {}.", key, low, high));
            return low;  // never cast a number beyond the range of int
        }
        return static_cast<int>(value);
    }

    std::vector<int> amounts(const char* key) {
        std::vector<int> values;
        if (problem_)
            return values;
        const auto found = root_.find(key);
        const auto is_amount = [](const nlohmann::json& item) {
            if (!item.is_number())
                return false;
            const double value = item.get<double>();
            return value >= 0 && value <= MAX_AMOUNT && value == std::floor(value);
        };
        if (found == root_.end() || !found->is_array() || found->empty() ||
            !std::all_of(found->begin(), found->end(), is_amount)) {
            fail(fmt::format("\"{}\" must be a non-empty array of whole numbers from 0 to {}.", key,
                             MAX_AMOUNT));
            return values;
        }
        for (const auto& item : *found)
            values.push_back(static_cast<int>(item.get<double>()));
        return values;
    }

    std::optional<double> optional_seed() {
        if (problem_ || !root_.contains("seed"))
            return std::nullopt;
        const auto value = number("seed");
        if (value && !(*value >= 0 && *value <= 9007199254740992.0 && *value == std::floor(*value)))
            fail("\"seed\" must be a whole number from 0 to 9007199254740992.");
        return value;
    }

    void fail(const std::string& message) {
        if (!problem_)
            problem_ = fmt::format("Generator file \"{}\": {}", path_, message);
    }

private:
    std::optional<double> number(const char* key) {
        if (problem_)
            return std::nullopt;
        const auto found = root_.find(key);
        if (found == root_.end() || !found->is_number()) {
            fail(fmt::format("\"{}\" must be a number.", key));
            return std::nullopt;
        }
        return found->get<double>();
    }

    const nlohmann::json& root_;
    const std::string& path_;
    std::optional<std::string> problem_;
};

void report_bad_file(const std::string& detail) {
    log_error("Failed to read generator configurations.");
    log_error(detail);
}

std::optional<nlohmann::json> read_json(Files& files, const std::string& path) {
    const FileText text = files.read(path, MAX_LEVEL_GENERATOR_FILE_BYTES);
    if (!text) {
        report_bad_file(fmt::format("Generator file \"{}\" {}.", path, text.error));
        return std::nullopt;
    }
    const JsonDocument document = json_parse_document(*text.text, /*ignore_comments=*/true);
    if (!document) {
        report_bad_file(
            fmt::format("Generator file \"{}\" is not valid JSON: {}.", path, document.error));
        return std::nullopt;
    }
    if (!document.json.is_object()) {
        report_bad_file(fmt::format("Generator file \"{}\" must hold a JSON object.", path));
        return std::nullopt;
    }
    // The readers below take plain json; the document keeps file order, which they do not need.
    return nlohmann::json(document.json);
}

std::optional<LevelSetRequest> read_request(Files& files, const std::string& path) {
    const std::optional<nlohmann::json> root = read_json(files, path);
    if (!root)
        return std::nullopt;
    RequestReader reader(*root, path);
    LevelSetRequest request;
    request.width = reader.whole_number("width", 3, MAX_GENERATED_LEVEL_SIDE);
    request.height = reader.whole_number("height", 3, MAX_GENERATED_LEVEL_SIDE);
    request.count = reader.whole_number("count", 1, MAX_LEVEL_COUNT);
    request.monster_amounts = reader.amounts("monster_amounts");
    request.food_amounts = reader.amounts("food_amounts");
    request.human_amounts = reader.amounts("human_amounts");
    request.sand_amounts = reader.amounts("sand_amounts");
    request.seed = reader.optional_seed();
    if (reader.problem()) {
        report_bad_file(*reader.problem());
        return std::nullopt;
    }
    return request;
}

bool write_levels(Files& files, const LevelCellTypeTable& types, const LevelSetRequest& request,
                  const std::string& output_dir, double seed) {
    Rng rng(seed);
    for (int number = 1; number <= request.count; ++number) {
        const int monsters = rng.rng_array_get_random(request.monster_amounts);
        const int food = rng.rng_array_get_random(request.food_amounts);
        const int humans = rng.rng_array_get_random(request.human_amounts);
        const int sand = rng.rng_array_get_random(request.sand_amounts);
        const std::optional<Level> level =
            generate_level(types, request.width, request.height, monsters, food, humans, sand, rng);
        if (!level) {
            log_error(fmt::format(
                "Failed to generate level {} of {}: no playable {} x {} level in {} attempts.",
                number, request.count, request.width, request.height,
                LEVEL_GENERATOR_MAX_ATTEMPTS));
            return false;
        }
        if (!level_write_to_file(
                files, *level,
                path_utf8(utf8_path(output_dir) / fmt::format("level_{:03}.txt", number)))) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool generate_level_set(Files& files, const LevelCellTypeTable& types, const std::string& json_path,
                        const std::string& output_dir, std::optional<double> seed_override) {
    const std::optional<LevelSetRequest> request = read_request(files, json_path);
    if (!request)
        return false;
    const std::optional<double> seed = seed_override ? seed_override : request->seed;
    if (!seed) {
        report_bad_file(fmt::format(
            "Generator file \"{}\": \"seed\" must be given in the file or on the command line.",
            json_path));
        return false;
    }
    if (const std::string problem = files.create_directories(output_dir); !problem.empty()) {
        log_error(
            fmt::format("Failed to create the output directory \"{}\": {}.", output_dir, problem));
        return false;
    }
    if (!write_levels(files, types, *request, output_dir, *seed))
        return false;
    log(fmt::format("Generated {} levels into \"{}\".", request->count, output_dir));
    return true;
}

}  // namespace veldra

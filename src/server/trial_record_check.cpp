#include "server/trial_record_check.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "serial/json.h"
#include "trials/trial_data.h"
#include "util/text.h"

namespace veldra {

namespace {

using Json = nlohmann::json;

// The field at a path such as "level_info.filename", or nullptr.
const Json* field_at(const Json& record, const std::string& path) {
    const Json* current = &record;
    for (const std::string& part : string_split(path, '.')) {
        if (!current->is_object())
            return nullptr;
        const auto found = current->find(part);
        if (found == current->end())
            return nullptr;
        current = &*found;
    }
    return current;
}

TrialRecordCheck refused(std::string problem) {
    return TrialRecordCheck{.record = std::nullopt, .malformed_json = false, .problem = problem};
}

// The first field of the record's CSV form that is missing or not a single value.
std::string first_missing_field(const Json& record) {
    for (const std::string& path : trial_data_get_flattened_names()) {
        const Json* field = field_at(record, path);
        if (!field || field->is_null() || field->is_structured())
            return path;
    }
    return {};
}

// The server never opens a level file, but a researcher's script may join the name to a folder:
// a name that climbs out of it ("../") or hides a line break is not a level of the game.
bool is_plain_level_name(const std::string& name) {
    for (const char c : name)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f)
            return false;
    std::size_t start = 0;
    while (start <= name.size()) {
        const std::size_t end = std::min(name.find_first_of("/\\", start), name.size());
        if (name.compare(start, end - start, "..") == 0)
            return false;
        start = end + 1;
    }
    return true;
}

}  // namespace

TrialRecordCheck check_trial_record(std::string_view body) {
    const JsonDocument document = json_parse_document(body);
    if (!document)
        return TrialRecordCheck{.record = std::nullopt,
                                .malformed_json = true,
                                .problem = "malformed JSON: " + document.error};
    // Read again as nlohmann::json, whose objects keep their keys sorted: the canonical form.
    // It cannot fail where the reader above succeeded.
    const Json record = Json::parse(body);
    if (!record.is_object())
        return refused("the body is not a trial record (a JSON object)");
    if (const std::string missing = first_missing_field(record); !missing.empty())
        return refused("the record has no value for \"" + missing + "\"");

    const Json& user_id = record.at("user_id");
    const Json& level_file = record.at("level_info").at("filename");
    const Json& seed = record.at("seed");
    const Json& trial_score = record.at("result").at("trial_score");
    if (!user_id.is_string() || user_id.get_ref<const std::string&>().empty())
        return refused("\"user_id\" must be a non-empty text");
    if (!level_file.is_string())
        return refused("\"level_info.filename\" must be a text");
    if (!is_plain_level_name(level_file.get_ref<const std::string&>()))
        return refused("\"level_info.filename\" must not hold \"..\" or control characters");
    if (!seed.is_number())
        return refused("\"seed\" must be a number");
    if (!trial_score.is_number())
        return refused("\"result.trial_score\" must be a number");

    CheckedTrialRecord checked{
        .key = TrialKey{.user_id = user_id.get<std::string>(),
                        .level_file = level_file.get<std::string>(),
                        .seed = seed.get<double>()},
        .trial_score = trial_score.get<double>(),
        .canonical_json = record.dump(-1, ' ', false, Json::error_handler_t::replace),
    };
    return TrialRecordCheck{.record = std::move(checked), .malformed_json = false, .problem = {}};
}

}  // namespace veldra

#include "trials/trial_data.h"

#include <algorithm>
#include <cctype>

#include "serial/csv.h"
#include "util/text.h"

namespace veldra {

namespace {

Value level_info_to_value(const TrialLevelInfo& info) {
    Value v = Value::make_struct();
    v.set("filename", info.filename);
    v.set("play_order", info.play_order);
    v.set("num_monsters", info.num_monsters);
    v.set("num_food", info.num_food);
    v.set("num_humans", info.num_humans);
    v.set("num_humans_h", info.num_humans_h);
    for (std::size_t i = 0; i < info.num_humans_per_type.size(); ++i)
        v.set("num_humans_" + std::to_string(i), info.num_humans_per_type[i]);
    v.set("num_sand", info.num_sand);
    return v;
}

const char* trial_outcome_text(TrialOutcome outcome) {
    return outcome == TrialOutcome::perished ? "perished" : "survived";
}

Value traits_to_value(const PersonalityTraits& traits) {
    Value v = Value::make_struct();
    v.set("openness", traits.openness);
    v.set("conscientiousness", traits.conscientiousness);
    v.set("extraversion", traits.extraversion);
    v.set("agreeableness", traits.agreeableness);
    v.set("neuroticism", traits.neuroticism);
    return v;
}

// The leaf field paths of any struct, joined by ".".
void _struct_get_names_recursively(const Value& structure, const std::string& prefix,
                                   std::vector<std::string>& out_names) {
    for (const auto& field : structure.fields()) {
        if (field.value.is_struct())
            _struct_get_names_recursively(field.value, prefix + field.name + ".", out_names);
        else
            out_names.push_back(prefix + field.name);
    }
}

Value _struct_get_value_recursively(const Value& structure, std::string_view path) {
    Value current = structure;
    for (const std::string& part : string_split(path, '.'))
        current = current.get(part);
    return current;
}

}  // namespace

Value trial_result_to_value(const TrialResult& r) {
    Value v = Value::make_struct();
    v.set("type", trial_outcome_text(r.outcome));
    v.set("time_left", r.time_left);
    v.set("num_monsters_remaining", r.num_monsters_remaining);
    v.set("num_food_remaining", r.num_food_remaining);
    v.set("num_humans_remaining", r.num_humans_remaining);
    v.set("energy_remaining", r.energy_remaining);
    v.set("trial_score", r.trial_score);
    return v;
}

Value trial_data_to_value(const TrialData& data) {
    Value v = Value::make_struct();
    v.set("user_id", data.user_id ? Value(*data.user_id) : Value());
    v.set("config_version", data.config_version);
    v.set("game_version", data.game_version);
    v.set("seed", data.seed);
    v.set("level_info", level_info_to_value(data.level_info));
    v.set("traits", traits_to_value(data.traits));
    v.set("result", trial_result_to_value(data.result));
    return v;
}

const std::vector<std::string>& trial_data_get_flattened_names() {
    // The column set follows the record's fields, never a particular record's values.
    static const std::vector<std::string> names = [] {
        TrialData sample;
        std::vector<std::string> out;
        _struct_get_names_recursively(trial_data_to_value(sample), "", out);
        std::sort(out.begin(), out.end());
        return out;
    }();
    return names;
}

std::string trial_data_as_csv_headers() {
    const auto& names = trial_data_get_flattened_names();
    return csv_from_rows({std::vector<Value>(names.begin(), names.end())});
}

std::string trial_data_as_csv(const TrialData& data) {
    return trial_data_value_as_csv(trial_data_to_value(data));
}

std::string trial_data_value_as_csv(const Value& record) {
    std::vector<Value> row;
    row.reserve(trial_data_get_flattened_names().size());
    for (const std::string& name : trial_data_get_flattened_names())
        row.push_back(_struct_get_value_recursively(record, name));
    return csv_from_rows({row});
}

std::string _snake_to_camel_case(std::string_view text) {
    const auto parts = string_split(text, '_');
    std::string out = parts.front();
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (parts[i].empty())
            continue;
        out.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(parts[i][0]))));
        out.append(parts[i], 1);
    }
    return out;
}

}  // namespace veldra

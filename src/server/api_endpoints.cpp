#include "server/api_endpoints.h"

#include <set>

#include <nlohmann/json.hpp>

#include "server/trial_record_check.h"
#include "trials/trial_data.h"
#include "util/text.h"

namespace veldra {

namespace {

using Json = nlohmann::json;

std::string dump(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

ApiAnswer unknown_user(const std::string& user_id) {
    return error_answer(404, "unknown user id \"" + user_id + "\"");
}

// The record's top-level fields (user_id, seed, level_info, ...), from its CSV columns.
const std::set<std::string>& top_level_fields() {
    static const std::set<std::string> fields = [] {
        std::set<std::string> out;
        for (const std::string& path : trial_data_get_flattened_names())
            out.insert(path.substr(0, path.find('.')));
        return out;
    }();
    return fields;
}

}  // namespace

ApiAnswer answer_connection_test() {
    return text_answer(200, "ok");
}

ApiAnswer answer_trial_submit(TrialStore& store, std::string_view body) {
    const TrialRecordCheck check = check_trial_record(body);
    if (!check.record)
        return error_answer(check.malformed_json ? 400 : 422, check.problem);
    const CheckedTrialRecord& record = *check.record;
    if (!store.user_exists(record.key.user_id))
        return error_answer(403, "unknown user id \"" + record.key.user_id + "\"");
    switch (store.store_trial(record.key, record.trial_score, record.canonical_json)) {
        case StoreOutcome::stored:
            return json_answer(201, R"({"status":"stored"})");
        case StoreOutcome::already_stored:
            return json_answer(200, R"({"status":"already stored"})");
        case StoreOutcome::conflict:
            break;
    }
    return error_answer(409,
                        "a different record of this user, level file and seed is stored; "
                        "it is kept");
}

ApiAnswer answer_levels_per_user(TrialStore& store, const std::string& user_id) {
    if (!store.user_exists(user_id))
        return unknown_user(user_id);
    return json_answer(200, dump(Json(store.levels_of_user(user_id))));
}

ApiAnswer answer_trials_per_user(TrialStore& store, const std::string& user_id,
                                 const std::optional<std::string>& fields) {
    std::vector<std::string> wanted;
    if (fields) {
        for (const std::string& name : string_split(*fields, ',')) {
            if (name.empty())
                continue;
            if (!top_level_fields().contains(name))
                return error_answer(400, "unknown field \"" + name + "\"");
            wanted.push_back(name);
        }
    }
    if (!store.user_exists(user_id))
        return unknown_user(user_id);
    Json out = Json::array();
    for (const std::string& text : store.records_of_user(user_id)) {
        Json record = Json::parse(text);
        if (!wanted.empty()) {
            Json picked = Json::object();
            for (const std::string& name : wanted)
                picked[name] = record[name];
            record = std::move(picked);
        }
        out.push_back(std::move(record));
    }
    return json_answer(200, dump(out));
}

ApiAnswer answer_total_score_per_user(TrialStore& store, const std::string& user_id) {
    if (!store.user_exists(user_id))
        return unknown_user(user_id);
    return json_answer(200, dump(Json{{"total_score", store.total_score_of_user(user_id)}}));
}

ApiAnswer answer_user_exists(TrialStore& store, const std::string& user_id) {
    return text_answer(200, store.user_exists(user_id) ? "1" : "0");
}

}  // namespace veldra

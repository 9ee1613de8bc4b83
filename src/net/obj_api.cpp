#include "net/obj_api.h"

#include "runtime/log.h"
#include "runtime/runtime.h"
#include "serial/base64.h"

namespace veldra {

namespace {

void warn_http_error(const HttpResponse& response) {
    log_warning("HTTP error: " + std::to_string(response.status));
    if (response.engine_status != HTTP_COMPLETED)
        log_warning("No answer from " + response.url + ": " + response.error);
}

// The parsed body of a 2xx answer; nullopt, with the warning, for anything else.
std::optional<Value> ok_json(const HttpResponse& response) {
    if (!response.is_ok()) {
        warn_http_error(response);
        return std::nullopt;
    }
    std::optional<Value> body = response.json();
    if (!body)
        log_warning("The server's answer from " + response.url + " is not JSON.");
    return body;
}

std::string joined(const std::vector<std::string>& names, const char* separator) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : separator) + name;
    return text;
}

}  // namespace

void obj_api::on_create() {
    persistent = true;
    http = http_create(runtime()).id();
}

void obj_api::on_clean_up() {
    runtime().instance_destroy(http);
}

void obj_api::initialize(const std::string& base_url_, const std::string& username,
                         const std::string& password) {
    base_url = base_url_;
    api_base_url = base_url + "api/game";
    headers =
        headers_with({}, "Authorization", "Basic " + base64_encode(username + ":" + password));
}

obj_http& obj_api::http_instance() {
    // Made again if something destroyed it: the client must not stop answering.
    if (obj_http* existing = runtime().find_as<obj_http>(http))
        return *existing;
    obj_http& made = http_create(runtime());
    http = made.id();
    return made;
}

Promise<HttpResponse> obj_api::get(const std::string& url) {
    return http_instance().get(url, headers);
}

Promise<bool> obj_api::test_connection() {
    return get(base_url).and_then([](const HttpResponse& response) {
        if (response.engine_status != HTTP_COMPLETED)
            log_warning("No answer from " + response.url + ": " + response.error);
        return response.is_ok() && response.engine_status == HTTP_COMPLETED;
    });
}

Promise<bool> obj_api::trial_submit(const Value& trial_data) {
    return http_instance()
        .post_json(api_base_url + "/trials", trial_data, headers)
        .and_then([](const HttpResponse& response) {
            if (response.is_ok())
                return true;
            warn_http_error(response);
            return false;
        });
}

Promise<std::optional<std::vector<std::string>>> obj_api::user_get_submitted_levels(
    const std::string& user_id) {
    using Levels = std::optional<std::vector<std::string>>;
    return get(api_base_url + "/levelsPerUser/" + user_id)
        .and_then([](const HttpResponse& response) -> Levels {
            const std::optional<Value> body = ok_json(response);
            if (!body || !body->is_array())
                return std::nullopt;
            std::vector<std::string> levels;
            for (std::size_t i = 0; i < body->size(); ++i)
                if (body->at(i).is_string())
                    levels.push_back(body->at(i).as_string());
            return levels;
        });
}

Promise<std::optional<Value>> obj_api::user_get_submitted_trials(
    const std::string& user_id, const std::optional<std::vector<std::string>>& fields) {
    std::string url = api_base_url + "/trialsPerUser/" + user_id;
    if (fields)
        url += "?fields=" + joined(*fields, ",");
    return get(url).and_then([](const HttpResponse& response) -> std::optional<Value> {
        std::optional<Value> body = ok_json(response);
        if (body && !body->is_array())
            return std::nullopt;
        return body;
    });
}

Promise<std::optional<double>> obj_api::user_get_total_score(const std::string& user_id) {
    return get(api_base_url + "/totalScorePerUser/" + user_id)
        .and_then([](const HttpResponse& response) -> std::optional<double> {
            const std::optional<Value> body = ok_json(response);
            if (!body || !body->is_struct() || !body->get("total_score").is_number())
                return std::nullopt;
            return body->get("total_score").as_number();
        });
}

Promise<std::optional<bool>> obj_api::user_exists(const std::string& user_id) {
    return get(api_base_url + "/userExists/" + user_id)
        .and_then([](const HttpResponse& response) -> std::optional<bool> {
            if (!response.is_ok()) {
                warn_http_error(response);
                return std::nullopt;
            }
            return response.text() == "1";
        });
}

}  // namespace veldra

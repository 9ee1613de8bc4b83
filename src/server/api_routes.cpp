#include "server/api_routes.h"

#include <functional>
#include <string_view>

#include "server/api_endpoints.h"
#include "util/text.h"

namespace veldra {

namespace {

struct Route {
    std::string_view path;  // the whole path, or with a user id after it when per_user
    bool per_user;
    std::string_view method;
    std::function<ApiAnswer(const ApiRequest&, TrialStore&, const std::string& user_id)> answer;
};

const std::vector<Route>& routes() {
    static const std::vector<Route> table = {
        {"/", false, "GET",
         [](const ApiRequest&, TrialStore&, const std::string&) {
             return answer_connection_test();
         }},
        {"/api/game/trials", false, "POST",
         [](const ApiRequest& request, TrialStore& store, const std::string&) {
             return answer_trial_submit(store, request.body);
         }},
        {"/api/game/levelsPerUser/", true, "GET",
         [](const ApiRequest&, TrialStore& store, const std::string& user_id) {
             return answer_levels_per_user(store, user_id);
         }},
        {"/api/game/trialsPerUser/", true, "GET",
         [](const ApiRequest& request, TrialStore& store, const std::string& user_id) {
             return answer_trials_per_user(store, user_id, request.fields);
         }},
        {"/api/game/totalScorePerUser/", true, "GET",
         [](const ApiRequest&, TrialStore& store, const std::string& user_id) {
             return answer_total_score_per_user(store, user_id);
         }},
        {"/api/game/userExists/", true, "GET",
         [](const ApiRequest&, TrialStore& store, const std::string& user_id) {
             return answer_user_exists(store, user_id);
         }},
    };
    return table;
}

// The user id a per-user route's path carries: one non-empty path segment.
std::optional<std::string> matched_user_id(const Route& route, std::string_view path) {
    if (!route.per_user)
        return path == route.path ? std::optional<std::string>("") : std::nullopt;
    if (!string_starts_with(path, route.path))
        return std::nullopt;
    const std::string_view user_id = path.substr(route.path.size());
    if (user_id.empty() || user_id.find('/') != std::string_view::npos)
        return std::nullopt;
    return std::string(user_id);
}

}  // namespace

ApiAnswer answer_api_request(const ApiRequest& request, TrialStore& store,
                             const BasicCredentials& credentials) {
    if (!basic_auth_matches(request.authorization, credentials)) {
        ApiAnswer answer = error_answer(401, "missing or wrong credentials");
        answer.headers.emplace_back("WWW-Authenticate", R"(Basic realm="veldra", charset="UTF-8")");
        return answer;
    }
    std::string_view method = request.method;
    if (method == "HEAD")
        method = "GET";
    for (const Route& route : routes()) {
        const std::optional<std::string> user_id = matched_user_id(route, request.path);
        if (!user_id)
            continue;
        if (method != route.method) {
            ApiAnswer answer = error_answer(405, "use " + std::string(route.method) + " here");
            answer.headers.emplace_back("Allow", route.method == "GET" ? "GET, HEAD" : "POST");
            return answer;
        }
        if (route.per_user)
            store.note_heard_from(*user_id);
        return route.answer(request, store, *user_id);
    }
    return error_answer(404, "no such endpoint");
}

}  // namespace veldra

#include "server/admin_routes.h"

#include <random>

#include "server/admin_page_html.h"
#include "server/basic_auth.h"
#include "server/trial_export.h"
#include "util/text.h"

namespace veldra {

namespace {

// Enough for a glance at what is arriving; the CSV has the rest.
constexpr std::size_t LATEST_RECORDS = 20;

ApiAnswer html_answer(int status, std::string html) {
    return ApiAnswer{.status = status,
                     .content_type = "text/html; charset=utf-8",
                     .body = std::move(html),
                     .headers = {{"Cache-Control", "no-store"}}};
}

ApiAnswer refused(int status, const std::string& title, const std::string& text) {
    return html_answer(status, message_page_html(title, text));
}

ApiAnswer wrong_method(const char* allowed) {
    ApiAnswer answer = refused(405, "Wrong method", std::string("Use ") + allowed + " here.");
    answer.headers.emplace_back("Allow", allowed);
    return answer;
}

// A browser names the page a form came from in Origin; when it does, it must be this server.
bool same_origin(const AdminRequest& request) {
    if (request.origin.empty())
        return true;
    return request.origin == "http://" + request.host ||
           request.origin == "https://" + request.host;
}

ApiAnswer answer_overview(TrialStore& store, const AdminSettings& settings) {
    StudyOverview overview = store.study_overview(LATEST_RECORDS);
    count_study_progress(overview, settings.levels_to_finish);
    return html_answer(200, overview_page_html(overview));
}

ApiAnswer answer_csv_download(TrialStore& store) {
    ApiAnswer answer{.status = 200,
                     .content_type = "text/csv; charset=utf-8",
                     .body = trial_records_as_csv(store),
                     .headers = {{"Cache-Control", "no-store"}}};
    answer.headers.emplace_back("Content-Disposition", R"(attachment; filename="trials.csv")");
    return answer;
}

ApiAnswer answer_delete_confirmation(const AdminRequest& request, TrialStore& store,
                                     const AdminSettings& settings) {
    if (!store.user_exists(request.user))
        return refused(404, "No such participant", "\"" + request.user + "\" is not registered.");
    return html_answer(
        200, delete_confirmation_html(request.user, store.record_count_of_user(request.user),
                                      settings.form_token));
}

ApiAnswer answer_delete(const AdminRequest& request, TrialStore& store,
                        const AdminSettings& settings) {
    if (!same_origin(request) || !constant_time_equals(request.token, settings.form_token))
        return refused(403, "Not deleted",
                       "The request did not come from this server's confirmation page.");
    if (!store.user_exists(request.user))
        return refused(404, "No such participant", "\"" + request.user + "\" is not registered.");
    return html_answer(200,
                       deleted_page_html(request.user, store.delete_records_of_user(request.user)));
}

}  // namespace

bool is_admin_path(std::string_view path) {
    return path == "/admin" || string_starts_with(path, "/admin/");
}

std::string make_form_token() {
    std::random_device random;
    static constexpr char HEX[] = "0123456789abcdef";
    std::string token;
    while (token.size() < 32) {
        const unsigned bits = random();
        for (int shift = 0; shift < 32 && token.size() < 32; shift += 4)
            token += HEX[(bits >> shift) & 15];
    }
    return token;
}

ApiAnswer answer_admin_request(const AdminRequest& request, TrialStore& store,
                               const AdminSettings& settings) {
    const BasicCredentials account{.username = std::string(ADMIN_USER_NAME),
                                   .password = settings.password};
    if (!basic_auth_matches(request.authorization, account)) {
        ApiAnswer answer = refused(401, "Log in", "This page needs the administrator password.");
        answer.headers.emplace_back("WWW-Authenticate",
                                    R"(Basic realm="veldra researchers", charset="UTF-8")");
        return answer;
    }
    const bool get = request.method == "GET" || request.method == "HEAD";
    if (request.path == "/admin" || request.path == "/admin/")
        return get ? answer_overview(store, settings) : wrong_method("GET, HEAD");
    if (request.path == "/admin/trials.csv")
        return get ? answer_csv_download(store) : wrong_method("GET, HEAD");
    if (request.path == "/admin/delete") {
        if (get)
            return answer_delete_confirmation(request, store, settings);
        if (request.method == "POST")
            return answer_delete(request, store, settings);
        return wrong_method("GET, HEAD, POST");
    }
    return refused(404, "Not found", "There is no such page.");
}

}  // namespace veldra

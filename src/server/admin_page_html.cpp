#include "server/admin_page_html.h"

#include <cstdio>

namespace veldra {

namespace {

constexpr std::string_view STYLE = R"css(
body { font-family: sans-serif; margin: 1.5em 2em; color: #222; max-width: 80em; }
h1 { font-size: 1.4em; margin-bottom: 0.2em; }
h2 { font-size: 1.1em; margin-top: 1.6em; }
.counts { display: flex; gap: 1em; margin: 1em 0; }
.count { border: 1px solid #ccc; border-radius: 6px; padding: 0.5em 1em; min-width: 7em; }
.count b { display: block; font-size: 1.6em; }
table { border-collapse: collapse; font-size: 0.9em; }
th, td { border: 1px solid #ddd; padding: 0.25em 0.6em; text-align: left;
  white-space: nowrap; }
th { background: #f3f3f3; }
td.n { text-align: right; }
td.have { background: #d9f2d9; text-align: center; }
td.none { background: #fafafa; }
.note { color: #666; font-size: 0.9em; }
a.button, button { display: inline-block; background: #2b5d9b; color: #fff; border: 0;
  border-radius: 4px; padding: 0.5em 1em; text-decoration: none; font-size: 1em; cursor: pointer; }
button.danger { background: #b03030; }
)css";

std::string page(const std::string& title, const std::string& body) {
    return "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n<title>" +
           html_escape(title) +
           "</title>\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<style>" +
           std::string(STYLE) + "</style></head>\n<body>\n" + body + "</body></html>\n";
}

std::string number_text(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.15g", value);
    return text;
}

std::string count_box(const char* id, const char* label, std::size_t value) {
    return "<div class=\"count\"><b id=\"" + std::string(id) + "\">" + std::to_string(value) +
           "</b>" + label + "</div>";
}

std::string grid_html(const StudyOverview& overview) {
    std::string html = "<table id=\"grid\"><tr><th>Participant</th><th>Last heard from</th>";
    for (const std::string& level : overview.levels)
        html += "<th>" + html_escape(level) + "</th>";
    html += "<th></th></tr>\n";
    for (const ParticipantProgress& participant : overview.participants) {
        html += "<tr><td>" + html_escape(participant.user_id) + "</td><td>" +
                (participant.last_heard.empty() ? "never" : html_escape(participant.last_heard)) +
                "</td>";
        for (const std::int64_t records : participant.records)
            html += records > 0 ? "<td class=\"have\">" + std::to_string(records) + "</td>"
                                : std::string("<td class=\"none\"></td>");
        html += "<td><a href=\"/admin/delete?user=" +
                html_escape(url_query_escape(participant.user_id)) +
                "\">delete records&hellip;</a></td></tr>\n";
    }
    return html + "</table>\n";
}

std::string latest_html(const StudyOverview& overview) {
    if (overview.latest.empty())
        return "<p class=\"note\">No records yet.</p>\n";
    std::string html =
        "<table id=\"latest\"><tr><th>#</th><th>Received (UTC)</th><th>Participant</th>"
        "<th>Level</th><th>Seed</th><th>Trial score</th></tr>\n";
    for (const LatestRecord& record : overview.latest)
        html += "<tr><td class=\"n\">" + std::to_string(record.id) + "</td><td>" +
                html_escape(record.received_at) + "</td><td>" + html_escape(record.user_id) +
                "</td><td>" + html_escape(record.level_file) + "</td><td class=\"n\">" +
                number_text(record.seed) + "</td><td class=\"n\">" +
                number_text(record.trial_score) + "</td></tr>\n";
    return html + "</table>\n";
}

}  // namespace

std::string html_escape(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&#39;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::string url_query_escape(std::string_view text) {
    static constexpr char HEX[] = "0123456789ABCDEF";
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
            (byte >= '0' && byte <= '9') || c == '-' || c == '.' || c == '_' || c == '~') {
            out += c;
        } else {
            out += '%';
            out += HEX[byte >> 4];
            out += HEX[byte & 15];
        }
    }
    return out;
}

std::string overview_page_html(const StudyOverview& overview) {
    const std::string finished_rule =
        overview.levels_given
            ? "records of " + std::to_string(overview.levels_to_finish) + " levels (levels=)"
            : "as many levels as the most advanced participant (" +
                  std::to_string(overview.levels_to_finish) + "; give levels= to fix the number)";
    std::string body = "<h1>Veldra study</h1>\n<div class=\"counts\">" +
                       count_box("registered", "registered", overview.registered) +
                       count_box("started", "started", overview.started) +
                       count_box("finished", "finished", overview.finished) +
                       count_box("records", "records", static_cast<std::size_t>(overview.records)) +
                       "</div>\n<p class=\"note\">Finished: " + finished_rule + ".</p>\n";
    body +=
        "<p><a class=\"button\" id=\"download\" href=\"/admin/trials.csv\">Download all "
        "records (CSV)</a></p>\n";
    body +=
        "<h2>Participants and levels</h2>\n<p class=\"note\">Records per participant and "
        "level, in order of the level's first arrival.</p>\n" +
        grid_html(overview);
    body += "<h2>Latest records</h2>\n" + latest_html(overview);
    return page("Veldra study", body);
}

std::string delete_confirmation_html(const std::string& user_id, std::int64_t record_count,
                                     const std::string& form_token) {
    const std::string id = html_escape(user_id);
    return page("Delete records of " + user_id,
                "<h1>Delete the records of " + id + "?</h1>\n<p>This removes all " +
                    std::to_string(record_count) + " records of participant <b>" + id +
                    "</b> from the database, for a withdrawal of consent. It cannot be undone. "
                    "The id stays registered.</p>\n"
                    "<form method=\"post\" action=\"/admin/delete\">"
                    "<input type=\"hidden\" name=\"user\" value=\"" +
                    id + "\"><input type=\"hidden\" name=\"token\" value=\"" +
                    html_escape(form_token) +
                    "\"><button class=\"danger\" type=\"submit\">Delete them</button> "
                    "<a href=\"/admin/\">Cancel</a></form>\n");
}

std::string deleted_page_html(const std::string& user_id, std::int64_t removed) {
    return page("Records deleted", "<h1>Records deleted</h1>\n<p>" + std::to_string(removed) +
                                       " records of participant <b>" + html_escape(user_id) +
                                       "</b> were deleted.</p>\n<p><a href=\"/admin/\">Back to "
                                       "the study</a></p>\n");
}

std::string message_page_html(const std::string& title, const std::string& text) {
    return page(title, "<h1>" + html_escape(title) + "</h1>\n<p>" + html_escape(text) +
                           "</p>\n<p><a href=\"/admin/\">Back to the study</a></p>\n");
}

}  // namespace veldra

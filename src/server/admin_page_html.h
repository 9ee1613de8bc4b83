#pragma once
// The researcher's pages as HTML: plain forms and links, a little inline CSS, no script, so that
// they work in any browser. Everything that came from the database (participant ids and level
// file names are the participants' own text) is escaped.

#include <cstdint>
#include <string>
#include <string_view>

#include "server/study_overview.h"

namespace veldra {

// & < > " ' as character references.
std::string html_escape(std::string_view text);
// Every byte outside A-Z a-z 0-9 - . _ ~ as %XX, for a value inside a link's query.
std::string url_query_escape(std::string_view text);

// Counts (each number in an element whose id names it: registered, started, finished,
// records), the participant by level grid with when each was last heard from, the latest
// records and the CSV download.
std::string overview_page_html(const StudyOverview& overview);

// Asks before deleting: the form posts the participant's id and `form_token` back.
std::string delete_confirmation_html(const std::string& user_id, std::int64_t record_count,
                                     const std::string& form_token);

std::string deleted_page_html(const std::string& user_id, std::int64_t removed);

// A short page for a refusal or a missing participant, with a link back to the overview.
std::string message_page_html(const std::string& title, const std::string& text);

}  // namespace veldra

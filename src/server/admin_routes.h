#pragma once
// The researcher's page under /admin/: its own account (the game's API credentials ship inside
// every participant's copy of the game, so they never open it), checked before anything else.
//
//   GET  /admin/             the overview (admin_page_html.h)
//   GET  /admin/trials.csv   every record as the game's CSV, as a download
//   GET  /admin/delete?user= asks before deleting one participant's records
//   POST /admin/delete       deletes them: needs the confirmation form's token, and an Origin
//                            header, when the browser sends one, of this server
//
// 401 with a challenge of its own realm for a missing or wrong password; 403 for a deletion
// without the token or from another site; 404 an unknown path or participant; 405 a wrong
// method.

#include <cstddef>
#include <string>
#include <string_view>

#include "server/api_answer.h"
#include "server/trial_store.h"

namespace veldra {

struct AdminRequest {
    std::string method;
    std::string path;
    std::string authorization;  // the Authorization header, "" when absent
    std::string origin;         // the Origin header, "" when absent
    std::string host;           // the Host header
    std::string user;           // the "user" parameter of the query or the posted form
    std::string token;          // the "token" parameter of the posted form
};

struct AdminSettings {
    std::string password;  // the user name is always ADMIN_USER_NAME
    // Made at start from random bytes; a page of another site cannot read it, so it cannot
    // make a browser that is logged in here post a deletion.
    std::string form_token;
    std::size_t levels_to_finish = 0;  // levels=; 0 when not given
};

inline constexpr std::string_view ADMIN_USER_NAME = "admin";

// "/admin" and everything under "/admin/".
bool is_admin_path(std::string_view path);

// 32 hexadecimal digits from the system's random source.
std::string make_form_token();

// Throws SqliteError when the database fails, as the API does.
ApiAnswer answer_admin_request(const AdminRequest& request, TrialStore& store,
                               const AdminSettings& settings);

}  // namespace veldra

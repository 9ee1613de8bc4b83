#pragma once
// One line per request on standard output: when, method, path, status, body sizes. Never the
// Authorization header, the query, the body or the client's address: the log may be shared
// with people who must not learn the password or who took part.

#include <cstddef>
#include <ctime>
#include <string>
#include <string_view>

namespace veldra {

// "2026-11-26T04:30:00Z POST /api/game/trials 201 in=1234 out=19". Spaces, backslashes and bytes
// outside printable ASCII in the method and path are written as \xNN, so a crafted path can
// neither split a line nor shift its fields.
std::string request_log_line(std::time_t when, std::string_view method, std::string_view path,
                             int status, std::size_t bytes_in, std::size_t bytes_out);

// "2026-11-26T04:30:00Z " + text.
std::string timestamped_log_line(std::time_t when, std::string_view text);

// Writes a whole line (adding "\n") and flushes; lines of different threads never mix.
void write_log_line(const std::string& line);

}  // namespace veldra

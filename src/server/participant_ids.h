#pragma once
// Participant ids registered with the server, from a file (one per line) or the command line
// (comma-separated). The game appends an id to the request path as it is, so an id must be one
// path segment that needs no escaping.

#include <string>
#include <string_view>
#include <vector>

namespace veldra {

// Why `id` cannot be a participant id ("" when it can): empty, longer than 200 bytes, or with a
// space, a control character or one of / ? # %.
std::string participant_id_problem(std::string_view id);

struct ParticipantIds {
    std::vector<std::string> ids;
    std::string error;  // the first bad id and why, with its line number for a file
};

// One id per line; white space around it is dropped, and blank lines and lines starting with
// "#" are skipped.
ParticipantIds participant_ids_from_lines(std::string_view text);
// "a,b,c"; empty entries are skipped.
ParticipantIds participant_ids_from_list(std::string_view text);

}  // namespace veldra

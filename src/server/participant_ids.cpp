#include "server/participant_ids.h"

#include "util/text.h"

namespace veldra {

namespace {

constexpr std::size_t MAX_PARTICIPANT_ID_BYTES = 200;

}  // namespace

std::string participant_id_problem(std::string_view id) {
    if (id.empty())
        return "is empty";
    if (id.size() > MAX_PARTICIPANT_ID_BYTES)
        return "is longer than " + std::to_string(MAX_PARTICIPANT_ID_BYTES) + " bytes";
    for (const char c : id) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte <= 0x20 || byte == 0x7F || c == '/' || c == '?' || c == '#' || c == '%')
            return "has a character that a request path cannot carry as it is";
    }
    return {};
}

ParticipantIds participant_ids_from_lines(std::string_view text) {
    ParticipantIds out;
    const std::vector<std::string> lines = string_split(string_without_utf8_bom(text), '\n');
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string id = string_trim(lines[i]);
        if (id.empty() || id.front() == '#')
            continue;
        if (const std::string problem = participant_id_problem(id); !problem.empty()) {
            out.error = "line " + std::to_string(i + 1) + ": \"" + id + "\" " + problem;
            return out;
        }
        out.ids.push_back(id);
    }
    return out;
}

ParticipantIds participant_ids_from_list(std::string_view text) {
    ParticipantIds out;
    for (const std::string& entry : string_split(text, ',')) {
        const std::string id = string_trim(entry);
        if (id.empty())
            continue;
        if (const std::string problem = participant_id_problem(id); !problem.empty()) {
            out.error = "\"" + id + "\" " + problem;
            return out;
        }
        out.ids.push_back(id);
    }
    return out;
}

}  // namespace veldra

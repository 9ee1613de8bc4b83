#include "config/json_comments.h"

namespace veldra {

namespace {

// Double quotes before `end` that open or close a string: a quote escaped inside a string
// ("a\"b//c") does not end it, so it must not flip the count.
std::size_t quotes_before(std::string_view line, std::size_t end) {
    std::size_t quotes = 0;
    bool in_string = false;
    for (std::size_t i = 0; i < end; ++i) {
        if (in_string && line[i] == '\\') {
            ++i;
        } else if (line[i] == '"') {
            ++quotes;
            in_string = !in_string;
        }
    }
    return quotes;
}

}  // namespace

std::string _json_remove_comments(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    std::size_t start = 0;
    while (true) {
        const auto end = text.find('\n', start);
        std::string_view line = text.substr(
            start, end == std::string_view::npos ? std::string_view::npos : end - start);
        const auto comment = line.rfind("//");
        if (comment != std::string_view::npos) {
            if (quotes_before(line, comment) % 2 == 0)
                line = line.substr(0, comment);
        }
        out.append(line);
        if (end == std::string_view::npos)
            break;
        out.push_back('\n');
        start = end + 1;
    }
    return out;
}

}  // namespace veldra

#include "config/json_comments.h"

#include <algorithm>

namespace veldra {

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
            const auto quotes =
                std::count(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(comment), '"');
            if (quotes % 2 == 0)
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

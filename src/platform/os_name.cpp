#include "platform/os_name.h"

#include "util/text.h"

namespace veldra::platform {

std::optional<std::string> os_release_pretty_name(std::string_view text) {
    for (const std::string& line : string_split(text, '\n')) {
        if (!line.starts_with("PRETTY_NAME="))
            continue;
        std::string name = string_trim(line.substr(12));
        if (name.size() >= 2 && (name.front() == '"' || name.front() == '\''))
            name = name.substr(1, name.size() - 2);
        if (!name.empty())
            return name;
    }
    return std::nullopt;
}

}  // namespace veldra::platform

#include "platform/os_name.h"

#include <sys/utsname.h>

#include "runtime/file_io.h"
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

std::string os_name() {
    for (const char* path : {"/etc/os-release", "/usr/lib/os-release"}) {
        const FileText file = read_whole_file(path, MAX_SETTINGS_FILE_BYTES);
        if (!file)
            continue;
        if (auto name = os_release_pretty_name(*file.text))
            return *name;
    }
    utsname name{};
    if (uname(&name) != 0)
        return "unknown -1";
    return std::string(name.sysname) + " " + name.release;
}

}  // namespace veldra::platform

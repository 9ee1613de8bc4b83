#include "platform/os_name.h"

#include <sys/utsname.h>

#include "runtime/file_io.h"

namespace veldra::platform {

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

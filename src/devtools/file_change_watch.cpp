#include "devtools/file_change_watch.h"

#include "runtime/utf8_path.h"

namespace veldra {

std::vector<std::string> FileChangeWatch::changed(const std::vector<std::string>& paths) {
    std::vector<std::string> result;
    for (const std::string& path : paths) {
        std::error_code error;
        const auto stamp = std::filesystem::last_write_time(utf8_path(path), error);
        if (error)
            continue;
        const auto [it, first_look] = seen_.try_emplace(path, stamp);
        if (!first_look && it->second != stamp) {
            it->second = stamp;
            result.push_back(path);
        }
    }
    return result;
}

}  // namespace veldra

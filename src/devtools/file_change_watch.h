#pragma once
// Notices when files change on disk, by their modification times, checked when asked (the
// configuration watcher asks twice a second). The first look at a path only remembers it, so
// starting to watch never counts as a change; a file that disappears is not a change either
// (an editor saving by rename removes it for a moment): its return is.

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace veldra {

class FileChangeWatch {
public:
    // The paths among `paths` whose modification time differs from the last look.
    std::vector<std::string> changed(const std::vector<std::string>& paths);

private:
    std::map<std::string, std::filesystem::file_time_type> seen_;
};

}  // namespace veldra

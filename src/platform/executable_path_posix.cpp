#include "platform/executable_path.h"

#include <system_error>

namespace veldra::platform {

std::optional<std::filesystem::path> executable_path() {
    std::error_code error;
    auto self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error)
        return std::nullopt;
    return self;
}

}  // namespace veldra::platform

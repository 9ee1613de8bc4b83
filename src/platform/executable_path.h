#pragma once
// Where the running program's file is, whatever the working directory and however it was
// started: the data folder sits beside it, and worker processes start the same file.

#include <filesystem>
#include <optional>

namespace veldra::platform {

// The absolute path of this program's executable; nullopt when the system does not tell.
std::optional<std::filesystem::path> executable_path();

}  // namespace veldra::platform

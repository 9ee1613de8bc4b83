#include "runtime/paths.h"

#include <cstdlib>
#include <system_error>

#include "runtime/process_state.h"

namespace veldra {

namespace {

// The data directory, always ending in a separator.
std::string data_directory() {
    if (const char* project = std::getenv("VeldraProjectDir"); project && *project)
        return std::string(project) + "/datafiles/";
    const auto& program_directory = process_state().program_directory;
    if (program_directory.empty())
        return "datafiles/";
    return (program_directory / "datafiles").string() + "/";
}

}  // namespace

// In the system's own separators, so that a message shows one path as the system writes it
// ("C:\Veldra\datafiles\levels\level_01.txt", not "...\datafiles/levels/level_01.txt").
std::string make_included_file_filename(std::string_view name) {
    return std::filesystem::path(data_directory() + std::string(name)).make_preferred().string();
}

bool file_exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

std::string resolve_user_path(std::string_view path) {
    std::string given(path);
    if (given.empty() || file_exists(given) || std::filesystem::path(given).is_absolute())
        return given;
    std::string shipped = make_included_file_filename(given);
    return file_exists(shipped) ? shipped : given;
}

}  // namespace veldra

#include "runtime/paths.h"

#include <system_error>

#include "runtime/environment.h"
#include "runtime/process_state.h"
#include "runtime/utf8_path.h"

namespace veldra {

namespace {

// The data directory, always ending in a separator.
std::string data_directory() {
    if (const std::string project = environment_variable("VeldraProjectDir"); !project.empty())
        return project + "/datafiles/";
    const auto& program_directory = process_state().program_directory;
    if (program_directory.empty())
        return "datafiles/";
    return path_utf8(program_directory / "datafiles") + "/";
}

}  // namespace

// In the system's own separators, so that a message shows one path as the system writes it
// ("C:\Veldra\datafiles\levels\level_01.txt", not "...\datafiles/levels/level_01.txt").
std::string make_included_file_filename(std::string_view name) {
    return path_utf8(utf8_path(data_directory() + std::string(name)).make_preferred());
}

bool file_exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(utf8_path(path), error);
}

std::string resolve_user_path(std::string_view path) {
    std::string given(path);
    if (given.empty() || file_exists(given) || utf8_path(given).is_absolute())
        return given;
    std::string shipped = make_included_file_filename(given);
    return file_exists(shipped) ? shipped : given;
}

}  // namespace veldra

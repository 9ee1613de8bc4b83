#include "config/run_files_folder.h"

#include <fstream>
#include <random>
#include <string>
#include <system_error>

#include "config/logger.h"
#include "runtime/environment.h"
#include "runtime/log.h"
#include "runtime/utf8_path.h"

namespace veldra {

namespace {

// Whether a file can be made in `folder`: tried for real, since permissions alone do not tell
// (access lists, read-only shares, a full disk). The probe's name is random, so that two
// programs starting in one folder at once never take each other's probe for a stranger's file.
bool can_write_in(const std::filesystem::path& folder) {
    std::random_device entropy;
    const std::filesystem::path probe =
        folder / (".veldra-write-check-" + std::to_string(entropy()) + std::to_string(entropy()));
    std::error_code error;
    if (std::filesystem::exists(probe, error))
        return true;  // somebody made a file of that very name there
    bool written = false;
    {
        std::ofstream out(probe, std::ios::binary);
        written = static_cast<bool>(out << 'x') && static_cast<bool>(out.flush());
    }
    std::filesystem::remove(probe, error);
    return written;
}

std::filesystem::path environment_path(const char* name) {
    return utf8_path(environment_variable(name));
}

}  // namespace

std::filesystem::path choose_run_files_folder(const std::optional<std::string>& log_output_file,
                                              const std::filesystem::path& working_folder,
                                              const std::filesystem::path& user_folder) {
    if (log_output_file && !log_output_file->empty()) {
        // A plain log file's folder, the working folder included ("run.log"); a log sent to a
        // device has none of its own and counts as no log.
        std::filesystem::path beside = folder_beside_log(log_output_file);
        if (beside == utf8_path(*log_output_file).parent_path())
            return beside;
    }
    if (can_write_in(working_folder) || user_folder.empty())
        return {};
    std::error_code error;
    std::filesystem::create_directories(user_folder, error);
    return user_folder;
}

std::filesystem::path run_files_folder(const std::optional<std::string>& log_output_file) {
    std::error_code error;
    const std::filesystem::path working_folder = std::filesystem::current_path(error);
    std::filesystem::path folder =
        choose_run_files_folder(log_output_file, working_folder, user_data_folder());
    if (folder != folder_beside_log(log_output_file))
        log("The working folder \"" + path_utf8(working_folder) +
            "\" cannot be written; the files of this run go to \"" + path_utf8(folder) + "\".");
    return folder;
}

std::filesystem::path user_data_folder() {
#ifdef _WIN32
    const std::filesystem::path roaming = environment_path("APPDATA");
    return roaming.empty() ? roaming : roaming / "Veldra";
#else
    const std::filesystem::path data_home = environment_path("XDG_DATA_HOME");
    if (!data_home.empty())
        return data_home / "veldra";
    const std::filesystem::path home = environment_path("HOME");
    return home.empty() ? home : home / ".local" / "share" / "veldra";
#endif
}

}  // namespace veldra

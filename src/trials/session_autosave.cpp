#include "trials/session_autosave.h"

#include <cctype>
#include <system_error>

#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/utf8_path.h"

namespace veldra {

namespace {

// A name that is safe in a file name whatever the user typed as their id.
std::string file_name_part(const std::string& text) {
    std::string part;
    for (char c : text)
        part += std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' ? c : '_';
    return part.empty() ? "user" : part.substr(0, 64);
}

}  // namespace

std::optional<AppendFile> session_autosave_create(const std::filesystem::path& folder,
                                                  const std::string& user_id,
                                                  const std::string& stamp, std::string& error) {
    const std::string stem = "session-" + file_name_part(user_id) + "-" + stamp;
    std::string why;
    auto file = AppendFile::create_with_free_name(folder, stem, ".csv", why);
    if (file) {
        why = file->append(trial_data_as_csv_headers());
        if (why.empty())
            return file;
        std::error_code ignored;
        std::filesystem::remove(utf8_path(file->path()), ignored);
    }
    error = "\"" + path_utf8(folder / utf8_path(stem + ".csv")) + "\": " + why;
    return std::nullopt;
}

std::string session_autosave_append(AppendFile& autosave, const TrialData& record) {
    return autosave.append(trial_data_as_csv(record));
}

bool session_autosave_keep(AppendFile& autosave, const TrialData& record) {
    const std::string error = session_autosave_append(autosave, record);
    if (error.empty()) {
        log("Saved the result of level " + std::to_string(record.level_info.play_order + 1) +
            " (\"" + record.level_info.filename + "\", score " +
            number_to_string(record.result.trial_score) + ").");
        return true;
    }
    log_error("Cannot keep the result of \"" + record.level_info.filename + "\" in \"" +
              autosave.path() + "\": " + error + ".");
    return false;
}

}  // namespace veldra

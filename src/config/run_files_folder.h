#pragma once
// Where a run keeps the files nobody named for it (session autosaves, the outbox, input
// recordings): beside the log file when there is one; else the working folder, when it can be
// written; else the user's own data folder. A game installed where its users cannot write (a
// program folder, a lab's read-only share) so still keeps every record, and the log says where.

#include <filesystem>
#include <optional>
#include <string>

namespace veldra {

// The folder, "" meaning the working folder. Logs the choice when it is the user's folder, and
// makes that folder when it is missing.
std::filesystem::path run_files_folder(const std::optional<std::string>& log_output_file);

// The choice itself, with the working folder and the user's folder given.
std::filesystem::path choose_run_files_folder(const std::optional<std::string>& log_output_file,
                                              const std::filesystem::path& working_folder,
                                              const std::filesystem::path& user_folder);

// The game's folder among the user's own data: %APPDATA%\Veldra on Windows, else
// $XDG_DATA_HOME/veldra or ~/.local/share/veldra; empty when the environment names none.
std::filesystem::path user_data_folder();

}  // namespace veldra

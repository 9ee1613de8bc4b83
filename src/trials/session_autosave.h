#pragma once
// A session's autosave: a CSV file of its own, made before the first trial with the header
// line, to which each finished trial's record is appended as one line and synced to disk. A
// crash, a kill or a power cut at any moment leaves a file whose every line is a whole record.

#include <filesystem>
#include <optional>
#include <string>

#include "runtime/append_file.h"
#include "trials/trial_data.h"

namespace veldra {

// "session-<user>-<stamp>.csv" in `folder`, or "session-<user>-<stamp>-2.csv" ... when another
// session (started in the same second) holds that name. The user id is cut down to what is safe
// in a file name. nullopt, with the path tried and the reason in `error`, when nothing can be
// written in `folder`.
std::optional<AppendFile> session_autosave_create(const std::filesystem::path& folder,
                                                  const std::string& user_id,
                                                  const std::string& stamp, std::string& error);

// Appends `record` as one line; "" on success, else the reason.
std::string session_autosave_append(AppendFile& autosave, const TrialData& record);

// Appends `record` and logs the outcome: which level was kept, or why it could not be.
bool session_autosave_keep(AppendFile& autosave, const TrialData& record);

}  // namespace veldra

#pragma once
// The one place that reads and writes whole files. Every reader of a file a user gives goes
// through here, so a directory, a FIFO, a device such as /dev/zero or a file larger than the
// reader expects is refused with a reason instead of hanging or filling memory, and every
// writer learns about a full disk instead of losing data silently.

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace veldra {

// Size limits of the files the game reads, in bytes. docs/files.md lists them.
inline constexpr std::size_t MAX_CONFIGURATION_FILE_BYTES = 16u << 20;
inline constexpr std::size_t MAX_LEVEL_FILE_BYTES = 4u << 20;
inline constexpr std::size_t MAX_LEVEL_GENERATOR_FILE_BYTES = 1u << 20;
inline constexpr std::size_t MAX_AUTO_RUN_FILE_BYTES = 16u << 20;
inline constexpr std::size_t MAX_LOCALIZATION_FILE_BYTES = 4u << 20;
inline constexpr std::size_t MAX_SETTINGS_FILE_BYTES = 1u << 20;
// Trial CSV files (resume, merge): a million trials of about 300 bytes each fit easily.
inline constexpr std::size_t MAX_TRIAL_CSV_FILE_BYTES = std::size_t{4} << 30;

struct FileText {
    std::optional<std::string> text;  // the whole file, when it could be read
    std::string error;                // otherwise why not, e.g. "no such file", "is a directory"

    explicit operator bool() const { return text.has_value(); }
};

// The reasons read_whole_file gives for a missing file and for one over its limit. Readers tell
// these apart (a missing settings file means defaults), so every Files backend uses the same.
inline constexpr const char* FILE_MISSING_REASON = "no such file";
std::string file_too_large_reason(std::size_t max_bytes);

// Reads a whole regular file of at most `max_bytes` bytes. Never blocks on a FIFO and never
// reads more than `max_bytes` + 1 bytes, whatever the file claims its size is.
FileText read_whole_file(const std::string& path, std::size_t max_bytes);

// Writes `text` to `path` through a temporary file beside it that replaces `path` only once
// every byte is on disk, so a full disk or a crash leaves the old file as it was. Returns an
// empty string on success, else the system's reason.
std::string write_whole_file(const std::string& path, const std::string& text);

// std::fopen for a path in UTF-8, as every path in the game is: on Windows through the wide call,
// so that any folder name works, and refusing the names Windows would not keep as given
// (windows_file_names.h). Null when it cannot be opened, with the reason in `why`.
std::FILE* open_file(const std::string& path, const char* mode, std::string& why);

// Writes all of `bytes` to the end of an open file at once, so that a full disk shows up here
// and not at some later close. When the write fails part-way, the file is cut back to its size
// before the call: it never ends in a piece of `bytes`. Returns an empty string on success, else
// the system's reason.
std::string write_all_and_flush(std::FILE* file, std::string_view bytes);

// True when both paths name the same existing file (hard links and different spellings
// included), so an output can be refused before it overwrites one of the inputs.
bool same_file(const std::string& a, const std::string& b);

// The system's reason for the last failed call (`errno`), as text.
std::string system_error_text(int error_number);

}  // namespace veldra

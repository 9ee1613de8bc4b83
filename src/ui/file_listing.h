#pragma once
// What a file dialog lists: the entries of one folder, its sub-folders first, then the files a
// filter lets through. Pure std::filesystem with error codes, so a folder that cannot be read
// gives a reason instead of an exception, and reading stops after a fixed number of entries
// so a folder of a million files cannot freeze the window.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace veldra {

// Which files a dialog offers: "*.json", "*.csv;*.txt", "*" or "" (everything). Patterns know
// `*` (any run of characters) and `?` (one character) and ignore letter case, so "LEVEL.TXT"
// passes "*.txt" as it would on Windows.
struct FileFilter {
    std::vector<std::string> patterns;  // empty: every file
    bool lets_through(std::string_view file_name) const;
    // "*.csv" or "*.csv;*.txt", or "all files": for the dialog's line above the list.
    std::string describe() const;
};
FileFilter parse_file_filter(std::string_view filter);

struct FolderEntry {
    std::string name;
    bool is_folder = false;
};

struct FolderListing {
    std::vector<FolderEntry> entries;  // folders, then files; each by name, letter case ignored
    std::string error;                 // why the folder (or part of it) could not be read
    bool truncated = false;            // it holds more than the limit: only that many were read
};

inline constexpr std::size_t FOLDER_LISTING_LIMIT = 5000;

// Reads `folder`. Hidden names (starting with a dot) and files the filter refuses are left out
// unless `show_all`; other folders are always listed. A link counts as what it points to; one
// that leads nowhere (or round in a loop) counts as a file.
FolderListing list_folder(const std::filesystem::path& folder, const FileFilter& filter,
                          bool show_all, std::size_t limit = FOLDER_LISTING_LIMIT);

}  // namespace veldra

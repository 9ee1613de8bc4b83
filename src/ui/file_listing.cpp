#include "ui/file_listing.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <system_error>

#include "runtime/utf8_path.h"
#include "util/text.h"

namespace veldra {

namespace {

char lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

// Iterative glob with one backtrack point: a `*` retries from one character further on each
// mismatch, which keeps long names linear instead of exponential.
bool glob_matches(std::string_view pattern, std::string_view name) {
    std::size_t p = 0;
    std::size_t n = 0;
    std::size_t star = std::string_view::npos;
    std::size_t star_n = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            star_n = n;
        } else if (p < pattern.size() &&
                   (pattern[p] == '?' || lower(pattern[p]) == lower(name[n]))) {
            ++p;
            ++n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++star_n;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

bool name_less(const FolderEntry& a, const FolderEntry& b) {
    if (a.is_folder != b.is_folder)
        return a.is_folder;
    return std::lexicographical_compare(a.name.begin(), a.name.end(), b.name.begin(), b.name.end(),
                                        [](char x, char y) { return lower(x) < lower(y); });
}

std::string read_error(const std::filesystem::path& folder, const std::string& reason) {
    return "Cannot read the folder \"" + path_utf8(folder) + "\": " + reason + ".";
}

}  // namespace

bool FileFilter::lets_through(std::string_view file_name) const {
    if (patterns.empty())
        return true;
    return std::any_of(patterns.begin(), patterns.end(), [&](const std::string& pattern) {
        return glob_matches(pattern, file_name);
    });
}

std::string FileFilter::describe() const {
    if (patterns.empty())
        return "all files";
    std::string text;
    for (const auto& pattern : patterns)
        text += (text.empty() ? "" : ";") + pattern;
    return text;
}

FileFilter parse_file_filter(std::string_view filter) {
    FileFilter parsed;
    for (const std::string& part : string_split(filter, ';')) {
        std::string pattern = string_trim(part);
        if (pattern == "*" || pattern == "*.*")
            return FileFilter{};  // one pattern that takes everything makes the others moot
        if (!pattern.empty())
            parsed.patterns.push_back(std::move(pattern));
    }
    return parsed;
}

FolderListing list_folder(const std::filesystem::path& folder, const FileFilter& filter,
                          bool show_all, std::size_t limit) {
    namespace fs = std::filesystem;
    FolderListing listing;
    // std::filesystem reports through the error codes below; what is left (a name that does not
    // convert, no memory) must still not take the window down.
    try {
        std::error_code ec;
        // No skip_permission_denied: with it, a folder the user may not read looks empty
        // instead of saying why.
        fs::directory_iterator it(folder, ec);
        if (ec) {
            listing.error = read_error(folder, ec.message());
            return listing;
        }
        std::size_t read = 0;
        for (; it != fs::directory_iterator(); it.increment(ec)) {
            if (ec)
                break;
            if (read++ == limit) {
                listing.truncated = true;
                break;
            }
            std::string name = path_utf8(it->path().filename());
            if (!show_all && !name.empty() && name.front() == '.')
                continue;
            std::error_code status_error;
            const bool is_folder = it->is_directory(status_error);
            if (is_folder || show_all || filter.lets_through(name))
                listing.entries.push_back({std::move(name), is_folder});
        }
        if (ec)
            listing.error = read_error(folder, ec.message());
    } catch (const std::exception& e) {
        listing.error = read_error(folder, e.what());
    }
    std::sort(listing.entries.begin(), listing.entries.end(), name_less);
    return listing;
}

}  // namespace veldra

#include "ui/file_browser.h"

#include <system_error>

#include "runtime/utf8_path.h"
#include "util/text.h"

namespace veldra {

namespace fs = std::filesystem;

namespace {

// Absolute, without "." or "..", and without a trailing separator (but "/" stays "/").
fs::path clean_path(const fs::path& path) {
    if (path.empty())
        return clean_path(".");
    std::error_code ec;
    fs::path absolute = fs::absolute(path, ec);
    if (ec)
        absolute = path;
    absolute = absolute.lexically_normal();
    if (!absolute.has_filename() && absolute.has_relative_path())
        absolute = absolute.parent_path();
    return absolute;
}

bool is_folder(const fs::path& path) {
    std::error_code ec;
    return fs::is_directory(path, ec);
}

// A link that leads nowhere still exists: writing would go through it.
bool path_exists(const fs::path& path) {
    std::error_code ec;
    return fs::exists(fs::symlink_status(path, ec));
}

std::string quoted(const fs::path& path) {
    return "\"" + path_utf8(path) + "\"";
}

}  // namespace

FileBrowser::FileBrowser(FileBrowserMode mode, std::string_view filter, std::string_view initial,
                         const DialogTexts& texts)
    : mode_(mode), texts_(texts), filter_(parse_file_filter(filter)) {
    const fs::path start = clean_path(utf8_path(string_trim(initial)));
    if (string_trim(initial).empty() || is_folder(start)) {
        enter(start);
        return;
    }
    enter(is_folder(start.parent_path()) ? start.parent_path() : clean_path("."));
    const std::string file = path_utf8(start.filename());
    if (mode_ == FileBrowserMode::save)
        name = file;
    for (std::size_t i = 0; i < listing_.entries.size(); ++i)
        if (!listing_.entries[i].is_folder && listing_.entries[i].name == file)
            selected_ = i;
}

void FileBrowser::relist() {
    listing_ = list_folder(folder_, filter_, show_all_);
    notice_ = listing_.error;
    if (notice_.empty() && listing_.truncated)
        notice_ = dialog_text_with(texts_.too_many, std::to_string(FOLDER_LISTING_LIMIT));
}

void FileBrowser::set_show_all(bool show_all) {
    if (show_all == show_all_)
        return;
    show_all_ = show_all;
    std::optional<std::string> kept;
    if (selected_)
        kept = listing_.entries[*selected_].name;
    selected_.reset();
    relist();
    for (std::size_t i = 0; kept && i < listing_.entries.size(); ++i)
        if (listing_.entries[i].name == *kept)
            selected_ = i;
}

void FileBrowser::enter(const fs::path& folder) {
    folder_ = clean_path(folder.is_absolute() ? folder : folder_ / folder);
    selected_.reset();
    relist();
}

void FileBrowser::go_up() {
    if (folder_.has_relative_path())
        enter(folder_.parent_path());
}

void FileBrowser::select(std::size_t index) {
    if (index >= listing_.entries.size())
        return;
    selected_ = index;
    const FolderEntry& entry = listing_.entries[index];
    if (mode_ == FileBrowserMode::save && !entry.is_folder)
        name = entry.name;
}

void FileBrowser::open_entry(std::size_t index) {
    if (index >= listing_.entries.size())
        return;
    const FolderEntry entry = listing_.entries[index];
    if (entry.is_folder) {
        enter(folder_ / utf8_path(entry.name));
        return;
    }
    select(index);
    choose(folder_ / utf8_path(entry.name));
}

void FileBrowser::go_to(std::string_view typed) {
    const std::string text = string_trim(typed);
    if (text.empty())
        return;
    const fs::path target = clean_path(folder_ / utf8_path(text));
    if (is_folder(target)) {
        enter(target);
        return;
    }
    if (mode_ == FileBrowserMode::open) {
        if (path_exists(target))
            choose(target);
        else
            notice_ = dialog_text_with(texts_.nothing_there, quoted(target));
        return;
    }
    if (!is_folder(target.parent_path())) {
        notice_ = dialog_text_with(texts_.no_folder, quoted(target.parent_path()));
        return;
    }
    enter(target.parent_path());
    name = path_utf8(target.filename());
}

void FileBrowser::accept() {
    if (mode_ == FileBrowserMode::save) {
        const std::string typed = string_trim(name);
        if (typed.empty()) {
            notice_ = texts_.type_name;
            return;
        }
        choose(clean_path(folder_ / utf8_path(typed)));
        return;
    }
    if (!selected_) {
        notice_ = texts_.choose_file;
        return;
    }
    open_entry(*selected_);
}

void FileBrowser::choose(const fs::path& file) {
    if (mode_ == FileBrowserMode::open) {
        chosen_ = path_utf8(clean_path(file));
        return;
    }
    if (is_folder(file)) {
        notice_ = dialog_text_with(texts_.is_a_folder, quoted(file.filename()));
        return;
    }
    if (!is_folder(file.parent_path())) {
        notice_ = dialog_text_with(texts_.no_folder, quoted(file.parent_path()));
        return;
    }
    if (path_exists(file)) {
        replace_ = file;
        return;
    }
    chosen_ = path_utf8(file);
}

void FileBrowser::answer_replace(bool replace) {
    if (!replace_)
        return;
    if (replace)
        chosen_ = path_utf8(*replace_);
    replace_.reset();
}

}  // namespace veldra

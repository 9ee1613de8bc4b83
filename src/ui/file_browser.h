#pragma once
// The state of an in-game file dialog apart from its drawing: the folder shown and its listing,
// the selected entry, the file name being typed (saving), and the question whether to replace
// a file. Each step a user can take is one member, so the widgets only call them and the steps
// can be walked without a window.
//
// Folders are absolute and normalised. A folder that cannot be read is still entered: the
// listing is empty, the notice says why, and ".." leads back out.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "ui/dialog_texts.h"
#include "ui/file_listing.h"

namespace veldra {

enum class FileBrowserMode { open, save };

class FileBrowser {
public:
    // Starts in the folder of `initial` (a file there is selected, or named when saving), in
    // `initial` itself when it is a folder, else in the working directory.
    // `texts` gives the notices their words.
    FileBrowser(FileBrowserMode mode, std::string_view filter, std::string_view initial,
                const DialogTexts& texts = {});

    FileBrowserMode mode() const { return mode_; }
    const std::filesystem::path& folder() const { return folder_; }
    const FolderListing& listing() const { return listing_; }
    const FileFilter& filter() const { return filter_; }
    bool show_all() const { return show_all_; }
    // Why the folder is empty or cut short, or why the last choice was refused; "" when all is
    // well.
    const std::string& notice() const { return notice_; }
    std::optional<std::size_t> selected() const { return selected_; }
    // Saving: an existing file the user picked, waiting for answer_replace.
    const std::optional<std::filesystem::path>& replace_question() const { return replace_; }
    // The full path of the file chosen; once set, the dialog is done.
    const std::optional<std::string>& chosen() const { return chosen_; }

    std::string name;  // saving: the file name field

    void set_show_all(bool show_all);
    void enter(const std::filesystem::path& folder);  // a relative path starts at folder()
    void go_up();
    void select(std::size_t index);      // saving: a file's name goes into the name field
    void open_entry(std::size_t index);  // a folder is entered, a file chosen
    // The path field: a folder is entered; opening, an existing file is chosen; saving, the
    // name goes into the name field and its folder is entered.
    void go_to(std::string_view typed);
    // OK: opening, the selected file is chosen (a selected folder entered); saving, the typed
    // name is.
    void accept();
    void answer_replace(bool replace);

private:
    void relist();
    void choose(const std::filesystem::path& file);

    FileBrowserMode mode_;
    DialogTexts texts_;
    FileFilter filter_;
    std::filesystem::path folder_;
    FolderListing listing_;
    bool show_all_ = false;
    std::string notice_;
    std::optional<std::size_t> selected_;
    std::optional<std::filesystem::path> replace_;
    std::optional<std::string> chosen_;
};

}  // namespace veldra

#pragma once
// The words of the in-game dialogs (buttons, labels, the replace question), in the active
// language once start-up has loaded one; English until then, and for any text a language lacks.

#include <string>

namespace veldra {

struct Localization;

struct DialogTexts {
    std::string ok = "OK";
    std::string cancel = "Cancel";
    std::string yes = "Yes";
    std::string no = "No";
    std::string open_title = "Open a file";
    std::string save_title = "Save as";
    std::string folder = "Folder";
    std::string go = "Go";
    std::string drive = "Drive";  // before the buttons of the drives, where there are several
    std::string showing = "Showing {0}";  // {0}: the filter's description, or all_files
    std::string all_files = "all files";
    std::string show_all = "Show all files";
    std::string file_name = "File name";
    std::string replace = "\"{0}\" already exists. Replace it?";  // {0}: the file's name
    // The file browser's notices; {0} is a number or a quoted path.
    std::string too_many =
        "This folder holds more than {0} entries; only the first are listed. "
        "Type a path to reach the others.";
    std::string nothing_there = "There is no file or folder {0}.";
    std::string no_folder = "There is no folder {0}.";
    std::string type_name = "Type a name for the file.";
    std::string choose_file = "Choose a file from the list, or type its path above.";
    std::string is_a_folder = "{0} is a folder. Type a name for the file.";
};

DialogTexts dialog_texts_from(const Localization& localization);

// `text` with "{0}" replaced by `value`.
std::string dialog_text_with(const std::string& text, const std::string& value);

}  // namespace veldra

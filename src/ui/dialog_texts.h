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
    std::string showing = "Showing {0}";  // {0}: the filter's description, or all_files
    std::string all_files = "all files";
    std::string show_all = "Show all files";
    std::string file_name = "File name";
    std::string replace = "\"{0}\" already exists. Replace it?";  // {0}: the file's name
};

DialogTexts dialog_texts_from(const Localization& localization);

// `text` with "{0}" replaced by `value`.
std::string dialog_text_with(const std::string& text, const std::string& value);

}  // namespace veldra

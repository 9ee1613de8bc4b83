#include "runtime/windows_file_names.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace veldra {

namespace {

// Device names, with or without an extension ("nul", "COM1.txt").
bool is_device_name(const std::string& name) {
    std::string stem = name.substr(0, name.find('.'));
    // Windows drops trailing spaces before it looks, so "CON .csv" is the console too.
    while (!stem.empty() && stem.back() == ' ')
        stem.pop_back();
    std::transform(stem.begin(), stem.end(), stem.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    static constexpr std::array<std::string_view, 4> plain = {"CON", "PRN", "AUX", "NUL"};
    if (std::find(plain.begin(), plain.end(), stem) != plain.end())
        return true;
    return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) &&
           stem[3] >= '1' && stem[3] <= '9';
}

std::optional<std::string> name_problem(const std::string& name) {
    if (name.empty() || name == "." || name == "..")
        return std::nullopt;
    if (is_device_name(name))
        return "\"" + name + "\" is the name of a device on Windows, not of a file";
    for (unsigned char c : name) {
        if (c < 32)
            return "the name \"" + name +
                   "\" has a control character, which Windows does not "
                   "allow in file names";
        if (std::string_view("<>:\"|?*").find(static_cast<char>(c)) != std::string_view::npos)
            return "the name \"" + name + "\" has \"" + std::string(1, static_cast<char>(c)) +
                   "\", which Windows does not allow in file names";
    }
    if (name.back() == '.' || name.back() == ' ')
        return "the name \"" + name + "\" ends with a " + (name.back() == '.' ? "dot" : "space") +
               ", which Windows drops: another file than the one named would be used";
    return std::nullopt;
}

}  // namespace

std::optional<std::string> windows_file_name_problem(std::string_view path) {
    // Backslashes separate names on Windows whatever system reads this.
    std::string text(path);
    std::replace(text.begin(), text.end(), '\\', '/');
    std::size_t start = 0;
    // A drive ("C:"), and a share's server and name ("//server/share"), are not file names.
    if (text.size() >= 2 && text[1] == ':' && std::isalpha(static_cast<unsigned char>(text[0])))
        start = 2;
    else if (text.starts_with("//")) {
        const std::size_t after_server = text.find('/', 2);
        start = after_server == std::string::npos ? after_server : text.find('/', after_server + 1);
    }
    while (start != std::string::npos && start < text.size()) {
        const std::size_t end = text.find('/', start);
        const std::string name =
            text.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (auto problem = name_problem(name))
            return problem;
        start = end == std::string::npos ? end : end + 1;
    }
    return std::nullopt;
}

}  // namespace veldra

#pragma once
// What a program under test wrote: a whole file as text, or its lines. A missing file reads as
// empty, so a test's expectation names what is missing rather than failing here.

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace veldra::testing {

inline std::string text_of(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

inline std::vector<std::string> lines_of(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

}  // namespace veldra::testing

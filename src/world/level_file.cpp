#include "world/level_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/log.h"

namespace veldra {

namespace {

std::optional<std::string> read_whole_file(const std::filesystem::path& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
        return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad())
        return std::nullopt;
    return text;
}

// Lines split at "\n", each without one trailing "\r"; text after the last "\n" is a line only
// when it is not empty.
std::vector<std::string_view> split_lines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        lines.push_back(line);
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(end + 1);
    }
    return lines;
}

LevelCell parse_cell(int cx, int cy, char character) {
    if (const LevelCellType* type = level_cell_type_from_char(character)) {
        return LevelCell{cx, cy, type};
    }
    log_warning(fmt::format("Failed to parse level cell from string \"{}\".", character));
    return LevelCell{cx, cy, lct().LCT_empty};
}

}  // namespace

std::optional<Level> level_load_from_file(const std::filesystem::path& path) {
    const std::optional<std::string> text = read_whole_file(path);
    if (!text) {
        log_error(fmt::format("Failed to read level from file \"{}\".", path.string()));
        return std::nullopt;
    }
    const std::vector<std::string_view> lines = split_lines(*text);
    std::size_t width = 0;
    for (const auto line : lines)
        width = std::max(width, line.size());

    std::vector<std::vector<LevelCell>> rows(lines.size());
    for (std::size_t cy = 0; cy < lines.size(); ++cy) {
        rows[cy].reserve(width);
        for (std::size_t cx = 0; cx < width; ++cx) {
            const char character = cx < lines[cy].size() ? lines[cy][cx] : ' ';
            rows[cy].push_back(parse_cell(static_cast<int>(cx), static_cast<int>(cy), character));
        }
    }
    return Level(path.stem().string(), std::move(rows));
}

bool level_write_to_file(const Level& level, const std::filesystem::path& path) {
    std::string text;
    text.reserve(static_cast<std::size_t>(level.width + 1) * level.height);
    for (const auto& row : level.cells) {
        for (const LevelCell& cell : row)
            text.push_back(cell.type->character);
        text.push_back('\n');
    }
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (out)
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!out || !(out.flush())) {
        log_error(fmt::format("Failed to write level to file \"{}\".", path.string()));
        return false;
    }
    return true;
}

}  // namespace veldra

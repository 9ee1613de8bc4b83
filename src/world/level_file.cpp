#include "world/level_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/files.h"
#include "runtime/log.h"
#include "runtime/utf8_path.h"
#include "util/text.h"

namespace veldra {

namespace {

// One character of a line: its bytes (one to four in UTF-8).
using Character = std::string_view;

// The length of the UTF-8 character at the start of `text`, or 0 when it is not one (a stray
// continuation byte, a cut sequence, an overlong or surrogate form).
std::size_t utf8_length(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    std::size_t length = 0;
    unsigned minimum = 0;
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        minimum = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        minimum = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        minimum = 0x10000;
    } else {
        return 0;
    }
    if (text.size() < length)
        return 0;
    unsigned code = lead & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
        code = (code << 6) | (byte(i) & 0x3F);
    }
    if (code < minimum || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return 0;
    return length;
}

// The characters of each line; nullopt with the reason when the text is not UTF-8 text. Lines
// are split at "\n", each without one trailing "\r"; text after the last "\n" is a line only
// when it is not empty.
std::optional<std::vector<std::vector<Character>>> split_text(std::string_view text,
                                                              std::string& why) {
    std::vector<std::vector<Character>> lines;
    std::size_t line_number = 1;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        std::vector<Character> characters;
        while (!line.empty()) {
            const std::size_t length = utf8_length(line);
            if (length == 0 || line[0] == '\0') {
                why = fmt::format(
                    "is not a text file (line {}, column {}: {} is not a "
                    "character of UTF-8 text)",
                    line_number, characters.size() + 1,
                    line[0] == '\0' ? "a zero byte" : "a byte sequence");
                return std::nullopt;
            }
            characters.push_back(line.substr(0, length));
            line.remove_prefix(length);
        }
        lines.push_back(std::move(characters));
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(end + 1);
        ++line_number;
    }
    return lines;
}

// A character as a warning shows it: printable ASCII as it is, anything else by its bytes.
std::string shown(Character character) {
    if (character.size() == 1 && character[0] >= 0x20 && character[0] < 0x7F)
        return std::string(character);
    std::string text;
    for (unsigned char byte : character)
        text += fmt::format("\\x{:02x}", byte);
    return text;
}

// Enough warnings to find the mistakes, not so many that a wrong file floods the log.
constexpr std::size_t MAX_CELL_WARNINGS = 20;

}  // namespace

std::optional<Level> level_load_from_file(Files& files, const LevelCellTypeTable& types,
                                          const std::string& path) {
    const auto fail = [&](const std::string& why) -> std::optional<Level> {
        log_error(fmt::format("Failed to read level from file \"{}\".", path));
        log_error(fmt::format("\"{}\" {}.", path, why));
        return std::nullopt;
    };
    const FileText text = files.read(path, MAX_LEVEL_FILE_BYTES);
    if (!text)
        return fail(text.error);
    const std::string_view content = string_without_utf8_bom(*text.text);
    std::string why;
    const auto lines = split_text(content, why);
    if (!lines)
        return fail(why);
    std::size_t width = 0;
    for (const auto& line : *lines)
        width = std::max(width, line.size());
    if (width > MAX_LEVEL_SIDE || lines->size() > MAX_LEVEL_SIDE)
        return fail(fmt::format("is {} x {} cells; a level may be at most {} x {}", width,
                                lines->size(), MAX_LEVEL_SIDE, MAX_LEVEL_SIDE));

    std::vector<std::vector<LevelCell>> rows(lines->size());
    std::size_t warnings = 0;
    for (std::size_t cy = 0; cy < lines->size(); ++cy) {
        const auto& line = (*lines)[cy];
        rows[cy].reserve(width);
        for (std::size_t cx = 0; cx < width; ++cx) {
            const Character character = cx < line.size() ? line[cx] : Character(" ");
            const LevelCellType* type =
                character.size() == 1 ? types.from_char(character[0]) : nullptr;
            if (!type) {
                type = types.LCT_empty;
                if (++warnings <= MAX_CELL_WARNINGS)
                    log_warning(
                        fmt::format("Failed to parse level cell from string \"{}\". (\"{}\", row "
                                    "{}, column {})",
                                    shown(character), path, cy + 1, cx + 1));
            }
            rows[cy].push_back(LevelCell{static_cast<int>(cx), static_cast<int>(cy), type});
        }
    }
    if (warnings > MAX_CELL_WARNINGS)
        log_warning(fmt::format("\"{}\": {} more cells could not be parsed and are empty.", path,
                                warnings - MAX_CELL_WARNINGS));
    return Level(path_utf8(utf8_path(path).stem()), std::move(rows), types);
}

std::optional<Level> level_load_for_trial(Files& files, const LevelCellTypeTable& types,
                                          const std::string& path) {
    auto level = level_load_from_file(files, types, path);
    if (level && level_get_num_cells_of_type(*level, types.LCT_player) == 0) {
        log_error(fmt::format("Level file \"{}\" has no player (no \"p\" cell): a trial needs one.",
                              path));
        return std::nullopt;
    }
    return level;
}

bool level_write_to_file(Files& files, const Level& level, const std::string& path) {
    std::string text;
    text.reserve(static_cast<std::size_t>(level.width + 1) * level.height);
    for (const auto& row : level.cells) {
        for (const LevelCell& cell : row)
            text.push_back(cell.type->character);
        text.push_back('\n');
    }
    const std::string problem = files.write(path, text);
    if (!problem.empty()) {
        log_error(fmt::format("Failed to write level to file \"{}\": {}.", path, problem));
        return false;
    }
    return true;
}

}  // namespace veldra

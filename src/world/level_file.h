#pragma once
// Level files: plain text, one line per row (top row first), one character per cell (leftmost
// first), each character that of a level cell type. People edit them by hand, so reading is
// forgiving: "\r" before a line end is dropped, one empty line after the last "\n" is not a
// row, short lines are padded with empty cells, and an unknown character becomes an empty cell
// with a warning. Writing gives exactly height lines of width characters, each ending "\n".

#include <filesystem>
#include <optional>

#include "world/level.h"

namespace veldra {

// The level named after the file's stem, or nothing (with the error logged) when the file
// cannot be read.
std::optional<Level> level_load_from_file(const std::filesystem::path& path);

// False (with an error logged) when the file cannot be written.
bool level_write_to_file(const Level& level, const std::filesystem::path& path);

}  // namespace veldra

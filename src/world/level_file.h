#pragma once
// Level files: plain text, one line per row (top row first), one character per cell (leftmost
// first), each character that of a level cell type. People edit them by hand, so reading is
// forgiving: "\r" before a line end is dropped, one empty line after the last "\n" is not a
// row, short lines are padded with empty cells, and an unknown character becomes an empty cell
// with a warning naming its row and column. A file is read per UTF-8 character (a leading byte
// order mark is skipped); one that is not UTF-8 text, or larger than MAX_LEVEL_SIDE cells on a
// side, is refused. Writing gives exactly height lines of width characters, each ending "\n".

#include <cstddef>
#include <optional>
#include <string>

#include "world/level.h"

namespace veldra {

class Files;

// The most cells a level may have on a side. A trial keeps a terrain cell and pathfinding
// records per cell, and creatures per cell of their kind, so larger levels take minutes per trial
// and gigabytes of memory; no playable level comes near.
inline constexpr std::size_t MAX_LEVEL_SIDE = 1000;

// The level named after the file's stem, or nothing (with the error and its reason logged) when
// the file cannot be read or is not a level.
std::optional<Level> level_load_from_file(Files& files, const LevelCellTypeTable& types,
                                          const std::string& path);

// As level_load_from_file, for a level that is to be played: one without a player ("p") loads
// as a level, but a trial of it would end at its first tick with nothing to score, so it is
// refused here with an error naming the file.
std::optional<Level> level_load_for_trial(Files& files, const LevelCellTypeTable& types,
                                          const std::string& path);

// False (with an error logged) when the file cannot be written.
bool level_write_to_file(Files& files, const Level& level, const std::string& path);

}  // namespace veldra

#pragma once
// Level sets for researchers: a JSON file names the size, how many levels, the pools the counts
// of monsters, food, humans and sand are drawn from, and a seed; the generator writes numbered
// level files level_001.txt, level_002.txt, ... into a directory. The same file and seed give
// byte-identical levels. Example:
//
//   { "width": 24, "height": 24, "count": 10, "seed": 42,
//     "monster_amounts": [2, 3], "food_amounts": [4], "human_amounts": [3, 4, 5],
//     "sand_amounts": [0, 20] }
//
// "//" line comments are allowed, as in the game's other JSON files.

#include <optional>
#include <string>

namespace veldra {

class Files;
struct LevelCellTypeTable;

// Writes the set into `output_dir` (created when missing). `seed_override`, when given, is used
// instead of the file's "seed". False, with the problem logged, when the file is unusable, a
// level cannot be generated, or a file cannot be written. Files are read and written through
// `files`.
bool generate_level_set(Files& files, const LevelCellTypeTable& types, const std::string& json_path,
                        const std::string& output_dir, std::optional<double> seed_override);

}  // namespace veldra

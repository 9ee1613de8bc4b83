#pragma once
// The kinds of level cell: the character that stands for each in a level file, whether it can
// be walked, and what it does when a level is dumped into a trial. The table is built once at
// start-up by initialize_level_cell_types and lives in the simulation state; cells refer to the
// shared records by pointer, so records of one table never match those of a rebuilt one.
//
// The level knows nothing of creatures: dumping a cell that stands for an entity calls a hook of
// LevelSpawnHooks, which the creatures code fills. Unset hooks do nothing.

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "world/terrain.h"

namespace veldra {

struct LevelCellType;
struct LevelSpawnHooks;

// Called with the type being dumped, the terrain cell made for it and the hooks that create
// entities.
using LevelCellDumpCallback = void (*)(const LevelCellType& type, TerrainCell& cell,
                                       const LevelSpawnHooks& spawn);

struct LevelCellType {
    char character = ' ';  // unique among all types
    bool is_traversable = true;
    LevelCellDumpCallback dump_callback = nullptr;
    std::optional<int> type_number;  // 0..9 for the typed human types, else none
};

struct LevelSpawnHooks {
    // type_number: the typed human's number, or none for a human with a random personality.
    std::function<void(const TerrainCell&, std::optional<int> type_number)> spawn_human_ai;
    std::function<void(const TerrainCell&)> spawn_player;
    std::function<void(const TerrainCell&)> spawn_monster;
    std::function<void(const TerrainCell&)> spawn_food;
    bool filled = false;  // set by the once-only code that fills the hooks
};

struct LevelCellTypeTable {
    LevelCellTypeTable() = default;
    // Cells point into the table's records.
    LevelCellTypeTable(const LevelCellTypeTable&) = delete;
    LevelCellTypeTable& operator=(const LevelCellTypeTable&) = delete;

    // The type for a level file character, or nullptr when no type uses it.
    const LevelCellType* from_char(char character) const;

    // In construction order: empty, hole, rock, human_random, typed 0..9, player, monster, food,
    // sand.
    std::vector<const LevelCellType*> allLevelCellTypes;
    std::map<char, const LevelCellType*> levelCellTypesByChar;
    std::vector<const LevelCellType*> all_typed_human_ai_level_cell_types;  // index = type_number

    const LevelCellType* LCT_empty = nullptr;
    const LevelCellType* LCT_hole = nullptr;
    const LevelCellType* LCT_rock = nullptr;
    const LevelCellType* LCT_human_random = nullptr;
    const LevelCellType* LCT_player = nullptr;
    const LevelCellType* LCT_monster = nullptr;
    const LevelCellType* LCT_food = nullptr;
    const LevelCellType* LCT_sand = nullptr;

    bool called = false;
    // Owns every record ever built, so cells made from an earlier table stay valid.
    std::deque<LevelCellType> storage;
};

// Builds the table. Meant to run once per program: a later call logs the once-only error with
// the call stack and then builds a fresh table anyway.
void initialize_level_cell_types(LevelCellTypeTable& table);

}  // namespace veldra

#include "world/level_cell_types.h"

#include "runtime/assertion.h"
#include "runtime/callstack.h"
#include "runtime/once.h"

namespace veldra {

namespace {

void dump_nothing(const LevelCellType&, TerrainCell&, const LevelSpawnHooks&) {}

// Rocks and sand are terrain only; how they look (boulders, leaves) is drawn from the terrain.
void dump_rock(const LevelCellType&, TerrainCell& cell, const LevelSpawnHooks&) {
    cell.is_rock = true;
}

void dump_sand(const LevelCellType&, TerrainCell& cell, const LevelSpawnHooks&) {
    cell.is_sand = true;
}

// Random humans carry no type number; typed ones pass theirs on.
void dump_human_ai(const LevelCellType& type, TerrainCell& cell, const LevelSpawnHooks& spawn) {
    auto& hook = spawn.spawn_human_ai;
    if (hook)
        hook(cell, type.type_number);
}

void dump_player(const LevelCellType&, TerrainCell& cell, const LevelSpawnHooks& spawn) {
    auto& hook = spawn.spawn_player;
    if (hook)
        hook(cell);
}

void dump_monster(const LevelCellType&, TerrainCell& cell, const LevelSpawnHooks& spawn) {
    auto& hook = spawn.spawn_monster;
    if (hook)
        hook(cell);
}

void dump_food(const LevelCellType&, TerrainCell& cell, const LevelSpawnHooks& spawn) {
    auto& hook = spawn.spawn_food;
    if (hook)
        hook(cell);
}

// Constructing a type registers it in the table, as every type is found by its character.
const LevelCellType* make_type(LevelCellTypeTable& table, char character, bool is_traversable,
                               LevelCellDumpCallback callback,
                               std::optional<int> type_number = std::nullopt) {
    const LevelCellType* type = &table.storage.emplace_back(
        LevelCellType{character, is_traversable, callback, type_number});
    table.allLevelCellTypes.push_back(type);
    table.levelCellTypesByChar[character] = type;
    return type;
}

}  // namespace

void initialize_level_cell_types(LevelCellTypeTable& table) {
    VELDRA_SCOPE();
    once_only_first_call(table.called);
    table.allLevelCellTypes.clear();
    table.levelCellTypesByChar.clear();
    table.all_typed_human_ai_level_cell_types.clear();

    table.LCT_empty = make_type(table, ' ', true, dump_nothing);
    table.LCT_hole = make_type(table, 'x', false, dump_nothing);
    table.LCT_rock = make_type(table, 'r', false, dump_rock);
    table.LCT_human_random = make_type(table, 'h', true, dump_human_ai);
    for (int type_number = 0; type_number <= 9; ++type_number) {
        const char digit = static_cast<char>('0' + type_number);
        table.all_typed_human_ai_level_cell_types.push_back(
            make_type(table, digit, true, dump_human_ai, type_number));
    }
    table.LCT_player = make_type(table, 'p', true, dump_player);
    table.LCT_monster = make_type(table, 'm', true, dump_monster);
    table.LCT_food = make_type(table, 'f', true, dump_food);
    table.LCT_sand = make_type(table, 's', true, dump_sand);
}

const LevelCellType* LevelCellTypeTable::from_char(char character) const {
    VELDRA_ASSERT(LCT_empty, "level cell types used before initialize_level_cell_types()?");
    const auto found = levelCellTypesByChar.find(character);
    return found == levelCellTypesByChar.end() ? nullptr : found->second;
}

}  // namespace veldra

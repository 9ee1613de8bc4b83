#include "trials/trial_level_info.h"

#include "world/level_cell_types.h"

namespace veldra {

TrialLevelInfo trial_level_info_from_level(const LevelCellTypeTable& types, const Level& level,
                                           const std::string& filename, std::int64_t play_order) {
    TrialLevelInfo info;
    info.filename = filename;
    info.play_order = play_order;
    info.num_monsters = level_get_num_cells_of_type(level, types.LCT_monster);
    info.num_food = level_get_num_cells_of_type(level, types.LCT_food);
    info.num_humans_h = level_get_num_cells_of_type(level, types.LCT_human_random);
    info.num_sand = level_get_num_cells_of_type(level, types.LCT_sand);
    std::int64_t typed = 0;
    for (std::size_t i = 0; i < info.num_humans_per_type.size() &&
                            i < types.all_typed_human_ai_level_cell_types.size();
         ++i) {
        info.num_humans_per_type[i] =
            level_get_num_cells_of_type(level, types.all_typed_human_ai_level_cell_types[i]);
        typed += info.num_humans_per_type[i];
    }
    info.num_humans = info.num_humans_h + typed;
    return info;
}

}  // namespace veldra

#pragma once
// The debug visualizer: drawings over the world, under the same camera, that show what the
// creatures are up to: their paths, the ranges they see, explore and strike in, their current
// actions with a line to the target, and texts (ids, energies, traits). Each part has its switch
// in the debug settings; nothing is drawn while the developer tools are hidden.
//
// Shapes follow the camera; texts keep one screen size at every zoom, on a dark backing, so
// they stay readable zoomed far out.

#include <string>
#include <vector>

#include "config/personality_traits.h"
#include "creatures/creature_pathfinding.h"
#include "runtime/instance.h"
#include "runtime/object_type.h"
#include "runtime/renderer.h"

namespace veldra {

class obj_creature;
struct TerrainCell;

// The drawings' colours, shared with the legend and the documentation's screenshots.
namespace visualizer_colors {
inline constexpr Rgba SIGHT{90, 200, 255, 255};
inline constexpr Rgba EXPLORATION{240, 220, 90, 255};
inline constexpr Rgba ATTACK{255, 90, 80, 255};
inline constexpr Rgba PATH{120, 255, 140, 255};
inline constexpr Rgba PARTIAL_PATH{255, 150, 60, 255};
inline constexpr Rgba PLAYER_ACTION{255, 215, 90, 255};
inline constexpr Rgba HUMAN_ACTION{170, 190, 255, 255};
}  // namespace visualizer_colors

// Screen pixels of the visualizer's texts' lines, whatever the zoom.
inline constexpr float VISUALIZER_TEXT_SIZE = 14;

// The five traits in a few characters: "O.5 C-1 E0 A1 N.2".
std::string traits_short_text(const PersonalityTraits& traits);

class obj_debug_visualizer : public Instance {
    VELDRA_OBJECT(obj_debug_visualizer, Instance)
public:
    obj_debug_visualizer() { persistent = true; }
    void on_draw_end() override;

private:
    // The way a creature that cannot reach its goal gets toward it, searched again only when the
    // creature's cell or its goal changes: drawing runs every frame, the search need not.
    struct PartialPath {
        InstanceId creature = NO_INSTANCE;
        CellKey from{0, 0};
        CellKey goal{0, 0};
        CreaturePath path;
    };
    const CreaturePath& partial_path(const obj_creature& creature, const TerrainCell& from,
                                     const TerrainCell& goal);

    std::vector<PartialPath> partial_paths_;
};

}  // namespace veldra

#include "devtools/debug_visualizer.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "config/debug_settings.h"
#include "creatures/eid.h"
#include "creatures/human.h"
#include "creatures/human_action.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "creatures/trial_world.h"
#include "devtools/debug_tools.h"
#include "devtools/inspector.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "trials/simulation_state.h"
#include "ui/trial_views.h"
#include "ui/world_drawing.h"
#include "world/terrain.h"

namespace veldra {

namespace {

constexpr Rgba TEXT_BACKING{12, 14, 18, 190};
constexpr Rgba TEXT_COLOR{235, 238, 242, 255};
constexpr std::uint8_t RANGE_FILL_ALPHA = 26;
constexpr int RING_SEGMENTS = 64;
constexpr Rgba LINE_SHADOW{0, 0, 0, 150};

// A trait as short as it reads: "-1", ".5", "-.25", "0".
std::string short_number(double value) {
    std::string text = number_to_string(std::round(value * 100) / 100);
    if (text.starts_with("0."))
        text.erase(0, 1);
    else if (text.starts_with("-0."))
        text.erase(1, 1);
    return text;
}

struct Painter {
    DrawList& list;
    const Renderer& renderer;
    const Camera& camera;

    ScreenPoint at(double x, double y) const { return camera.world_to_screen(x, y); }

    // Two pixels wide over a dark edge, so a path stays visible on grass and sand alike: the
    // renderer's lines are one pixel.
    void line(double x1, double y1, double x2, double y2, Rgba color) const {
        const ScreenPoint a = at(x1, y1);
        const ScreenPoint b = at(x2, y2);
        const auto ax = static_cast<float>(a.x), ay = static_cast<float>(a.y);
        const auto bx = static_cast<float>(b.x), by = static_cast<float>(b.y);
        list.line(ax + 1, ay + 1, bx + 1, by + 1, LINE_SHADOW);
        list.line(ax, ay, bx, by, color);
        list.line(ax, ay - 1, bx, by - 1, color);
    }

    // A full-strength rim, and for the creature in focus a translucent disc inside it: the
    // area reads at a glance, the edge exactly. Every creature's disc would cost the software
    // renderer most of a frame on a crowded level (40 creatures: 75 ms), and cover the ground.
    void range(double x, double y, double radius, Rgba color, bool filled) const {
        if (radius <= 0)
            return;
        const ScreenPoint c = at(x, y);
        const double r = radius * camera.zoom();
        if (filled)
            list.circle(static_cast<float>(c.x), static_cast<float>(c.y), static_cast<float>(r),
                        {color.r, color.g, color.b, RANGE_FILL_ALPHA});
        // A segment every few pixels of the rim looks round; more only cost lines.
        const int segments = std::clamp(static_cast<int>(r / 3), 16, RING_SEGMENTS);
        for (int i = 0; i < segments; ++i) {
            const double a0 = 2 * std::numbers::pi * i / segments;
            const double a1 = 2 * std::numbers::pi * (i + 1) / segments;
            list.line(static_cast<float>(c.x + r * std::cos(a0)),
                      static_cast<float>(c.y + r * std::sin(a0)),
                      static_cast<float>(c.x + r * std::cos(a1)),
                      static_cast<float>(c.y + r * std::sin(a1)), color);
        }
    }

    void cell_outline(const TerrainCell& cell, Rgba color) const {
        const ScreenPoint corner = at(cell.room_rect.x1, cell.room_rect.y1);
        const auto side = static_cast<float>(TERRAIN_CELL_SIZE * camera.zoom());
        list.rect_outline(static_cast<float>(corner.x) + 2, static_cast<float>(corner.y) + 2,
                          side - 4, side - 4, color);
    }

    void cross(const TerrainCell& cell, Rgba color) const {
        const Rect& r = cell.room_rect;
        line(r.x1 + 12, r.y1 + 12, r.x2 - 12, r.y2 - 12, color);
        line(r.x2 - 12, r.y1 + 12, r.x1 + 12, r.y2 - 12, color);
    }

    // Centred on `x`, top at `y`, in screen pixels; returns the next line's top.
    float text(float x, float y, const std::string& text, Rgba color) const {
        const TextSize size = renderer.measure_text(text, VISUALIZER_TEXT_SIZE);
        if (y < Camera::VIEW_TOP)  // under the HUD's band: the world is not shown there
            return y + size.height + 3;
        const float left = x - size.width / 2;
        list.rect(left - 3, y - 1, size.width + 6, size.height + 2, TEXT_BACKING);
        list.text(left, y, text, color, VISUALIZER_TEXT_SIZE);
        return y + size.height + 3;
    }
};

double cell_centre_x(const TerrainCell& cell) {
    return cell.room_rect.get_center_x();
}
double cell_centre_y(const TerrainCell& cell) {
    return cell.room_rect.get_center_y();
}

void draw_polyline(const Painter& paint, const obj_creature& creature, const CreaturePath& path,
                   Rgba color) {
    double x = creature.x;
    double y = creature.y;
    for (const TerrainCell* cell : path) {
        paint.line(x, y, cell_centre_x(*cell), cell_centre_y(*cell), color);
        x = cell_centre_x(*cell);
        y = cell_centre_y(*cell);
    }
}

// Where the action aims: its target instance, or the cell it explores toward.
std::optional<ScreenPoint> action_target(const Runtime& runtime, const HumanAction& action) {
    if (const auto* aimed = dynamic_cast<const detail::TargetedHumanAction*>(&action)) {
        if (const Instance* target = runtime.find(aimed->target))
            return ScreenPoint{target->x, target->y};
        return std::nullopt;
    }
    if (const auto* explore = dynamic_cast<const HA_Explore*>(&action))
        return ScreenPoint{cell_centre_x(*explore->target_cell),
                           cell_centre_y(*explore->target_cell)};
    return std::nullopt;
}

void draw_legend(const Painter& paint, const DebugSettings& debugs) {
    float y = static_cast<float>(Camera::VIEW_TOP) + 10;
    const auto entry = [&](bool on, const char* name, Rgba color) {
        if (!on)
            return;
        paint.list.rect(10, y, 176, 20, TEXT_BACKING);
        paint.list.rect(16, y + 5, 10, 10, color);
        paint.list.text(34, y + 2, name, TEXT_COLOR, VISUALIZER_TEXT_SIZE);
        y += 22;
    };
    entry(debugs.show_sight_ranges, "sight range", visualizer_colors::SIGHT);
    entry(debugs.show_exploration_ranges, "exploration range", visualizer_colors::EXPLORATION);
    entry(debugs.show_attack_ranges, "attack range", visualizer_colors::ATTACK);
    entry(debugs.show_pathfinding, "path", visualizer_colors::PATH);
    entry(debugs.show_pathfinding, "path, goal unreachable", visualizer_colors::PARTIAL_PATH);
}

bool draws_anything(const DebugSettings& d) {
    return d.show_pathfinding || d.show_sight_ranges || d.show_exploration_ranges ||
           d.show_attack_ranges || d.show_player_actions || d.show_human_actions || d.show_ids ||
           d.show_energies || d.show_trait_data;
}

}  // namespace

std::string traits_short_text(const PersonalityTraits& traits) {
    return "O" + short_number(traits.openness) + " C" + short_number(traits.conscientiousness) +
           " E" + short_number(traits.extraversion) + " A" + short_number(traits.agreeableness) +
           " N" + short_number(traits.neuroticism);
}

const CreaturePath& obj_debug_visualizer::partial_path(const obj_creature& creature,
                                                       const TerrainCell& from,
                                                       const TerrainCell& goal) {
    const CellKey from_key{from.cx, from.cy};
    const CellKey goal_key{goal.cx, goal.cy};
    auto found = std::ranges::find(partial_paths_, creature.id(), &PartialPath::creature);
    if (found == partial_paths_.end()) {
        partial_paths_.push_back({creature.id(), from_key, goal_key, {}});
        found = partial_paths_.end() - 1;
    } else if (found->from == from_key && found->goal == goal_key) {
        return found->path;
    }
    found->from = from_key;
    found->goal = goal_key;
    found->path = creature_find_partial_path(creature, goal);
    return found->path;
}

void obj_debug_visualizer::on_draw_end() {
    if (!debug_panels_showing(runtime())) {
        partial_paths_.clear();
        return;
    }
    const DebugToolsContext& context = find_debug_tools(runtime())->context;
    const DebugSettings& debugs = context.debugs;
    const auto* views = runtime().instance_find<obj_trial_views>(0);
    if (!views || views->world_hidden() || !draws_anything(debugs))
        return;
    Renderer& renderer = *runtime().services().renderer;
    const Painter paint{renderer.draw_list(), renderer, views->camera};
    const TrialWorld& world = context.sim.world;
    std::erase_if(partial_paths_,
                  [&](const PartialPath& p) { return !runtime().instance_exists(p.creature); });

    const auto* inspector = runtime().instance_find<obj_inspector>(0);
    // Shapes first, every creature's, so that no creature's lines cover another's texts.
    runtime().for_each<obj_creature>([&](obj_creature& creature) {
        const auto* human = dynamic_cast<const obj_human*>(&creature);
        const auto* monster = dynamic_cast<const obj_monster*>(&creature);
        const double sight = human ? human->sight_range : monster ? monster->sight_range : 0;
        const double exploration = human     ? human->exploration_range
                                   : monster ? monster->exploration_range
                                             : 0;
        // In focus: the player, and the creature the inspector shows.
        const bool focus = dynamic_cast<const obj_human_player*>(&creature) ||
                           (inspector && inspector->selected() == creature.id());
        if (debugs.show_exploration_ranges)
            paint.range(creature.x, creature.y, exploration, visualizer_colors::EXPLORATION, focus);
        if (debugs.show_sight_ranges)
            paint.range(creature.x, creature.y, sight, visualizer_colors::SIGHT, focus);
        if (debugs.show_attack_ranges)
            paint.range(creature.x, creature.y, creature.attack_range, visualizer_colors::ATTACK,
                        focus);
        if (debugs.show_pathfinding && world.terrain) {
            const TerrainCell* goal = creature_current_goal(creature);
            const CreaturePath& path = creature_current_path(world.pathfinding, creature.id());
            const TerrainCell* here = world.terrain->cell_at_room(creature.x, creature.y);
            if (!path.empty()) {
                draw_polyline(paint, creature, path, visualizer_colors::PATH);
                paint.cell_outline(*path.back(), visualizer_colors::PATH);
            } else if (goal && here && goal != here) {
                // Asked for a cell and given no way there: the goal cannot be reached.
                draw_polyline(paint, creature, partial_path(creature, *here, *goal),
                              visualizer_colors::PARTIAL_PATH);
                paint.cross(*goal, visualizer_colors::PARTIAL_PATH);
            }
        }
        if (!human)
            return;
        const bool player = human->is_a<obj_human_player>();
        if (!(player ? debugs.show_player_actions : debugs.show_human_actions))
            return;
        if (const HumanAction* action = human->get_current_action())
            if (auto target = action_target(runtime(), *action))
                paint.line(
                    human->x, human->y, target->x, target->y,
                    player ? visualizer_colors::PLAYER_ACTION : visualizer_colors::HUMAN_ACTION);
    });

    if (debugs.show_ids || debugs.show_energies || debugs.show_trait_data ||
        debugs.show_player_actions || debugs.show_human_actions) {
        runtime().for_each<obj_entity>([&](obj_entity& entity) {
            const ScreenPoint feet = paint.at(entity.x, entity.y);
            const auto x = static_cast<float>(feet.x);
            float y = static_cast<float>(feet.y + 8 * views->camera.zoom()) + 2;
            if (debugs.show_ids)
                y = paint.text(x, y, EID(&entity, false), TEXT_COLOR);
            const auto* creature = dynamic_cast<const obj_creature*>(&entity);
            if (!creature)
                return;
            if (debugs.show_energies)
                y = paint.text(x, y,
                               number_to_string(std::round(creature->energy * 10) / 10) + "/" +
                                   number_to_string(creature->energy_max),
                               {150, 236, 150, 255});
            const auto* human = dynamic_cast<const obj_human*>(creature);
            if (!human)
                return;
            if (debugs.show_trait_data)
                y = paint.text(x, y, traits_short_text(human->personality_traits),
                               {220, 200, 255, 255});
            const bool player = human->is_a<obj_human_player>();
            const HumanAction* action = human->get_current_action();
            if (action && (player ? debugs.show_player_actions : debugs.show_human_actions))
                paint.text(
                    x, y, action->type->debug_name,
                    player ? visualizer_colors::PLAYER_ACTION : visualizer_colors::HUMAN_ACTION);
        });
    }
    if (debugs.show_sight_ranges || debugs.show_exploration_ranges || debugs.show_attack_ranges ||
        debugs.show_pathfinding)
        draw_legend(paint, debugs);
}

}  // namespace veldra

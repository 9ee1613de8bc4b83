#include "devtools/debug_visualizer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "creatures/creature_pathfinding.h"
#include "creatures/eid.h"
#include "creatures/food.h"
#include "creatures/human_action.h"
#include "creatures/human_player.h"
#include "devtools/devtools_fixture.h"
#include "runtime/number_format.h"
#include "world/terrain.h"

namespace veldra {
namespace {

using Kind = DrawCommand::Kind;

class DebugVisualizerTest : public testing::DevtoolsTest {
protected:
    obj_human_player& player() { return *runtime.instance_find<obj_human_player>(0); }
    const Camera& camera(const obj_trial& trial) { return views(trial)->camera; }
    bool has_text(const std::string& text) {
        return std::ranges::any_of(drawn(Kind::text),
                                   [&](const DrawCommand& c) { return c.text == text; });
    }
};

TEST(TraitsShortText, DropsLeadingZerosAndKeepsSigns) {
    EXPECT_EQ(traits_short_text({0.5, -1, 0, 1, 0.2}), "O.5 C-1 E0 A1 N.2");
    EXPECT_EQ(traits_short_text({-0.25, 2.5, -0.004, 10, -3}), "O-.25 C2.5 E0 A10 N-3");
}

TEST_F(DebugVisualizerTest, DrawsNothingWhileHiddenOrWithEverySwitchOff) {
    start_trial(level_from_rows({"xxxxxxx", "xp f mx", "x  h  x", "xxxxxxx"}), 0);
    frames(1);
    const std::size_t all_off = renderer().last_frame.size();
    tools->visible = false;
    for (const DebugSwitch& which : debug_switches())
        debugs.*which.member = true;
    frames(1);
    EXPECT_EQ(renderer().last_frame.size(), all_off) << "hidden, every switch on";
    tools->visible = true;
    frames(1);
    EXPECT_GT(renderer().last_frame.size(), all_off + 20);
}

TEST_F(DebugVisualizerTest, RangesAreCirclesOfTheCreaturesRadiiThatFollowTheZoom) {
    obj_trial& trial = start_trial(level_from_rows({"xxxxxxx", "x  p  x", "xxxxxxx"}), 0);
    views(trial)->camera.set_zoom(1.5);
    const auto expect_circle = [&](bool DebugSettings::*which, double radius, Rgba color) {
        debugs.*which = true;
        frames(1);
        const ScreenPoint at = camera(trial).world_to_screen(player().x, player().y);
        auto discs = drawn(Kind::circle);
        std::erase_if(discs, [&](const DrawCommand& c) {
            return !(Rgba{c.color.r, c.color.g, c.color.b, 255} == color);
        });
        ASSERT_EQ(discs.size(), 1u);
        EXPECT_NEAR(discs[0].w, radius * camera(trial).zoom(), 0.01);
        EXPECT_NEAR(discs[0].x, at.x, 0.01);
        EXPECT_NEAR(discs[0].y, at.y, 0.01);
        EXPECT_LT(discs[0].color.a, 255) << "the ground shows through";
        EXPECT_FALSE(drawn(Kind::line, color).empty()) << "the rim";
        debugs.*which = false;
    };
    ASSERT_GT(player().sight_range, 0);
    expect_circle(&DebugSettings::show_sight_ranges, player().sight_range,
                  visualizer_colors::SIGHT);
    expect_circle(&DebugSettings::show_exploration_ranges, player().exploration_range,
                  visualizer_colors::EXPLORATION);
    expect_circle(&DebugSettings::show_attack_ranges, player().attack_range,
                  visualizer_colors::ATTACK);
}

TEST_F(DebugVisualizerTest, TextsKeepTheirScreenSizeAtEveryZoom) {
    obj_trial& trial = start_trial(level_from_rows({"xxxxxxx", "xp f mx", "xxxxxxx"}), 0);
    debugs.show_ids = true;
    debugs.show_energies = true;
    debugs.show_trait_data = true;
    for (double zoom : {Camera::MIN_ZOOM, 1.0, Camera::MAX_ZOOM}) {
        views(trial)->camera.set_zoom(zoom);
        frames(1);
        runtime.for_each<obj_entity>([&](const obj_entity& entity) {
            EXPECT_TRUE(has_text(EID(&entity, false))) << EID(&entity, false);
        });
        EXPECT_TRUE(has_text(number_to_string(std::round(player().energy * 10) / 10) + "/" +
                             number_to_string(player().energy_max)));
        EXPECT_TRUE(has_text(traits_short_text(player().personality_traits)));
        for (const DrawCommand& text : drawn(Kind::text)) {
            if (text.text == EID(&player(), false)) {
                EXPECT_EQ(text.h, VISUALIZER_TEXT_SIZE) << "at zoom " << zoom;
            }
        }
    }
}

TEST_F(DebugVisualizerTest, APathIsALineThroughItsCellsAndAnUnreachableGoalIsDrawnApart) {
    obj_trial& trial = start_trial(
        level_from_rows({"xxxxxxxxx", "x       x", "xxxxxx  x", "x xxxxp x", "xxxxxxxxx"}), 0);
    debugs.show_pathfinding = true;
    const Terrain& terrain = *sim.world.terrain;
    // Around the wall's end: the path has a corner, so more than one segment.
    creature_approach(player(), terrain.cell_at(1, 1), 0);
    ASSERT_GE(creature_current_path(sim.pathfinding, player().id()).size(), 2u);
    frames(1);
    // Each step is drawn two pixels wide: two lines of its colour.
    const auto path = drawn(Kind::line, visualizer_colors::PATH);
    ASSERT_EQ(path.size(), 2 * creature_current_path(sim.pathfinding, player().id()).size());
    const ScreenPoint from = camera(trial).world_to_screen(player().x, player().y);
    EXPECT_NEAR(path.front().x, from.x, 0.01);
    EXPECT_NEAR(path.front().y, from.y, 0.01);
    const ScreenPoint goal = camera(trial).world_to_screen(1 * 64 + 32, 1 * 64 + 32);
    EXPECT_NEAR(path.back().x2, goal.x, 0.01);
    EXPECT_NEAR(path.back().y2, goal.y - 1, 0.01);
    EXPECT_EQ(drawn(Kind::rect_outline, visualizer_colors::PATH).size(), 1u) << "goal cell";
    EXPECT_TRUE(drawn(Kind::line, visualizer_colors::PARTIAL_PATH).empty());

    // The walled-in cell (1, 3): no complete path, so the creature stands; the way toward it
    // goes as near as it gets.
    creature_approach(player(), terrain.cell_at(1, 3), 0);
    ASSERT_TRUE(creature_current_path(sim.pathfinding, player().id()).empty());
    const long searches = sim.pathfinding.search_count;
    frames(2);
    EXPECT_EQ(sim.pathfinding.search_count, searches) << "drawing is not a simulation search";
    EXPECT_TRUE(drawn(Kind::line, visualizer_colors::PATH).empty());
    const auto partial = drawn(Kind::line, visualizer_colors::PARTIAL_PATH);
    ASSERT_GE(partial.size(), 6u) << "a way and a cross on the goal";
    EXPECT_NEAR(partial.front().x, from.x, 0.01);
    // It ends on the row above the wall (where the search judged itself nearest), left of
    // where it began.
    const DrawCommand& last_step = partial[partial.size() - 6];  // before the cross's four
    EXPECT_NEAR(last_step.y2, goal.y, 0.01);
    EXPECT_LT(last_step.x2, from.x - 2 * 64 * camera(trial).zoom());
}

TEST_F(DebugVisualizerTest, ActionsNameTheirTypeAndPointAtTheTargetUnderTheirOwnSwitch) {
    obj_trial& trial = start_trial(level_from_rows({"xxxxxxx", "xp  f x", "xxxxxxx"}), 0);
    const obj_food& food = *runtime.instance_find<obj_food>(0);
    player().force_start_action(std::make_unique<HA_ApproachFood>(player(), food.id()));
    const std::string name = player().get_current_action()->type->debug_name;
    debugs.show_human_actions = true;
    frames(1);
    EXPECT_FALSE(has_text(name)) << "the player's action has a switch of its own";
    debugs.show_human_actions = false;
    debugs.show_player_actions = true;
    frames(1);
    EXPECT_TRUE(has_text(name));
    const auto lines = drawn(Kind::line, visualizer_colors::PLAYER_ACTION);
    ASSERT_EQ(lines.size(), 2u);
    const ScreenPoint target = camera(trial).world_to_screen(food.x, food.y);
    EXPECT_NEAR(lines[0].x2, target.x, 0.01);
    EXPECT_NEAR(lines[0].y2, target.y, 0.01);
}

}  // namespace
}  // namespace veldra

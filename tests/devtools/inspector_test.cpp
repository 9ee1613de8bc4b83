#include "devtools/inspector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

#include "creatures/eid.h"
#include "creatures/food.h"
#include "creatures/human_action.h"
#include "creatures/human_ai.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "devtools/debug_visualizer.h"
#include "devtools/devtools_fixture.h"
#include "runtime/number_format.h"
#include "ui/world_drawing.h"

namespace veldra {
namespace {

class InspectorTest : public testing::DevtoolsTest {
protected:
    obj_inspector& inspector() { return *runtime.instance_find<obj_inspector>(0); }

    // A right click on the body of whatever stands at world (x, y).
    void right_click_at(const obj_trial& trial, double x, double y) {
        const ScreenPoint at = views(trial)->camera.world_to_screen(x, y - BODY_LIFT);
        InputFrame input;
        input.mouse_x = at.x;
        input.mouse_y = at.y;
        input.buttons_down[static_cast<std::size_t>(MouseButton::right)] = true;
        input.buttons_pressed[static_cast<std::size_t>(MouseButton::right)] = true;
        frames(1, input);
    }

    bool says(const std::string& fragment) {
        return std::ranges::any_of(inspector().lines(), [&](const std::string& line) {
            return line.find(fragment) != std::string::npos;
        });
    }

    // The player at the left end, an AI human far to the right, food beside it.
    obj_trial& start_long_trial() {
        return start_trial(level_from_rows({"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx",
                                            "xp                               hf    x",
                                            "x                                  m   x",
                                            "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"}),
                           0);
    }
};

TEST_F(InspectorTest, ARightClickSelectsTheCreatureUnderThePointerAndShowsItsState) {
    obj_trial& trial = start_long_trial();
    views(trial)->camera.set_zoom(Camera::MIN_ZOOM);  // all of it on screen
    frames(1);
    EXPECT_FALSE(inspector().showing()) << "nothing selected yet";
    auto& human = *runtime.instance_find<obj_human_ai>(0);
    const auto& food = *runtime.instance_find<obj_food>(0);
    human.force_start_action(std::make_unique<HA_ApproachFood>(human, food.id()));

    right_click_at(trial, human.x, human.y);
    ASSERT_EQ(inspector().selected(), human.id());
    EXPECT_TRUE(inspector().showing());
    EXPECT_EQ(inspector().lines().front(), EID(&human, false) + ", an AI human");
    EXPECT_TRUE(says(human.get_current_action()->debug_string(runtime)));
    for (const HumanActionType* type : sim.action_types.all)
        EXPECT_TRUE(
            says(type->debug_name + " " +
                 number_to_string(std::round(human.action_weights[type->index] * 100) / 100)))
            << type->debug_name;
    EXPECT_TRUE(says("Openness")) << "the traits' print-out";
    EXPECT_TRUE(says(traits_short_text(human.personality_traits)));

    // Live: a change shows in the next frame.
    human.energy = 1.25;
    frames(1);
    EXPECT_TRUE(says("energy: 1.25 of"));

    // Ground selects nothing and keeps the selection; a monster is picked as well.
    right_click_at(trial, 20 * 64 + 32, 2 * 64 + 32);
    EXPECT_EQ(inspector().selected(), human.id());
    const auto& monster = *runtime.instance_find<obj_monster>(0);
    right_click_at(trial, monster.x, monster.y);
    EXPECT_EQ(inspector().selected(), monster.id());
    EXPECT_TRUE(says("a monster"));
}

TEST_F(InspectorTest, RightClicksAreIgnoredWhileTheToolsAreHidden) {
    obj_trial& trial = start_long_trial();
    views(trial)->camera.set_zoom(Camera::MIN_ZOOM);
    tools->visible = false;
    frames(1);
    const auto& player = *runtime.instance_find<obj_human_player>(0);
    right_click_at(trial, player.x, player.y);
    EXPECT_EQ(inspector().selected(), NO_INSTANCE);
    tools->visible = true;
    right_click_at(trial, player.x, player.y);
    EXPECT_EQ(inspector().selected(), player.id());
}

TEST_F(InspectorTest, FollowingMovesTheCameraToTheCreatureUntilItDies) {
    obj_trial& trial = start_long_trial();
    Camera& camera = views(trial)->camera;
    camera.set_zoom(Camera::MAX_ZOOM);
    frames(1);
    auto& human = *runtime.instance_find<obj_human_ai>(0);
    const double player_x = runtime.instance_find<obj_human_player>(0)->x;
    ASSERT_LT(camera.centre_x(), player_x + 600) << "starts at the player";
    inspector().select(human.id());
    inspector().follow = true;
    frames(120);
    EXPECT_NEAR(camera.centre_x(), human.x, 2);
    EXPECT_NEAR(camera.centre_y(), human.y, 100);  // the level is short: clamped

    const std::string name = EID(&human, false);
    runtime.instance_destroy(human.id());
    frames(1);
    EXPECT_EQ(inspector().selected(), NO_INSTANCE);
    EXPECT_FALSE(inspector().follow);
    EXPECT_TRUE(inspector().showing());
    EXPECT_TRUE(says(name + " died."));
    EXPECT_EQ(views(trial)->followed, NO_INSTANCE);
    frames(120);
    EXPECT_LT(camera.centre_x(), player_x + 600) << "back to the player";
}

}  // namespace
}  // namespace veldra

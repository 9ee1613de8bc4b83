#include "ui/player_controller.h"

#include <gtest/gtest.h>

#include "creatures/human_player.h"
#include "trial_views_fixture.h"

namespace veldra {
namespace {

class PlayerControllerTest : public testing::TrialViewsTest {
protected:
    static InputFrame holding(std::initializer_list<Key> keys) {
        InputFrame input;
        for (Key key : keys)
            input.keys_down[static_cast<std::size_t>(key)] = true;
        return input;
    }
    static InputFrame pressing(Key key) {
        InputFrame input;
        input.keys_pressed[static_cast<std::size_t>(key)] = true;
        return input;
    }
    static InputFrame clicking(double x, double y) {
        InputFrame input;
        input.buttons_pressed[static_cast<std::size_t>(MouseButton::left)] = true;
        input.mouse_x = x;
        input.mouse_y = y;
        return input;
    }
    // Waiting and applied commands, in order.
    std::vector<PlayerCommand> commands() const {
        std::vector<PlayerCommand> all = sim.world.player_commands.applied;
        all.insert(all.end(), sim.world.player_commands.pending.begin(),
                   sim.world.player_commands.pending.end());
        return all;
    }
    static PlayerCommand move(Ticks tick, int dx, int dy) {
        PlayerCommand c;
        c.tick = tick;
        c.dx = dx;
        c.dy = dy;
        return c;
    }
};

TEST_F(PlayerControllerTest, HeldDirectionsBecomeAMoveCommandOnlyWhenTheyChange) {
    start_trial(level_from_rows({"xxxxxx", "x    x", "x  p x", "x    x", "xxxxxx"}), 0);
    frames(3);  // nothing held: nothing to say
    EXPECT_TRUE(commands().empty());
    frames(3, holding({Key::d}));
    frames(2, holding({Key::right, Key::s}));
    frames(1, holding({Key::a, Key::d, Key::down}));     // opposite keys cancel out
    frames(2, holding({Key::ctrl, Key::d, Key::down}));  // Ctrl+D is a shortcut, not a step
    frames(2);
    EXPECT_EQ(commands(), (std::vector<PlayerCommand>{move(0, 1, 0), move(0, 1, 1), move(0, 0, 1),
                                                      move(0, 0, 0)}));
}

TEST_F(PlayerControllerTest, MoveCommandsAreStampedWithTheNextTickAndWalkThePlayer) {
    obj_trial& trial =
        start_trial(level_from_rows({"xxxxxx", "x    x", "x  p x", "x    x", "xxxxxx"}));
    frames(5);
    const auto* player = runtime.instance_find<obj_human_player>(0);
    const double start_x = player->x;
    frames(1, holding({Key::left}));
    ASSERT_EQ(commands().size(), 1u);
    // Read before the frame's tick, so it took effect in that very tick.
    EXPECT_EQ(commands()[0], move(5, -1, 0));
    frames(60, holding({Key::left}));
    EXPECT_LT(player->x, start_x);
    EXPECT_EQ(trial.ticker.spent_ticks, 66);
}

TEST_F(PlayerControllerTest, AClickTargetsTheWorldPointUnderTheMouseAndSoundsOnce) {
    obj_trial& trial = start_trial(level_from_rows({"xxxxxx", "x  f x", "x  p x", "xxxxxx"}), 0);
    frames(1);
    const Camera& camera = views(trial)->camera;
    const ScreenPoint screen = camera.world_to_screen(100.4, 96.6);
    frames(1, clicking(screen.x, screen.y));
    ASSERT_EQ(commands().size(), 1u);
    EXPECT_EQ(commands()[0].kind, PlayerCommand::Kind::target);
    EXPECT_EQ(commands()[0].x, 100);
    EXPECT_EQ(commands()[0].y, 97);
    EXPECT_EQ(played(Sound::ui_click), 1);
    // The HUD's band is not the world.
    frames(1, clicking(screen.x, Camera::VIEW_TOP - 1));
    EXPECT_EQ(commands().size(), 1u);
    EXPECT_EQ(played(Sound::ui_click), 1);
}

TEST_F(PlayerControllerTest, TheHighlightShowsWhatAClickThereWouldDo) {
    obj_trial& trial = start_trial(level_from_rows({"xxxxxx", "x  f x", "x  p x", "xxxxxx"}), 0);
    frames(1);
    const Camera& camera = views(trial)->camera;
    auto highlight = [&](double wx, double wy) {
        InputFrame input;
        const ScreenPoint at = camera.world_to_screen(wx, wy);
        input.mouse_x = at.x;
        input.mouse_y = at.y;
        frames(1, input);
        std::vector<DrawCommand> found;
        for (const DrawCommand& c : renderer().last_frame)
            if ((c.kind == DrawCommand::Kind::texture && c.color == Rgba{96, 222, 96, 230}) ||
                c.kind == DrawCommand::Kind::rect_outline)
                found.push_back(c);
        return found;
    };
    const auto on_food = highlight(3 * 64 + 32, 64 + 32);
    ASSERT_EQ(on_food.size(), 1u);
    EXPECT_EQ(on_food[0].kind, DrawCommand::Kind::texture);
    const auto on_cell = highlight(64 + 10, 2 * 64 + 10);
    ASSERT_EQ(on_cell.size(), 2u);
    EXPECT_EQ(on_cell[0].kind, DrawCommand::Kind::rect_outline);
    const ScreenPoint corner = camera.world_to_screen(64, 128);
    EXPECT_FLOAT_EQ(on_cell[0].x, static_cast<float>(corner.x));
    EXPECT_TRUE(highlight(10, 10).empty());  // a pit: nothing to do there
}

TEST_F(PlayerControllerTest, DeveloperKeysPauseAndChangeTheSpeedWithinItsRange) {
    options.developer_keys = true;
    obj_trial& trial = start_trial(level_from_rows({"xxxxx", "x p x", "xxxxx"}), 2);
    frames(1, pressing(Key::p));
    EXPECT_EQ(trial.game_speed, 0);
    frames(1, pressing(Key::plus));  // paused: the speed waits
    EXPECT_EQ(trial.game_speed, 0);
    frames(1, pressing(Key::p));
    EXPECT_EQ(trial.game_speed, 2);
    for (int i = 0; i < 6; ++i)
        frames(1, pressing(Key::plus));
    EXPECT_EQ(trial.game_speed, obj_trial::MAX_GAME_SPEED);
    for (int i = 0; i < 12; ++i)
        frames(1, pressing(Key::minus));
    EXPECT_EQ(trial.game_speed, obj_trial::MIN_GAME_SPEED);

    options.developer_keys = false;
    runtime.instance_destroy(trial.id());
    obj_trial& plain = start_trial(level_from_rows({"xxxxx", "x p x", "xxxxx"}), 2);
    frames(1, pressing(Key::p));
    EXPECT_EQ(plain.game_speed, 2);
}

}  // namespace
}  // namespace veldra

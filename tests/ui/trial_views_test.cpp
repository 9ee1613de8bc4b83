#include "ui/trial_views.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "serial/json.h"
#include "trial_views_fixture.h"
#include "trials/trial_data.h"
#include "ui/hud_layout.h"
#include "ui/sprites.h"
#include "ui/trial_hud.h"
#include "ui/world_drawing.h"
#include "ui/world_view.h"
#include "world/level_file.h"

namespace veldra {
namespace {

using testing::TrialViewsTest;

GameConfigurations& configs_of(SimulationState& sim) {
    return *sim.configs.configs;
}

std::vector<DrawCommand> commands_of(const std::vector<DrawCommand>& frame,
                                     DrawCommand::Kind kind) {
    std::vector<DrawCommand> found;
    std::copy_if(frame.begin(), frame.end(), std::back_inserter(found),
                 [kind](const DrawCommand& c) { return c.kind == kind; });
    return found;
}

std::ptrdiff_t first_texture(const std::vector<DrawCommand>& frame, TextureId texture) {
    auto it = std::find_if(frame.begin(), frame.end(), [texture](const DrawCommand& c) {
        return c.kind == DrawCommand::Kind::texture && c.texture == texture;
    });
    return it == frame.end() ? -1 : it - frame.begin();
}

TEST_F(TrialViewsTest, TheTimeBarFillsInProportionToTheSpentTicksRounded) {
    configs_of(sim).trial_time = 10;  // 600 ticks
    obj_trial& trial = start_trial(level_from_rows({"xxxxx", "x p x", "xxxxx"}));
    frames(100);
    ASSERT_EQ(trial.ticker.spent_ticks, 100);
    std::vector<float> widths;
    for (const DrawCommand& c : commands_of(renderer().last_frame, DrawCommand::Kind::rect))
        if (c.x == TIME_BAR_X && c.y == TIME_BAR_Y && c.h == TIME_BAR_HEIGHT)
            widths.push_back(c.w);
    // Background, then the fill of round(800 * 100 / 600).
    EXPECT_EQ(widths, (std::vector<float>{TIME_BAR_WIDTH, 133}));
    EXPECT_EQ(time_bar_fill_width(700, 600, 800), 800);
    EXPECT_EQ(time_bar_fill_width(-5, 600, 800), 0);
    EXPECT_EQ(time_bar_fill_width(0, 0, 800), 800);
}

TEST_F(TrialViewsTest, TheHudShowsTheLocalizedLabelsAndTheScoreEasesToItsTotal) {
    configs_of(sim).trial_time = 0.5;
    obj_trial& trial = start_trial(level_from_rows({"xxxxx", "x p x", "xxxxx"}));
    frames(1);
    std::vector<std::string> texts;
    for (const DrawCommand& c : commands_of(renderer().last_frame, DrawCommand::Kind::text))
        texts.push_back(c.text);
    for (const char* label : {"Total score:", "Energy", "Time"})
        EXPECT_NE(std::find(texts.begin(), texts.end(), label), texts.end()) << label;
    frames(40);
    ASSERT_TRUE(trial.result.has_value());
    const auto* hud = runtime.find_as<obj_trial_hud>(views(trial)->hud);
    ASSERT_NE(hud, nullptr);
    auto* score = runtime.find_as<obj_trial_score_hud>(hud->score_hud);
    EXPECT_EQ(score->target_score, trial.result->trial_score);
    frames(100);
    EXPECT_EQ(score->animated_score, trial.result->trial_score);
}

TEST(TrialScoreShown, CountsInWholeNumbersAndEndsOnTheExactTotal) {
    EXPECT_EQ(trial_score_shown(53.0137, 60.47), "53");
    EXPECT_EQ(trial_score_shown(59.6, 60.47), "60");
    EXPECT_EQ(trial_score_shown(60.468, 60.47), "60.47");
    EXPECT_EQ(trial_score_shown(60.47, 60.47), "60.47");
    EXPECT_EQ(trial_score_shown(-0.4, -12.25), "0");  // counting down, never "-0"
}

TEST_F(TrialViewsTest, TheEnergyBarFlashesWhenThePlayerIsHurtAndTheFlashFades) {
    obj_trial& trial = start_trial(level_from_rows({"xxxxx", "x p x", "xxxxx"}), 0);
    frames(1);
    const auto* hud = runtime.find_as<obj_trial_hud>(views(trial)->hud);
    auto* energy = runtime.find_as<obj_trial_energy_hud>(hud->energy_hud);
    auto* player = runtime.instance_find<obj_human_player>(0);
    EXPECT_EQ(energy->animated_energy, player->energy);
    player->start_animation(CREATURE_ANIMATION_ATTACK, 0, 0, 10);
    EXPECT_EQ(energy->damage_flash_timer, 0);  // only being hurt flashes
    player->start_animation(CREATURE_ANIMATION_HURT, 0, 0, 10);
    EXPECT_EQ(energy->damage_flash_timer, ENERGY_FLASH_STEPS);
    frames(5);
    EXPECT_EQ(energy->damage_flash_timer, ENERGY_FLASH_STEPS - 5);
    player->energy -= 3;
    frames(1);
    EXPECT_LT(energy->animated_energy, player->energy + 3);
    EXPECT_GT(energy->animated_energy, player->energy);
}

TEST_F(TrialViewsTest, ThePlayerIsDrawnWhereTheScreenPointSaysItsColourIs) {
    obj_trial& trial = start_trial(level_from_rows({"xxxxx", "x p x", "xxxxx"}), 0);
    frames(1);
    const auto* player = runtime.instance_find<obj_human_player>(0);
    const Camera& camera = views(trial)->camera;
    const ScreenPoint point = creature_body_screen_point(camera, player->x, player->y);
    const std::ptrdiff_t at = first_texture(renderer().last_frame, sprites.player);
    ASSERT_GE(at, 0);
    const DrawCommand& sprite = renderer().last_frame[static_cast<std::size_t>(at)];
    // The flat point inside the sprite, at the same place the painter keeps flat.
    const double inside_x = (point.x - sprite.x) / sprite.w * SPRITE_SIZE;
    const double inside_y = (point.y - sprite.y) / sprite.h * SPRITE_SIZE;
    EXPECT_NEAR(inside_x, SPRITE_SIZE / 2.0, 0.01);
    EXPECT_NEAR(inside_y, BODY_CENTRE_Y + BODY_FLAT_BELOW_CENTRE, 2.01);  // idle bob
    EXPECT_EQ(sprite.color, (Rgba{255, 255, 255, 255}));
}

TEST_F(TrialViewsTest, EntitiesHigherOnTheLevelAreDrawnFirst) {
    obj_trial& trial = start_trial(level_from_rows({"xxxxx", "x mfx", "x p x", "xxxxx"}), 0);
    (void)trial;
    frames(1);
    const auto& frame = renderer().last_frame;
    const std::ptrdiff_t monster = first_texture(frame, sprites.monster);
    const std::ptrdiff_t food = first_texture(frame, sprites.food);
    const std::ptrdiff_t player = first_texture(frame, sprites.player);
    ASSERT_GE(monster, 0);
    ASSERT_GE(food, 0);
    EXPECT_LT(monster, food);  // same row: creation order
    EXPECT_LT(food, player);   // the row below in front
}

TEST_F(TrialViewsTest, AZoomedInWorldNeverShowsThroughTheHudBand) {
    obj_trial& trial =
        start_trial(level_from_rows({"rrrrrrrr", "rrrrrrrr", "rrrpfrrr", "rrrrrrrr"}), 0);
    views(trial)->camera.set_zoom(Camera::MAX_ZOOM);
    frames(1);
    const auto& frame = renderer().last_frame;
    std::ptrdiff_t band = -1, player = first_texture(frame, sprites.player);
    for (std::size_t i = 0; i < frame.size(); ++i)
        if (frame[i].kind == DrawCommand::Kind::rect && frame[i].x == 0 && frame[i].y == 0 &&
            frame[i].w == LOGICAL_WIDTH && frame[i].h == float(Camera::VIEW_TOP) &&
            frame[i].color == HUD_BAND_COLOR)
            band = static_cast<std::ptrdiff_t>(i);
    ASSERT_GE(band, 0);
    ASSERT_GE(player, 0);
    EXPECT_LT(player, band);
    // Whatever of the world reaches into the band is drawn before it; the HUD's bars after it.
    for (std::ptrdiff_t i = 0; i < band; ++i)
        EXPECT_FALSE(frame[std::size_t(i)].kind == DrawCommand::Kind::rect &&
                     frame[std::size_t(i)].color == TIME_BAR_BACKGROUND &&
                     frame[std::size_t(i)].w == TIME_BAR_WIDTH);
}

TEST_F(TrialViewsTest, WhileFastForwardingOnlyTheBackgroundIsShownWhereTheLevelWas) {
    configs_of(sim).trial_time = 0.5;
    obj_trial& trial = start_trial(level_from_rows({"xxxxx", "x p x", "xxxxx"}), -1);
    frames(1);
    ASSERT_TRUE(views(trial)->world_hidden());
    EXPECT_TRUE(commands_of(renderer().last_frame, DrawCommand::Kind::texture).empty());
    const Rgba background = views(trial)->background;
    EXPECT_EQ(background, (Rgba{0x2e, 0x3b, 0x33, 255}));  // the shipped level_background_color
    const auto rects = commands_of(renderer().last_frame, DrawCommand::Kind::rect);
    EXPECT_TRUE(std::any_of(rects.begin(), rects.end(), [&](const DrawCommand& c) {
        return c.color == background && c.y <= Camera::VIEW_TOP && c.h >= Camera::VIEW_HEIGHT;
    }));
    trial.game_speed = 1;
    frames(1);
    EXPECT_FALSE(commands_of(renderer().last_frame, DrawCommand::Kind::texture).empty());
}

TEST_F(TrialViewsTest, SoundsFollowTheWorldOncePerKindPerFrameAndOnlyWithAView) {
    configs_of(sim).trial_time = 0.5;
    obj_trial& trial = start_trial(level_from_rows({"xxxxxx", "x pm x", "xxxxxx"}), 0);
    auto* monster = runtime.instance_find<obj_monster>(0);
    frames(1);
    monster->start_animation(CREATURE_ANIMATION_ATTACK, 0, 0, 10);
    monster->start_animation(CREATURE_ANIMATION_ATTACK, 0, 0, 10);
    monster->start_animation(CREATURE_ANIMATION_DUCK, 0, 0, 10);
    frames(1);
    EXPECT_EQ(played(Sound::attack), 1);
    EXPECT_EQ(played(Sound::miss), 1);
    EXPECT_EQ(played(Sound::hit), 0);
    EXPECT_EQ(played(Sound::trial_end), 0);
    trial.game_speed = -1;
    frames(1);
    EXPECT_EQ(played(Sound::trial_end), 1);
    frames(3);
    EXPECT_EQ(played(Sound::trial_end), 1);

    // The same trial without a view is silent.
    runtime.instance_destroy(trial.id());
    EXPECT_EQ(runtime.instance_number<obj_world_view>(), 0u);
    const std::int64_t attacks = played(Sound::attack);
    runtime.room_restart();
    runtime.run_frame();
    with_views(false);
    start_trial(level_from_rows({"xxxxxx", "x pm x", "xxxxxx"}), 0);
    runtime.instance_find<obj_monster>(0)->start_animation(CREATURE_ANIMATION_ATTACK, 0, 0, 10);
    frames(2);
    EXPECT_EQ(played(Sound::attack), attacks);
}

TEST_F(TrialViewsTest, AnInteractiveTrialGivesTheSameResultWithAndWithoutViews) {
    auto level =
        level_load_from_file(sim.files, sim.cell_types,
                             std::string(VELDRA_SOURCE_DIR) + "/datafiles/levels/level_05.txt");
    ASSERT_TRUE(level);
    configs_of(sim).trial_time = 8;
    auto run = [&](bool with) {
        with_views(with);
        obj_trial& trial = start_trial(*level, 4, 17);
        const InstanceId id = trial.id();
        for (int i = 0; i < 200 && !trial.result; ++i)
            frames(1);
        EXPECT_TRUE(trial.result.has_value());
        const std::string result = json_stringify(trial_result_to_value(*trial.result), false);
        const std::int64_t ticks = trial.ticker.spent_ticks;
        runtime.instance_destroy(id);
        runtime.room_restart();
        runtime.run_frame();
        return std::pair{result, ticks};
    };
    const auto without = run(false);
    const auto with = run(true);
    EXPECT_EQ(with, without);
    EXPECT_GT(played(Sound::trial_end), 0);  // the views did watch
}

}  // namespace
}  // namespace veldra

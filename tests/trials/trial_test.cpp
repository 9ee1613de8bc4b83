#include "trials/trial.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <regex>

#include "config/game_configurations.h"
#include "config/program_parameters.h"
#include "creatures/human_player.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "serial/json.h"
#include "support/level_rows.h"
#include "support/scoped_environment.h"
#include "trials/game_systems.h"
#include "trials/simulation_state.h"
#include "trials/trial_data.h"
#include "world/level_file.h"

namespace veldra {
namespace {

class TrialTest : public ::testing::Test {
protected:
    // First, so that it is set before the members below are made and put back after.
    testing::ScopedEnvironment data_folder = testing::data_folder_is_source_tree();

    void SetUp() override {
        initialize_game_systems(sim);
        ASSERT_TRUE(reload_game_configurations(sim.configs, sim.files, ""));
        runtime.start(runtime.room_add({"rm_game", nullptr}));
    }
    void TearDown() override { runtime.shutdown(); }

    GameConfigurations& mutable_configs() { return *sim.configs.configs; }

    Level level_from_rows(const std::vector<std::string>& rows) const {
        return testing::level_from_rows(sim.cell_types, rows);
    }

    obj_trial& make_trial(const Level& level, bool is_auto_run, double game_speed = 1,
                          double seed = 3) {
        auto& trial = runtime.instance_create<obj_trial>(0, 0, "Instances", sim);
        sim.trial.trial = trial.id();
        trial.initialize(level, seed, is_auto_run, game_speed, 0);
        return trial;
    }

    // Leaves the room as the next trial finds it: no entities of the last one.
    void restart_room() {
        runtime.room_restart();
        runtime.run_frame();
    }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    SimulationState sim{runtime};
    LogCapture capture;
    Level lonely_player() const { return level_from_rows({"xxxxx", "x p x", "xxxxx"}); }
};

TEST_F(TrialTest, SurvivingTrialRunsExactlyItsTicksAndEndsOnTheNextCall) {
    mutable_configs().trial_time = 0.5;  // 30 ticks
    auto& trial = make_trial(lonely_player(), true);
    auto result = std::get<TrialResult>(trial.start(PersonalityTraits{}));
    EXPECT_EQ(result.outcome, TrialOutcome::survived);
    EXPECT_EQ(trial.ticker.spent_ticks, 30);
    EXPECT_EQ(result.time_left, 0);
    EXPECT_EQ(result.num_humans_remaining, 1);
    EXPECT_EQ(result.energy_remaining, sim.configs.get().human_starting_energy);
    EXPECT_EQ(result.trial_score,
              sim.configs.get().trial_score(PersonalityTraits{}, result.energy_remaining / 10, 1));
    EXPECT_FALSE(trial.tick());  // the result is never replaced
    EXPECT_EQ(trial.state, TrialState::Reported);
}

TEST_F(TrialTest, AutomaticTrialRunsToItsEndAtAnyGameSpeed) {
    mutable_configs().trial_time = 0.5;
    for (double speed : {0.0, 1e-300, 0.25, -1.0}) {
        auto& trial = make_trial(lonely_player(), true, speed);
        auto result = std::get<TrialResult>(trial.start(PersonalityTraits{}));
        EXPECT_EQ(result.outcome, TrialOutcome::survived) << speed;
        EXPECT_EQ(trial.ticker.spent_ticks, 30) << speed;
        runtime.instance_destroy(trial.id());
    }
}

TEST_F(TrialTest, ZeroLengthTrialEndsWithoutATick) {
    mutable_configs().trial_time = 0;
    auto& trial = make_trial(lonely_player(), true);
    auto result = std::get<TrialResult>(trial.start(PersonalityTraits{}));
    EXPECT_EQ(result.outcome, TrialOutcome::survived);
    EXPECT_EQ(trial.ticker.spent_ticks, 0);
    EXPECT_TRUE(std::isnan(result.trial_score));  // time fraction 0 / 0
}

TEST_F(TrialTest, NoPlayerPerishesAtTheFirstTick) {
    auto& trial = make_trial(level_from_rows({"xxxxx", "x h x", "xxxxx"}), true);
    auto result = std::get<TrialResult>(trial.start(std::nullopt));
    EXPECT_EQ(result.outcome, TrialOutcome::perished);
    EXPECT_EQ(trial.ticker.spent_ticks, 1);
    EXPECT_EQ(result.energy_remaining, 0);
}

TEST_F(TrialTest, PlayerDyingInTheLastTickPerishes) {
    // Energy runs out in tick 0; the creature tick removes the player in tick 1, the last one.
    mutable_configs().human_starting_energy = 0.5;
    mutable_configs().human_constant_energy_loss_amount = 0.5;
    mutable_configs().human_constant_energy_loss_frequency = 60;
    mutable_configs().trial_time = 2.0 / 60;
    auto& trial = make_trial(lonely_player(), true);
    auto result = std::get<TrialResult>(trial.start(PersonalityTraits{}));
    EXPECT_EQ(result.outcome, TrialOutcome::perished);
    EXPECT_EQ(result.time_left, 0);
}

TEST_F(TrialTest, GameSpeedsSetTicksPerFrame) {
    auto ticks_per_step = [&](double speed, int steps) {
        auto& trial = make_trial(lonely_player(), false, speed);
        trial.start(PersonalityTraits{});
        std::vector<std::int64_t> spent;
        for (int i = 0; i < steps; ++i) {
            trial._step();
            spent.push_back(trial.ticker.spent_ticks);
        }
        restart_room();
        return spent;
    };
    EXPECT_EQ(ticks_per_step(0.25, 8), (std::vector<std::int64_t>{0, 0, 0, 1, 1, 1, 1, 2}));
    EXPECT_EQ(ticks_per_step(2.5, 4), (std::vector<std::int64_t>{2, 5, 7, 10}));
    EXPECT_EQ(ticks_per_step(3, 2), (std::vector<std::int64_t>{3, 6}));
}

TEST_F(TrialTest, InteractivePromiseIsFulfilledOneFrameAfterTheResult) {
    mutable_configs().trial_time = 1;
    auto& trial = make_trial(lonely_player(), false, -1);
    EXPECT_TRUE(std::holds_alternative<std::monostate>(obj_trial::StartResult{}));
    auto started = trial.start(PersonalityTraits{});
    ASSERT_TRUE(std::holds_alternative<Promise<TrialResult>>(started));
    EXPECT_TRUE(
        std::holds_alternative<std::monostate>(trial.start(PersonalityTraits{})));  // only once
    Promise<TrialResult> promise = std::get<Promise<TrialResult>>(started);
    trial._step();
    EXPECT_TRUE(trial.result.has_value());
    EXPECT_EQ(trial.state, TrialState::Ended);
    EXPECT_TRUE(promise.is_pending());
    trial._step();
    ASSERT_TRUE(promise.is_fulfilled());
    EXPECT_EQ(promise.value().outcome, TrialOutcome::survived);
}

TEST_F(TrialTest, AiHumanWithAnUnknownTypeNumberGetsDefaultRangesAndAnError) {
    auto& trial = make_trial(level_from_rows({"xxxxxx", "x p9 x", "xxxxxx"}), true);
    trial.start(PersonalityTraits{});
    EXPECT_TRUE(
        capture.contains("has type number \"9\" but the configurations don't define personality "
                         "traits for that number."));
}

TEST_F(TrialTest, SameSeedGivesTheSameResultAndEvents) {
    sim.log_automatic_trial_events = true;
    auto level =
        level_load_from_file(sim.files, sim.cell_types,
                             std::string(VELDRA_SOURCE_DIR) + "/datafiles/levels/level_05.txt");
    ASSERT_TRUE(level);
    auto run = [&](double seed) {
        capture.lines.clear();
        auto& trial = make_trial(*level, true, 1, seed);
        auto result = std::get<TrialResult>(trial.start(PersonalityTraits{0.5, -0.5, 1, 0, -1}));
        restart_room();
        std::string events;
        for (const auto& line : capture.lines)
            events += line.message + "\n";
        // Instance ids are never reused, so they differ between the runs; nothing else may.
        events = std::regex_replace(events, std::regex("[0-9]{6,}"), "#");
        return std::pair{json_stringify(trial_result_to_value(result), false), events};
    };
    auto first = run(11);
    auto second = run(11);
    EXPECT_EQ(first.first, second.first);
    EXPECT_EQ(first.second, second.second);
    EXPECT_NE(first.second.find("Trial started."), std::string::npos);
}

}  // namespace
}  // namespace veldra

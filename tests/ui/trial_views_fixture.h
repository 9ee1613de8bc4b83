#pragma once
// A game room with the shipped configuration and English texts, interactive trials made from
// rows of cells, and the application's hook that gives them their views. Frames run through the
// program's own frame loop, so scripted input is polled and the draw list is presented to the
// NullRenderer, whose last_frame tests read.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "config/localization.h"
#include "runtime/frame_loop.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "support/level_rows.h"
#include "support/scoped_environment.h"
#include "trials/game_systems.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"
#include "ui/sprites.h"
#include "ui/trial_views.h"

namespace veldra::testing {

class TrialViewsTest : public ::testing::Test {
protected:
    // First, so that it is set before the members below are made and put back after.
    testing::ScopedEnvironment data_folder = testing::data_folder_is_source_tree();

    void SetUp() override {
        initialize_game_systems(sim);
        ASSERT_TRUE(reload_game_configurations(sim.configs, sim.files, ""));
        initialize_localization(localization);
        ASSERT_TRUE(load_and_set_localization(sim.files, localization, "en"));
        runtime.start(runtime.room_add({"rm_game", nullptr}));
        with_views(true);
    }
    void TearDown() override { runtime.shutdown(); }

    void with_views(bool on) {
        if (on)
            sim.create_trial_views = [this](obj_trial& trial) {
                return create_trial_views(sim, trial, localization, sprites, options);
            };
        else
            sim.create_trial_views = nullptr;
    }

    Level level_from_rows(const std::vector<std::string>& rows) const {
        return testing::level_from_rows(sim.cell_types, rows);
    }

    // An interactive trial, laid out and started.
    obj_trial& start_trial(const Level& level, double game_speed = 1, double seed = 3) {
        auto& trial = runtime.instance_create<obj_trial>(0, 0, "Instances", sim);
        sim.trial.trial = trial.id();
        trial.initialize(level, seed, false, game_speed, 0);
        trial.start(PersonalityTraits{});
        return trial;
    }

    obj_trial_views* views(const obj_trial& trial) const {
        return runtime.find_as<obj_trial_views>(trial.hud);
    }

    void frames(int count, InputFrame input = {}) {
        for (int i = 0; i < count; ++i) {
            scripted_input().frames.push_back(input);
            run_program_frame(runtime, services);
        }
    }

    ScriptedInput& scripted_input() { return static_cast<ScriptedInput&>(*services.input); }
    NullRenderer& renderer() { return static_cast<NullRenderer&>(*services.renderer); }
    std::int64_t played(Sound sound) {
        return static_cast<SilentAudio&>(*services.audio).played[static_cast<std::size_t>(sound)];
    }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    SimulationState sim{runtime};
    Localization localization;
    Sprites sprites = make_sprites(*services.renderer);
    TrialViewOptions options;
    LogCapture capture;
};

}  // namespace veldra::testing

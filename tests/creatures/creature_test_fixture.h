#pragma once
// Shared by the creatures tests: a fresh runtime and creature world with the shipped
// configuration loaded, the level cell types, action types, pathfinding and spawning set up, a
// level laid out from rows of characters, and a tiny ticker standing in for the trial's
// (handlers in subscription order, those of destroyed owners skipped).

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "config/game_configurations.h"
#include "creatures/creature_pathfinding.h"
#include "creatures/creature_spawning.h"
#include "creatures/human_action_type.h"
#include "creatures/trial_world.h"
#include "runtime/gc.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "support/scoped_environment.h"
#include "world/level.h"
#include "world/level_cell_types.h"

namespace veldra::testing {

class CreatureTest : public ::testing::Test {
protected:
    // First, so that it is set before the members below are made and put back after.
    testing::ScopedEnvironment data_folder = testing::data_folder_is_source_tree();

    void SetUp() override {
        initialize_configs(configs);
        ASSERT_TRUE(reload_game_configurations(configs, *services.files, ""));
        initialize_level_cell_types(cell_types);
        initialize_human_action_types(action_types);
        initialize_creature_pathfinding(pathfinding);
        initialize_creature_spawning(spawn_hooks, world);
        runtime.start(runtime.room_add({"rm_test", nullptr}));
        world.rng = &trial_rng;
        world.subscribe_tick = [this](InstanceId owner, std::function<void(Ticks, Rng&)> fn) {
            handlers.push_back({owner, std::move(fn)});
        };
        world.log_event = [this](const std::string& text) { events.push_back(text); };
    }

    void TearDown() override { runtime.shutdown(); }

    GameConfigurations& mutable_configs() { return *configs.configs; }

    // Each string a row, each character a cell type ('x' hole, 'r' rock, 's' sand, 'h' human,
    // 'p' player, 'm' monster, 'f' food, ' ' empty). Entities are created as the level says.
    const Terrain& load(const std::vector<std::string>& rows, bool is_auto_run = true) {
        std::vector<std::vector<LevelCell>> cells(rows.size());
        for (std::size_t cy = 0; cy < rows.size(); ++cy) {
            for (std::size_t cx = 0; cx < rows[cy].size(); ++cx) {
                const LevelCellType* type = cell_types.from_char(rows[cy][cx]);
                EXPECT_NE(type, nullptr) << "no cell type for '" << rows[cy][cx] << "'";
                cells[cy].push_back(LevelCell{int(cx), int(cy), type});
            }
        }
        // As the trial does: interactive trials also write the lines automatic ones leave out.
        world.log_interactive_event = is_auto_run ? nullptr : world.log_event;
        terrain = level_dump(Level("test", std::move(cells), cell_types), spawn_hooks);
        world.terrain = &*terrain;
        return *terrain;
    }

    // An instance whose tick handler is never called: a target that stays where it is put.
    template <class T>
    T& create_unticked(double x, double y) {
        auto subscribe = std::move(world.subscribe_tick);
        world.subscribe_tick = nullptr;
        T& instance = create<T>(x, y);
        world.subscribe_tick = std::move(subscribe);
        return instance;
    }

    // Creatures live in the fixture's world; food needs none.
    template <class T>
    T& create(double x, double y) {
        if constexpr (std::is_constructible_v<T, TrialWorld&>)
            return runtime.instance_create<T>(x, y, "Instances", world);
        else
            return runtime.instance_create<T>(x, y);
    }

    // Runs `count` ticks like the trial's ticker: every handler whose owner still exists, in
    // subscription order, handlers added during a tick included.
    void tick(int count = 1) {
        for (int i = 0; i < count; ++i) {
            for (std::size_t h = 0; h < handlers.size(); ++h) {
                if (runtime.instance_exists(handlers[h].owner)) {
                    auto fn = handlers[h].fn;  // the vector may grow while it runs
                    fn(spent_ticks, tick_rng);
                }
            }
            spent_ticks += 1;
            world.spent_ticks = spent_ticks;
        }
    }

    static double centre(int c) { return c * 64.0 + 32.0; }

    struct Handler {
        InstanceId owner;
        std::function<void(Ticks, Rng&)> fn;
    };

    GcScope collector;
    Services services;
    Runtime runtime{services};
    ConfigsState configs;
    LevelCellTypeTable cell_types;
    LevelSpawnHooks spawn_hooks;
    HumanActionTypes action_types;
    CreaturePathfinding pathfinding;
    TrialWorld world{runtime, configs, action_types, pathfinding};
    LogCapture capture;
    Rng trial_rng{11};
    Rng tick_rng{23};
    std::vector<Handler> handlers;
    std::vector<std::string> events;
    std::optional<Terrain> terrain;
    Ticks spent_ticks = 0;
};

}  // namespace veldra::testing

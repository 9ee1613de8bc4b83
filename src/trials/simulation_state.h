#pragma once
// Everything a trial reads and writes, as named members constructed in the order written here:
// the configuration first (everything below reads it), then the static tables of the
// simulation (cell types, spawn hooks, action types), the pathfinding, the creatures' world
// built from those, and the trial's own globals. The entity runtime it plays in belongs to the
// application and is handed in. Systems get the members they need by reference; tests make a
// fresh state of their own.

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "async/promise.h"
#include "config/game_configurations.h"
#include "config/personality_traits.h"
#include "creatures/creature_pathfinding.h"
#include "creatures/human_action_type.h"
#include "creatures/trial_world.h"
#include "runtime/files.h"
#include "runtime/instance_id.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "world/level.h"
#include "world/level_cell_types.h"

namespace veldra {

class obj_trial;

// The Trial global and its once-only flag.
struct TrialSlot {
    bool initialized = false;
    InstanceId trial = NO_INSTANCE;
};

struct SimulationState {
    explicit SimulationState(Runtime& runtime) : runtime(runtime) {}
    SimulationState(const SimulationState&) = delete;
    SimulationState& operator=(const SimulationState&) = delete;

    // The Trial global: the running trial or nullptr.
    obj_trial* current_trial() const;

    Runtime& runtime;
    // Where the auto-run file and the levels are read from: the runtime's, so a test that gives
    // the runtime files in memory gives them to the trials too.
    Files& files{*runtime.services().files};
    ConfigsState configs;
    LevelCellTypeTable cell_types;
    LevelSpawnHooks spawn_hooks;
    HumanActionTypes action_types;
    CreaturePathfinding pathfinding;
    TrialWorld world{runtime, configs, action_types, pathfinding};
    TrialSlot trial;
    // Levels are read once per batch: dumping never changes a level, so every run of a level
    // starts from the same cells.
    std::map<std::string, Level> auto_run_levels;
    // Whether automatic trials write their events to the log: an auto run writing an output
    // file, or a single trial run from the shell. Interactive trials always do.
    bool log_automatic_trial_events = false;
    // Made by the application when it has a window: creates the views of an interactive trial
    // once its level is laid out and returns the instance that owns them, which the trial
    // destroys with itself. Unset, interactive trials run unseen (tests, headless replays).
    std::function<InstanceId(obj_trial&)> create_trial_views;
    // Made by the application when it has a window: lets the player adjust `traits` in the
    // personality-traits menu under `heading`, fulfilled with their choice when they start the
    // trial. Unset, a trial starts with the traits it was given.
    std::function<Promise<PersonalityTraits>(const PersonalityTraits& traits,
                                             const std::string& heading)>
        ask_personality_traits;
};

}  // namespace veldra

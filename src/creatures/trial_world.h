#pragma once
// The world as creatures see it: the runtime they live in, the configuration, the action types,
// the pathfinding, and the running trial's terrain, generator, clock, ticker and event logs.
// Every creature is made with a reference to it and reads everything through it. The trial
// lives above this folder, so it fills the trial's part before the level is laid out and clears
// it when it ends; creatures never hold on to those pointers beyond a tick. Nothing here is
// about drawing: views (ui/) follow the creatures' events and creature_died, and a trial with no
// view attached simply has no listener.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "creatures/creature_scratch.h"
#include "creatures/event.h"
#include "creatures/player_commands.h"
#include "runtime/assertion.h"
#include "runtime/instance_id.h"
#include "util/rng.h"
#include "util/ticks.h"

namespace veldra {

class Runtime;
class Terrain;
class obj_creature;
struct ConfigsState;
struct GameConfigurations;
struct HumanActionTypes;
struct CreaturePathfinding;

// Logs, as a warning, that `errors` times a human's or monster's weights added up to zero or
// less (nothing when none did): a parallel run sums its workers' counts into one such line.
void log_zero_total_weight_summary(std::uint64_t errors);

struct TrialWorld {
    TrialWorld(Runtime& runtime, const ConfigsState& configs, const HumanActionTypes& action_types,
               CreaturePathfinding& pathfinding)
        : runtime(runtime),
          configs_state(configs),
          action_types(action_types),
          pathfinding(pathfinding) {}
    TrialWorld(const TrialWorld&) = delete;
    TrialWorld& operator=(const TrialWorld&) = delete;

    // The configuration in force; reading it before one is loaded is a programming fault.
    const GameConfigurations& configs() const;
    const Terrain& current_terrain() const {
        VELDRA_ASSERT(terrain, "creatures ticked before the trial set its terrain?");
        return *terrain;
    }
    Rng& trial_rng() const {
        VELDRA_ASSERT(rng, "creatures ticked before the trial set its generator?");
        return *rng;
    }
    // Logs "The total weight of <what> is zero or negative! ..." and counts it.
    void log_zero_total_weight(std::string_view what);
    // Logs, as a warning, how many such errors the trials since start-up logged (none: nothing),
    // so that a shell run whose errors scrolled by ends by saying so.
    void log_zero_total_weight_summary() const {
        veldra::log_zero_total_weight_summary(zero_weight_errors);
    }
    // Forgets the trial's part: what a trial does when it ends.
    void clear_trial();

    Runtime& runtime;
    const ConfigsState& configs_state;
    const HumanActionTypes& action_types;
    CreaturePathfinding& pathfinding;

    const Terrain* terrain = nullptr;  // the level's terrain; set by the trial before dumping
    // The trial's own generator: counter-attack and exchange-back chances, monster timers and
    // cell picks. Tick handlers get the ticker's generator instead, for the decision draws.
    Rng* rng = nullptr;
    Ticks spent_ticks = 0;  // ticks run so far; the creatures' only clock
    // Subscribes a tick handler under its owner; the ticker drops it once the owner is gone.
    std::function<void(InstanceId owner, std::function<void(Ticks tick, Rng& rng)>)> subscribe_tick;
    // The trial's event log; unset means nothing is logged, so callers test it before building
    // any text.
    std::function<void(const std::string&)> log_event;
    // Lines only interactive trials write (attacks, eating); unset in automatic ones.
    std::function<void(const std::string&)> log_interactive_event;
    // Raised by a creature's destroy event, while it still stands where it died.
    Event<const obj_creature&> creature_died;

    // How often a sampler's weights added up to 0 or less (each time logged as an error) over
    // every trial since start-up: allowed, but a shell run says at its end that it happened.
    std::uint64_t zero_weight_errors = 0;
    // Decisions humans have made since start-up and the last one to decide: what stepping the
    // trial one decision at a time waits for.
    std::uint64_t decisions = 0;
    InstanceId last_decision_by = NO_INSTANCE;

    // The player's commands of the running trial; the trial empties it when it is laid out.
    PlayerCommands player_commands;

    CreatureScratch scratch;
};

}  // namespace veldra

#pragma once
// The running trial as creatures see it. The trial lives above this folder, so it hands its
// terrain, generator, clock, ticker and event logs down through this slot: it fills it before the
// level is laid out and resets it when it ends. Creatures never hold on to these pointers beyond
// a tick. Nothing here is about drawing: views (ui/) follow the creatures' events and
// creature_died, and a trial with no view attached simply has no listener.

#include <functional>
#include <string>

#include "creatures/event.h"
#include "runtime/instance_id.h"
#include "util/rng.h"
#include "util/ticks.h"

namespace veldra {

class Terrain;
class obj_creature;

struct TrialWorld {
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
};

TrialWorld& trial_world();

}  // namespace veldra

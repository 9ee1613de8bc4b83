#pragma once
// The view of a running trial: everything a window needs to draw the level that the simulation
// does not keep. It follows the creatures' events and steps their views once per frame. A trial
// runs the same with or without one; headless runs attach none.

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "creatures/event.h"
#include "runtime/instance.h"
#include "runtime/object_type.h"
#include "ui/creature_view.h"
#include "ui/death_effect.h"
#include "ui/scenery_looks.h"

namespace veldra {

class Runtime;
class Terrain;
struct TrialWorld;

class obj_world_view : public Instance {
    VELDRA_OBJECT(obj_world_view, Instance)
public:
    // Call after the trial has laid out its level: builds the scenery and starts following the
    // trial's deaths.
    void attach(TrialWorld& world, const Terrain& terrain);
    void on_step_end() override;
    void on_clean_up() override;

    SceneryLooks scenery;
    std::map<InstanceId, CreatureView> creatures;  // by id, so drawing never follows hash order
    std::vector<DeathEffect> deaths;
    // The game speed (0 while paused), set by the trial's views each frame, and the clock of
    // walking that runs at it. Idle creatures bob on wall time instead, like food: a paused
    // world still breathes, but nobody walks on the spot or finishes a blow.
    double pace = 1;
    double animation_ms = 0;
    // Told of every one-shot animation and death the view sees, as they happen (inside a trial
    // tick): listeners only note them, for sounds played later in the frame.
    std::function<void(CreatureAnimation)> on_animation_started;
    std::function<void()> on_creature_died;

private:
    void follow_new_creatures();
    TrialWorld* world_ = nullptr;
    double last_step_ms_ = -1;
    EventToken died_subscription_ = 0;
};

// Entities in the order they are drawn: higher on the screen (smaller y) first, so lower ones
// stand in front; ties by creation order.
std::vector<InstanceId> entity_draw_order(Runtime& runtime);

// Food bobs up to 2 pixels, phase-shifted per instance by its id hash. Wall time is fine here:
// nothing in the simulation reads it. Negative: up.
double food_bob_offset(double current_time_ms, std::uint32_t id_hash);

}  // namespace veldra

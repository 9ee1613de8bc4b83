#pragma once
// What a window shows of one creature beyond its position: which way it faces, the one-shot
// animation it plays (attack, duck, hurt, exchange) and how long it has stood still. Fed by the
// creature's animation_started_event and advanced once per drawn frame, so none of it exists
// in a run without a window, and nothing in the simulation reads it.

#include <cstdint>

#include "creatures/creature.h"
#include "creatures/event.h"

namespace veldra {

// The sprite a view shows, chosen from the state below.
enum class CreaturePose : std::uint8_t { idle, walk, stand, attack, duck, hurt, exchange };

struct CreatureView {
    // Steps of standing still after which an idle creature takes its standing pose.
    static constexpr double STAND_AFTER_STEPS = 90;

    // Starts facing a direction from the creature's id hash: looks random, touches no generator.
    explicit CreatureView(const obj_creature& creature);

    void start(const CreatureAnimationStart& animation);
    // One drawn frame: the one-shot animation's progress, or standing time from whether the
    // creature moved between its last two ticks. Both advance by `pace`, the game speed, so
    // animations keep pace with the simulation and stand still while it is paused.
    void step(const obj_creature& creature, double pace = 1);
    CreaturePose pose() const;

    double xscale = 1;  // -1 faces left, 1 right
    CreatureAnimation animation = CREATURE_ANIMATION_NONE;
    double animation_timer = 0;      // steps elapsed
    double animation_time = 0;       // steps
    double animation_direction = 0;  // degrees
    double time_spend_standing = 0;  // steps
    bool moved = false;              // between the creature's last two ticks
    EventToken subscription = 0;     // on the creature's animation_started_event
};

}  // namespace veldra

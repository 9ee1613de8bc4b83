#include "ui/creature_view.h"

#include <cmath>
#include <numbers>

namespace veldra {

CreatureView::CreatureView(const obj_creature& creature)
    : xscale((creature.id_hash >> 7 & 1) ? 1 : -1) {}

void CreatureView::start(const CreatureAnimationStart& started) {
    animation = started.kind;
    animation_timer = 0;
    animation_time = started.time;
    animation_direction = started.direction;
}

void CreatureView::step(const obj_creature& creature, double pace) {
    if (animation != CREATURE_ANIMATION_NONE) {
        const double facing = std::cos(animation_direction * std::numbers::pi / 180.0);
        xscale = facing < 0 ? -1 : 1;
        animation_timer += pace;
        if (animation_timer >= animation_time)
            animation = CREATURE_ANIMATION_NONE;
        return;
    }
    moved = creature.x_on_current_tick != creature.x_on_previous_tick ||
            creature.y_on_current_tick != creature.y_on_previous_tick;
    time_spend_standing = moved ? 0 : time_spend_standing + pace;
}

CreaturePose CreatureView::pose() const {
    switch (animation) {
        case CREATURE_ANIMATION_ATTACK:
            return CreaturePose::attack;
        case CREATURE_ANIMATION_DUCK:
            return CreaturePose::duck;
        case CREATURE_ANIMATION_HURT:
            return CreaturePose::hurt;
        case CREATURE_ANIMATION_EXCHANGE:
            return CreaturePose::exchange;
        case CREATURE_ANIMATION_NONE:
            break;
    }
    if (moved)
        return CreaturePose::walk;
    return time_spend_standing >= STAND_AFTER_STEPS ? CreaturePose::stand : CreaturePose::idle;
}

}  // namespace veldra

#include "ui/view_sounds.h"

#include "creatures/food.h"
#include "runtime/runtime.h"

namespace veldra {

void ViewSounds::note_animation(CreatureAnimation kind) {
    switch (kind) {
        case CREATURE_ANIMATION_ATTACK:
            note(Sound::attack);
            break;
        case CREATURE_ANIMATION_HURT:
            note(Sound::hit);
            break;
        case CREATURE_ANIMATION_DUCK:
            note(Sound::miss);
            break;
        case CREATURE_ANIMATION_EXCHANGE:
            note(Sound::exchange);
            break;
        case CREATURE_ANIMATION_NONE:
            break;
    }
}

void ViewSounds::watch_food(Runtime& runtime) {
    for (InstanceId id : food_)
        if (!runtime.instance_exists(id))
            note(Sound::eat);
    food_.clear();
    runtime.for_each<obj_food>([this](obj_food& food) { food_.push_back(food.id()); });
}

void ViewSounds::watch_result(bool has_result) {
    if (has_result && !had_result_)
        note(Sound::trial_end);
    had_result_ = has_result;
}

void ViewSounds::flush(Audio& audio) {
    for (std::size_t i = 0; i < pending_.size(); ++i)
        if (pending_[i])
            audio.play(static_cast<Sound>(i));
    pending_.reset();
}

}  // namespace veldra

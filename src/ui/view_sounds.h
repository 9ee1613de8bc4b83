#pragma once
// The sounds of a trial's window. Events arrive inside trial ticks, possibly many in one frame at
// a high game speed; they are only noted there and played once per kind at the end of the
// frame's steps, so a burst of hits is one hit and no sound starts from a tick.

#include <bitset>
#include <vector>

#include "creatures/creature.h"
#include "runtime/audio.h"
#include "runtime/instance_id.h"

namespace veldra {

class Runtime;

class ViewSounds {
public:
    void note(Sound sound) { pending_[static_cast<std::size_t>(sound)] = true; }
    void note_animation(CreatureAnimation kind);
    // Food that was there last frame and is gone now was eaten.
    void watch_food(Runtime& runtime);
    // The trial's result appearing ends it.
    void watch_result(bool has_result);
    // Plays what was noted since the last call, each kind once.
    void flush(Audio& audio);

private:
    std::bitset<static_cast<std::size_t>(Sound::count)> pending_;
    std::vector<InstanceId> food_;
    bool had_result_ = false;
};

}  // namespace veldra

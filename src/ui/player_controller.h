#pragma once
// The player's keyboard and mouse turned into commands for their human: the held walking
// direction whenever it changes, and clicks as target points in the world. Commands are the only
// thing a view puts into the simulation; the human applies them in its own tick. With developer
// keys, P pauses and +/- change the game speed (the trial's time control).

#include <string>
#include <vector>

#include "runtime/input.h"
#include "runtime/renderer.h"
#include "ui/camera.h"

namespace veldra {

class obj_trial;
class obj_human;
struct TrialWorld;
struct Sprites;

class PlayerController {
public:
    // One frame of input for `trial`, whose creatures live in `world`. True when a click became
    // a command (the view plays its click sound).
    bool step(const InputFrame& input, const Camera& camera, TrialWorld& world, obj_trial& trial,
              bool developer_keys);

    // The highlight of what a click at the mouse would do (world space, under the camera) and
    // the crosshair; nothing when the mouse is outside the world's viewport.
    void draw_target(DrawList& list, const Camera& camera, const Sprites& sprites,
                     const TrialWorld& world, const obj_human& player) const;
    void draw_crosshair(DrawList& list, const Sprites& sprites) const;

    int held_dx = 0;
    int held_dy = 0;
    double mouse_x = 0;  // logical screen pixels
    double mouse_y = 0;

private:
    void developer_step(const InputFrame& input, obj_trial& trial);
};

// Whether a screen point is in the part of the screen that shows the world.
bool in_world_viewport(double screen_x, double screen_y);

// The keyboard hints (none: none shown) and, with developer keys, the game speed, in the lower
// left corner.
void draw_control_hints(Renderer& renderer, const std::vector<std::string>& hints,
                        bool developer_keys, double game_speed);

}  // namespace veldra

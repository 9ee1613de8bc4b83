#pragma once
// Turns a trial's world into draw commands through a camera: the level's ground picture, then
// every entity from the top of the level down (shadow, body with its pose, the corpses), then
// what floats above them (energy, action icons, greetings, numbers).

#include <cstdint>

#include "runtime/renderer.h"
#include "ui/camera.h"
#include "util/ticks.h"

namespace veldra {

class Runtime;
class obj_world_view;
class obj_creature;
class FloatingNumbers;
struct Sprites;

// A creature's body is drawn this many world pixels above its position, so its feet and its
// shadow sit on the position.
inline constexpr double BODY_LIFT = 6;
// AI humans greet with a speech bubble for this long at the trial's start.
inline constexpr Ticks GREETING_TICKS = 180;

// `texture`, w x h world pixels centred on (x, y), through the camera.
void draw_world_sprite(DrawList& list, const Camera& camera, TextureId texture, double x,
                       double y, double w, double h, Rgba tint = {255, 255, 255, 255},
                       double angle = 0, bool flip_x = false);

// Where on screen a creature standing at (x, y) and not moving shows its body's flat colour
// (see BODY_FLAT_RADIUS): what a screenshot test samples.
ScreenPoint creature_body_screen_point(const Camera& camera, double x, double y);

struct WorldScene {
    Runtime& runtime;
    const Camera& camera;
    const Sprites& sprites;
    const obj_world_view& view;
    const FloatingNumbers& numbers;
    TextureId terrain = 0;      // the level's ground picture
    Rgba background;            // around the level
    double time_ms = 0;         // for idle motion only
    Ticks spent_ticks = 0;      // the trial's
    bool hidden = false;        // fast-forwarding: the level's area is covered instead
};

void draw_world(DrawList& list, const WorldScene& scene);

// The parts above the bodies, drawn after all of them so no body covers another's bar.
void draw_world_overlays(DrawList& list, const WorldScene& scene);

}  // namespace veldra

#pragma once
// The corpse a creature leaves in a window: over 30 steps it sinks 5 pixels, tilts and fades.

namespace veldra {

struct DeathEffect {
    static constexpr double DURATION = 30;  // steps
    static constexpr double SINK_PIXELS = 5;
    static constexpr double TILT_DEGREES = 90;

    // Sinks and tilts quickly at first and settles (ease-out), while fading evenly. False once
    // it has faded out and can be dropped.
    bool step();

    double x = 0;
    double start_y = 0;
    double xscale = 1;  // the creature's facing when it died
    bool was_human = false;
    double y = 0;
    double angle = 0;  // degrees
    double alpha = 1;
    double timer = 0;  // steps elapsed
};

}  // namespace veldra

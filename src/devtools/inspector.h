#pragma once
// The inspector: a developer panel that shows everything about one creature, live. While the
// developer tools show, a right click on a creature selects it (the player's controls leave the
// right button alone); "Follow" makes the camera follow it instead of the player. A selection
// that dies says so and is cleared.

#include <string>
#include <vector>

#include "runtime/instance_id.h"
#include "ui/overlay.h"

namespace veldra {

class Camera;
class Runtime;
class obj_creature;
struct TrialWorld;

inline constexpr const char* INSPECTOR_HEADING = "Inspector";
inline constexpr const char* INSPECTOR_FOLLOW = "Follow";
inline constexpr const char* INSPECTOR_CLOSE = "Close";
// How near, in world pixels, to a creature's body a right click must land to pick it.
inline constexpr double INSPECTOR_PICK_RADIUS = 36;

// Everything the panel says about `creature`, a line each: kind and id, where it stands, energy,
// cooldowns, its path, and for a human the running action's debug string, the memory, the
// traits and the action weights (those of a full human, as the traits' print-out gives them,
// and those of its energy now).
std::vector<std::string> inspector_lines(const obj_creature& creature, const TrialWorld& world);

// The creature whose body is nearest to the screen point (x, y) within INSPECTOR_PICK_RADIUS;
// NO_INSTANCE when none is.
InstanceId creature_under_pointer(Runtime& runtime, const Camera& camera, double x, double y);

class obj_inspector : public obj_overlay {
    VELDRA_OBJECT(obj_inspector, obj_overlay)
public:
    obj_inspector() { persistent = true; }
    void on_step_begin() override;  // the right click, before the views move the camera
    void on_step() override;        // the panel

    OverlayLayer overlay_layer() const override { return OverlayLayer::panel; }
    // Only with something to say, so that with nothing selected the debug menu stays in front.
    bool showing() const override;
    const ControlRecord& controls() const override { return controls_; }

    // Selects a creature (NO_INSTANCE: nothing); a new selection is not followed.
    void select(InstanceId creature);
    InstanceId selected() const { return selected_; }
    // What the panel says now: the selection's lines, or that it died.
    const std::vector<std::string>& lines() const { return lines_; }
    bool follow = false;

private:
    // Refreshes the lines, notices a death and tells the views whom to follow.
    void update();

    InstanceId selected_ = NO_INSTANCE;
    std::vector<std::string> lines_;
    ControlRecord controls_;
};

}  // namespace veldra

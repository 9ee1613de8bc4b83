#pragma once
// The time-control panel under the HUD's time bar: whether the trial runs and how fast, its
// tick, and buttons to pause or resume, step one tick or one decision, pick a speed or
// fast-forward. Each button runs the terminal's command for it, so both work the same.

#include <string>

#include "ui/overlay.h"

namespace veldra {

class obj_trial;

inline constexpr const char* TIME_CONTROL_HEADING = "Time control";

// "Paused", "Speed x2" or "Fast-forward": the trial's state as the panel shows it.
std::string time_control_state_text(const obj_trial& trial);

class obj_debug_time_control : public obj_overlay {
    VELDRA_OBJECT(obj_debug_time_control, obj_overlay)
public:
    obj_debug_time_control() { persistent = true; }
    void on_step() override;

    OverlayLayer overlay_layer() const override { return OverlayLayer::panel; }
    bool showing() const override;
    const ControlRecord& controls() const override { return controls_; }

private:
    ControlRecord controls_;
};

}  // namespace veldra

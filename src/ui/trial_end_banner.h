#pragma once
// Over the world once a played trial has ended, until the window closes: how it ended, the
// score, and what the player can do now. Without it the last frame would simply freeze and a
// participant could not tell whether the game had hung.

#include <string>
#include <vector>

#include "runtime/instance.h"
#include "runtime/object_type.h"

namespace veldra {

class obj_trial_end_banner : public Instance {
    VELDRA_OBJECT(obj_trial_end_banner, Instance)
public:
    // The first line is the headline; the others are drawn smaller below it.
    explicit obj_trial_end_banner(std::vector<std::string> lines) : lines(std::move(lines)) {}
    void on_draw_gui() override;

    std::vector<std::string> lines;
};

}  // namespace veldra

#pragma once
// The HUD of an interactive trial: time, the player's energy and the total score, drawn in the
// band above the world (positions in hud_layout.h). Each part finds the trial by id every frame
// and only reads it.

#include <string>

#include "creatures/event.h"
#include "runtime/instance.h"
#include "runtime/object_type.h"

namespace veldra {

class obj_trial;
struct Localization;

// The labels, looked up once when the HUD is made.
struct TrialHudLabels {
    std::string total_score;
    std::string energy;
    std::string time;
};

// The time bar's fill: round(width * spent / max), the whole bar for a trial of no length.
float time_bar_fill_width(double spent_ticks, double max_ticks, float width);

// Owns the three parts; destroying it destroys them.
class obj_trial_hud : public Instance {
    VELDRA_OBJECT(obj_trial_hud, Instance)
public:
    obj_trial_hud(InstanceId trial, TrialHudLabels labels)
        : trial_(trial), labels_(std::move(labels)) {}
    void on_create() override;
    void on_clean_up() override;

    InstanceId time_hud = NO_INSTANCE;
    InstanceId energy_hud = NO_INSTANCE;
    InstanceId score_hud = NO_INSTANCE;

private:
    InstanceId trial_;
    TrialHudLabels labels_;
};

class obj_trial_time_hud : public Instance {
    VELDRA_OBJECT(obj_trial_time_hud, Instance)
public:
    obj_trial_time_hud(InstanceId trial, std::string label)
        : trial_(trial), label_(std::move(label)) {}
    void on_draw_gui() override;

private:
    InstanceId trial_;
    std::string label_;
};

class obj_trial_energy_hud : public Instance {
    VELDRA_OBJECT(obj_trial_energy_hud, Instance)
public:
    explicit obj_trial_energy_hud(std::string label) : label_(std::move(label)) {}
    void on_step() override;
    void on_draw_gui() override;
    void on_clean_up() override;

    double damage_flash_timer = 0;  // steps left of the red flash after the player is hurt
    double animated_energy = 0;
    double energy_max = 0;

private:
    // Subscribes to the player's human the first time one is found.
    void find_player();
    std::string label_;
    InstanceId player_ = NO_INSTANCE;
    EventToken flash_subscription_ = 0;
};

// The total as the HUD writes it while it counts from `animated` up to `target`: whole numbers on
// the way, so it never flickers through fractions, and the exact total once there.
std::string trial_score_shown(double animated, double target);

class obj_trial_score_hud : public Instance {
    VELDRA_OBJECT(obj_trial_score_hud, Instance)
public:
    obj_trial_score_hud(InstanceId trial, std::string label)
        : trial_(trial), label_(std::move(label)) {}
    void on_create() override;
    void on_step() override;
    void on_draw_gui() override;

    double target_score = 0;
    double animated_score = 0;

private:
    InstanceId trial_;
    std::string label_;
};

}  // namespace veldra

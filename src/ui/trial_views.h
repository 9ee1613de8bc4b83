#pragma once
// Everything a window shows of an interactive trial, and the player's controls: the world through
// a camera, the HUD, the crosshair and hints, and the sounds. One instance owns the rest;
// destroying it (the trial does, with itself) destroys them all. A trial runs the same with or
// without it, apart from the commands the player gives.

#include <optional>
#include <string>
#include <vector>

#include "creatures/event.h"
#include "runtime/instance.h"
#include "runtime/object_type.h"
#include "runtime/renderer.h"
#include "ui/camera.h"
#include "ui/floating_numbers.h"
#include "ui/player_controller.h"
#include "ui/view_sounds.h"

namespace veldra {

class obj_trial;
struct Localization;
struct SimulationState;
struct Sprites;

struct TrialViewOptions {
    bool developer_keys = false;  // pause and game-speed keys
    bool show_keyboard_prompts = true;
    // False while a recording plays: the commands come from the file, and the mouse and keys
    // only move the camera.
    bool player_input = true;
    // The zoom the camera starts at; 0 shows the whole level, unset lets the camera choose.
    std::optional<double> start_zoom;
};

class obj_trial_views : public Instance {
    VELDRA_OBJECT(obj_trial_views, Instance)
public:
    obj_trial_views(SimulationState& sim, obj_trial& trial, const Sprites& sprites,
                    TrialViewOptions options);

    void on_create() override;
    void on_step_begin() override;  // input, before the trial's step ticks
    void on_step_end() override;    // camera, effects and sounds, after it
    void on_draw() override;        // the world
    void on_draw_end() override;    // what a click would do, over the world
    void on_draw_gui() override;    // crosshair and hints
    void on_clean_up() override;

    // Whether the world is covered: the trial is being fast-forwarded.
    bool world_hidden() const;
    // Where the player stands on the screen; nullopt when it is gone or the world is covered.
    std::optional<ScreenPoint> player_on_screen() const;

    Camera camera;
    PlayerController controller;
    FloatingNumbers floating_numbers;
    ViewSounds sounds;
    TrialViewOptions options;
    Rgba background{46, 59, 51, 255};  // the configuration's level_background_color
    TextureId terrain_texture = 0;
    InstanceId world_view = NO_INSTANCE;
    InstanceId hud = NO_INSTANCE;  // obj_trial_hud
    // A creature the camera follows instead of the player while it lives (the developer
    // inspector's "Follow"); NO_INSTANCE: the player.
    InstanceId followed = NO_INSTANCE;
    std::vector<std::string> key_hints;  // in the player's language

private:
    obj_trial* trial() const;

    SimulationState& sim_;
    const Sprites& sprites_;
    InstanceId trial_;
};

// Creates the views of an interactive trial whose level is laid out; returns the id of the
// instance owning them (destroying it destroys them all).
// `sprites` were made on the services' renderer and outlive the views.
InstanceId create_trial_views(SimulationState& sim, obj_trial& trial,
                              const Localization& localization, const Sprites& sprites,
                              const TrialViewOptions& options);

}  // namespace veldra

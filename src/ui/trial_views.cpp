#include "ui/trial_views.h"

#include <algorithm>

#include "config/text_ids.h"

#include "config/game_configurations.h"
#include "config/localization.h"
#include "creatures/human_player.h"
#include "runtime/hex_color.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "trials/simulation_state.h"
#include "trials/trial.h"
#include "ui/hud_layout.h"
#include "ui/sprites.h"
#include "ui/terrain_image.h"
#include "ui/trial_hud.h"
#include "ui/world_drawing.h"
#include "ui/world_view.h"

namespace veldra {

namespace {

// Where the camera starts: on the player, else the level's middle.
ScreenPoint camera_focus(Runtime& runtime, const Terrain& terrain) {
    if (const auto* player = runtime.instance_find<obj_human_player>(0))
        return {player->x, player->y};
    return {terrain.width * 32.0, terrain.height * 32.0};
}

}  // namespace

obj_trial_views::obj_trial_views(SimulationState& sim, obj_trial& trial, const Sprites& sprites,
                                 TrialViewOptions options)
    : camera(trial.terrain.width * double(TERRAIN_CELL_SIZE),
             trial.terrain.height * double(TERRAIN_CELL_SIZE),
             camera_focus(sim.runtime, trial.terrain).x,
             camera_focus(sim.runtime, trial.terrain).y),
      options(options),
      sim_(sim),
      sprites_(sprites),
      trial_(trial.id()) {
    if (options.start_zoom)
        camera.set_zoom(*options.start_zoom > 0 ? *options.start_zoom : camera.fit_zoom());
}

obj_trial* obj_trial_views::trial() const {
    return runtime().find_as<obj_trial>(trial_);
}

void obj_trial_views::on_create() {
    obj_trial& t = *trial();
    if (auto color = parse_hex_color(sim_.configs->level_background_color))
        background = *color;
    auto& view = runtime().instance_create<obj_world_view>(0, 0, "");
    view.attach(sim_.world, t.terrain);
    view.on_animation_started = [this](CreatureAnimation kind) { sounds.note_animation(kind); };
    view.on_creature_died = [this] { sounds.note(Sound::death); };
    world_view = view.id();
    Renderer& renderer = *runtime().services().renderer;
    terrain_texture = paint_terrain(t.terrain, view.scenery, sprites_).upload(renderer);
    // Remember what is there now, so food eaten later sounds and energies start from here.
    sounds.watch_food(runtime());
    floating_numbers.step(runtime());
}

bool obj_trial_views::world_hidden() const {
    const obj_trial* t = trial();
    return t && t->game_speed < 0 &&
           static_cast<int>(t->state) >= static_cast<int>(TrialState::Running);
}

void obj_trial_views::on_step_begin() {
    obj_trial* t = trial();
    if (!t)
        return;
    if (auto* view = runtime().find_as<obj_world_view>(world_view))
        view->pace = std::max(0.0, t->game_speed);
    const InputFrame& input = runtime().services().input->frame();
    if (input.wheel != 0)
        camera.wheel(input.wheel);
    if (options.player_input &&
        controller.step(input, camera, sim_.world, *t, options.developer_keys))
        sounds.note(Sound::ui_click);
}

void obj_trial_views::on_step_end() {
    if (const Instance* chosen = runtime().find(followed))
        camera.follow(chosen->x, chosen->y);
    else if (const auto* player = runtime().instance_find<obj_human_player>(0))
        camera.follow(player->x, player->y);
    floating_numbers.step(runtime());
    sounds.watch_food(runtime());
    if (const obj_trial* t = trial())
        sounds.watch_result(t->result.has_value());
    sounds.flush(*runtime().services().audio);
}

std::optional<ScreenPoint> obj_trial_views::player_on_screen() const {
    const auto* player = runtime().instance_find<obj_human_player>(0);
    if (!player || world_hidden())
        return std::nullopt;
    return camera.world_to_screen(player->x, player->y);
}

void obj_trial_views::on_draw() {
    const auto* view = runtime().find_as<obj_world_view>(world_view);
    const obj_trial* t = trial();
    if (!view || !t)
        return;
    Renderer& renderer = *runtime().services().renderer;
    const WorldScene scene{runtime(),
                           camera,
                           sprites_,
                           *view,
                           floating_numbers,
                           terrain_texture,
                           background,
                           runtime().current_time(),
                           t->ticker.spent_ticks,
                           world_hidden()};
    draw_world(renderer.draw_list(), scene);
    draw_world_overlays(renderer.draw_list(), scene);
    // A zoomed-in world reaches above its viewport; the HUD's band covers that part.
    renderer.draw_list().rect(0, 0, LOGICAL_WIDTH, static_cast<float>(Camera::VIEW_TOP),
                              HUD_BAND_COLOR);
}

void obj_trial_views::on_draw_end() {
    const auto* player = runtime().instance_find<obj_human_player>(0);
    if (!player || world_hidden())
        return;
    Renderer& renderer = *runtime().services().renderer;
    controller.draw_target(renderer.draw_list(), camera, sprites_, sim_.world, *player);
}

void obj_trial_views::on_draw_gui() {
    Renderer& renderer = *runtime().services().renderer;
    const obj_trial* t = trial();
    draw_control_hints(renderer,
                       options.show_keyboard_prompts ? key_hints : std::vector<std::string>{},
                       options.developer_keys, t ? t->game_speed : 0);
    controller.draw_crosshair(renderer.draw_list(), sprites_);
}

void obj_trial_views::on_clean_up() {
    runtime().instance_destroy(world_view);
    runtime().instance_destroy(hud);
}

InstanceId create_trial_views(SimulationState& sim, obj_trial& trial,
                              const Localization& localization, const Sprites& sprites,
                              const TrialViewOptions& options) {
    auto& views =
        sim.runtime.instance_create<obj_trial_views>(0, 0, "", sim, trial, sprites, options);
    views.key_hints = {
        text_of(localization, lid::Hud_HintWalk), text_of(localization, lid::Hud_HintClick),
        text_of(localization, lid::Hud_HintZoom), text_of(localization, lid::Hud_HintFullscreen)};
    std::erase_if(views.key_hints, [](const std::string& hint) { return hint.empty(); });
    TrialHudLabels labels{text_of(localization, lid::Hud_TotalScore),
                          text_of(localization, lid::Hud_Energy),
                          text_of(localization, lid::Hud_Time)};
    views.hud =
        sim.runtime.instance_create<obj_trial_hud>(0, 0, "", trial.id(), std::move(labels)).id();
    return views.id();
}

}  // namespace veldra

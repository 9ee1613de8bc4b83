#include <algorithm>
#include <cmath>

#include "creatures/human_action.h"
#include "creatures/human_ai.h"
#include "creatures/human_player.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"
#include "ui/floating_numbers.h"
#include "ui/sprites.h"
#include "ui/world_drawing.h"
#include "ui/world_view.h"

namespace veldra {

namespace {

constexpr double BAR_WIDTH = 36;
constexpr double BAR_HEIGHT = 5;
constexpr double BAR_ABOVE_BODY = 27;  // from the body's centre to the bar's centre
constexpr double ICON_ABOVE_BODY = 44;

// Green when full, through yellow, to red when nearly empty.
Rgba energy_color(double ratio) {
    ratio = std::clamp(ratio, 0.0, 1.0);
    if (ratio > 0.5)
        return mix({236, 210, 70, 255}, {96, 206, 96, 255}, (ratio - 0.5) * 2);
    return mix({226, 64, 54, 255}, {236, 210, 70, 255}, ratio * 2);
}

void world_rect(DrawList& list, const Camera& camera, double x, double y, double w, double h,
                Rgba color) {
    const ScreenPoint corner = camera.world_to_screen(x, y);
    list.rect(static_cast<float>(corner.x), static_cast<float>(corner.y),
              static_cast<float>(w * camera.zoom()), static_cast<float>(h * camera.zoom()), color);
}

void world_text(DrawList& list, const Camera& camera, double x, double y, std::string text,
                Rgba color, double size) {
    const ScreenPoint at = camera.world_to_screen(x, y);
    list.text(static_cast<float>(at.x), static_cast<float>(at.y), std::move(text), color,
              static_cast<float>(size * camera.zoom()));
}

void draw_energy(DrawList& list, const Camera& camera, const obj_creature& creature, bool player) {
    const double ratio = creature.energy_max > 0 ? creature.energy / creature.energy_max : 0;
    const double left = creature.x - BAR_WIDTH / 2;
    const double top = creature.y - BODY_LIFT - BAR_ABOVE_BODY - BAR_HEIGHT / 2;
    world_rect(list, camera, left - 1, top - 1, BAR_WIDTH + 2, BAR_HEIGHT + 2, {20, 20, 24, 200});
    world_rect(list, camera, left, top, BAR_WIDTH * std::clamp(ratio, 0.0, 1.0), BAR_HEIGHT,
               energy_color(ratio));
    if (player)
        world_text(list, camera, left + BAR_WIDTH + 4, top - 5,
                   number_to_string(std::round(creature.energy * 10) / 10), {255, 240, 200, 255},
                   14);
}

void draw_floating_number(DrawList& list, const Camera& camera, const FloatingNumber& number) {
    const double life = number.age / FloatingNumber::LIFETIME;
    const auto alpha = static_cast<std::uint8_t>(255 * std::clamp(1.5 * (1 - life), 0.0, 1.0));
    const Rgba color = number.amount < 0 ? Rgba{255, 86, 72, alpha} : Rgba{110, 236, 110, alpha};
    const std::string text =
        (number.amount > 0 ? "+" : "") + number_to_string(std::round(number.amount * 10) / 10);
    const double y = number.y - BODY_LIFT - 40 - FloatingNumber::RISE * life;
    world_text(list, camera, number.x + 1, y + 1, text, {0, 0, 0, static_cast<std::uint8_t>(alpha / 2)},
               18);
    world_text(list, camera, number.x, y, text, color, 18);
}

}  // namespace

void draw_world_overlays(DrawList& list, const WorldScene& scene) {
    if (scene.hidden)
        return;
    const Camera& camera = scene.camera;
    const bool greeting = scene.spent_ticks < GREETING_TICKS;
    for (InstanceId id : entity_draw_order(scene.runtime)) {
        const auto* creature = scene.runtime.find_as<obj_creature>(id);
        if (!creature)
            continue;
        const bool player = creature->is_a<obj_human_player>();
        draw_energy(list, camera, *creature, player);
        const auto* human = dynamic_cast<const obj_human*>(creature);
        if (!human)
            continue;
        if (const HumanAction* action = human->get_current_action())
            draw_world_sprite(list, camera, scene.sprites.action_icons[action->type->index],
                              human->x, human->y - BODY_LIFT - ICON_ABOVE_BODY, ICON_SIZE, ICON_SIZE);
        if (greeting && human->is_a<obj_human_ai>())
            draw_world_sprite(list, camera, scene.sprites.bubble, human->x + 36,
                              human->y - BODY_LIFT - 44, 44, 34);
    }
    for (const FloatingNumber& number : scene.numbers.numbers)
        draw_floating_number(list, camera, number);
}

}  // namespace veldra

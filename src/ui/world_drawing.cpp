#include "ui/world_drawing.h"

#include <cmath>
#include <numbers>

#include "creatures/food.h"
#include "creatures/human_ai.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "runtime/runtime.h"
#include "ui/sprites.h"
#include "ui/world_view.h"

namespace veldra {

namespace {

constexpr double SHADOW_BELOW = 14;  // shadow centre below the position
constexpr Rgba WHITE{255, 255, 255, 255};
constexpr Rgba HURT_TINT{255, 120, 110, 255};
constexpr Rgba PLAYER_OUTLINE{52, 34, 14, 255};
constexpr Rgba PLAYER_MARKER{255, 214, 92, 220};

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

double sprite_centre_y(double body_y) {
    return body_y - BODY_CENTRE_Y + SPRITE_SIZE / 2.0;
}

TextureId creature_texture(const Sprites& sprites, const obj_creature& creature) {
    if (creature.is_a<obj_monster>())
        return sprites.monster;
    if (creature.is_a<obj_human_player>())
        return sprites.player;
    std::size_t look = creature.id_hash;
    if (const auto* ai = dynamic_cast<const obj_human_ai*>(&creature); ai && ai->type_number)
        look = static_cast<std::size_t>(std::abs(*ai->type_number));
    return sprites.ai_humans[look % sprites.ai_humans.size()];
}

// Position, size and colour of a creature's body for its pose this frame.
struct Pose {
    double dx = 0, dy = 0;  // from the resting body centre
    double w = SPRITE_SIZE, h = SPRITE_SIZE;
    double angle = 0;
    Rgba tint = WHITE;
    double glow = 0;  // 0..1, the exchange's
};

// Idle bobbing runs on wall time; walking on the view's clock, which follows the game speed.
Pose pose_of(const CreatureView& view, double time_ms, double walk_ms, std::uint32_t id_hash) {
    Pose pose;
    const double phase = id_hash % 1000 / 1000.0 * 2 * std::numbers::pi;
    const double progress =
        view.animation_time > 0 ? std::min(1.0, view.animation_timer / view.animation_time) : 1;
    const double swing = std::sin(progress * std::numbers::pi);  // 0 -> 1 -> 0
    switch (view.pose()) {
        case CreaturePose::idle:
            pose.dy = -1.5 * (0.5 + 0.5 * std::sin(time_ms / 700 * 2 * std::numbers::pi + phase));
            break;
        case CreaturePose::stand:
            break;
        case CreaturePose::walk: {
            const double step = walk_ms / 320 * 2 * std::numbers::pi + phase;
            pose.dy = -2.5 * std::abs(std::sin(step));
            pose.angle = 5 * std::sin(step);
            break;
        }
        case CreaturePose::attack:
            pose.dx = std::cos(radians(view.animation_direction)) * 12 * swing;
            pose.dy = -std::sin(radians(view.animation_direction)) * 12 * swing;
            pose.angle = -8 * swing * view.xscale;
            break;
        case CreaturePose::duck:
            pose.h = SPRITE_SIZE * (1 - 0.28 * swing);
            pose.w = SPRITE_SIZE * (1 + 0.12 * swing);
            pose.dy = (SPRITE_SIZE - pose.h) / 2;
            break;
        case CreaturePose::hurt:
            pose.dx = std::sin(view.animation_timer * 2.7) * 3 * (1 - progress);
            pose.tint = HURT_TINT;
            break;
        case CreaturePose::exchange:
            pose.glow = swing;
            pose.dy = -3 * swing;
            break;
    }
    return pose;
}

void draw_creature(DrawList& list, const WorldScene& scene, const obj_creature& creature,
                   const CreatureView& view) {
    const Sprites& sprites = scene.sprites;
    const bool monster = creature.is_a<obj_monster>();
    const bool player = creature.is_a<obj_human_player>();
    const double shadow_scale = monster ? 1.15 : 0.9;
    draw_world_sprite(list, scene.camera, sprites.shadow, creature.x, creature.y + SHADOW_BELOW,
                      48 * shadow_scale, 20 * shadow_scale);
    if (player)
        draw_world_sprite(list, scene.camera, sprites.ring, creature.x, creature.y + SHADOW_BELOW,
                          50, 22, PLAYER_MARKER);
    const Pose pose = pose_of(view, scene.time_ms, scene.view.animation_ms, creature.id_hash);
    const double x = creature.x + pose.dx;
    const double body_y = creature.y - BODY_LIFT + pose.dy;
    if (pose.glow > 0)
        draw_world_sprite(list, scene.camera, sprites.glow, x, body_y, 70, 70,
                          {150, 236, 110, static_cast<std::uint8_t>(220 * pose.glow)});
    const double cy = sprite_centre_y(body_y);
    if (player)
        draw_world_sprite(list, scene.camera, sprites.outline, x, cy, pose.w, pose.h,
                          PLAYER_OUTLINE, pose.angle, view.xscale < 0);
    draw_world_sprite(list, scene.camera, creature_texture(sprites, creature), x, cy, pose.w,
                      pose.h, pose.tint, pose.angle, view.xscale < 0);
}

void draw_corpse(DrawList& list, const WorldScene& scene, const DeathEffect& death) {
    const TextureId texture = death.was_human ? scene.sprites.ai_humans[0] : scene.sprites.monster;
    const auto alpha = static_cast<std::uint8_t>(std::clamp(death.alpha, 0.0, 1.0) * 255);
    draw_world_sprite(list, scene.camera, scene.sprites.shadow, death.x,
                      death.start_y + SHADOW_BELOW, 44, 18, {255, 255, 255, alpha});
    draw_world_sprite(list, scene.camera, texture, death.x, sprite_centre_y(death.y - BODY_LIFT),
                      SPRITE_SIZE, SPRITE_SIZE, {150, 150, 150, alpha}, death.angle * death.xscale,
                      death.xscale < 0);
}

void draw_food(DrawList& list, const WorldScene& scene, const obj_food& food) {
    draw_world_sprite(list, scene.camera, scene.sprites.shadow, food.x, food.y + SHADOW_BELOW - 2,
                      40, 16);
    const double bob = food_bob_offset(scene.time_ms, food.id_hash);
    draw_world_sprite(list, scene.camera, scene.sprites.food, food.x,
                      sprite_centre_y(food.y - BODY_LIFT + bob), SPRITE_SIZE, SPRITE_SIZE);
}

}  // namespace

void draw_world_sprite(DrawList& list, const Camera& camera, TextureId texture, double x, double y,
                       double w, double h, Rgba tint, double angle, bool flip_x) {
    const ScreenPoint corner = camera.world_to_screen(x - w / 2, y - h / 2);
    list.texture(texture, static_cast<float>(corner.x), static_cast<float>(corner.y),
                 static_cast<float>(w * camera.zoom()), static_cast<float>(h * camera.zoom()), tint,
                 static_cast<float>(angle), flip_x);
}

ScreenPoint creature_body_screen_point(const Camera& camera, double x, double y) {
    return camera.world_to_screen(x, y - BODY_LIFT + BODY_FLAT_BELOW_CENTRE);
}

void draw_world(DrawList& list, const WorldScene& scene) {
    const Camera& camera = scene.camera;
    list.rect(static_cast<float>(Camera::VIEW_LEFT), static_cast<float>(Camera::VIEW_TOP),
              static_cast<float>(Camera::VIEW_WIDTH), static_cast<float>(Camera::VIEW_HEIGHT),
              scene.background);
    const ScreenPoint corner = camera.world_to_screen(0, 0);
    const auto w = static_cast<float>(camera.level_width() * camera.zoom());
    const auto h = static_cast<float>(camera.level_height() * camera.zoom());
    if (scene.hidden)
        return;  // the background already covers the level's area
    list.texture(scene.terrain, static_cast<float>(corner.x), static_cast<float>(corner.y), w, h);
    // Corpses lie under the living.
    for (const DeathEffect& death : scene.view.deaths)
        draw_corpse(list, scene, death);
    for (InstanceId id : entity_draw_order(scene.runtime)) {
        const Instance* entity = scene.runtime.find(id);
        if (const auto* food = dynamic_cast<const obj_food*>(entity)) {
            draw_food(list, scene, *food);
        } else if (const auto* creature = dynamic_cast<const obj_creature*>(entity)) {
            if (auto view = scene.view.creatures.find(id); view != scene.view.creatures.end())
                draw_creature(list, scene, *creature, view->second);
        }
    }
}

}  // namespace veldra

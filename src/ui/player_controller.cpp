#include "ui/player_controller.h"

#include <algorithm>

#include "creatures/human.h"
#include "creatures/trial_world.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"
#include "trials/trial.h"
#include "ui/sprites.h"
#include "ui/world_drawing.h"

namespace veldra {

namespace {

int axis(bool negative, bool positive) {
    return (positive ? 1 : 0) - (negative ? 1 : 0);
}

Rgba highlight_color(PlayerTarget::Kind kind) {
    switch (kind) {
        case PlayerTarget::Kind::monster:
            return {236, 64, 64, 230};
        case PlayerTarget::Kind::food:
            return {96, 222, 96, 230};
        case PlayerTarget::Kind::human:
            return {90, 160, 255, 230};
        default:
            return {255, 255, 255, 200};
    }
}

}  // namespace

bool in_world_viewport(double x, double y) {
    return x >= Camera::VIEW_LEFT && x < Camera::VIEW_LEFT + Camera::VIEW_WIDTH &&
           y >= Camera::VIEW_TOP && y < Camera::VIEW_TOP + Camera::VIEW_HEIGHT;
}

bool PlayerController::step(const InputFrame& input, const Camera& camera, TrialWorld& world,
                            obj_trial& trial, bool developer_keys) {
    mouse_x = input.mouse_x;
    mouse_y = input.mouse_y;
    if (developer_keys)
        developer_step(input, trial);
    if (trial.state != TrialState::Initialized && trial.state != TrialState::Running)
        return false;
    // The tick the trial runs next: its count of ticks run so far.
    const Ticks next_tick = trial.ticker.spent_ticks;
    // A letter pressed with Control is a shortcut (Ctrl+D), not a step.
    const bool letters = !input.down(Key::ctrl);
    const int dx = axis(input.down(Key::left) || (letters && input.down(Key::a)),
                        input.down(Key::right) || (letters && input.down(Key::d)));
    const int dy = axis(input.down(Key::up) || (letters && input.down(Key::w)),
                        input.down(Key::down) || (letters && input.down(Key::s)));
    if (dx != held_dx || dy != held_dy) {
        held_dx = dx;
        held_dy = dy;
        world.player_commands.push_move(next_tick, dx, dy);
    }
    if (!input.pressed(MouseButton::left) || !in_world_viewport(mouse_x, mouse_y))
        return false;
    const ScreenPoint point = camera.screen_to_world(mouse_x, mouse_y);
    world.player_commands.push_target(next_tick, point.x, point.y);
    return true;
}

void PlayerController::developer_step(const InputFrame& input, obj_trial& trial) {
    if (input.pressed(Key::p)) {
        if (trial.paused())
            trial.resume();
        else
            trial.pause();
    }
    // Fast-forwarding (a negative speed) and pausing are left to P and the configuration.
    if (trial.game_speed <= 0)
        return;
    if (input.pressed(Key::plus))
        trial.set_speed(trial.game_speed * 2);
    if (input.pressed(Key::minus))
        trial.set_speed(trial.game_speed / 2);
}

void PlayerController::draw_target(DrawList& list, const Camera& camera, const Sprites& sprites,
                                   const TrialWorld& world, const obj_human& player) const {
    if (!in_world_viewport(mouse_x, mouse_y))
        return;
    const ScreenPoint point = camera.screen_to_world(mouse_x, mouse_y);
    const PlayerTarget target = player_target_at(world, player, point.x, point.y);
    const Rgba color = highlight_color(target.kind);
    if (target.kind == PlayerTarget::Kind::cell) {
        const ScreenPoint corner = camera.world_to_screen(target.cx * 64.0, target.cy * 64.0);
        const auto size = static_cast<float>(64 * camera.zoom());
        list.rect_outline(static_cast<float>(corner.x), static_cast<float>(corner.y), size, size,
                          color);
        list.rect_outline(static_cast<float>(corner.x) + 1, static_cast<float>(corner.y) + 1,
                          size - 2, size - 2, with_alpha(color, 90));
        return;
    }
    if (const Instance* entity = world.runtime.find(target.id))
        draw_world_sprite(list, camera, sprites.ring, entity->x, entity->y - BODY_LIFT, 56, 56,
                          color);
}

void PlayerController::draw_crosshair(DrawList& list, const Sprites& sprites) const {
    if (!in_world_viewport(mouse_x, mouse_y))
        return;
    list.texture(sprites.crosshair, static_cast<float>(mouse_x - 16),
                 static_cast<float>(mouse_y - 16), 32, 32);
}

void draw_control_hints(Renderer& renderer, const std::vector<std::string>& hints,
                        bool developer_keys, double game_speed) {
    constexpr float LINE = 22, LEFT = 16, SIZE = 18, MIN_WIDTH = 330;
    std::vector<std::string> lines = hints;
    if (developer_keys) {
        lines.push_back(game_speed == 0 ? std::string("Paused (P)")
                                        : "Speed x" + number_to_string(game_speed) + " (+/-, P)");
    }
    if (lines.empty())
        return;
    // Wide enough for the longest line in whatever language the hints are in.
    float width = MIN_WIDTH;
    for (const std::string& line : lines)
        width = std::max(width, renderer.measure_text(line, SIZE).width + 16);
    const float height = LINE * static_cast<float>(lines.size()) + 12;
    const float top = LOGICAL_HEIGHT - height - 12;
    DrawList& list = renderer.draw_list();
    list.rect(LEFT - 8, top, width, height, {16, 20, 26, 160});
    for (std::size_t i = 0; i < lines.size(); ++i)
        list.text(LEFT, top + 6 + LINE * static_cast<float>(i), lines[i], {236, 236, 228, 255},
                  SIZE);
}

}  // namespace veldra

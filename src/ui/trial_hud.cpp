#include "ui/trial_hud.h"

#include <algorithm>
#include <cmath>

#include "creatures/human_player.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "trials/trial.h"
#include "ui/hud_layout.h"

namespace veldra {

namespace {

// Share of the remaining distance covered per step: quick, but visibly moving.
constexpr double EASE_RATE = 0.15;

double ease(double current, double target) {
    const double next = current + (target - current) * EASE_RATE;
    return std::abs(target - next) < 0.005 ? target : next;
}

void draw_label(DrawList& list, float x, const std::string& text) {
    list.text(x, HUD_LABEL_Y, text, HUD_TEXT_COLOR, HUD_LABEL_SIZE);
}

}  // namespace

float time_bar_fill_width(double spent_ticks, double max_ticks, float width) {
    const double fraction = max_ticks > 0 ? std::clamp(spent_ticks / max_ticks, 0.0, 1.0) : 1.0;
    return static_cast<float>(std::round(width * fraction));
}

void obj_trial_hud::on_create() {
    time_hud = runtime().instance_create<obj_trial_time_hud>(0, 0, "", trial_, labels_.time).id();
    energy_hud = runtime().instance_create<obj_trial_energy_hud>(0, 0, "", labels_.energy).id();
    score_hud =
        runtime().instance_create<obj_trial_score_hud>(0, 0, "", trial_, labels_.total_score).id();
}

void obj_trial_hud::on_clean_up() {
    for (InstanceId part : {time_hud, energy_hud, score_hud})
        runtime().instance_destroy(part);
}

void obj_trial_time_hud::on_draw_gui() {
    const auto* trial = runtime().find_as<obj_trial>(trial_);
    if (!trial)
        return;
    DrawList& list = runtime().services().renderer->draw_list();
    const TextSize label = runtime().services().renderer->measure_text(label_, HUD_LABEL_SIZE);
    draw_label(list, TIME_BAR_X + (TIME_BAR_WIDTH - label.width) / 2, label_);
    list.rect(TIME_BAR_X, TIME_BAR_Y, TIME_BAR_WIDTH, TIME_BAR_HEIGHT, TIME_BAR_BACKGROUND);
    const float fill = time_bar_fill_width(static_cast<double>(trial->ticker.spent_ticks),
                                           static_cast<double>(trial->max_ticks), TIME_BAR_WIDTH);
    if (fill > 0)
        list.rect(TIME_BAR_X, TIME_BAR_Y, fill, TIME_BAR_HEIGHT, TIME_BAR_FILL);
}

void obj_trial_energy_hud::find_player() {
    if (player_ != NO_INSTANCE)
        return;
    auto* player = runtime().instance_find<obj_human_player>(0);
    if (!player)
        return;
    player_ = player->id();
    animated_energy = player->energy;
    energy_max = player->energy_max;
    flash_subscription_ =
        player->animation_started_event.subscribe([this](const CreatureAnimationStart& started) {
            if (started.kind == CREATURE_ANIMATION_HURT)
                damage_flash_timer = ENERGY_FLASH_STEPS;
        });
}

void obj_trial_energy_hud::on_step() {
    find_player();
    damage_flash_timer = std::max(0.0, damage_flash_timer - 1);
    // A player who is gone has no energy left to show.
    const auto* player = runtime().find_as<obj_human_player>(player_);
    animated_energy = ease(animated_energy, player ? player->energy : 0);
    if (player)
        energy_max = player->energy_max;
}

void obj_trial_energy_hud::on_draw_gui() {
    DrawList& list = runtime().services().renderer->draw_list();
    draw_label(list, ENERGY_BAR_X, label_);
    list.rect(ENERGY_BAR_X, ENERGY_BAR_Y, ENERGY_BAR_WIDTH, ENERGY_BAR_HEIGHT,
              ENERGY_BAR_BACKGROUND);
    const double fraction = energy_max > 0 ? std::clamp(animated_energy / energy_max, 0.0, 1.0) : 0;
    const double flash = damage_flash_timer / ENERGY_FLASH_STEPS;
    const Rgba fill{static_cast<std::uint8_t>(ENERGY_BAR_FILL.r +
                                              (ENERGY_BAR_FLASH.r - ENERGY_BAR_FILL.r) * flash),
                    static_cast<std::uint8_t>(ENERGY_BAR_FILL.g +
                                              (ENERGY_BAR_FLASH.g - ENERGY_BAR_FILL.g) * flash),
                    static_cast<std::uint8_t>(ENERGY_BAR_FILL.b +
                                              (ENERGY_BAR_FLASH.b - ENERGY_BAR_FILL.b) * flash),
                    255};
    const auto width = static_cast<float>(std::round(ENERGY_BAR_WIDTH * fraction));
    if (width > 0)
        list.rect(ENERGY_BAR_X, ENERGY_BAR_Y, width, ENERGY_BAR_HEIGHT, fill);
    const std::string number = number_to_string(std::round(animated_energy * 10) / 10);
    const TextSize size = runtime().services().renderer->measure_text(number, HUD_LABEL_SIZE);
    list.text(ENERGY_BAR_X + (ENERGY_BAR_WIDTH - size.width) / 2,
              ENERGY_BAR_Y + (ENERGY_BAR_HEIGHT - size.height) / 2, number, HUD_TEXT_COLOR,
              HUD_LABEL_SIZE);
}

void obj_trial_energy_hud::on_clean_up() {
    if (auto* player = runtime().find_as<obj_human_player>(player_))
        player->animation_started_event.unsubscribe(flash_subscription_);
}

std::string trial_score_shown(double animated, double target) {
    const bool arrived = std::abs(animated - target) < 0.005;
    return number_to_string(arrived ? target : std::round(animated));
}

void obj_trial_score_hud::on_create() {
    if (const auto* trial = runtime().find_as<obj_trial>(trial_))
        animated_score = target_score = trial->total_score_before_this_trial;
}

void obj_trial_score_hud::on_step() {
    const auto* trial = runtime().find_as<obj_trial>(trial_);
    if (!trial)
        return;
    target_score = trial->total_score_before_this_trial;
    // A trial of no length scores NaN; the total stays what it was.
    if (trial->result && std::isfinite(trial->result->trial_score))
        target_score += trial->result->trial_score;
    animated_score = ease(animated_score, target_score);
}

void obj_trial_score_hud::on_draw_gui() {
    DrawList& list = runtime().services().renderer->draw_list();
    const Renderer& renderer = *runtime().services().renderer;
    const std::string number = trial_score_shown(animated_score, target_score);
    const TextSize number_size = renderer.measure_text(number, SCORE_TEXT_SIZE);
    const TextSize label_size = renderer.measure_text(label_, SCORE_TEXT_SIZE);
    const float number_x = SCORE_RIGHT - number_size.width;
    list.text(number_x - HUD_TEXT_MARGIN - label_size.width, SCORE_Y, label_, HUD_TEXT_COLOR,
              SCORE_TEXT_SIZE);
    list.text(number_x, SCORE_Y, number, HUD_TEXT_COLOR, SCORE_TEXT_SIZE);
}

}  // namespace veldra

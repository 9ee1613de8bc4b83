#include "ui/world_view.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "creatures/creature.h"
#include "creatures/human.h"
#include "creatures/trial_world.h"
#include "runtime/runtime.h"

namespace veldra {

namespace {

constexpr double BOB_PIXELS = 2;
constexpr double BOB_PERIOD_MS = 1500;

}  // namespace

void obj_world_view::attach(TrialWorld& world, const Terrain& terrain) {
    world_ = &world;
    scenery = scenery_looks(terrain);
    died_subscription_ = world.creature_died.subscribe([this](const obj_creature& creature) {
        DeathEffect effect;
        effect.x = creature.x;
        effect.start_y = effect.y = creature.y;
        auto it = creatures.find(creature.id());
        effect.xscale = it != creatures.end() ? it->second.xscale : 1;
        effect.was_human = creature.is_a<obj_human>();
        deaths.push_back(effect);
        if (on_creature_died)
            on_creature_died();
    });
    follow_new_creatures();
}

void obj_world_view::follow_new_creatures() {
    runtime().for_each<obj_creature>([&](obj_creature& creature) {
        auto [it, made] = creatures.try_emplace(creature.id(), creature);
        if (!made)
            return;
        it->second.subscription = creature.animation_started_event.subscribe(
            [this, id = creature.id()](const CreatureAnimationStart& started) {
                if (auto view = creatures.find(id); view != creatures.end())
                    view->second.start(started);
                if (on_animation_started)
                    on_animation_started(started.kind);
            });
    });
}

void obj_world_view::on_step_end() {
    const double now = runtime().current_time();
    if (last_step_ms_ >= 0)
        animation_ms += (now - last_step_ms_) * pace;
    last_step_ms_ = now;
    follow_new_creatures();
    for (auto it = creatures.begin(); it != creatures.end();) {
        auto* creature = runtime().find_as<obj_creature>(it->first);
        if (!creature) {
            it = creatures.erase(it);
            continue;
        }
        it->second.step(*creature, pace);
        ++it;
    }
    std::erase_if(deaths, [](DeathEffect& effect) { return !effect.step(); });
}

void obj_world_view::on_clean_up() {
    // Creatures that outlive the view must not call back into it.
    for (auto& [id, view] : creatures)
        if (auto* creature = runtime().find_as<obj_creature>(id))
            creature->animation_started_event.unsubscribe(view.subscription);
    if (world_)
        world_->creature_died.unsubscribe(died_subscription_);
}

std::vector<InstanceId> entity_draw_order(Runtime& runtime) {
    std::vector<std::pair<double, InstanceId>> order;
    runtime.for_each<obj_entity>(
        [&](obj_entity& entity) { order.emplace_back(entity.y, entity.id()); });
    std::sort(order.begin(), order.end());
    std::vector<InstanceId> ids;
    ids.reserve(order.size());
    for (const auto& [y, id] : order)
        ids.push_back(id);
    return ids;
}

double food_bob_offset(double current_time_ms, std::uint32_t id_hash) {
    const double phase =
        (current_time_ms / BOB_PERIOD_MS + id_hash % 1000 / 1000.0) * 2 * std::numbers::pi;
    return -BOB_PIXELS * (0.5 + 0.5 * std::sin(phase));
}

}  // namespace veldra

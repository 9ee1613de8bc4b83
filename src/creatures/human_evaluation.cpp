// obj_human: everything a human derives from the configuration's formulas of its traits and
// energy, and the weighted choice of a target in sight.

#include <cmath>
#include <limits>
#include <vector>

#include "creatures/human.h"
#include "creatures/human_trial.h"
#include "runtime/runtime.h"
#include "util/geometry.h"

namespace veldra {

namespace {

constexpr double NOT_A_CANDIDATE = std::numeric_limits<double>::quiet_NaN();

}  // namespace

void obj_human::re_evaluate_from_configs() {
    const GameConfigurations& c = world().configs();
    const PersonalityTraits& t = personality_traits;
    const double ratio = energy_ratio();

    exchange_action_sampler.clear();
    exchange_action_sampler.add(EXCHANGE_GIVE, c.exchange_give_weight(t, ratio));
    exchange_action_sampler.add(EXCHANGE_TAKE, c.exchange_take_weight(t, ratio));
    if (exchange_action_sampler.total_weight() <= 0)
        world().log_zero_total_weight("exchange actions (give & take)");

    re_evaluate_samplers(ratio);

    for (const HumanActionType* type : world().action_types.all)
        action_move_speeds[type->index] = type->get_move_speed(c, t);

    sight_range = c.human_sight_range(t);
    exploration_range = c.human_exploration_range(t);
    counter_attack_chance_against_human = c.human_counter_attack_chance_against_human(t);
    counter_attack_chance_against_monster = c.human_counter_attack_chance_against_monster(t);
    exchange_back_chance = c.exchange_back_chance(t);
    first_attack_damage = c.human_first_attack_damage(t);
    normal_attack_damage = c.human_normal_attack_damage(t);
    attacker_energy_gain = c.human_attacker_energy_gain(t);
}

void obj_human::re_evaluate_samplers(double ratio) {
    const GameConfigurations& c = world().configs();
    const PersonalityTraits& t = personality_traits;

    action_sampler.clear();
    for (const HumanActionType* type : world().action_types.all) {
        const double weight = type->get_weight(c, t, ratio);
        action_weights[type->index] = weight;
        action_sampler.add(type, weight);
    }
    if (action_sampler.total_weight() <= 0)
        world().log_zero_total_weight("actions");

    fight_action_sampler.clear();
    fight_action_sampler.add(FIGHT_HIT, c.human_fight_hit_weight(t));
    fight_action_sampler.add(FIGHT_MISS, c.human_fight_miss_weight(t));
    fight_action_sampler.add(FIGHT_FLEE, c.human_fight_flee_weight(t));
    if (fight_action_sampler.total_weight() <= 0)
        world().log_zero_total_weight("fight actions (hit, miss, flee)");
}

double obj_human::get_movement_speed() const {
    const HumanAction* current = get_current_action();
    if (!current)
        return 0;
    const double speed = action_move_speeds[current->type->index];
    const TerrainCell* cell = world().current_terrain().cell_at_room(x, y);
    return cell && cell->is_sand ? speed * world().configs().human_sand_move_speed_multiplier
                                 : speed;
}

// Candidates are the instances of `object` in sight (the human itself excluded). Each is
// weighted by the target-weight formula of its distance normalised over the candidates: 0 for
// the nearest, 1 for the farthest, and 0 when all are equally far (a single candidate).
InstanceId obj_human::choose_action_target(const ObjectType& object,
                                           const ConfigMethod& target_weight, Rng& rng) const {
    TargetChoiceScratch& scratch = world().scratch.target_choice;
    const Runtime& runtime = this->runtime();
    const std::size_t count = runtime.instance_number(object);
    if (scratch.distances.size() < count)
        scratch.distances.resize(count);

    double nearest = std::numeric_limits<double>::infinity();
    double farthest = -std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < count; ++i) {
        const Instance* inst = runtime.instance_find(object, i);
        const double d = inst == this ? NOT_A_CANDIDATE : point_distance(x, y, inst->x, inst->y);
        scratch.distances[i] = d <= sight_range ? d : NOT_A_CANDIDATE;  // NaN compares false
        if (d <= sight_range) {
            nearest = std::min(nearest, d);
            farthest = std::max(farthest, d);
        }
    }

    scratch.sampler.clear();
    const double span = farthest - nearest;
    const double ratio = energy_ratio();
    for (std::size_t i = 0; i < count; ++i) {
        const double d = scratch.distances[i];
        if (std::isnan(d))
            continue;
        const double normalised = span > 0 ? (d - nearest) / span : 0.0;
        scratch.sampler.add(runtime.instance_find(object, i)->id(),
                            target_weight(personality_traits, ratio, normalised));
    }
    return scratch.sampler.get(NO_INSTANCE, rng);
}

}  // namespace veldra

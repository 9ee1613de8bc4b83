#include "creatures/human_action_type.h"

#include "creatures/food.h"
#include "creatures/human.h"
#include "creatures/human_exploration.h"
#include "creatures/monster.h"
#include "creatures/trial_world.h"
#include "runtime/assertion.h"
#include "runtime/callstack.h"
#include "runtime/once.h"
#include "runtime/runtime.h"
#include "util/geometry.h"

namespace veldra {

HumanActionType::HumanActionType(std::size_t index, std::string debug_name, ConfigMethodKey weight,
                                 ConfigMethodKey move_speed)
    : index(index), debug_name(std::move(debug_name)), weight_(weight), move_speed_(move_speed) {}

double HumanActionType::get_weight(const GameConfigurations& configs,
                                   const PersonalityTraits& traits, double energy_ratio) const {
    return (configs.*weight_)(traits, energy_ratio);
}

double HumanActionType::get_move_speed(const GameConfigurations& configs,
                                       const PersonalityTraits& traits) const {
    return (configs.*move_speed_)(traits);
}

namespace {

using GC = GameConfigurations;

// Approach and avoid: the target is drawn among the instances of Target in sight, nearer ones
// weighted as the configuration's target weight says.
template <class Target, class Action>
class TargetChoosingType : public HumanActionType {
public:
    TargetChoosingType(std::size_t index, std::string name, ConfigMethodKey weight,
                       ConfigMethodKey move_speed, ConfigMethodKey target_weight)
        : HumanActionType(index, std::move(name), weight, move_speed),
          target_weight_(target_weight) {}

    std::unique_ptr<HumanAction> try_initiate(obj_human& human, Rng& rng) const override {
        const InstanceId target = human.choose_action_target(
            Target::object_type_static(), human.world().configs().*target_weight_, rng);
        if (target == NO_INSTANCE)
            return nullptr;
        return std::make_unique<Action>(human, target);
    }

private:
    ConfigMethodKey target_weight_;
};

class ApproachFoodType final : public TargetChoosingType<obj_food, HA_ApproachFood> {
public:
    using TargetChoosingType::TargetChoosingType;

    std::unique_ptr<HumanAction> try_initiate(obj_human& human, Rng& rng) const override {
        // A meal now would be partly wasted.
        if (human.energy > human.energy_max - human.world().configs().human_energy_gain_eat_food)
            return nullptr;
        return TargetChoosingType::try_initiate(human, rng);
    }
};

// Attacks take the first creature in instance order that is already within attack range: no
// draw, and no walking (approaching is an action of its own).
template <class Target, class Action>
class AttackType final : public HumanActionType {
public:
    using HumanActionType::HumanActionType;

    std::unique_ptr<HumanAction> try_initiate(obj_human& human, Rng&) const override {
        const Runtime& runtime = human.runtime();
        const std::size_t count = runtime.instance_number<Target>();
        for (std::size_t i = 0; i < count; ++i) {
            const Target* target = runtime.instance_find<Target>(i);
            if (static_cast<const Instance*>(target) != &human &&
                creature_is_within_attack_range(human, *target))
                return std::make_unique<Action>(human, target->id());
        }
        return nullptr;
    }
};

// A partner is worth meeting when it is another human in sight, both sides are off their
// exchange cooldown, and at least one of them has room for more energy (between two full
// humans every gain would be wasted).
bool is_suitable_exchange_partner(const obj_human& human, const obj_human& partner) {
    return &partner != &human && human.can_exchange_with_human(partner) &&
           partner.can_exchange_with_human(human) &&
           point_distance_compare(human.x, human.y, partner.x, partner.y, human.sight_range) <= 0 &&
           (human.energy_ratio() < 1 || partner.energy_ratio() < 1);
}

class ExchangeType final : public HumanActionType {
public:
    using HumanActionType::HumanActionType;

    std::unique_ptr<HumanAction> try_initiate(obj_human& human, Rng&) const override {
        const Runtime& runtime = human.runtime();
        const std::size_t count = runtime.instance_number<obj_human>();
        for (std::size_t i = 0; i < count; ++i) {
            const obj_human* partner = runtime.instance_find<obj_human>(i);
            if (is_suitable_exchange_partner(human, *partner))
                return std::make_unique<HA_ExchangeWithHuman>(human, partner->id());
        }
        return nullptr;
    }
};

class ExploreType final : public HumanActionType {
public:
    using HumanActionType::HumanActionType;

    std::unique_ptr<HumanAction> try_initiate(obj_human& human, Rng& rng) const override {
        const TerrainCell* cell =
            human_find_exploration_pathfinding_target(human, rng, previous_target(human));
        if (!cell)
            return nullptr;
        return std::make_unique<HA_Explore>(human, *cell);
    }

private:
    // Where the most recent remembered exploration went, to steer the next one elsewhere.
    const TerrainCell* previous_target(const obj_human& human) const {
        for (const auto& action : human.actions_in_memory)
            if (action->type == this)
                return static_cast<const HA_Explore&>(*action).target_cell;
        return nullptr;
    }
};

template <class Type, class... Args>
const HumanActionType* add_type(HumanActionTypes& types, const char* name, Args... args) {
    types.owned.push_back(std::make_unique<Type>(types.all.size(), name, args...));
    types.all.push_back(types.owned.back().get());
    return types.all.back();
}

}  // namespace

void initialize_human_action_types(HumanActionTypes& t) {
    VELDRA_SCOPE();
    if (!once_only_first_call(t.called))
        return;
    t.HAT_approach_food =
        add_type<ApproachFoodType>(t, "ApproachFood", &GC::weight_approach_food,
                                   &GC::move_speed_approach_food, &GC::target_weight_approach_food);
    t.HAT_approach_monster = add_type<TargetChoosingType<obj_monster, HA_ApproachMonster>>(
        t, "ApproachMonster", &GC::weight_approach_monster, &GC::move_speed_approach_monster,
        &GC::target_weight_approach_monster);
    t.HAT_approach_human = add_type<TargetChoosingType<obj_human, HA_ApproachHuman>>(
        t, "ApproachHuman", &GC::weight_approach_human, &GC::move_speed_approach_human,
        &GC::target_weight_approach_human);
    t.HAT_avoid_monster = add_type<TargetChoosingType<obj_monster, HA_AvoidMonster>>(
        t, "AvoidMonster", &GC::weight_avoid_monster, &GC::move_speed_avoid_monster,
        &GC::target_weight_avoid_monster);
    t.HAT_avoid_human = add_type<TargetChoosingType<obj_human, HA_AvoidHuman>>(
        t, "AvoidHuman", &GC::weight_avoid_human, &GC::move_speed_avoid_human,
        &GC::target_weight_avoid_human);
    t.HAT_attack_monster = add_type<AttackType<obj_monster, HA_AttackMonster>>(
        t, "AttackMonster", &GC::weight_attack_monster, &GC::move_speed_attack_monster);
    t.HAT_attack_human = add_type<AttackType<obj_human, HA_AttackHuman>>(
        t, "AttackHuman", &GC::weight_attack_human, &GC::move_speed_attack_human);
    t.HAT_exchange_with_human =
        add_type<ExchangeType>(t, "ExchangeWithHuman", &GC::weight_exchange_with_human,
                               &GC::move_speed_exchange_with_human);
    t.HAT_explore =
        add_type<ExploreType>(t, "Explore", &GC::weight_explore, &GC::move_speed_explore);
}

}  // namespace veldra

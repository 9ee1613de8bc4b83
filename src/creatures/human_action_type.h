#pragma once
// The nine kinds of behaviour a human chooses among. A type holds no per-human state: it says
// how strongly a personality is drawn to the behaviour (a formula of the configuration) and,
// looking at the world, builds a concrete action with its target when the behaviour is possible
// now. The decision loop (obj_human) samples the types by weight and asks them in turn.
//
// One instance of each type exists per simulation, built once at start-up; humans refer to them
// by pointer and index their per-type tables (weights, move speeds) by `index`.

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "config/game_configurations.h"
#include "config/personality_traits.h"
#include "util/rng.h"

namespace veldra {

class obj_human;
class HumanAction;

inline constexpr std::size_t HUMAN_ACTION_TYPE_COUNT = 9;

// A configuration formula named by its field, read from the Configs passed in when called, so
// a reloaded configuration takes effect without rebuilding the types.
using ConfigMethodKey = ConfigMethod GameConfigurations::*;

class HumanActionType {
public:
    HumanActionType(std::size_t index, std::string debug_name, ConfigMethodKey weight,
                    ConfigMethodKey move_speed);
    virtual ~HumanActionType() = default;
    HumanActionType(const HumanActionType&) = delete;
    HumanActionType& operator=(const HumanActionType&) = delete;

    // How strongly these traits are drawn to the behaviour; energy_ratio is energy / energy_max.
    virtual double get_weight(const GameConfigurations& configs, const PersonalityTraits& traits,
                              double energy_ratio) const;
    // A new action when the behaviour can start now, else nullptr. `rng` is the tick's generator.
    virtual std::unique_ptr<HumanAction> try_initiate(obj_human& human, Rng& rng) const = 0;
    // Pixels per tick while an action of this type runs, before the sand factor.
    double get_move_speed(const GameConfigurations& configs, const PersonalityTraits& traits) const;

    const std::size_t index;  // position in HumanActionTypes::all, 0..8
    const std::string debug_name;

private:
    ConfigMethodKey weight_;
    ConfigMethodKey move_speed_;
};

// The nine types, in table order (`all` is all_human_action_types).
struct HumanActionTypes {
    HumanActionTypes() = default;
    // Humans and actions point at the types.
    HumanActionTypes(const HumanActionTypes&) = delete;
    HumanActionTypes& operator=(const HumanActionTypes&) = delete;

    bool called = false;
    std::vector<std::unique_ptr<HumanActionType>> owned;
    std::vector<const HumanActionType*> all;

    const HumanActionType* HAT_approach_food = nullptr;
    const HumanActionType* HAT_approach_monster = nullptr;
    const HumanActionType* HAT_approach_human = nullptr;
    const HumanActionType* HAT_avoid_monster = nullptr;
    const HumanActionType* HAT_avoid_human = nullptr;
    const HumanActionType* HAT_attack_monster = nullptr;
    const HumanActionType* HAT_attack_human = nullptr;
    const HumanActionType* HAT_exchange_with_human = nullptr;
    const HumanActionType* HAT_explore = nullptr;
};

// Once-only: builds the nine types. A second call logs the once-only error with the call stack
// and changes nothing.
void initialize_human_action_types(HumanActionTypes& types);

}  // namespace veldra

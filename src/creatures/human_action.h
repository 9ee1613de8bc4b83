#pragma once
// Concrete pieces of behaviour with their targets: walking to one food and eating it, keeping
// away from one monster. Action types build them, a human keeps them in its memory (most
// recent first) and ticks the first one until it reports that it is finished.
//
// Targets are held as instance ids and looked up on every tick, so an action never points at a
// destroyed instance; a target that is gone finishes the action at once.

#include <memory>
#include <optional>
#include <string>

#include "creatures/human_action_type.h"
#include "runtime/instance_id.h"
#include "util/rng.h"
#include "util/ticks.h"
#include "world/terrain.h"

namespace veldra {

class Runtime;

class obj_human;

class HumanAction {
public:
    explicit HumanAction(const HumanActionType& type) : type(&type) {}
    virtual ~HumanAction() = default;
    HumanAction(const HumanAction&) = delete;
    HumanAction& operator=(const HumanAction&) = delete;

    // Runs one tick for `human`; true while the action goes on, false when it is finished.
    // `rng` is the tick's generator.
    virtual bool tick(obj_human& human, Rng& rng) = 0;
    // Whether `other`, an action of the same type, is the same piece of behaviour.
    virtual bool equals(const HumanAction& other) const = 0;
    // The type's debug name followed by every field, e.g. "ApproachFood target_food: Food 100012".
    std::string debug_string(const Runtime& runtime) const;

    const HumanActionType* const type;  // one of the simulation's nine

protected:
    // Appends " name: value" for each field.
    virtual void append_debug_fields(std::string& out, const Runtime& runtime) const = 0;
};

// The only equality the memory uses: same type, and that type's equals.
bool human_actions_equal(const HumanAction& a, const HumanAction& b);

namespace detail {

// An action aimed at one instance; two such actions are equal when they aim at the same one.
class TargetedHumanAction : public HumanAction {
public:
    TargetedHumanAction(const HumanActionType& type, InstanceId target, const char* target_field)
        : HumanAction(type), target(target), target_field_(target_field) {}
    bool equals(const HumanAction& other) const override;

    const InstanceId target;

protected:
    void append_debug_fields(std::string& out, const Runtime& runtime) const override;

private:
    const char* target_field_;  // the field's name in debug strings: "target_food", ...
};

// Keeps away from a creature, re-planning the flight cell at most once a second.
class AvoidAction : public TargetedHumanAction {
public:
    using TargetedHumanAction::TargetedHumanAction;
    bool tick(obj_human& human, Rng& rng) override;

    const TerrainCell* target_cell =
        nullptr;  // nullptr until planned, or when no flight cell exists
    std::optional<Ticks> tick_at_last_target_cell_find;

protected:
    void append_debug_fields(std::string& out, const Runtime& runtime) const override;
};

// Strikes a creature within attack range whenever the cooldown allows; never walks.
class AttackAction : public TargetedHumanAction {
public:
    using TargetedHumanAction::TargetedHumanAction;
    bool tick(obj_human& human, Rng& rng) override;

    bool first_tick_done = false;

protected:
    // The flight a human takes up when its own blow turned into fleeing.
    virtual std::unique_ptr<HumanAction> make_flight(const obj_human& human) const = 0;
    void append_debug_fields(std::string& out, const Runtime& runtime) const override;
};

}  // namespace detail

class HA_ApproachFood final : public detail::TargetedHumanAction {
public:
    HA_ApproachFood(const obj_human& human, InstanceId target_food);
    bool tick(obj_human& human, Rng& rng) override;
};

class HA_ApproachMonster final : public detail::TargetedHumanAction {
public:
    HA_ApproachMonster(const obj_human& human, InstanceId target_monster);
    bool tick(obj_human& human, Rng& rng) override;
};

class HA_ApproachHuman final : public detail::TargetedHumanAction {
public:
    HA_ApproachHuman(const obj_human& human, InstanceId target_human);
    bool tick(obj_human& human, Rng& rng) override;
};

class HA_AvoidMonster final : public detail::AvoidAction {
public:
    HA_AvoidMonster(const obj_human& human, InstanceId target_monster);
};

class HA_AvoidHuman final : public detail::AvoidAction {
public:
    HA_AvoidHuman(const obj_human& human, InstanceId target_human);
};

class HA_AttackMonster final : public detail::AttackAction {
public:
    HA_AttackMonster(const obj_human& human, InstanceId target_monster);

private:
    std::unique_ptr<HumanAction> make_flight(const obj_human& human) const override;
};

class HA_AttackHuman final : public detail::AttackAction {
public:
    HA_AttackHuman(const obj_human& human, InstanceId target_human);

private:
    std::unique_ptr<HumanAction> make_flight(const obj_human& human) const override;
};

// Meets another human and trades energy once both are within reach and off cooldown.
class HA_ExchangeWithHuman final : public detail::TargetedHumanAction {
public:
    HA_ExchangeWithHuman(const obj_human& human, InstanceId target_human);
    bool tick(obj_human& human, Rng& rng) override;

    bool first_tick_done = false;

protected:
    void append_debug_fields(std::string& out, const Runtime& runtime) const override;
};

class HA_Explore final : public HumanAction {
public:
    HA_Explore(const obj_human& human, const TerrainCell& target_cell);
    bool tick(obj_human& human, Rng& rng) override;
    bool equals(const HumanAction& other) const override;

    const TerrainCell* const target_cell;  // a cell of the trial's terrain

protected:
    void append_debug_fields(std::string& out, const Runtime& runtime) const override;
};

}  // namespace veldra

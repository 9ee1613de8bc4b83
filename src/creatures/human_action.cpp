// The parts every action shares: equality, debug text, and the moves that several actions make.

#include "creatures/human_action.h"

#include <fmt/format.h>

#include "creatures/eid.h"
#include "creatures/human.h"
#include "creatures/trial_world.h"
#include "runtime/runtime.h"

namespace veldra {

std::string HumanAction::debug_string(const Runtime& runtime) const {
    std::string out = type->debug_name;
    append_debug_fields(out, runtime);
    return out;
}

bool human_actions_equal(const HumanAction& a, const HumanAction& b) {
    return a.type == b.type && a.equals(b);
}

namespace detail {

namespace {

std::string instance_debug_text(const Runtime& runtime, InstanceId id) {
    return id == NO_INSTANCE ? std::string("NO_INSTANCE") : EID(runtime.find(id), false);
}

std::string cell_debug_text(const TerrainCell* cell) {
    return cell ? fmt::format("cell ({}, {})", cell->cx, cell->cy) : std::string("undefined");
}

}  // namespace

// Each type builds exactly one action class, so equal types mean equal classes.
bool TargetedHumanAction::equals(const HumanAction& other) const {
    return target == static_cast<const TargetedHumanAction&>(other).target;
}

void TargetedHumanAction::append_debug_fields(std::string& out, const Runtime& runtime) const {
    fmt::format_to(std::back_inserter(out), " {}: {}", target_field_,
                   instance_debug_text(runtime, target));
}

void AvoidAction::append_debug_fields(std::string& out, const Runtime& runtime) const {
    TargetedHumanAction::append_debug_fields(out, runtime);
    fmt::format_to(std::back_inserter(out), " target_cell: {} tick_at_last_target_cell_find: {}",
                   cell_debug_text(target_cell),
                   tick_at_last_target_cell_find ? fmt::format("{}", *tick_at_last_target_cell_find)
                                                 : std::string("undefined"));
}

void AttackAction::append_debug_fields(std::string& out, const Runtime& runtime) const {
    TargetedHumanAction::append_debug_fields(out, runtime);
    fmt::format_to(std::back_inserter(out), " first_tick_done: {}", first_tick_done);
}

}  // namespace detail

void HA_ExchangeWithHuman::append_debug_fields(std::string& out, const Runtime& runtime) const {
    TargetedHumanAction::append_debug_fields(out, runtime);
    fmt::format_to(std::back_inserter(out), " first_tick_done: {}", first_tick_done);
}

HA_Explore::HA_Explore(const obj_human& human, const TerrainCell& target_cell)
    : HumanAction(*human.world().action_types.HAT_explore), target_cell(&target_cell) {}

bool HA_Explore::equals(const HumanAction& other) const {
    const TerrainCell* other_cell = static_cast<const HA_Explore&>(other).target_cell;
    return target_cell->cx == other_cell->cx && target_cell->cy == other_cell->cy;
}

void HA_Explore::append_debug_fields(std::string& out, const Runtime&) const {
    fmt::format_to(std::back_inserter(out), " target_cell: {}",
                   detail::cell_debug_text(target_cell));
}

}  // namespace veldra

#include "trials/trial.h"

#include <cmath>

#include "async/room_goer.h"
#include "config/game_configurations.h"
#include "creatures/eid.h"
#include "creatures/food.h"
#include "creatures/human.h"
#include "creatures/human_ai.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"
#include "creatures/personality_sources.h"
#include "creatures/trial_world.h"
#include "runtime/callstack.h"
#include "runtime/log.h"
#include "runtime/number_format.h"
#include "runtime/once.h"
#include "runtime/runtime.h"
#include "trials/simulation_state.h"
#include "trials/trial_data.h"

namespace veldra {

void obj_trial::on_create() {
    max_ticks = static_cast<Ticks>(std::ceil(sim_.configs->trial_time * 60));
    state = TrialState::Created;
}

void obj_trial::initialize(const Level& level_to_run, double seed, bool auto_run, double speed,
                           double total_score_before) {
    level = level_to_run;
    is_auto_run = auto_run;
    rng.emplace(seed);
    ticker.initialize(seed);

    // Everything the level's creatures need from the trial must be in place while they are
    // created.
    TrialWorld& world = sim_.world;
    world.clear_trial();
    world.rng = &*rng;
    world.subscribe_tick = [this](InstanceId owner, Ticker::Callback callback) {
        ticker.on_tick(owner, std::move(callback));
    };
    world.log_event = [this](const std::string& message) { log_event(message); };
    if (!auto_run)
        world.log_interactive_event = world.log_event;
    terrain = level_dump(*level, sim_.spawn_hooks);
    world.terrain = &terrain;

    game_speed = speed;
    total_score_before_this_trial = total_score_before;
    state = TrialState::Initialized;
    if (!auto_run && sim_.create_trial_views)
        hud = sim_.create_trial_views(*this);
    log_event("Trial initialized.");
    log_event("Seed: " + number_to_string(seed));
    log_event("Level: " + level->name);
}

void obj_trial::give_traits_to_ai_humans() {
    const Value& table = sim_.configs->ai_human_traits;
    runtime().for_each<obj_human_ai>([&](obj_human_ai& human) {
        std::optional<PersonalityTraitRanges> ranges;
        if (!human.type_number) {
            if (table.size() == 0)
                log_error("Configurations don't have any entries in ai_human_traits!");
            else
                ranges = personality_traits_ranges_from_value(table.at(static_cast<std::size_t>(
                    rng->rng_irandom(static_cast<double>(table.size() - 1)))));
        } else if (*human.type_number >= 0 &&
                   static_cast<std::size_t>(*human.type_number) < table.size()) {
            ranges = personality_traits_ranges_from_value(
                table.at(static_cast<std::size_t>(*human.type_number)));
        } else {
            log_error("Human AI \"" + EID(&human, false) + "\" has type number \"" +
                      std::to_string(*human.type_number) +
                      "\" but the configurations don't define personality traits for that number.");
        }
        human.set_traits(personality_traits_from_ranges(
            ranges.value_or(personality_trait_ranges_of_options(sim_.configs)), *rng));
        if (!is_auto_run)
            log_event("Traits and action weights for " + EID(&human, true) + ":\n" +
                      personality_traits_format_data(human.personality_traits, sim_.configs.get(),
                                                     sim_.action_types));
    });
}

obj_trial::StartResult obj_trial::start(std::optional<PersonalityTraits> player_traits) {
    if (state != TrialState::Initialized)
        return std::monostate{};
    traits = player_traits;
    runtime().for_each<obj_human_player>([&](obj_human_player& player) {
        player.set_traits(traits.value_or(PersonalityTraits{}));
        if (!is_auto_run)
            log_event("Traits and action weights for " + EID(&player, true) + ":\n" +
                      personality_traits_format_data(player.personality_traits, sim_.configs.get(),
                                                     sim_.action_types));
    });
    give_traits_to_ai_humans();
    state = TrialState::Running;
    log_event("Trial started.");
    if (is_auto_run) {
        // To its end here whatever the game speed: a speed of 0 (or one so small that a frame
        // never adds up to a tick) would otherwise never end the trial.
        while (tick()) {
        }
        while (state != TrialState::Reported)
            _step();
        return *result;
    }
    return Promise<TrialResult>([this](const Resolve<TrialResult>& resolve, const Reject&) {
        ended_callback = [resolve](const TrialResult& r) { resolve(r); };
    });
}

void obj_trial::build_result(TrialOutcome outcome) {
    const Ticks spent = ticker.spent_ticks;
    obj_human_player* player = runtime().instance_find<obj_human_player>(0);
    const double energy = player ? player->energy : 0;
    const double energy_fraction = player ? player->energy / player->energy_max : 0;
    // 0 / 0 is NaN for a zero-length trial.
    const double time_fraction = static_cast<double>(spent) / static_cast<double>(max_ticks);
    TrialResult r;
    r.outcome = outcome;
    r.time_left = max_ticks - spent;
    r.num_monsters_remaining = static_cast<std::int64_t>(runtime().instance_number<obj_monster>());
    r.num_food_remaining = static_cast<std::int64_t>(runtime().instance_number<obj_food>());
    r.num_humans_remaining = static_cast<std::int64_t>(runtime().instance_number<obj_human>());
    r.energy_remaining = energy;
    r.trial_score = sim_.configs->trial_score(traits.value_or(PersonalityTraits{}), energy_fraction,
                                              time_fraction);
    result = r;
}

bool obj_trial::tick() {
    if (result)
        return false;
    if (ticker.spent_ticks < max_ticks) {
        ticker.tick(runtime());
        sim_.world.spent_ticks = ticker.spent_ticks;
        if (runtime().instance_number<obj_human_player>() == 0)
            build_result(TrialOutcome::perished);
    } else {
        build_result(TrialOutcome::survived);
    }
    return true;
}

void obj_trial::_step() {
    switch (state) {
        case TrialState::Running:
            if (game_speed < 0) {
                while (tick()) {
                }
            } else if (paused()) {
                run_requested_steps();
            } else {
                tick_remainder += game_speed;
                while (!result && tick_remainder >= 1) {
                    tick_remainder -= 1;
                    tick();
                }
            }
            if (result)
                state = TrialState::Ended;
            break;
        case TrialState::Ended:
            log_event("Trial ended.");
            if (ended_callback)
                ended_callback(*result);
            state = TrialState::Reported;
            break;
        default:
            break;
    }
}

void obj_trial::on_step() {
    _step();
}

void obj_trial::log_event(const std::string& message) const {
    // Batches stay quiet unless their events are wanted in a log: an auto run writing an
    // output file, or a single trial run from the shell.
    if (is_auto_run && !sim_.log_automatic_trial_events)
        return;
    log("[#55dd55]TRIAL(" + std::to_string(id()) + ") TICK#" + std::to_string(ticker.spent_ticks) +
        "[/c] " + message);
}

void obj_trial::on_clean_up() {
    log_event("Trial cleaned up.");
    ticker.free();
    if (sim_.world.terrain == &terrain)
        sim_.world.clear_trial();
    terrain = Terrain{};
    runtime().instance_destroy(hud);
    hud = NO_INSTANCE;
}

Promise<TrialResult> trial_run(SimulationState& sim, const Level& level, double seed,
                               std::optional<PersonalityTraits> traits,
                               std::optional<std::string> trait_menu_header,
                               double total_score_before_this_trial) {
    if (obj_trial* previous = sim.current_trial())
        sim.runtime.instance_destroy(previous->id());
    using ChosenTraits = std::optional<PersonalityTraits>;
    Promise<void> created =
        room_goto_or_restart(sim.runtime, sim.runtime.room_find("rm_game"))
            .and_then([&sim, level, seed, total_score_before_this_trial] {
                auto& trial = sim.runtime.instance_create<obj_trial>(0, 0, "Instances", sim);
                sim.trial.trial = trial.id();
                trial.initialize(level, seed, false, sim.configs->game_speed,
                                 total_score_before_this_trial);
            });
    const bool asks = trait_menu_header && sim.ask_personality_traits && traits;
    // Without a menu the traits go straight on, in the same step as the trial's creation.
    Promise<ChosenTraits> chosen =
        asks ? created.and_then([&sim, traits, heading = *trait_menu_header] {
            return sim.ask_personality_traits(*traits, heading)
                .and_then([](const PersonalityTraits& answer) { return ChosenTraits(answer); });
        })
             : created.and_then([traits] { return traits; });
    return chosen.and_then([&sim](const ChosenTraits& answer) {
        obj_trial* trial = sim.current_trial();
        if (!trial)
            return promise_reject<TrialResult>(Value("The trial ended before it started."));
        return std::get<Promise<TrialResult>>(trial->start(answer));
    });
}

}  // namespace veldra

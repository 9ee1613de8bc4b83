#pragma once
// One timed run of one level. The trial lays the level into the room, gives every human its
// traits, advances the world in fixed ticks of 60 per simulated second, and ends when the
// player's human is gone or the time is used up, with a TrialResult scored by the
// configuration's trial_score formula. Interactive trials advance from the frame loop at the
// game speed and report through a promise; automatic trials run to their end inside start().

#include <optional>
#include <string>
#include <variant>

#include "async/promise.h"
#include "config/personality_traits.h"
#include "runtime/instance.h"
#include "trials/ticker.h"
#include "trials/trial_result.h"
#include "util/rng.h"
#include "world/level.h"
#include "world/terrain.h"

namespace veldra {

enum class TrialState { Created = 0, Initialized = 1, Running = 2, Ended = 3, Reported = 4 };

struct SimulationState;
struct TrialSlot;

class obj_trial : public Instance {
    VELDRA_OBJECT(obj_trial, Instance)
public:
    // The trial plays in `sim`, which outlives it.
    explicit obj_trial(SimulationState& sim) : sim_(sim) {}

    void on_create() override;
    void on_step() override;
    void on_clean_up() override;

    void initialize(const Level& level, double seed, bool is_auto_run = false,
                    double game_speed = 1, double total_score_before_this_trial = 0);

    // Only in state Initialized (otherwise monostate, nothing changes). Automatic trials return
    // their TrialResult; interactive ones a promise fulfilled one frame after the result.
    using StartResult = std::variant<std::monostate, TrialResult, Promise<TrialResult>>;
    StartResult start(std::optional<PersonalityTraits> traits);

    // One tick; false once the result exists (then nothing is done).
    bool tick();
    // One frame of the state machine.
    void _step();

    // Time control (trial_time_control.cpp), shared by the developer keys and tools. A speed of
    // 0 is the pause; speed_before_pause is what resume goes back to.
    static constexpr double MIN_GAME_SPEED = 0.25;
    static constexpr double MAX_GAME_SPEED = 16;
    bool paused() const { return game_speed == 0; }
    void pause();
    void resume();
    // Leaves a pause too; clamped to [MIN_GAME_SPEED, MAX_GAME_SPEED].
    void set_speed(double speed);
    // The rest of the trial in the next frame, as a negative game speed does.
    void fast_forward() { game_speed = -1; }
    // Pauses, and the next frame runs `ticks` ticks (added to any still to run).
    void step_ticks(Ticks ticks);
    // Pauses, and the next frame runs ticks until some human has made a decision, at most the
    // trial's length, so a level without humans cannot hang the frame.
    void step_decision();
    void log_event(const std::string& message) const;

    Ticker ticker;
    std::optional<Level> level;
    Terrain terrain;
    std::optional<Rng> rng;
    std::optional<PersonalityTraits> traits;
    bool is_auto_run = false;
    double total_score_before_this_trial = 0;
    Ticks max_ticks = 0;
    double game_speed = 1;  // ticks per frame; negative: the rest of the trial in one frame
    double tick_remainder = 0;
    double speed_before_pause = 1;
    Ticks ticks_to_step = 0;            // run by the next paused frame
    bool stepping_to_decision = false;  // the next paused frame runs until a decision
    std::function<void(const TrialResult&)> ended_callback;
    // What the window shows of an interactive trial (its world view and HUD); destroyed with the
    // trial.
    InstanceId hud = NO_INSTANCE;
    TrialState state = TrialState::Created;
    std::optional<TrialResult> result;

private:
    SimulationState& sim_;

    void give_traits_to_ai_humans();
    void build_result(TrialOutcome outcome);
    void run_requested_steps();
};

// Start-up: once-only; sets Trial to no instance.
void initialize_trials(TrialSlot& slot);

// Goes to the game room, creates an interactive trial there, lets the player choose traits
// (when there is a heading and a traits menu) and starts it; fulfilled with the result when
// the trial has reported its end. A traits menu that is left cancels the chain.
Promise<TrialResult> trial_run(SimulationState& sim, const Level& level, double seed,
                               std::optional<PersonalityTraits> traits,
                               std::optional<std::string> trait_menu_header,
                               double total_score_before_this_trial);

}  // namespace veldra

#pragma once
// The once-only set-up of everything a trial stands on, in the order start-up runs it: game
// configurations, human action types, creature pathfinding, trials, level cell types, creature
// spawning. Start-up, tests and benchmarks that play trials call this one function, so they
// cannot drift apart in what they set up or in which order.

namespace veldra {

struct SimulationState;

// Each part logs the once-only warning when called a second time on one state.
void initialize_game_systems(SimulationState& sim);

}  // namespace veldra

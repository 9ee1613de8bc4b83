#pragma once
// Fills the level's spawn hooks so that dumping a level creates the creatures and entities its
// cells stand for, each at its cell's centre on layer "Instances". The level dumps its cells
// row by row, so entities are created in row-major order of their cells.

namespace veldra {

struct LevelSpawnHooks;
struct TrialWorld;

// Makes the hooks create creatures in `world` (which must outlive them). Once-only: a second
// call logs the once-only error with the call stack and changes nothing.
void initialize_creature_spawning(LevelSpawnHooks& hooks, TrialWorld& world);

}  // namespace veldra

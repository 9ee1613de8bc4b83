#pragma once
// Where the trial's HUD sits on the 1600 x 900 screen and in which colours, in one place so that
// a screenshot test can find the bars and check their pixels. The HUD fills the band above the
// world's viewport (Camera::VIEW_TOP).

#include "runtime/renderer.h"

namespace veldra {

inline constexpr float HUD_LABEL_SIZE = 22;
inline constexpr float HUD_LABEL_Y = 6;
inline constexpr float HUD_TEXT_MARGIN = 10;  // between a label and its number

// The time bar: centred, its fill grows to the right as the trial's ticks are spent.
inline constexpr float TIME_BAR_WIDTH = 800;
inline constexpr float TIME_BAR_HEIGHT = 40;
inline constexpr float TIME_BAR_X = (LOGICAL_WIDTH - TIME_BAR_WIDTH) / 2;
inline constexpr float TIME_BAR_Y = 34;
inline constexpr Rgba TIME_BAR_BACKGROUND{28, 34, 42, 255};
inline constexpr Rgba TIME_BAR_FILL{236, 192, 78, 255};

// The player's energy, at the left.
inline constexpr float ENERGY_BAR_X = 20;
inline constexpr float ENERGY_BAR_Y = TIME_BAR_Y;
inline constexpr float ENERGY_BAR_WIDTH = 300;
inline constexpr float ENERGY_BAR_HEIGHT = TIME_BAR_HEIGHT;
inline constexpr Rgba ENERGY_BAR_BACKGROUND{28, 34, 42, 255};
inline constexpr Rgba ENERGY_BAR_FILL{92, 196, 96, 255};
inline constexpr Rgba ENERGY_BAR_FLASH{220, 54, 54, 255};
inline constexpr double ENERGY_FLASH_STEPS = 20;

// The total score, right-aligned.
inline constexpr float SCORE_RIGHT = LOGICAL_WIDTH - 20;
inline constexpr float SCORE_Y = TIME_BAR_Y + 4;
inline constexpr float SCORE_TEXT_SIZE = 30;

inline constexpr Rgba HUD_TEXT_COLOR{246, 244, 236, 255};
// Behind the HUD: the band above the world's viewport, which the world never shows through.
inline constexpr Rgba HUD_BAND_COLOR{0, 0, 0, 255};

}  // namespace veldra

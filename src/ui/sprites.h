#pragma once
// Every picture the trial's window shows, painted by code into pixel buffers and uploaded once,
// when the window opens; the application keeps the set as long as the window. Creature sprites share one layout: a
// SPRITE_SIZE square whose body is centred BODY_CENTRE_Y from the top, so views place all of them
// the same way.

#include <array>
#include <cstddef>

#include "runtime/renderer.h"
#include "ui/pixel_canvas.h"
#include "ui/scenery_looks.h"
#include "creatures/human_action_type.h"

namespace veldra {

// The player's human, warm gold so it stands out from the cool colours of the others. Its body
// is this colour, unshaded, within BODY_FLAT_RADIUS of the point BODY_FLAT_BELOW_CENTRE below
// the body's centre, so a screenshot can check where the player is.
inline constexpr Rgba PLAYER_BODY_COLOR{242, 168, 46};
inline constexpr std::array<Rgba, 4> AI_HUMAN_BODY_COLORS{
    {{84, 140, 214}, {72, 178, 168}, {150, 112, 206}, {214, 112, 150}}};
inline constexpr Rgba MONSTER_BODY_COLOR{140, 52, 120};

inline constexpr int SPRITE_SIZE = 56;          // creature sprites, pixels square
inline constexpr double BODY_CENTRE_Y = 30;     // from the sprite's top
inline constexpr double BODY_RADIUS = 18;       // humans
inline constexpr double BODY_FLAT_BELOW_CENTRE = 5;
inline constexpr double BODY_FLAT_RADIUS = 5;

inline constexpr int TILE_SIZE = 64;  // one terrain cell
inline constexpr int GROUND_VARIANTS = 3;
inline constexpr int ICON_SIZE = 24;

struct Sprites {
    // Pixel pictures kept for compositing the level's ground on the CPU.
    std::array<PixelCanvas, GROUND_VARIANTS> ground_tiles;
    PixelCanvas sand_tile{TILE_SIZE, TILE_SIZE};
    std::array<PixelCanvas, RockLook::VARIANTS> rock_images;
    PixelCanvas foliage_image{32, 32};

    TextureId foliage = 0;
    TextureId food = 0;
    TextureId player = 0;
    std::array<TextureId, AI_HUMAN_BODY_COLORS.size()> ai_humans{};
    TextureId monster = 0;
    TextureId outline = 0;  // a white ring around a human's body, tinted when drawn
    TextureId shadow = 0;
    TextureId glow = 0;  // soft white disc, tinted
    TextureId ring = 0;  // thin white circle, tinted: highlights
    TextureId crosshair = 0;
    TextureId bubble = 0;
    std::array<TextureId, HUMAN_ACTION_TYPE_COUNT> action_icons{};  // by HumanActionType::index
};

// Paints everything; the textures are made on `renderer`.
Sprites make_sprites(Renderer& renderer);


}  // namespace veldra

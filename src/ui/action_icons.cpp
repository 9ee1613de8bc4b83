#include "ui/sprite_painting.h"
#include "ui/sprites.h"

namespace veldra {

namespace {

constexpr double C = ICON_SIZE / 2.0;
constexpr Rgba INK{250, 248, 240};
constexpr Rgba MONSTER_DOT{196, 82, 178};
constexpr Rgba HUMAN_DOT{110, 170, 240};

void arrow(PixelCanvas& icon, double from_x, double to_x, double y) {
    const double dir = to_x > from_x ? 1 : -1;
    icon.capsule(from_x, y, to_x - dir * 2, y, 2.4, INK);
    icon.triangle(to_x, y, to_x - dir * 5, y - 4, to_x - dir * 5, y + 4, INK);
}

void sword(PixelCanvas& icon) {
    icon.capsule(7, 17, 17, 7, 3, {230, 232, 238});
    icon.capsule(6, 13, 11, 18, 2.2, {150, 110, 60});
    icon.capsule(5, 19, 7, 17, 2.6, {150, 110, 60});
}

void heart(PixelCanvas& icon, Rgba color) {
    icon.circle(C - 3.2, C - 1.5, 4, color);
    icon.circle(C + 3.2, C - 1.5, 4, color);
    icon.triangle(C - 7, C, C + 7, C, C, C + 7, color);
}

}  // namespace

// Index order is that of the nine action types: approach food, monster, human; avoid monster,
// human; attack monster, human; exchange; explore.
PixelCanvas paint_action_icon(std::size_t index) {
    static constexpr Rgba BACKGROUNDS[9] = {{64, 140, 64},  {120, 60, 120}, {60, 100, 160},
                                            {150, 110, 40}, {150, 110, 40}, {170, 50, 50},
                                            {170, 50, 50},  {200, 120, 40}, {90, 90, 100}};
    PixelCanvas icon(ICON_SIZE, ICON_SIZE);
    icon.circle(C, C, C - 0.5, shade(BACKGROUNDS[index], 0.5));
    icon.circle(C, C, C - 2, BACKGROUNDS[index]);
    switch (index) {
        case 0:  // an apple
            icon.circle(C, C + 1.5, 6, {226, 52, 60});
            icon.capsule(C, C - 4, C + 1, C - 7, 1.4, {110, 70, 40});
            icon.ellipse(C + 3.5, C - 6, 3, 1.6, {120, 210, 100});
            break;
        case 1:
        case 2:  // toward someone
            arrow(icon, 4, 15, C);
            icon.circle(18.5, C, 3.5, index == 1 ? MONSTER_DOT : HUMAN_DOT);
            break;
        case 3:
        case 4:  // away from someone
            icon.circle(18.5, C, 3.5, index == 3 ? MONSTER_DOT : HUMAN_DOT);
            arrow(icon, 13, 3, C);
            break;
        case 5:
        case 6:
            sword(icon);
            icon.circle(18, 18, 3, index == 5 ? MONSTER_DOT : HUMAN_DOT);
            break;
        case 7:
            heart(icon, {255, 120, 150});
            break;
        default:  // footprints
            icon.ellipse(8.5, 14, 2.6, 3.6, INK);
            icon.ellipse(15.5, 9, 2.6, 3.6, INK);
            icon.circle(8.5, 19, 1.4, INK);
            icon.circle(15.5, 14, 1.4, INK);
            break;
    }
    return icon;
}

}  // namespace veldra

#include "creatures/eid.h"

#include <cmath>

#include <fmt/format.h>

#include "creatures/entity.h"
#include "creatures/food.h"
#include "creatures/human.h"
#include "creatures/human_player.h"
#include "creatures/monster.h"

namespace veldra {

namespace {

// The most specific kind wins, so later matches overwrite earlier ones.
const char* kind_word(const Instance& instance) {
    const char* word = "Instance";
    if (instance.is_a<obj_entity>())
        word = "Entity";
    if (instance.is_a<obj_human_player>())
        word = "Player";
    else if (instance.is_a<obj_human>())
        word = "Human";
    else if (instance.is_a<obj_monster>())
        word = "Monster";
    else if (instance.is_a<obj_food>())
        word = "Food";
    return word;
}

// Hue, saturation and value on 0..255 scales, as the renderer's colour helpers take them.
std::uint32_t make_color_hsv(double hue, double saturation, double value) {
    const double h = std::fmod(hue / 255.0 * 6.0, 6.0);
    const double s = saturation / 255.0;
    const double v = value / 255.0;
    const double c = v * s;
    const double x = c * (1 - std::fabs(std::fmod(h, 2.0) - 1));
    const double m = v - c;
    double r = 0, g = 0, b = 0;
    switch (static_cast<int>(h)) {
        case 0:
            r = c, g = x;
            break;
        case 1:
            r = x, g = c;
            break;
        case 2:
            g = c, b = x;
            break;
        case 3:
            g = x, b = c;
            break;
        case 4:
            r = x, b = c;
            break;
        default:
            r = c, b = x;
            break;
    }
    auto channel = [m](double part) {
        return static_cast<std::uint32_t>(std::lround((part + m) * 255.0));
    };
    return channel(r) << 16 | channel(g) << 8 | channel(b);
}

// Entities carry their hash; anything else gets one from its id.
double debug_hue(const Instance& instance) {
    const auto* entity = dynamic_cast<const obj_entity*>(&instance);
    const std::uint32_t hash = entity ? entity->id_hash : int_hash(instance.id());
    return static_cast<double>(hash % 256);
}

}  // namespace

std::string EID(const Instance* instance, bool colored) {
    if (!instance || !instance->alive())
        return "UNKNOWN";
    std::string text = fmt::format("{}({})", kind_word(*instance), instance->id());
    if (!colored)
        return text;
    return fmt::format("[#{:06x}]{}[/c]", make_color_hsv(debug_hue(*instance), 180, 255), text);
}

}  // namespace veldra

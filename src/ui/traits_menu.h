#pragma once
// The personality-traits menu: before a trial the participant sets their five traits, each with
// a slider and a typed value within the range the configuration offers (the smallest to the
// largest of its options for that trait), each explained in the active language.

#include <memory>
#include <string>

#include "async/promise.h"
#include "config/personality_traits.h"
#include "ui/popup_menu.h"

namespace veldra {

class Runtime;
struct ConfigsState;
struct Localization;

// The popup name every traits menu carries (popup_menus_open counts them).
inline constexpr const char* TRAITS_MENU_NAME = "personality_traits";

struct TraitFields {
    std::shared_ptr<MenuField> openness, conscientiousness, extraversion, agreeableness,
        neuroticism;
    // The five values as they stand in the fields.
    PersonalityTraits traits() const;
};

// The fields start at `traits`, clamped into their ranges.
TraitFields make_trait_fields(const PersonalityTraits& traits, const ConfigsState& configs);

MenuDefinition make_personality_traits_menu(const TraitFields& fields, const std::string& heading,
                                            const Localization& localization);

// Shows the menu, its fields starting at `traits`, and is fulfilled with the participant's
// choice when they start. With `leave_open` (the configuration's
// leave_traits_menu_open_when_playing) a small panel with the chosen values stays on screen
// until close_personality_traits_menus is called.
Promise<PersonalityTraits> get_personality_traits_via_menu(
    Runtime& runtime, const PersonalityTraits& traits, const std::string& heading,
    const ConfigsState& configs, const Localization& localization, bool leave_open);

// Closes every traits menu and panel still open.
void close_personality_traits_menus(Runtime& runtime);

// Fulfilled in the first step in which no traits menu is open.
Promise<void> wait_close_all_personality_traits_menus(Runtime& runtime);

}  // namespace veldra

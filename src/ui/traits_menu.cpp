#include "ui/traits_menu.h"

#include <algorithm>

#include "async/waiters.h"
#include "config/game_configurations.h"
#include "config/text_ids.h"
#include "creatures/personality_sources.h"
#include "runtime/number_format.h"
#include "runtime/runtime.h"

namespace veldra {

namespace {

std::shared_ptr<MenuField> trait_field(double value, const std::array<double, 2>& range) {
    auto field = std::make_shared<MenuField>();
    field->minimum = range[0];
    field->maximum = range[1];
    field->number = std::clamp(value, range[0], range[1]);
    return field;
}

struct TraitRow {
    std::string_view name;
    std::string_view help;
    const std::shared_ptr<MenuField>& field;
};

// The panel that stays on screen during play when the configuration asks for it: the values
// chosen, nothing to press.
MenuDefinition chosen_traits_panel(const TraitFields& fields, const Localization& localization) {
    MenuDefinition panel;
    panel.width = 420;
    panel.entries.push_back(menu_heading(text_of(localization, lid::TraitMenu_Chosen)));
    const std::pair<std::string_view, const std::shared_ptr<MenuField>*> rows[] = {
        {lid::TraitMenu_Openness, &fields.openness},
        {lid::TraitMenu_Conscientiousness, &fields.conscientiousness},
        {lid::TraitMenu_Extraversion, &fields.extraversion},
        {lid::TraitMenu_Agreeableness, &fields.agreeableness},
        {lid::TraitMenu_Neuroticism, &fields.neuroticism}};
    for (const auto& [name, field] : rows)
        panel.entries.push_back(
            menu_text(text_of(localization, name) + ": " + number_to_string((*field)->number)));
    return panel;
}

}  // namespace

PersonalityTraits TraitFields::traits() const {
    return PersonalityTraits{openness->number, conscientiousness->number, extraversion->number,
                             agreeableness->number, neuroticism->number};
}

TraitFields make_trait_fields(const PersonalityTraits& traits, const ConfigsState& configs) {
    const PersonalityTraitRanges ranges = personality_trait_ranges_of_options(configs);
    return TraitFields{trait_field(traits.openness, ranges.openness),
                       trait_field(traits.conscientiousness, ranges.conscientiousness),
                       trait_field(traits.extraversion, ranges.extraversion),
                       trait_field(traits.agreeableness, ranges.agreeableness),
                       trait_field(traits.neuroticism, ranges.neuroticism)};
}

MenuDefinition make_personality_traits_menu(const TraitFields& fields, const std::string& heading,
                                            const Localization& localization) {
    MenuDefinition menu;
    menu.width = 1100;
    menu.entries.push_back(menu_heading(heading));
    menu.entries.push_back(menu_text(text_of(localization, lid::TraitMenu_Intro)));
    const TraitRow rows[] = {
        {lid::TraitMenu_Openness, lid::TraitMenu_OpennessHelp, fields.openness},
        {lid::TraitMenu_Conscientiousness, lid::TraitMenu_ConscientiousnessHelp,
         fields.conscientiousness},
        {lid::TraitMenu_Extraversion, lid::TraitMenu_ExtraversionHelp, fields.extraversion},
        {lid::TraitMenu_Agreeableness, lid::TraitMenu_AgreeablenessHelp, fields.agreeableness},
        {lid::TraitMenu_Neuroticism, lid::TraitMenu_NeuroticismHelp, fields.neuroticism}};
    for (const TraitRow& row : rows) {
        const std::string name = text_of(localization, row.name);
        menu.entries.push_back(menu_text(text_of(localization, row.help)));
        // Drag for a feel, or type the exact number in the box beside the slider.
        menu.entries.push_back(menu_slider(name, row.field));
    }
    menu.entries.push_back(menu_button(text_of(localization, lid::TraitMenu_Start), Value(true)));
    return menu;
}

Promise<PersonalityTraits> get_personality_traits_via_menu(
    Runtime& runtime, const PersonalityTraits& traits, const std::string& heading,
    const ConfigsState& configs, const Localization& localization, bool leave_open) {
    TraitFields fields = make_trait_fields(traits, configs);
    PopupOptions options;
    options.name = TRAITS_MENU_NAME;
    return create_popup_menu(runtime, make_personality_traits_menu(fields, heading, localization),
                             options)
        .and_then([&runtime, &localization, fields, leave_open, options] {
            if (leave_open)
                create_popup_menu(runtime, chosen_traits_panel(fields, localization), options);
            return fields.traits();
        });
}

void close_personality_traits_menus(Runtime& runtime) {
    close_popup_menus(runtime, TRAITS_MENU_NAME);
}

Promise<void> wait_close_all_personality_traits_menus(Runtime& runtime) {
    return wait_condition(runtime,
                          [&runtime] { return popup_menus_open(runtime, TRAITS_MENU_NAME) == 0; });
}

}  // namespace veldra

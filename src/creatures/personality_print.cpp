// The diagnostic print-out of a personality: its traits, and the weights they give.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "config/game_configurations.h"
#include "creatures/human_action_type.h"
#include "creatures/personality_sources.h"
#include "runtime/log.h"
#include "runtime/number_format.h"

namespace veldra {

namespace {

using Rows = std::vector<std::pair<std::string, std::string>>;

// Two left-aligned columns, each as wide as its widest cell, a rule under the header.
std::string format_table(const std::string& first_title, const std::string& second_title,
                         const Rows& rows) {
    std::size_t first_width = first_title.size();
    std::size_t second_width = second_title.size();
    for (const auto& [first, second] : rows) {
        first_width = std::max(first_width, first.size());
        second_width = std::max(second_width, second.size());
    }
    std::string text = fmt::format("{:<{}} | {}\n", first_title, first_width, second_title);
    text += fmt::format("{:-<{}}-+-{:-<{}}\n", "", first_width, "", second_width);
    for (const auto& [first, second] : rows)
        text += fmt::format("{:<{}} | {}\n", first, first_width, second);
    return text;
}

// A table of sampler entries and their weights, titled by what is being chosen.
std::string make_sampler_string_table(const std::string& title, const Rows& weights) {
    return format_table(title, "Weight", weights);
}

}  // namespace

std::string personality_traits_format_data(const PersonalityTraits& traits,
                                           const GameConfigurations& c,
                                           const HumanActionTypes& types) {
    const Rows trait_rows{
        {"Openness", number_to_string(traits.openness)},
        {"Conscientiousness", number_to_string(traits.conscientiousness)},
        {"Extraversion", number_to_string(traits.extraversion)},
        {"Agreeableness", number_to_string(traits.agreeableness)},
        {"Neuroticism", number_to_string(traits.neuroticism)},
    };
    // A full human: energy ratio 1.
    Rows action_rows;
    for (const HumanActionType* type : types.all)
        action_rows.emplace_back(type->debug_name,
                                 number_to_string(type->get_weight(c, traits, 1)));
    const Rows exchange_rows{
        {"Give", number_to_string(c.exchange_give_weight(traits, 1))},
        {"Take", number_to_string(c.exchange_take_weight(traits, 1))},
    };
    return format_table("Parameter", "Value", trait_rows) + "\n" +
           make_sampler_string_table("Action", action_rows) + "\n" +
           make_sampler_string_table("Exchange action", exchange_rows);
}

void personality_traits_print_data(const PersonalityTraits& traits, const GameConfigurations& c,
                                   const HumanActionTypes& types) {
    log(personality_traits_format_data(traits, c, types));
}

}  // namespace veldra

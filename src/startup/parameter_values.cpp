#include "startup/parameter_values.h"

#include <cmath>

#include "runtime/log.h"
#include "startup/run_program.h"
#include "util/text.h"

namespace veldra {

std::optional<double> parse_seed_value(std::string_view text) {
    const auto value = try_string_to_real(text);
    if (!value || std::floor(*value) != *value || std::fabs(*value) > MAX_SEED_MAGNITUDE)
        return std::nullopt;
    return *value;
}

std::optional<bool> parse_switch_value(std::string_view text) {
    const std::string trimmed = string_trim(text);
    if (trimmed == "0")
        return false;
    if (trimmed == "1")
        return true;
    return std::nullopt;
}

std::optional<PersonalityTraits> parse_traits_value(std::string_view text) {
    const auto parts = string_split(text, ',');
    if (parts.size() != 5)
        return std::nullopt;
    double values[5];
    for (std::size_t i = 0; i < 5; ++i) {
        const auto value = try_string_to_real(parts[i]);
        if (!value || std::fabs(*value) > MAX_TRAIT_MAGNITUDE)
            return std::nullopt;
        values[i] = *value;
    }
    return PersonalityTraits{values[0], values[1], values[2], values[3], values[4]};
}

void bad_parameter(AppState& app, std::string_view key, std::string_view text,
                   std::string_view problem) {
    log_error(std::string(key) + "=" + std::string(text) + " " + std::string(problem));
    end_program(app, 2);
}

}  // namespace veldra

#pragma once
// The five personality traits of a human. The scale is whatever the configuration's formulas
// expect; the record enforces no range.

namespace veldra {

// The largest trait value, either side of 0, that the configuration's options and ranges, the
// traits= parameter and recordings accept. Far beyond any questionnaire's scale, and small
// enough that a formula's products of traits stay finite.
inline constexpr double MAX_TRAIT_MAGNITUDE = 1e9;

struct PersonalityTraits {
    double openness = 0;
    double conscientiousness = 0;
    double extraversion = 0;
    double agreeableness = 0;
    double neuroticism = 0;

    bool operator==(const PersonalityTraits&) const = default;
};

}  // namespace veldra

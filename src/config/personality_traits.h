#pragma once
// The five personality traits of a human. The scale is whatever the configuration's formulas
// expect; the record enforces no range.

namespace veldra {

struct PersonalityTraits {
    double openness = 0;
    double conscientiousness = 0;
    double extraversion = 0;
    double agreeableness = 0;
    double neuroticism = 0;

    bool operator==(const PersonalityTraits&) const = default;
};

}  // namespace veldra

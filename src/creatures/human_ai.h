#pragma once
// A computer-controlled human. The level says which kind it is (its type number); the trial
// later picks its trait ranges by that number and draws its personality from them.

#include <optional>

#include "creatures/human.h"

namespace veldra {

class obj_human_ai : public obj_human {
    VELDRA_OBJECT(obj_human_ai, obj_human)
public:
    using obj_human::obj_human;

    // Called by the level right after creation; none for a human of random personality.
    void human_ai_initialize(std::optional<int> type_number);

    std::optional<int> type_number;
};

}  // namespace veldra

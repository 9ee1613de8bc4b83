#pragma once
// A computer-controlled human. The level says which kind it is (its type number); the trial
// later picks its trait ranges by that number and draws its personality from them.

#include <optional>

#include "creatures/human.h"

namespace veldra {

class obj_human_ai : public obj_human {
    VELDRA_OBJECT(obj_human_ai, obj_human)
public:
    void on_create() override;

    // Called by the level right after creation; none for a human of random personality.
    void human_ai_initialize(std::optional<int> type_number);

    std::optional<int> type_number;
    // The greeting bubble over the human at the start of an interactive trial; the window
    // creates it when shows_initial_speech_bubble is set.
    InstanceId initial_speech_bubble = NO_INSTANCE;
    bool shows_initial_speech_bubble = false;
};

}  // namespace veldra

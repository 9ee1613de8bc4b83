#include "creatures/human_ai.h"

namespace veldra {

void obj_human_ai::human_ai_initialize(std::optional<int> type_number) {
    this->type_number = type_number;
}

}  // namespace veldra

#pragma once
// Numbers that rise and fade over a creature whose energy changed since the last frame: red for
// a loss, green for a gain. Read from the creatures' energies, so they need nothing from the
// simulation beyond what it already holds.

#include <map>
#include <vector>

#include "runtime/instance_id.h"

namespace veldra {

class Runtime;

struct FloatingNumber {
    static constexpr double LIFETIME = 60;  // steps
    static constexpr double RISE = 28;      // pixels over its lifetime
    double x = 0;
    double y = 0;
    double amount = 0;
    double age = 0;  // steps
};

class FloatingNumbers {
public:
    // Changes smaller than this (rounding, nothing a player would read) make no number.
    static constexpr double SMALLEST_SHOWN = 0.05;

    // One frame: ages the numbers and adds one for each creature whose energy changed.
    void step(Runtime& runtime);

    std::vector<FloatingNumber> numbers;

private:
    std::map<InstanceId, double> last_energy_;
};

}  // namespace veldra

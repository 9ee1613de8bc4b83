#include "ui/floating_numbers.h"

#include <cmath>

#include "creatures/creature.h"
#include "runtime/runtime.h"

namespace veldra {

void FloatingNumbers::step(Runtime& runtime) {
    for (FloatingNumber& number : numbers)
        number.age += 1;
    std::erase_if(numbers, [](const FloatingNumber& n) { return n.age >= FloatingNumber::LIFETIME; });
    std::map<InstanceId, double> energies;
    runtime.for_each<obj_creature>([&](obj_creature& creature) {
        energies.emplace(creature.id(), creature.energy);
        auto last = last_energy_.find(creature.id());
        if (last == last_energy_.end())
            return;
        const double change = creature.energy - last->second;
        if (std::abs(change) >= SMALLEST_SHOWN)
            numbers.push_back({creature.x, creature.y, change, 0});
    });
    last_energy_ = std::move(energies);
}

}  // namespace veldra

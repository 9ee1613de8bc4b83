#pragma once
// obj_entity: anything placed on a level (creatures and food). It keeps what every entity
// shares: a stable per-instance hash, which views use for visual phases (idle bobbing, facing,
// a debug hue) so that neighbours differ without touching a game generator. How an entity looks
// and in what order entities are drawn is the views' business (ui/).

#include <cstdint>

#include "runtime/instance.h"
#include "runtime/object_type.h"

namespace veldra {

class obj_entity : public Instance {
    VELDRA_OBJECT(obj_entity, Instance)
public:
    void on_create() override;

    // int_hash of the id.
    std::uint32_t id_hash = 0;
};

// A well-mixed 32-bit hash of an integer (an instance id).
std::uint32_t int_hash(std::int64_t value);

}  // namespace veldra

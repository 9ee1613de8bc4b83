// obj_entity.

#include "creatures/entity.h"

namespace veldra {

// The finaliser of MurmurHash3: consecutive ids land far apart.
std::uint32_t int_hash(std::int64_t value) {
    auto h = static_cast<std::uint64_t>(value);
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33;
    h *= 0xc4ceb9fe1a85ec53ULL;
    h ^= h >> 33;
    return static_cast<std::uint32_t>(h);
}

void obj_entity::on_create() {
    id_hash = int_hash(id());
}

}  // namespace veldra

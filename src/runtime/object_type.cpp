#include "runtime/object_type.h"

namespace veldra {

namespace {
std::size_t next_index = 0;
}

ObjectType::ObjectType(const char* type_name, const ObjectType* parent_type)
    : name(type_name), parent(parent_type), index(next_index++) {}

std::size_t object_type_count() {
    return next_index;
}

}  // namespace veldra

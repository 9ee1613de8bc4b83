#include "runtime/instance.h"

namespace veldra {

const ObjectType& Instance::object_type_static() {
    static const ObjectType type("Instance", nullptr);
    return type;
}

}  // namespace veldra

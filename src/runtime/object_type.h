#pragma once
// Object types are C++ classes; this descriptor gives each one a name, its parent and a small
// index so the runtime can keep one instance list per type and answer "all instances of
// obj_creature, descendants included" without looking at other instances.

#include <cstddef>

namespace veldra {

struct ObjectType {
    ObjectType(const char* name, const ObjectType* parent);
    ObjectType(const ObjectType&) = delete;
    ObjectType& operator=(const ObjectType&) = delete;

    const char* name;
    const ObjectType* parent;  // nullptr for the root, Instance
    std::size_t index;         // dense, assigned in order of first use

    // True when this type is `other` or descends from it.
    bool is_a(const ObjectType& other) const {
        for (const ObjectType* t = this; t; t = t->parent)
            if (t == &other)
                return true;
        return false;
    }
};

std::size_t object_type_count();

}  // namespace veldra

// Declares an object class: `class obj_human : public obj_creature { VELDRA_OBJECT(obj_human,
// obj_creature) ... };`
#define VELDRA_OBJECT(Name, Parent)                                                   \
public:                                                                               \
    static const ::veldra::ObjectType& object_type_static() {                         \
        static const ::veldra::ObjectType type(#Name, &Parent::object_type_static()); \
        return type;                                                                  \
    }                                                                                 \
    const ::veldra::ObjectType& object_type() const override {                        \
        return object_type_static();                                                  \
    }

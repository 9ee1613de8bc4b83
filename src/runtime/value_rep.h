#pragma once
// Inside the value module: the shared objects behind strings, arrays, structs and methods, and
// the hooks between Value and the collector. Nothing outside runtime/value*.cpp and
// runtime/gc.cpp includes this; everyone else uses runtime/value.h and runtime/gc.h.

#include <cstddef>
#include <string>
#include <vector>

#include "runtime/value.h"

namespace veldra::detail {

struct StringRep final : RefCounted {
    explicit StringRep(std::string t) : text(std::move(t)) {}
    std::string text;
};

struct ArrayRep final : RefCounted {
    explicit ArrayRep(std::vector<Value> i) : items(std::move(i)) {}
    std::vector<Value> items;
    // Scratch state of a running cycle collection; back to these values when it ends.
    std::ptrdiff_t gc_refs = 0;
    bool gc_seen = false;
    bool gc_reachable = false;
};

class Collector;

// A struct or method: an object the collector tracks in creation order.
struct GcNode : RefCounted {
    explicit GcNode(ValueKind k) : kind(k) {}
    const ValueKind kind;  // structure or method
    GcNode* prev = nullptr;
    GcNode* next = nullptr;
    Collector* owner = nullptr;  // nullptr when made without a GcScope or after it ended
    // Scratch state of a running cycle collection.
    std::ptrdiff_t gc_refs = 0;
    bool gc_reachable = false;
};

struct StructRep final : GcNode {
    StructRep() : GcNode(ValueKind::structure) {}
    std::vector<StructField> fields;  // creation order; names are unique
};

struct MethodRep final : GcNode {
    MethodRep(MethodFn f, Value s)
        : GcNode(ValueKind::method), fn(std::move(f)), self(std::move(s)) {}
    MethodFn fn;  // its captures are opaque to the collector
    Value self;
};

struct ValueAccess {
    static RefCounted* rep(const Value& v) { return v.counted() ? v.p_.rep : nullptr; }
    static ArrayRep* array(const Value& v) {
        return v.kind_ == ValueKind::array ? static_cast<ArrayRep*>(v.p_.rep) : nullptr;
    }
    static GcNode* node(const Value& v) {
        const bool gc_kind = v.kind_ == ValueKind::structure || v.kind_ == ValueKind::method;
        return gc_kind ? static_cast<GcNode*>(v.p_.rep) : nullptr;
    }
    // Wraps an object whose reference the new Value takes over (no retain).
    static Value adopt(ValueKind kind, RefCounted* rep) {
        Value v;
        v.kind_ = kind;
        v.p_.rep = rep;
        return v;
    }
};

// The Values a struct or method holds directly.
template <class F>
void for_each_child(GcNode& node, F&& visit) {
    if (node.kind == ValueKind::structure) {
        for (auto& field : static_cast<StructRep&>(node).fields)
            visit(field.value);
    } else {
        visit(static_cast<MethodRep&>(node).self);
    }
}

// Registers a new node with the current collector (none without a GcScope).
void gc_track(GcNode& node);
// Called as a node is freed.
void gc_untrack(GcNode& node);

}  // namespace veldra::detail

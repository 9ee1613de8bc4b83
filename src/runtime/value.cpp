#include "runtime/value.h"

#include "runtime/assertion.h"
#include "runtime/value_rep.h"

namespace veldra {

using detail::ArrayRep;
using detail::MethodRep;
using detail::StringRep;
using detail::StructRep;
using detail::ValueAccess;

Value Value::unset() noexcept {
    Value v;
    v.kind_ = ValueKind::unset;
    return v;
}

Value::Value(std::string text) : kind_(ValueKind::string) {
    p_.rep = new StringRep(std::move(text));
}

Value Value::instance(InstanceId id) noexcept {
    Value v;
    v.kind_ = ValueKind::instance;
    v.p_.instance = id;
    return v;
}

namespace {

// An array, struct or method that the Value holding it is about to let go of for the last time.
bool dies_with_holder(const Value& v) {
    const auto* rep = ValueAccess::rep(v);
    return rep && rep->refs == 1 && !v.is_string();
}

// Frees an object whose last reference is gone. Children that die with it are moved to
// `orphans` instead of being freed from inside this call, so that a long chain of structs or
// nested arrays is torn down by the caller's loop, never by deep recursion.
void free_object(ValueKind kind, detail::RefCounted* rep, std::vector<Value>& orphans) {
    auto adopt_orphan = [&orphans](Value& child) {
        if (dies_with_holder(child))
            orphans.push_back(std::move(child));
    };
    switch (kind) {
        case ValueKind::string:
            delete static_cast<StringRep*>(rep);
            return;
        case ValueKind::array: {
            auto* array = static_cast<ArrayRep*>(rep);
            for (auto& item : array->items)
                adopt_orphan(item);
            delete array;
            return;
        }
        case ValueKind::structure:
        case ValueKind::method: {
            auto* node = static_cast<detail::GcNode*>(rep);
            detail::gc_untrack(*node);
            detail::for_each_child(*node, adopt_orphan);
            if (kind == ValueKind::structure) {
                delete static_cast<StructRep*>(node);
            } else {
                delete static_cast<MethodRep*>(node);
            }
            return;
        }
        default:
            VELDRA_ASSERT(false, "freeing a value kind that is not reference counted");
    }
}

}  // namespace

void Value::destroy() noexcept {
    std::vector<Value> orphans;
    free_object(kind_, p_.rep, orphans);
    kind_ = ValueKind::undefined;
    while (!orphans.empty()) {
        Value child = std::move(orphans.back());
        orphans.pop_back();
        if (dies_with_holder(child)) {
            free_object(child.kind_, child.p_.rep, orphans);
            child.kind_ = ValueKind::undefined;
        }
    }
}

double Value::as_number() const {
    VELDRA_ASSERT(
        is_number() || is_instance() || is_bool(),
        "as_number() on a value of type " + type_name(*this) + "; check is_number() first?");
    switch (kind_) {
        case ValueKind::instance:
            return static_cast<double>(p_.instance);
        case ValueKind::boolean:
            return p_.boolean ? 1.0 : 0.0;
        default:
            return p_.number;
    }
}

bool Value::as_bool() const {
    VELDRA_ASSERT(kind_ == ValueKind::boolean,
                  "as_bool() on a value of type " + type_name(*this) + "; check is_bool() first?");
    return p_.boolean;
}

const std::string& Value::as_string() const {
    VELDRA_ASSERT(kind_ == ValueKind::string, "as_string() on a value of type " + type_name(*this) +
                                                  "; check is_string() first, or use to_string()?");
    return static_cast<const StringRep*>(p_.rep)->text;
}

InstanceId Value::as_instance() const {
    VELDRA_ASSERT(
        kind_ == ValueKind::instance,
        "as_instance() on a value of type " + type_name(*this) + "; check is_instance() first?");
    return p_.instance;
}

bool operator==(const Value& a, const Value& b) noexcept {
    auto numeric = [](const Value& v) { return v.is_number() || v.is_instance(); };
    if (numeric(a) && numeric(b)) {
        if (a.is_instance() && b.is_instance())
            return a.p_.instance == b.p_.instance;
        return a.as_number() == b.as_number();
    }
    if (a.is_undefined() && b.is_undefined())
        return true;
    if (a.kind_ != b.kind_)
        return false;
    switch (a.kind_) {
        case ValueKind::boolean:
            return a.p_.boolean == b.p_.boolean;
        case ValueKind::string:
            return a.p_.rep == b.p_.rep || a.as_string() == b.as_string();
        default:
            return a.p_.rep == b.p_.rep;
    }
}

std::string type_name(const Value& value) {
    switch (value.kind()) {
        case ValueKind::number:
        case ValueKind::instance:
            return "number";
        case ValueKind::boolean:
            return "bool";
        case ValueKind::string:
            return "string";
        case ValueKind::array:
            return "array";
        case ValueKind::structure:
            return "struct";
        case ValueKind::method:
            return "method";
        default:
            return "undefined";
    }
}

}  // namespace veldra

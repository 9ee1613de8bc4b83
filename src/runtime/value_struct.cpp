// Structs and methods: shared objects owned by the collector (runtime/gc.cpp).

#include <algorithm>
#include <string>

#include "runtime/assertion.h"
#include "runtime/value.h"
#include "runtime/value_rep.h"

namespace veldra {

using detail::MethodRep;
using detail::StructRep;
using detail::ValueAccess;

namespace {

StructRep* struct_or_null(const Value& v) {
    return v.is_struct() ? static_cast<StructRep*>(ValueAccess::node(v)) : nullptr;
}

StructRep& struct_of(const Value& v, const char* operation) {
    StructRep* rep = struct_or_null(v);
    VELDRA_ASSERT(rep, std::string(operation) + " on a value of type " + type_name(v) +
                           "; only structs have fields");
    return *rep;
}

// Structs are small (a few to a few dozen fields), so a scan beats any index.
StructField* find_field(StructRep& rep, std::string_view name) {
    for (auto& field : rep.fields)
        if (field.name == name)
            return &field;
    return nullptr;
}

MethodRep& method_of(const Value& v, const char* operation) {
    VELDRA_ASSERT(v.is_method(), std::string(operation) + " on a value of type " + type_name(v) +
                                     "; check is_method() first?");
    return static_cast<MethodRep&>(*ValueAccess::node(v));
}

}  // namespace

Value Value::make_struct() {
    auto* rep = new StructRep();
    detail::gc_track(*rep);
    return ValueAccess::adopt(ValueKind::structure, rep);
}

Value Value::method(MethodFn fn, Value self) {
    auto* rep = new MethodRep(std::move(fn), std::move(self));
    detail::gc_track(*rep);
    return ValueAccess::adopt(ValueKind::method, rep);
}

const Value* Value::find(std::string_view name) const {
    StructRep* rep = struct_or_null(*this);
    StructField* field = rep ? find_field(*rep, name) : nullptr;
    return field ? &field->value : nullptr;
}

Value Value::get(std::string_view name) const {
    const Value* field = find(name);
    return field ? *field : Value();
}

bool Value::has(std::string_view name) const {
    return find(name) != nullptr;
}

void Value::set(std::string_view name, Value field_value) const {
    StructRep& rep = struct_of(*this, "set()");
    if (StructField* field = find_field(rep, name)) {
        field->value.swap(field_value);  // the old value is released after the field is updated
        return;
    }
    rep.fields.push_back(StructField{std::string(name), std::move(field_value)});
}

bool Value::remove(std::string_view name) const {
    StructRep& rep = struct_of(*this, "remove()");
    auto it = std::find_if(rep.fields.begin(), rep.fields.end(),
                           [name](const StructField& field) { return field.name == name; });
    if (it == rep.fields.end())
        return false;
    Value removed = std::move(it->value);
    rep.fields.erase(it);
    return true;
}

std::vector<std::string> Value::field_names() const {
    std::vector<std::string> names;
    for (const auto& field : struct_of(*this, "field_names()").fields)
        names.push_back(field.name);
    return names;
}

std::span<const StructField> Value::fields() const {
    return struct_of(*this, "fields()").fields;
}

Value Value::call(std::span<const Value> args) const {
    method_of(*this, "call()");
    // Holds the method while it runs: its body may overwrite the last other reference to it.
    const Value keep = *this;
    const MethodRep& rep = static_cast<const MethodRep&>(*ValueAccess::node(keep));
    // A method emptied by the collector (only reachable from other garbage) does nothing.
    return rep.fn ? rep.fn(rep.self, args) : Value();
}

const Value& Value::method_self() const {
    return method_of(*this, "method_self()").self;
}

}  // namespace veldra

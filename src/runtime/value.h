#pragma once
// The dynamic value: data whose shape is only known at run time (configuration, JSON, debug
// settings, promise results, HTTP responses, records on their way to JSON or CSV).
//
// Sharing rules, which every caller may rely on:
// - number, bool, instance reference, undefined and unset are plain values (16 bytes, no heap).
// - Strings and arrays are shared by reference count and copied on write: copying a Value is
//   cheap, and mutating an array that another Value also holds copies it first, so a copy never
//   sees later changes made through the other. Strings have no mutators at all.
// - Structs and methods are references to one object owned by the collector (runtime/gc.h):
//   every copy sees the same fields. The last reference frees the object at once; cycles
//   (a struct holding itself, directly or through other structs and arrays) are freed by
//   gc_collect(). Their mutators are therefore const: they change the referent, not the handle.
//
// Accessors used on the wrong kind (as_number() of a string, set() on an array, an index past
// the end) are programming faults: they abort with a message naming the likely mistake.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "runtime/instance_id.h"

namespace veldra {

// Ordered so that every kind from `string` on is reference counted.
enum class ValueKind : std::uint8_t {
    unset,      // a variable never written; reads as undefined everywhere except is_unset()
    undefined,  // "no value": missing arguments, failed look-ups, JSON null
    number,
    boolean,
    instance,  // an entity reference (id); NO_INSTANCE means none
    string,
    array,
    structure,
    method,
};

class Value;
struct StructField;

// A method receives the value it was bound to (undefined when unbound) and its arguments;
// missing trailing arguments are the callee's business (read them as undefined).
using MethodFn = std::function<Value(const Value& self, std::span<const Value> args)>;

namespace detail {
struct RefCounted {
    std::size_t refs = 1;  // Values holding this object
};
struct ValueAccess;
}  // namespace detail

class Value {
public:
    Value() noexcept : kind_(ValueKind::undefined) { p_.number = 0; }
    static Value unset() noexcept;

    Value(double number) noexcept : kind_(ValueKind::number) { p_.number = number; }
    template <class T>
    requires(std::is_integral_v<T> && !std::is_same_v<T, bool>) Value(T number)
    noexcept : Value(static_cast<double>(number)) {}
    Value(bool flag) noexcept : kind_(ValueKind::boolean) { p_.boolean = flag; }
    Value(std::string text);
    Value(std::string_view text) : Value(std::string(text)) {}
    Value(const char* text) : Value(std::string(text)) {}

    static Value array(std::vector<Value> items = {});
    static Value make_struct();  // a new, empty struct
    static Value instance(InstanceId id) noexcept;
    static Value method(MethodFn fn, Value self = {});

    Value(const Value& other) noexcept : kind_(other.kind_), p_(other.p_) { retain(); }
    Value(Value&& other) noexcept : kind_(other.kind_), p_(other.p_) {
        other.kind_ = ValueKind::undefined;
    }
    // Takes the new reference before dropping the old one, so `a = a.at(0)` is safe.
    Value& operator=(Value other) noexcept {
        swap(other);
        return *this;
    }
    ~Value() { release(); }
    void swap(Value& other) noexcept {
        std::swap(kind_, other.kind_);
        std::swap(p_, other.p_);
    }

    ValueKind kind() const noexcept { return kind_; }
    bool is_unset() const noexcept { return kind_ == ValueKind::unset; }
    // True for unset as well: scripts test "no value" without caring whether it was ever written.
    bool is_undefined() const noexcept { return kind_ <= ValueKind::undefined; }
    bool is_number() const noexcept { return kind_ == ValueKind::number; }
    bool is_bool() const noexcept { return kind_ == ValueKind::boolean; }
    bool is_string() const noexcept { return kind_ == ValueKind::string; }
    bool is_array() const noexcept { return kind_ == ValueKind::array; }
    bool is_struct() const noexcept { return kind_ == ValueKind::structure; }
    bool is_method() const noexcept { return kind_ == ValueKind::method; }
    bool is_instance() const noexcept { return kind_ == ValueKind::instance; }

    // Numbers; an instance reference gives its id, a bool 0 or 1.
    double as_number() const;
    bool as_bool() const;
    const std::string& as_string() const;
    InstanceId as_instance() const;

    // Arrays. Gaps made by set_at() past the end, and new slots made by resize(), hold 0.
    std::size_t size() const;
    const Value& at(std::size_t index) const;
    std::span<const Value> items() const;  // invalidated by the next mutation
    void set_at(std::size_t index, Value item);
    void push(Value item);
    void resize(std::size_t count);
    void erase_at(std::size_t index);

    // Structs. Fields are created on first assignment and listed in that order. get() and
    // has() on a value that is not a struct read as absent, so chains like
    // `v.get("a").get("b")` need no checks in between.
    Value get(std::string_view name) const;
    const Value* find(std::string_view name) const;  // nullptr when absent; valid until set/remove
    void set(std::string_view name, Value field_value) const;
    bool has(std::string_view name) const;
    bool remove(std::string_view name) const;  // false when there was no such field
    std::vector<std::string> field_names() const;
    std::span<const StructField> fields() const;  // invalidated by the next set/remove

    // Methods.
    Value call(std::span<const Value> args = {}) const;
    Value call(std::initializer_list<Value> args) const {
        return call(std::span<const Value>(args.begin(), args.size()));
    }
    const Value& method_self() const;

    // The shared object behind a string, array, struct or method (nullptr for plain kinds):
    // stable while any Value holds it, for identity sets and cycle checks.
    const void* identity() const noexcept { return counted() ? p_.rep : nullptr; }

    // Numbers (and instance ids) by value, bools by value, strings by content, arrays,
    // structs and methods by identity; unset equals undefined. NaN equals nothing.
    friend bool operator==(const Value& a, const Value& b) noexcept;

private:
    friend struct detail::ValueAccess;
    union Payload {
        double number;
        bool boolean;
        InstanceId instance;
        detail::RefCounted* rep;
    };

    bool counted() const noexcept { return kind_ >= ValueKind::string; }
    void retain() const noexcept {
        if (counted())
            ++p_.rep->refs;
    }
    void release() noexcept {
        if (counted() && --p_.rep->refs == 0)
            destroy();
    }
    void destroy() noexcept;
    std::vector<Value>& mutable_items();

    ValueKind kind_;
    Payload p_;
};

struct StructField {
    std::string name;
    Value value;
};

// "number", "bool", "string", "array", "struct", "method" or "undefined" (unset too). An
// instance reference reports "number": scripts hold entity references as ids and compare and
// print them as numbers.
std::string type_name(const Value& value);

}  // namespace veldra

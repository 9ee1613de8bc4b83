// Arrays: shared by reference count, copied on the first mutation through a shared handle.

#include <string>

#include "runtime/assertion.h"
#include "runtime/value.h"
#include "runtime/value_rep.h"

namespace veldra {

using detail::ArrayRep;
using detail::ValueAccess;

namespace {

const ArrayRep& array_of(const Value& v, const char* operation) {
    const ArrayRep* array = ValueAccess::array(v);
    VELDRA_ASSERT(array, std::string(operation) + " on a value of type " + type_name(v) +
                             "; only arrays have elements");
    return *array;
}

void check_index(std::size_t index, std::size_t size) {
    VELDRA_ASSERT(index < size, "index out of bounds request " + std::to_string(index) +
                                    " maximum size is " + std::to_string(size));
}

}  // namespace

Value Value::array(std::vector<Value> items) {
    return ValueAccess::adopt(ValueKind::array, new ArrayRep(std::move(items)));
}

std::size_t Value::size() const {
    return array_of(*this, "size()").items.size();
}

const Value& Value::at(std::size_t index) const {
    const auto& items = array_of(*this, "at()").items;
    check_index(index, items.size());
    return items[index];
}

std::span<const Value> Value::items() const {
    return array_of(*this, "items()").items;
}

std::vector<Value>& Value::mutable_items() {
    auto* array = const_cast<ArrayRep*>(&array_of(*this, "changing elements"));
    if (array->refs > 1) {
        // Another Value shares these elements: give this one its own copy.
        auto* copy = new ArrayRep(array->items);
        --array->refs;
        p_.rep = copy;
        array = copy;
    }
    return array->items;
}

void Value::set_at(std::size_t index, Value item) {
    auto& items = mutable_items();
    if (index >= items.size())
        items.resize(index + 1, Value(0));
    items[index].swap(item);  // the old element is released after the array is consistent again
}

void Value::push(Value item) {
    mutable_items().push_back(std::move(item));
}

void Value::resize(std::size_t count) {
    auto& items = mutable_items();
    if (count >= items.size()) {
        items.resize(count, Value(0));
        return;
    }
    // Dropped elements are released only after the array has shrunk.
    std::vector<Value> dropped(std::make_move_iterator(items.begin() + count),
                               std::make_move_iterator(items.end()));
    items.resize(count);
}

void Value::erase_at(std::size_t index) {
    auto& items = mutable_items();
    check_index(index, items.size());
    Value erased = std::move(items[index]);
    items.erase(items.begin() + static_cast<std::ptrdiff_t>(index));
}

}  // namespace veldra

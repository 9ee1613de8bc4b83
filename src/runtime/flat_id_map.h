#pragma once
// A map from 64-bit ids to values for lookups made many times a tick (is this instance still
// there, where is this creature going). A lookup is a multiply, a shift and usually one or two
// compares in one array, where std::unordered_map divides by a prime and follows a node pointer.
//
// Open addressing with linear probing, at most half full; erasing shifts the following entries
// back, so no tombstones pile up however many ids come and go. Values move when the table grows
// or an entry is erased: hold no pointer or reference across an insert or an erase. There is no
// iteration, so nothing can come to depend on an order.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace veldra {

template <class Value>
class FlatIdMap {
public:
    // nullptr when the id is not in the map.
    Value* find(std::int64_t id) { return const_cast<Value*>(std::as_const(*this).find(id)); }
    const Value* find(std::int64_t id) const {
        if (slots_.empty())
            return nullptr;
        for (std::size_t i = home(id);; i = next(i)) {
            const Slot& slot = slots_[i];
            if (!slot.used)
                return nullptr;
            if (slot.id == id)
                return &slot.value;
        }
    }

    // The id's value, value-initialised first if the id was not there.
    Value& operator[](std::int64_t id) {
        if ((size_ + 1) * 2 > slots_.size())
            grow();
        std::size_t i = home(id);
        for (; slots_[i].used; i = next(i)) {
            if (slots_[i].id == id)
                return slots_[i].value;
        }
        slots_[i].used = true;
        slots_[i].id = id;
        ++size_;
        return slots_[i].value;
    }

    // Whether the id was there.
    bool erase(std::int64_t id) {
        if (slots_.empty())
            return false;
        std::size_t hole = home(id);
        for (;; hole = next(hole)) {
            if (!slots_[hole].used)
                return false;
            if (slots_[hole].id == id)
                break;
        }
        // Every entry after the hole, up to the first free slot, was placed by probing past it
        // unless its own home lies after the hole; those that did probe past move back into it.
        for (std::size_t i = next(hole); slots_[i].used; i = next(i)) {
            const std::size_t own = home(slots_[i].id);
            const bool stays = hole <= i ? (hole < own && own <= i) : (hole < own || own <= i);
            if (stays)
                continue;
            slots_[hole].id = slots_[i].id;
            slots_[hole].value = std::move(slots_[i].value);
            hole = i;
        }
        slots_[hole].used = false;
        slots_[hole].value = Value();  // let go of what it held (a path's buffer, say)
        --size_;
        return true;
    }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }

private:
    struct Slot {
        std::int64_t id = 0;
        bool used = false;
        Value value{};
    };

    // Fibonacci hashing: the id times 2^64 over the golden ratio, top bits. Consecutive ids land
    // far apart, so the live ones never form one long run that a missing id (a dead creature's,
    // asked about once more) would have to walk to its end.
    std::size_t home(std::int64_t id) const {
        return static_cast<std::size_t>((static_cast<std::uint64_t>(id) * 0x9E3779B97F4A7C15u) >>
                                        shift_);
    }
    std::size_t next(std::size_t i) const { return (i + 1) & (slots_.size() - 1); }

    void grow() {
        std::vector<Slot> old = std::move(slots_);
        slots_.clear();
        slots_.resize(old.empty() ? 16 : old.size() * 2);
        shift_ = 64 - std::countr_zero(slots_.size());
        size_ = 0;
        for (Slot& slot : old) {
            if (slot.used)
                (*this)[slot.id] = std::move(slot.value);
        }
    }

    std::vector<Slot> slots_;  // a power of two in size, or empty
    std::size_t size_ = 0;
    int shift_ = 64;  // 64 - log2 of the table size
};

}  // namespace veldra

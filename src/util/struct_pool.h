#pragma once
// A pool of records that are handed out one at a time and all taken back at once. Searches that
// run many times per tick (the pathfinder) take their short-lived records from here, so after
// the first few runs they allocate nothing: expire_all only rewinds a counter and the same
// records are re-initialised on the next create_new.

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace veldra {

// T must be an aggregate (or have a constructor taking the fields in order) and be default
// constructible. Records live in fixed-size blocks, so a handed-out record never moves while the
// pool grows: references stay valid until the next expire_all. The pool owns every record; it
// is movable (blocks move with it, addresses are kept) but not copyable.
template <class T>
class StructPool {
public:
    // Records per block: large enough that a grid search rarely needs a second block, small
    // enough that an idle pool costs little.
    static constexpr std::size_t block_size = 256;

    StructPool() = default;
    StructPool(const StructPool&) = delete;
    StructPool& operator=(const StructPool&) = delete;
    StructPool(StructPool&&) noexcept = default;
    StructPool& operator=(StructPool&&) noexcept = default;

    // Hands out a record re-initialised from `fields`, given in the record's field order.
    template <class... Fields>
    T& create_new(Fields&&... fields) {
        if (in_use_ == blocks_.size() * block_size) {
            blocks_.push_back(std::make_unique<T[]>(block_size));
        }
        T& record = blocks_[in_use_ / block_size][in_use_ % block_size];
        record = T{std::forward<Fields>(fields)...};
        ++in_use_;
        return record;
    }

    // Takes back every record handed out so far; their memory is kept for reuse. References to
    // them must not be used afterwards (they will be overwritten by later create_new calls).
    void expire_all() { in_use_ = 0; }

    // Releases all memory; the pool is empty and usable again.
    void release() {
        blocks_.clear();
        blocks_.shrink_to_fit();
        in_use_ = 0;
    }

    std::size_t size() const { return in_use_; }
    std::size_t capacity() const { return blocks_.size() * block_size; }

private:
    std::vector<std::unique_ptr<T[]>> blocks_;
    std::size_t in_use_ = 0;
};

}  // namespace veldra

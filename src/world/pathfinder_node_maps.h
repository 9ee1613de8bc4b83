#pragma once
// Node maps: where a Pathfinder keeps g_score, came_from and the "in open set" flag per node.
// Included through world/pathfinder.h.
//
// A node map policy offers:
//   Entry* find(const Node&)       the node's entry in this search, nullptr when unreached
//   Entry& insert(const Node&)     a fresh entry; only for a node find() reports unreached
//   double g_score_or_nan(const Node&)
//                                  the node's g_score, NaN when unreached; what a relaxation
//                                  compares with before it touches the entry
//   find_or_insert(const Node&)    {entry, true when it was just made}: find and insert in one
//                                  lookup
//   void clear()                   forget every entry (start of a search)
//   for_each_entry(f)              f(const Entry&) for every entry, in insertion order
//   std::size_t size()             entries in this search
//   void release()                 give back all memory (Pathfinder::free)
// Entries must keep their address until the next insert or clear. Iterating in insertion order
// (not hash order) is what makes the substitute target of a failed search the same in both
// policies and on every platform.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "world/pathfinder_records.h"

namespace veldra {

// For any hashable node type. Costs a hash lookup per access and an allocation per reached node,
// and clearing is proportional to the previous search; use it for sparse or unbounded graphs.
template <class Node, class Data = int, class Hash = std::hash<Node>>
class PfHashNodeMap {
public:
    using Entry = PfNodeEntry<Node, Data>;

    Entry* find(const Node& node) {
        auto it = entries_.find(node);
        return it == entries_.end() ? nullptr : &it->second;
    }

    Entry& insert(const Node& node) {
        // unordered_map never moves its elements, so the order list may point into it.
        Entry& entry = entries_.try_emplace(node).first->second;
        order_.push_back(&entry);
        return entry;
    }

    double g_score_or_nan(const Node& node) const {
        auto it = entries_.find(node);
        return it == entries_.end() ? std::numeric_limits<double>::quiet_NaN() : it->second.g_score;
    }

    std::pair<Entry*, bool> find_or_insert(const Node& node) {
        const auto [it, inserted] = entries_.try_emplace(node);
        if (inserted)
            order_.push_back(&it->second);
        return {&it->second, inserted};
    }

    void clear() {
        entries_.clear();
        order_.clear();
    }

    template <class F>
    void for_each_entry(F&& f) const {
        for (const Entry* entry : order_)
            f(*entry);
    }

    std::size_t size() const { return order_.size(); }

    void release() {
        entries_ = {};
        order_ = {};
    }

private:
    std::unordered_map<Node, Entry, Hash> entries_;
    std::vector<const Entry*> order_;
};

// Index of an integral node (a cell index, say) in a dense node map.
struct PfIdentityIndex {
    template <class Node>
    std::size_t operator()(const Node& node) const {
        return static_cast<std::size_t>(node);
    }
};

// For nodes that map one-to-one onto 0..N-1 (a grid cell: cy * width + cx). Flat per-index
// slots stamped with the search generation: a slot whose stamp is not the current generation is
// empty, so clear() is O(1) and a creature can replan every tick without paying for the whole
// grid. IndexOf maps a node to its index; Stamp is the generation counter's type (when it wraps,
// every stamp is reset once; a narrow type trades memory for more frequent resets).
template <class Node, class Data = int, class IndexOf = PfIdentityIndex,
          class Stamp = std::uint32_t>
class PfDenseNodeMap {
public:
    using Entry = PfNodeEntry<Node, Data>;

    // node_count: how many slots to make up front; the map grows on demand past it.
    explicit PfDenseNodeMap(IndexOf index_of = {}, std::size_t node_count = 0)
        : index_of_(index_of), slots_(node_count), slot_count_(node_count) {}

    Entry* find(const Node& node) {
        const std::size_t index = index_of_(node);
        if (index >= slot_count_ || slots_[index].stamp != generation_)
            return nullptr;
        return &slots_[index];
    }

    Entry& insert(const Node& node) { return insert_at(index_of_(node)); }

    // A select rather than a branch on the stamp: whether a neighbour was reached before is
    // close to a coin toss in a grid search.
    double g_score_or_nan(const Node& node) const {
        const std::size_t index = index_of_(node);
        if (index >= slot_count_)
            return std::numeric_limits<double>::quiet_NaN();
        const Slot& slot = slots_[index];
        return slot.stamp == generation_ ? slot.g_score : std::numeric_limits<double>::quiet_NaN();
    }

    std::pair<Entry*, bool> find_or_insert(const Node& node) {
        const std::size_t index = index_of_(node);
        if (index < slot_count_ && slots_[index].stamp == generation_)
            return {&slots_[index], false};
        return {&insert_at(index), true};
    }

    void clear() {
        touched_.clear();
        if (++generation_ == 0) {
            for (Slot& slot : slots_) {
                slot.stamp = 0;
            }
            generation_ = 1;
        }
    }

    template <class F>
    void for_each_entry(F&& f) const {
        for (std::size_t index : touched_)
            f(static_cast<const Entry&>(slots_[index]));
    }

    std::size_t size() const { return touched_.size(); }

    void release() {
        slots_ = {};
        slot_count_ = 0;
        touched_ = {};
    }

private:
    struct Slot;

    Entry& insert_at(std::size_t index) {
        if (index >= slot_count_)
            grow_to(index);
        Slot& slot = slots_[index];
        static_cast<Entry&>(slot) = Entry{};
        slot.stamp = generation_;
        touched_.push_back(index);
        return slot;
    }

    // The stamp goes in the entry's tail padding (a base's padding may be reused, a member's
    // may not): 24 bytes a slot for int nodes instead of 32, so more of the grid stays in cache.
    // Kept out of line: it runs a few times in a map's life, insert_at for every reached node.
    [[gnu::noinline]] void grow_to(std::size_t index) {
        slots_.resize(std::max(index + 1, slots_.size() * 2));
        slot_count_ = slots_.size();
    }

    struct Slot : Entry {
        Stamp stamp = 0;  // never equal to generation_ before the slot's first insert
    };

    IndexOf index_of_;
    std::vector<Slot> slots_;
    std::size_t slot_count_;  // slots_.size(), which would cost a division by the slot size
    std::vector<std::size_t> touched_;  // indices in insertion order
    Stamp generation_ = 1;
};

}  // namespace veldra

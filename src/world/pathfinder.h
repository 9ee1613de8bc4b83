#pragma once
// Generic best-first (A*) search over any graph. The caller supplies the neighbours of a node
// (with step costs) and a distance estimate; the search runs to the end in one call or one
// expansion per step, may stop early once the best estimate exceeds a bound, and when the goal
// is not reached it can still give a partial path to the explored node that looks closest.
//
// Two rules shape the results and are intended:
// - Nodes are never closed. A node already expanded that is reached again more cheaply goes
//   back into the open set and is expanded again.
// - A node waiting in the open set keeps the priority it was first given (no decrease-key), even
//   when a cheaper route to it is recorded; the cheaper g_score and predecessor are still used.
// Among equal priorities the open set is first-in first-out (by insertion sequence number), so
// a search is fully determined by its inputs.
//
// The heuristic and the neighbour function are template parameters. They default to
// std::function, which takes any callable; a search that runs often (a grid) should name its
// own callable types instead (PfGridEuclidean, PfGridNeighbors), so every call is inlined. The
// open set is a template parameter as well: a heap for any graph, or buckets by priority for
// graphs like grids, where the waiting nodes' priorities lie close together.
//
// Per node the node map holds the cost, the predecessor and the open-set flag; neighbour records
// (for callbacks that list neighbours into a pool) and path elements come from struct pools
// that are expired in bulk, so a pathfinder reused for many searches allocates almost nothing.

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "runtime/assertion.h"
#include "util/struct_pool.h"
#include "world/pathfinder_grid.h"
#include "world/pathfinder_node_maps.h"
#include "world/pathfinder_records.h"

namespace veldra {

// The default callable types of a Pathfinder: any heuristic, and any neighbour callback that
// lists the neighbours as pool records (see Pathfinder::NeighborFunction).
template <class Node>
using PfHeuristicFunction = std::function<double(const Node& node, const Node& goal_node)>;
template <class Node, class Data>
using PfNeighborFunction =
    std::function<int(const Node& node, std::vector<PfNeighbor<Node, Data>*>& out,
                      StructPool<PfNeighbor<Node, Data>>& pool)>;

// Stands for the visitor a Pathfinder hands to a neighbour function of the visiting kind; only
// used to recognise such a function.
template <class Node, class Data>
struct PfNeighborVisitorShape {
    void operator()(const Node& node, double cost, const Data& data) const;
};

// A neighbour function that calls visit(node, cost, data) for each neighbour, in order, instead
// of writing pool records.
template <class F, class Node, class Data>
concept PfVisitsNeighbors = requires(F& get_neighbors, const Node& node,
                                     PfNeighborVisitorShape<Node, Data>& visit) {
    get_neighbors(node, visit);
};

// Open sets: where a Pathfinder keeps the nodes waiting to be expanded. Both give entries back
// in pf_taken_before order, so the choice changes speed only, never a result. An open set offers
//   void push(const PfOpenEntry<Node>&)
//   PfOpenEntry<Node> pop()   the entry taken first; only when not empty
//   bool empty() const
//   void clear()              forget every entry (start of a search)
//   void release()            give back all memory (Pathfinder::free)

// For any graph: a 4-ary min-heap. A node's four children are 64 bytes side by side (int
// nodes), the heap is half as deep as a binary one, and the first of four children is picked with
// two independent comparisons and a third, so a level costs little more than in a binary heap.
template <class Node>
class PfHeapOpenSet {
public:
    using Entry = PfOpenEntry<Node>;

    void push(const Entry& added) {
        std::size_t hole = heap_.size();
        heap_.push_back(added);
        Entry* heap = heap_.data();
        while (hole > 0) {
            const std::size_t parent = (hole - 1) / arity;
            if (!pf_taken_before(added, heap[parent]))
                break;
            heap[hole] = heap[parent];
            hole = parent;
        }
        heap[hole] = added;
    }

    Entry pop() {
        VELDRA_ASSERT(!heap_.empty(), "pop from an empty open set");
        Entry* heap = heap_.data();
        const Entry taken = heap[0];
        const Entry last = heap_.back();
        heap_.pop_back();
        const std::size_t size = heap_.size();
        if (size == 0)
            return taken;
        // The last entry belongs near the bottom, so the hole goes down to a leaf along the
        // first-taken children and the entry climbs back from there (fewer comparisons).
        std::size_t hole = 0;
        for (;;) {
            const std::size_t first = arity * hole + 1;
            std::size_t best;
            if (first + 3 < size) {
                const std::size_t left = first + pf_taken_before(heap[first + 1], heap[first]);
                const std::size_t right =
                    first + 2 + pf_taken_before(heap[first + 3], heap[first + 2]);
                best = pf_taken_before(heap[right], heap[left]) ? right : left;
            } else if (first < size) {
                best = first;
                for (std::size_t child = first + 1; child < size; ++child) {
                    if (pf_taken_before(heap[child], heap[best]))
                        best = child;
                }
            } else {
                break;
            }
            heap[hole] = heap[best];
            hole = best;
        }
        while (hole > 0) {
            const std::size_t parent = (hole - 1) / arity;
            if (!pf_taken_before(last, heap[parent]))
                break;
            heap[hole] = heap[parent];
            hole = parent;
        }
        heap[hole] = last;
        return taken;
    }

    bool empty() const { return heap_.empty(); }
    void clear() { heap_.clear(); }
    void release() { heap_ = {}; }

private:
    static constexpr std::size_t arity = 4;
    std::vector<Entry> heap_;
};

// For graphs whose priorities (cost so far plus estimate) come close together, like a grid:
// entries are sorted into buckets `width` wide by priority, counted from the first priority
// pushed after clear(), and a pop searches only the first non-empty bucket. In an A* search the
// open set crowds into a narrow band of priorities, so a bucket holds a handful of entries and a
// pop scans those instead of walking down a heap. Priorities below the first one share the
// first bucket, those past the last bucket the last one; when the search gets there, the last
// bucket is spread out again from its smallest priority. Any width gives the same order; a
// small fraction of the cheapest step cost is usually fastest (the default suits step costs of
// about 1, as on a grid, with room for 16 cost units of priorities before the last bucket).
//
// A search touches a thousand or more buckets, about once each, so where their entries live
// decides the speed: the first few entries of every bucket sit in one flat array, a cache line
// per bucket in bucket order, and only a crowded bucket spills into a vector of its own.
template <class Node>
class PfBucketOpenSet {
public:
    using Entry = PfOpenEntry<Node>;

    explicit PfBucketOpenSet(double width = 1.0 / 256, std::size_t bucket_count = 4096)
        : inverse_width_(1 / width),
          lines_(bucket_count),
          counts_(bucket_count),
          spilled_(bucket_count),
          occupied_((bucket_count + word_bits - 1) / word_bits) {
        VELDRA_ASSERT(width > 0 && std::isfinite(inverse_width_) && bucket_count >= 2,
                      "PfBucketOpenSet needs a positive width and two buckets");
    }

    void push(const Entry& added) {
        if (size_ == 0 && !based_) {
            base_ = added.priority;
            based_ = true;
        }
        put(added);
        ++size_;
    }

    Entry pop() {
        VELDRA_ASSERT(size_ > 0, "pop from an empty open set");
        // The next occupied bucket from a bitmap rather than by testing buckets one by one: a
        // loop of varying length ends in a mispredicted branch on nearly every pop.
        std::size_t word = first_ / word_bits;
        std::uint64_t bits = occupied_[word] & (~std::uint64_t{0} << (first_ % word_bits));
        while (bits == 0)
            bits = occupied_[++word];
        first_ = word * word_bits + static_cast<std::size_t>(std::countr_zero(bits));
        if (first_ == lines_.size() - 1)
            spread_last_bucket();
        const std::size_t index = first_;
        const std::uint32_t count = counts_[index];
        Entry* line = lines_[index].entries;
        Entry taken;
        if (count <= line_entries) {
            Entry* best = taken_first(line + 1, line + count, line);
            taken = *best;
            *best = line[count - 1];
        } else {
            taken = pop_crowded(index);
        }
        counts_[index] = count - 1;
        occupied_[index / word_bits] &= ~(std::uint64_t{count == 1} << (index % word_bits));
        --size_;
        return taken;
    }

    bool empty() const { return size_ == 0; }

    void clear() {
        // Only the buckets still holding entries need clearing, and the bitmap names them.
        for (std::size_t word = 0; word <= last_used_ / word_bits; ++word) {
            for (std::uint64_t bits = occupied_[word]; bits != 0; bits &= bits - 1) {
                const std::size_t index =
                    word * word_bits + static_cast<std::size_t>(std::countr_zero(bits));
                // A spill vector is only looked at when it was used: its header is a cache
                // miss of its own.
                if (counts_[index] > line_entries)
                    spilled_[index].clear();
                counts_[index] = 0;
            }
            occupied_[word] = 0;
        }
        size_ = 0;
        first_ = lines_.size() - 1;
        last_used_ = 0;
        based_ = false;
    }

    void release() {
        for (auto& spilled : spilled_)
            spilled = {};
        spread_ = {};
        clear();
    }

private:
    static constexpr std::size_t line_entries = std::max<std::size_t>(1, 64 / sizeof(Entry));
    struct alignas(64) Line {
        Entry entries[line_entries];
    };

    // Never decreasing in the priority (each floating-point step rounds monotonically), so the
    // first non-empty bucket always holds the entry to take next.
    std::size_t bucket_of(double priority) const {
        const double offset = (priority - base_) * inverse_width_;
        if (!(offset >= 1))
            return 0;
        if (offset >= static_cast<double>(lines_.size() - 1))
            return lines_.size() - 1;
        return static_cast<std::size_t>(offset);
    }

    // The entry of [first, last) and `best` that is taken first.
    static Entry* taken_first(Entry* first, Entry* last, Entry* best) {
        for (; first != last; ++first) {
            if (pf_taken_before(*first, *best))
                best = first;
        }
        return best;
    }

    // A bucket with more entries than its line holds: the line is full and the rest are spilled.
    [[gnu::noinline]] Entry pop_crowded(std::size_t index) {
        Entry* line = lines_[index].entries;
        std::vector<Entry>& spilled = spilled_[index];
        Entry* best = taken_first(line + 1, line + line_entries, line);
        best = taken_first(spilled.data(), spilled.data() + spilled.size(), best);
        const Entry taken = *best;
        *best = spilled.back();
        spilled.pop_back();
        return taken;
    }

    // Every other bucket is empty here: counts buckets afresh from the smallest priority in the
    // last one, which puts at least that entry in the first bucket.
    void spread_last_bucket() {
        const std::size_t last = lines_.size() - 1;
        const std::uint32_t count = counts_[last];
        spread_.assign(lines_[last].entries,
                       lines_[last].entries + std::min<std::size_t>(count, line_entries));
        spread_.insert(spread_.end(), spilled_[last].begin(), spilled_[last].end());
        spilled_[last].clear();
        counts_[last] = 0;
        occupied_[last / word_bits] &= ~(std::uint64_t{1} << (last % word_bits));
        base_ = spread_.front().priority;
        for (const Entry& entry : spread_)
            base_ = std::min(base_, entry.priority);
        first_ = last;
        last_used_ = 0;
        for (const Entry& entry : spread_)
            put(entry);
        spread_.clear();
    }

    void put(const Entry& entry) {
        const std::size_t index = bucket_of(entry.priority);
        const std::uint32_t count = counts_[index];
        if (count < line_entries) {
            lines_[index].entries[count] = entry;
        } else {
            spilled_[index].push_back(entry);
        }
        counts_[index] = count + 1;
        occupied_[index / word_bits] |= std::uint64_t{1} << (index % word_bits);
        first_ = std::min(first_, index);
        last_used_ = std::max(last_used_, index);
    }

    static constexpr std::size_t word_bits = 64;

    double inverse_width_;
    double base_ = 0;
    bool based_ = false;                       // base_ is set by the first push after clear()
    std::vector<Line> lines_;                  // the first entries of every bucket
    std::vector<std::uint32_t> counts_;        // entries per bucket
    std::vector<std::vector<Entry>> spilled_;  // entries past a full line
    std::vector<std::uint64_t> occupied_;      // bit i set when bucket i holds an entry
    std::vector<Entry> spread_;                // scratch for spread_last_bucket
    std::size_t size_ = 0;
    std::size_t first_ = 0;      // no entry in a bucket before this one
    std::size_t last_used_ = 0;  // no entry in a bucket after this one
};

// Node: copyable, default constructible, comparable with ==, and a key of NodeMap.
// Data: what each neighbour carries into the path. NodeMap: PfHashNodeMap or PfDenseNodeMap.
// HeuristicFn: double(const Node& node, const Node& goal_node).
// OpenSet: PfHeapOpenSet or PfBucketOpenSet; the order of expansion is the same with either.
// NeighborFn: either the pool form (NeighborFunction below) or the visiting form
// (PfVisitsNeighbors); both must list the same neighbours in the same order for the same node.
template <class Node, class Data = int, class NodeMap = PfHashNodeMap<Node, Data>,
          class HeuristicFn = PfHeuristicFunction<Node>,
          class NeighborFn = PfNeighborFunction<Node, Data>, class OpenSet = PfHeapOpenSet<Node>>
class Pathfinder {
public:
    using Neighbor = PfNeighbor<Node, Data>;
    using PathElement = PfPathElement<Node, Data>;
    using Predecessor = PfPredecessor<Node, Data>;
    using NeighborPool = StructPool<Neighbor>;
    // Elements owned by the pathfinder's path-element pool: valid until its next start().
    using Path = std::vector<const PathElement*>;
    // Estimated remaining cost from a node to the goal.
    using Heuristic = HeuristicFn;
    // Pool form: writes the neighbours of `node` into `out` (records from `pool`, see
    // pf_add_neighbor) and returns their count. `out` is scratch shared by every search of this
    // pathfinder; entries past the returned count are stale and never read.
    using NeighborFunction = NeighborFn;

    Pathfinder(Heuristic get_heuristic, NeighborFunction get_neighbors,
               PathfinderOptions options = {}, NodeMap node_map = NodeMap(),
               OpenSet open_set = OpenSet())
        : get_heuristic_(std::move(get_heuristic)),
          get_neighbors_(std::move(get_neighbors)),
          options_(options),
          open_set_(std::move(open_set)),
          node_map_(std::move(node_map)) {}

    // Resets the search; the previous path's elements are expired here.
    void start(const Node& start_node, const Node& goal_node) {
        VELDRA_ASSERT(!freed_, "Pathfinder used after free()");
        goal_node_ = goal_node;
        open_set_.clear();
        next_sequence_ = 0;
        node_map_.clear();
        path_element_pool_.expire_all();
        path_.clear();
        done_ = false;
        path_found_ = false;
        num_steps_performed_ = 0;
        node_map_.insert(start_node).g_score = 0;
        push_open(start_node, get_heuristic_(start_node, goal_node));
    }

    // One expansion; nothing (not even counting) once the search is done.
    void step() {
        if (done_)
            return;
        VELDRA_ASSERT(!freed_, "Pathfinder used after free()");
        ++num_steps_performed_;
        if (!open_set_.empty())
            expand_next();
        if (!done_ && open_set_.empty()) {
            path_found_ = false;
            done_ = true;
        }
    }

    bool finish() {
        while (!done_)
            step();
        return path_found_;
    }

    bool is_done() const { return done_; }
    bool path_is_found() const { return path_found_; }
    const Path& get_path() const { return path_; }
    int num_steps_performed() const { return num_steps_performed_; }
    // Changes take effect from the next step, so a reused pathfinder can bound each search.
    PathfinderOptions& options() { return options_; }
    // The callables may be replaced between searches as well, so a pathfinder moved to another
    // grid of the same kind keeps its open set, node map and pools, and their memory.
    Heuristic& heuristic() { return get_heuristic_; }
    NeighborFunction& neighbor_function() { return get_neighbors_; }

    // Fills the path: to the goal when it was found (returns true), else to the substitute
    // target, the predecessor with the smallest heuristic over the reached nodes in insertion
    // order, first one kept on ties (returns false; the path stays empty when nothing was
    // reached).
    bool construct_path() {
        if (path_found_) {
            construct_path_to_node(goal_node_);
            return true;
        }
        const Predecessor* nearest = nullptr;
        double nearest_estimate = 0;
        node_map_.for_each_entry([&](const Entry& entry) {
            if (!entry.has_came_from)
                return;
            const double estimate = get_heuristic_(entry.came_from.from_node, goal_node_);
            if (!nearest || estimate < nearest_estimate) {
                nearest = &entry.came_from;
                nearest_estimate = estimate;
            }
        });
        if (nearest) {
            // Copied first: the entries are read while the path is built.
            const Node target = nearest->from_node;
            construct_path_to_node(target);
        } else {
            path_.clear();
        }
        return false;
    }

    // start, finish and construct_path in one call. nullptr when require_complete and the goal
    // was not reached; else this pathfinder's path (possibly partial or empty).
    const Path* find_path(const Node& start_node, const Node& goal_node, bool require_complete) {
        start(start_node, goal_node);
        if (!finish() && require_complete)
            return nullptr;
        construct_path();
        return &path_;
    }

    // Gives back the memory of the open set, the node tables and the pools. The pathfinder must
    // not be used afterwards (the destructor does the same for one that is simply dropped).
    void free() {
        open_set_.release();
        node_map_.release();
        path_element_pool_.release();
        neighbor_pool_.release();
        neighbor_nodes_array_ = {};
        path_ = {};
        freed_ = true;
    }

private:
    using Entry = typename NodeMap::Entry;

    using OpenEntry = PfOpenEntry<Node>;

    void push_open(const Node& node, double priority) {
        open_set_.push(OpenEntry{priority, next_sequence_++, node});
    }

    void expand_next() {
        const OpenEntry current = open_set_.pop();
        Entry* current_entry = node_map_.find(current.node);
        current_entry->in_open_set = false;
        if (current.node == goal_node_) {
            path_found_ = true;
            done_ = true;
            return;
        }
        if (options_.max_estimation >= 0 && current.priority > options_.max_estimation) {
            path_found_ = false;
            done_ = true;
            return;
        }
        const double g_current = current_entry->g_score;
        if constexpr (PfVisitsNeighbors<NeighborFn, Node, Data>) {
            get_neighbors_(current.node, [&](const Node& to, double cost, const Data& data) {
                relax(current.node, g_current, to, cost, data);
            });
        } else {
            neighbor_pool_.expire_all();
            const int count = get_neighbors_(current.node, neighbor_nodes_array_, neighbor_pool_);
            VELDRA_ASSERT(
                count >= 0 && static_cast<std::size_t>(count) <= neighbor_nodes_array_.size(),
                "get_neighbors returned more neighbours than it wrote (use pf_add_neighbor)");
            for (int i = 0; i < count; ++i) {
                const Neighbor& neighbor = *neighbor_nodes_array_[i];
                relax(current.node, g_current, neighbor.node, neighbor.cost, neighbor.data);
            }
        }
    }

    void relax(const Node& from, double g_from, const Node& to, double cost, const Data& data) {
        const double tentative = g_from + cost;
        // No comparison with NaN holds, so one test lets through both an unreached node (even
        // for an infinite step cost) and a strictly cheaper route to a reached one.
        if (tentative >= node_map_.g_score_or_nan(to))
            return;
        Entry* entry = node_map_.find_or_insert(to).first;
        entry->came_from = Predecessor{from, data};
        entry->has_came_from = true;
        entry->g_score = tentative;
        if (!entry->in_open_set) {
            entry->in_open_set = true;
            push_open(to, tentative + get_heuristic_(to, goal_node_));
        }
    }

    void construct_path_to_node(const Node& target) {
        path_.clear();
        Node node = target;
        for (const Entry* entry = node_map_.find(node); entry && entry->has_came_from;
             entry = node_map_.find(node)) {
            VELDRA_ASSERT(path_.size() < node_map_.size(),
                          "predecessor cycle: does get_neighbors give a negative step cost?");
            const Predecessor& record = entry->came_from;
            path_.push_back(&path_element_pool_.create_new(node, record.from_node, record.data));
            node = record.from_node;
        }
        std::reverse(path_.begin(), path_.end());
    }

    Heuristic get_heuristic_;
    NeighborFunction get_neighbors_;
    PathfinderOptions options_;
    Node goal_node_{};
    OpenSet open_set_;
    std::uint32_t next_sequence_ = 0;
    NodeMap node_map_;  // g_score, came_from and the open-set flag per node
    StructPool<PathElement> path_element_pool_;
    NeighborPool neighbor_pool_;                   // pool form of NeighborFn only
    std::vector<Neighbor*> neighbor_nodes_array_;  // never shrunk
    Path path_;
    bool done_ = false;
    bool path_found_ = false;
    bool freed_ = false;
    int num_steps_performed_ = 0;
};

// One-call search with a fresh pathfinder. std::nullopt when require_complete and the goal was
// not reached; else a copy of the path, which may be partial or empty. Callers that search many
// times (creatures replanning) should keep one Pathfinder and use its find_path instead, so its
// pools and node map are reused.
template <class Node, class Data = int, class NodeMap = PfHashNodeMap<Node, Data>,
          class HeuristicFn = PfHeuristicFunction<Node>,
          class NeighborFn = PfNeighborFunction<Node, Data>>
std::optional<std::vector<PfPathElement<Node, Data>>> find_path(
    const Node& start_node, const Node& goal_node, std::type_identity_t<HeuristicFn> get_heuristic,
    std::type_identity_t<NeighborFn> get_neighbors, PathfinderOptions options,
    bool require_complete, NodeMap node_map = NodeMap()) {
    Pathfinder<Node, Data, NodeMap, HeuristicFn, NeighborFn> pathfinder(
        std::move(get_heuristic), std::move(get_neighbors), options, std::move(node_map));
    const auto* path = pathfinder.find_path(start_node, goal_node, require_complete);
    if (!path)
        return std::nullopt;
    std::vector<PfPathElement<Node, Data>> copy;
    copy.reserve(path->size());
    for (const auto* element : *path)
        copy.push_back(*element);
    return copy;
}

}  // namespace veldra

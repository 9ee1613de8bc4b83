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
// Working records come from three struct pools (neighbours, predecessors, path elements) that
// are expired in bulk, so a pathfinder reused for many searches allocates almost nothing.

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "util/struct_pool.h"
#include "world/pathfinder_grid.h"
#include "world/pathfinder_node_maps.h"
#include "world/pathfinder_records.h"

namespace veldra {

// Node: copyable, default constructible, comparable with ==, and a key of NodeMap.
// Data: what each neighbour carries into the path. NodeMap: PfHashNodeMap or PfDenseNodeMap.
template <class Node, class Data = int, class NodeMap = PfHashNodeMap<Node, Data>>
class Pathfinder {
public:
    using Neighbor = PfNeighbor<Node, Data>;
    using PathElement = PfPathElement<Node, Data>;
    using Predecessor = PfPredecessor<Node, Data>;
    using NeighborPool = StructPool<Neighbor>;
    // Elements owned by the pathfinder's path-element pool: valid until its next start().
    using Path = std::vector<const PathElement*>;
    // Estimated remaining cost from a node to the goal.
    using Heuristic = std::function<double(const Node& node, const Node& goal_node)>;
    // Writes the neighbours of `node` into `out` (records from `pool`, see pf_add_neighbor) and
    // returns their count. `out` is scratch shared by every search of this pathfinder; entries
    // past the returned count are stale and never read.
    using NeighborFunction =
        std::function<int(const Node& node, std::vector<Neighbor*>& out, NeighborPool& pool)>;

    Pathfinder(Heuristic get_heuristic, NeighborFunction get_neighbors,
               PathfinderOptions options = {}, NodeMap node_map = NodeMap())
        : get_heuristic_(std::move(get_heuristic)),
          get_neighbors_(std::move(get_neighbors)),
          options_(options),
          node_map_(std::move(node_map)) {}

    // Resets the search; the previous path's elements are expired here.
    void start(const Node& start_node, const Node& goal_node) {
        assert(!freed_ && "Pathfinder used after free()");
        goal_node_ = goal_node;
        open_set_.clear();
        next_sequence_ = 0;
        node_map_.clear();
        came_from_pool_.expire_all();
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
        assert(!freed_ && "Pathfinder used after free()");
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

    // Fills the path: to the goal when it was found (returns true), else to the substitute
    // target, the predecessor with the smallest heuristic over came_from in insertion order,
    // first one kept on ties (returns false; the path stays empty when nothing was reached).
    bool construct_path() {
        if (path_found_) {
            construct_path_to_node(goal_node_);
            return true;
        }
        const Predecessor* nearest = nullptr;
        double nearest_estimate = 0;
        node_map_.for_each_entry([&](const Entry& entry) {
            if (!entry.came_from)
                return;
            const double estimate = get_heuristic_(entry.came_from->from_node, goal_node_);
            if (!nearest || estimate < nearest_estimate) {
                nearest = entry.came_from;
                nearest_estimate = estimate;
            }
        });
        if (nearest) {
            construct_path_to_node(nearest->from_node);
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
        open_set_ = {};
        node_map_.release();
        came_from_pool_.release();
        path_element_pool_.release();
        neighbor_pool_.release();
        path_ = {};
        freed_ = true;
    }

private:
    using Entry = typename NodeMap::Entry;

    struct OpenEntry {
        double priority;
        // Insertion order within one search; breaks ties first-in first-out. 32 bits keep an
        // entry small, and no search pushes four billion nodes.
        std::uint32_t sequence;
        Node node;
    };

    // Heap order for std::push_heap / pop_heap: the "largest" element is the one taken next.
    struct TakenLater {
        bool operator()(const OpenEntry& a, const OpenEntry& b) const {
            if (a.priority != b.priority)
                return a.priority > b.priority;
            return a.sequence > b.sequence;
        }
    };

    void push_open(const Node& node, double priority) {
        open_set_.push_back(OpenEntry{priority, next_sequence_++, node});
        std::push_heap(open_set_.begin(), open_set_.end(), TakenLater{});
    }

    void expand_next() {
        std::pop_heap(open_set_.begin(), open_set_.end(), TakenLater{});
        const OpenEntry current = std::move(open_set_.back());
        open_set_.pop_back();
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
        neighbor_pool_.expire_all();
        const double g_current = current_entry->g_score;
        const int count = get_neighbors_(current.node, neighbor_nodes_array_, neighbor_pool_);
        assert(count >= 0 && static_cast<std::size_t>(count) <= neighbor_nodes_array_.size() &&
               "get_neighbors returned more neighbours than it wrote (use pf_add_neighbor)");
        for (int i = 0; i < count; ++i) {
            relax(current.node, g_current, *neighbor_nodes_array_[i]);
        }
    }

    void relax(const Node& from, double g_from, const Neighbor& neighbor) {
        const double tentative = g_from + neighbor.cost;
        Entry* entry = node_map_.find(neighbor.node);
        if (entry && !(tentative < entry->g_score))
            return;
        if (!entry)
            entry = &node_map_.insert(neighbor.node);
        entry->came_from = &came_from_pool_.create_new(from, neighbor.data);
        entry->g_score = tentative;
        if (!entry->in_open_set) {
            entry->in_open_set = true;
            push_open(neighbor.node, tentative + get_heuristic_(neighbor.node, goal_node_));
        }
    }

    void construct_path_to_node(const Node& target) {
        path_.clear();
        Node node = target;
        for (const Entry* entry = node_map_.find(node); entry && entry->came_from;
             entry = node_map_.find(node)) {
            assert(path_.size() < node_map_.size() &&
                   "predecessor cycle: does get_neighbors give a negative step cost?");
            const Predecessor& record = *entry->came_from;
            path_.push_back(&path_element_pool_.create_new(node, record.from_node, record.data));
            node = record.from_node;
        }
        std::reverse(path_.begin(), path_.end());
    }

    Heuristic get_heuristic_;
    NeighborFunction get_neighbors_;
    PathfinderOptions options_;
    Node goal_node_{};
    std::vector<OpenEntry> open_set_;  // binary heap ordered by TakenLater
    std::uint32_t next_sequence_ = 0;
    NodeMap node_map_;  // g_score, came_from and the open-set flag per node
    StructPool<Predecessor> came_from_pool_;
    StructPool<PathElement> path_element_pool_;
    NeighborPool neighbor_pool_;
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
template <class Node, class Data = int, class NodeMap = PfHashNodeMap<Node, Data>>
std::optional<std::vector<PfPathElement<Node, Data>>> find_path(
    const Node& start_node, const Node& goal_node,
    typename Pathfinder<Node, Data, NodeMap>::Heuristic get_heuristic,
    typename Pathfinder<Node, Data, NodeMap>::NeighborFunction get_neighbors,
    PathfinderOptions options, bool require_complete, NodeMap node_map = NodeMap()) {
    Pathfinder<Node, Data, NodeMap> pathfinder(std::move(get_heuristic), std::move(get_neighbors),
                                               options, std::move(node_map));
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

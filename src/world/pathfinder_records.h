#pragma once
// The small records the pathfinder trades with its callers and keeps per node, and the helper
// neighbour callbacks write them with. Included through world/pathfinder.h.

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "util/struct_pool.h"

namespace veldra {

struct PathfinderOptions {
    // If 0 or more, the search gives up as soon as the lowest estimated total cost in the open
    // set is greater than this (same unit as step costs). Negative: no bound.
    double max_estimation = -1;
};

// One neighbour written by a get_neighbors callback. `data` is carried along unchanged into the
// path (a creature's step direction, say).
template <class Node, class Data = int>
struct PfNeighbor {
    Node node{};
    double cost = 0;  // cost of the step to `node`; must not be negative
    Data data{};
};

// One step of a found path: from `previous_node` to `node`, reached by the neighbour `data`.
template <class Node, class Data = int>
struct PfPathElement {
    Node node{};
    Node previous_node{};
    Data data{};
};

// Where the best known route to a node arrives from.
template <class Node, class Data = int>
struct PfPredecessor {
    Node from_node{};
    Data data{};
};

// A node waiting in the open set. Taken smallest priority first and, among equal priorities,
// smallest sequence (insertion order) first.
template <class Node>
struct PfOpenEntry {
    double priority;
    // Insertion order within one search. 32 bits keep an entry small (16 bytes with an int node),
    // and no search pushes four billion nodes.
    std::uint32_t sequence;
    Node node;
};

// Whether `a` is taken from the open set before `b`. Sequence numbers are unique, so this is a
// strict total order and any open set gives the same order of taking. Written without
// short-circuits: in a heap the outcome is a coin toss, and a mispredicted branch costs more
// than evaluating all three comparisons.
template <class Node>
bool pf_taken_before(const PfOpenEntry<Node>& a, const PfOpenEntry<Node>& b) {
    return (a.priority < b.priority) | ((a.priority == b.priority) & (a.sequence < b.sequence));
}

// What a node map holds per reached node during one search. The predecessor sits in the entry
// itself rather than in a pool record: a relaxation then writes one slot and allocates nothing.
template <class Node, class Data>
struct PfNodeEntry {
    double g_score = 0;                     // best known cost from the start
    PfPredecessor<Node, Data> came_from{};  // meaningful only when has_came_from
    bool has_came_from = false;             // false for the start node
    bool in_open_set = false;               // a node is at most once in the open set
};

// For get_neighbors callbacks: takes a record from the pool, writes it at position `count` of
// the scratch array (growing the array only when it is too short) and returns count + 1.
template <class Node, class Data>
int pf_add_neighbor(std::vector<PfNeighbor<Node, Data>*>& out, int count,
                    StructPool<PfNeighbor<Node, Data>>& pool,
                    const std::type_identity_t<Node>& node, double cost,
                    const std::type_identity_t<Data>& data) {
    PfNeighbor<Node, Data>* neighbor = &pool.create_new(node, cost, data);
    if (static_cast<std::size_t>(count) < out.size()) {
        out[count] = neighbor;
    } else {
        out.push_back(neighbor);
    }
    return count + 1;
}

}  // namespace veldra

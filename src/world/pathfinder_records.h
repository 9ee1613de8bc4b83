#pragma once
// The small records the pathfinder trades with its callers and keeps per node, and the helper
// neighbour callbacks write them with. Included through world/pathfinder.h.

#include <cstddef>
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

// Where the best known route to a node arrives from (one per reached node other than the start).
template <class Node, class Data = int>
struct PfPredecessor {
    Node from_node{};
    Data data{};
};

// What a node map holds per reached node during one search.
template <class Node, class Data>
struct PfNodeEntry {
    double g_score = 0;  // best known cost from the start
    // Owned by the pathfinder's predecessor pool; nullptr for the start node.
    const PfPredecessor<Node, Data>* came_from = nullptr;
    bool in_open_set = false;  // a node is at most once in the open set
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

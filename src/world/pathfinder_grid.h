#pragma once
// Neighbours and distance estimate for searches on a rectangular grid whose cells are numbered
// cy * width + cx, the node type PfDenseNodeMap indexes directly. Included through
// world/pathfinder.h.

#include <array>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

#include "util/struct_pool.h"
#include "world/pathfinder_records.h"

namespace veldra {

enum class PfGridMoves {
    orthogonal,      // 4 neighbours, cost 1
    with_diagonals,  // 8 neighbours, diagonals cost sqrt(2)
};

struct PfGridStep {
    int dx;
    int dy;
};

// Neighbour data on a grid is the index of the step in this table: the four orthogonal steps,
// then the four diagonals. The order is also the order neighbours are listed in, which decides
// ties between equally good routes.
inline constexpr std::array<PfGridStep, 8> pf_grid_steps{{
    {1, 0},
    {0, 1},
    {-1, 0},
    {0, -1},
    {1, 1},
    {-1, 1},
    {-1, -1},
    {1, -1},
}};

// Straight-line distance between two cells in cell units; never overestimates either move set.
inline double pf_grid_euclidean(int width, int cell_a, int cell_b) {
    const double dx = cell_a % width - cell_b % width;
    const double dy = cell_a / width - cell_b / width;
    return std::sqrt(dx * dx + dy * dy);
}

// A get_neighbors callback for a Pathfinder<int, int, ...>. Passable: bool(int cell). A
// diagonal step is only offered when both orthogonal cells beside it are passable too, so paths
// never cut a blocked corner.
template <class Passable>
class PfGridNeighbors {
public:
    PfGridNeighbors(int width, int height, PfGridMoves moves, Passable passable)
        : width_(width), height_(height), moves_(moves), passable_(std::move(passable)) {}

    int operator()(const int& cell, std::vector<PfNeighbor<int, int>*>& out,
                   StructPool<PfNeighbor<int, int>>& pool) const {
        const int cx = cell % width_;
        const int cy = cell / width_;
        const int step_count = moves_ == PfGridMoves::orthogonal ? 4 : 8;
        int count = 0;
        for (int d = 0; d < step_count; ++d) {
            const PfGridStep step = pf_grid_steps[d];
            const bool diagonal = d >= 4;
            if (!is_open(cx + step.dx, cy + step.dy))
                continue;
            if (diagonal && !(is_open(cx + step.dx, cy) && is_open(cx, cy + step.dy)))
                continue;
            const double cost = diagonal ? std::numbers::sqrt2 : 1.0;
            const int to = (cy + step.dy) * width_ + cx + step.dx;
            count = pf_add_neighbor(out, count, pool, to, cost, d);
        }
        return count;
    }

private:
    bool is_open(int cx, int cy) const {
        return cx >= 0 && cy >= 0 && cx < width_ && cy < height_ && passable_(cy * width_ + cx);
    }

    int width_;
    int height_;
    PfGridMoves moves_;
    Passable passable_;
};

}  // namespace veldra

#pragma once
// Neighbours and distance estimate for searches on a rectangular grid whose cells are numbered
// cy * width + cx, the node type PfDenseNodeMap indexes directly. Included through
// world/pathfinder.h.

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include "runtime/assertion.h"
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

inline double pf_grid_step_cost(int step) {
    return step >= 4 ? std::numbers::sqrt2 : 1.0;
}

// Straight-line distance between two cells in cell units; never overestimates either move set.
inline double pf_grid_euclidean(int width, int cell_a, int cell_b) {
    const double dx = cell_a % width - cell_b % width;
    const double dy = cell_a / width - cell_b / width;
    return std::sqrt(dx * dx + dy * dy);
}

// pf_grid_euclidean as a heuristic object for one grid size, giving the very same values. The
// search asks for an estimate at every push, so the column and row of every cell are worked out
// once (the division by the width was a large share of the cost), and on grids small enough for
// the table to stay in cache the square roots of every possible squared distance are too: a
// table load is quicker than a square root, and sqrt of the same integer gives the same double.
class PfGridEuclidean {
public:
    // Largest square-root table made, in entries (8 bytes each); bigger grids use std::sqrt.
    static constexpr std::size_t max_root_table = std::size_t{1} << 14;

    PfGridEuclidean(int width, int height) : coords_(static_cast<std::size_t>(width) * height) {
        VELDRA_ASSERT(width > 0 && height > 0, "PfGridEuclidean on an empty grid?");
        for (std::size_t cell = 0; cell < coords_.size(); ++cell) {
            coords_[cell] = {static_cast<int>(cell) % width, static_cast<int>(cell) / width};
        }
        const auto dx = static_cast<std::size_t>(width - 1);
        const auto dy = static_cast<std::size_t>(height - 1);
        if (width < 65536 && height < 65536 && dx * dx + dy * dy < max_root_table) {
            roots_.resize(dx * dx + dy * dy + 1);
            for (std::size_t square = 0; square < roots_.size(); ++square)
                roots_[square] = std::sqrt(static_cast<double>(square));
        }
    }

    double operator()(const int& cell_a, const int& cell_b) const {
        VELDRA_ASSERT(static_cast<std::size_t>(cell_a) < coords_.size() &&
                          static_cast<std::size_t>(cell_b) < coords_.size(),
                      "cell outside the grid");
        const Coords a = coords_[static_cast<std::size_t>(cell_a)];
        const Coords b = coords_[static_cast<std::size_t>(cell_b)];
        const int dx = a.cx - b.cx;
        const int dy = a.cy - b.cy;
        if (!roots_.empty())
            return roots_[static_cast<std::size_t>(dx * dx + dy * dy)];
        const double dx_real = dx;
        const double dy_real = dy;
        return std::sqrt(dx_real * dx_real + dy_real * dy_real);
    }

private:
    struct Coords {
        int cx;
        int cy;
    };
    std::vector<Coords> coords_;
    std::vector<double> roots_;  // roots_[n] = sqrt(n); empty on large grids
};

// The steps allowed out of every cell of a grid, one byte per cell: bit d set when step
// pf_grid_steps[d] is. passable: bool(int cell), asked a few times per cell. A diagonal step
// needs both orthogonal cells beside it passable too, so paths never cut a blocked corner;
// blocked cells have no steps out of them, and no step leads into one.
template <class Passable>
std::vector<std::uint8_t> pf_grid_allowed_steps(int width, int height, PfGridMoves moves,
                                                const Passable& passable) {
    VELDRA_ASSERT(width > 0 && height > 0, "a search grid without cells?");
    std::vector<std::uint8_t> steps(static_cast<std::size_t>(width) * height);
    auto open = [&](int cx, int cy) {
        return cx >= 0 && cy >= 0 && cx < width && cy < height && passable(cy * width + cx);
    };
    const int step_count = moves == PfGridMoves::orthogonal ? 4 : 8;
    for (int cy = 0; cy < height; ++cy) {
        for (int cx = 0; cx < width; ++cx) {
            if (!open(cx, cy))
                continue;
            std::uint8_t allowed = 0;
            for (int d = 0; d < step_count; ++d) {
                const auto [dx, dy] = pf_grid_steps[d];
                const bool corner_clear = d < 4 || (open(cx + dx, cy) && open(cx, cy + dy));
                if (open(cx + dx, cy + dy) && corner_clear)
                    allowed |= 1u << d;
            }
            steps[static_cast<std::size_t>(cy) * width + cx] = allowed;
        }
    }
    return steps;
}

// A get_neighbors callback for a Pathfinder<int, int, ...> on a grid whose passability does
// not change while it is searched (a trial's terrain). The allowed steps of every cell are
// worked out once, at construction, into one byte per cell, so an expansion only walks the set
// bits; make a new one when cells change. The steps allowed are those of pf_grid_allowed_steps.
//
// Two ways to call it, listing the same neighbours in the same order: through the pool and
// scratch array (what a std::function neighbour callback holds), and with a visitor, which a
// Pathfinder given PfGridNeighbors itself as its neighbour type uses to skip the records.
class PfGridNeighbors {
public:
    // passable: bool(int cell), asked once per cell and neighbour here and never again.
    template <class Passable>
    PfGridNeighbors(int width, int height, PfGridMoves moves, const Passable& passable)
        : width_(width), moves_(pf_grid_allowed_steps(width, height, moves, passable)) {
        for (std::size_t d = 0; d < pf_grid_steps.size(); ++d) {
            offsets_[d] = pf_grid_steps[d].dy * width + pf_grid_steps[d].dx;
            costs_[d] = pf_grid_step_cost(static_cast<int>(d));
        }
    }

    int operator()(const int& cell, std::vector<PfNeighbor<int, int>*>& out,
                   StructPool<PfNeighbor<int, int>>& pool) const {
        int count = 0;
        for (unsigned allowed = moves_[cell]; allowed != 0; allowed &= allowed - 1) {
            const int d = std::countr_zero(allowed);
            const int to = cell + pf_grid_steps[d].dy * width_ + pf_grid_steps[d].dx;
            count = pf_add_neighbor(out, count, pool, to, pf_grid_step_cost(d), d);
        }
        return count;
    }

    // visit(const int& to, double cost, const int& step) for every neighbour, in list order.
    template <class Visit>
    void operator()(const int& cell, Visit&& visit) const {
        for (unsigned allowed = moves_[cell]; allowed != 0; allowed &= allowed - 1) {
            const int d = std::countr_zero(allowed);
            visit(cell + offsets_[d], costs_[d], d);
        }
    }

private:
    int width_;
    std::vector<std::uint8_t> moves_;                  // per cell: bit d set when step d is allowed
    std::array<int, pf_grid_steps.size()> offsets_{};  // cell index change of step d
    std::array<double, pf_grid_steps.size()> costs_{};
};

// PfGridNeighbors where cells differ in what they cost to cross: a step costs its length (1 or
// sqrt(2)) times the factor of the cell it enters, such as sand that slows walkers down. Only
// the visiting form, which the Pathfinder uses when this is its neighbour type.
//
// Factors below 1 would let the straight-line estimate overestimate, and the search would no
// longer prefer cheaper routes; factors of 1 and more keep it a lower bound.
class PfGridWeightedNeighbors {
public:
    // passable: bool(int cell); entry_factor: double(int cell), asked once per passable cell.
    // Neither is asked again: make a new one when cells change.
    template <class Passable, class EntryFactor>
    PfGridWeightedNeighbors(int width, int height, PfGridMoves moves, const Passable& passable,
                            const EntryFactor& entry_factor)
        : moves_(pf_grid_allowed_steps(width, height, moves, passable)), factors_(moves_.size()) {
        for (std::size_t d = 0; d < pf_grid_steps.size(); ++d) {
            offsets_[d] = pf_grid_steps[d].dy * width + pf_grid_steps[d].dx;
            lengths_[d] = pf_grid_step_cost(static_cast<int>(d));
        }
        for (std::size_t cell = 0; cell < factors_.size(); ++cell) {
            if (!passable(static_cast<int>(cell)))
                continue;
            factors_[cell] = entry_factor(static_cast<int>(cell));
            VELDRA_ASSERT(factors_[cell] >= 0, "a negative step cost would let paths loop");
        }
    }

    // visit(const int& to, double cost, const int& step) for every neighbour, in the order of
    // pf_grid_steps. The cost is the length times the factor, one product, so it is the same
    // double a caller multiplying the two itself would get.
    template <class Visit>
    void operator()(const int& cell, Visit&& visit) const {
        for (unsigned allowed = moves_[cell]; allowed != 0; allowed &= allowed - 1) {
            const int d = std::countr_zero(allowed);
            const int to = cell + offsets_[d];
            visit(to, lengths_[d] * factors_[static_cast<std::size_t>(to)], d);
        }
    }

private:
    std::vector<std::uint8_t> moves_;                  // per cell: bit d set when step d is allowed
    std::vector<double> factors_;                      // per cell: cost of entering it per length
    std::array<int, pf_grid_steps.size()> offsets_{};  // cell index change of step d
    std::array<double, pf_grid_steps.size()> lengths_{};
};

}  // namespace veldra

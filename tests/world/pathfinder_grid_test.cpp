// Searches on random grids: both node-map policies must give identical results, paths must
// chain from the start, and with an admissible estimate on a 4-connected grid the cost must be
// the true shortest distance. Also the grid neighbour rules themselves, with and without costs
// per cell.

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <queue>
#include <random>
#include <vector>

#include "world/pathfinder.h"

namespace veldra {
namespace {

struct RandomGrid {
    RandomGrid(int width_, int height_, int blocked_percent, std::uint32_t seed)
        : width(width_), height(height_), rng(seed), open(width_ * height_) {
        for (auto& cell : open)
            cell = rng() % 100 >= static_cast<unsigned>(blocked_percent);
    }

    int random_open_cell() {
        for (;;) {
            const int cell = static_cast<int>(rng() % open.size());
            if (open[cell])
                return cell;
        }
    }

    PfGridNeighbors neighbors(PfGridMoves moves) const {
        return PfGridNeighbors(width, height, moves, [this](int cell) { return open[cell] != 0; });
    }

    // Makes about one cell in `percent` cost `factor` times as much to enter.
    void weigh(int percent, double factor) {
        factors.assign(open.size(), 1.0);
        for (auto& cell_factor : factors) {
            if (rng() % 100 < static_cast<unsigned>(percent))
                cell_factor = factor;
        }
    }

    PfGridWeightedNeighbors weighted_neighbors(PfGridMoves moves) const {
        return PfGridWeightedNeighbors(
            width, height, moves, [this](int cell) { return open[cell] != 0; },
            [this](int cell) { return factors[cell]; });
    }

    int width;
    int height;
    std::mt19937 rng;
    std::vector<std::uint8_t> open;
    std::vector<double> factors;  // set by weigh()
};

using NeighborFunction = Pathfinder<int, int>::NeighborFunction;

// Lets one long-lived pathfinder search one grid after another, as a creature's would.
NeighborFunction forward_to(const PfGridNeighbors* const* current) {
    return
        [current](const int& cell, auto& out, auto& pool) { return (**current)(cell, out, pool); };
}

template <int width>
double euclidean(const int& a, const int& b) {
    return pf_grid_euclidean(width, a, b);
}

// The path runs from the first step out of `start`, each element starting where the previous
// one ended, each step being the grid step its data names. Returns the path's cost.
template <class Path>
double expect_chain_and_sum_cost(const Path& path, int start, int width) {
    double cost = 0;
    int previous = start;
    for (const auto* element : path) {
        EXPECT_EQ(element->previous_node, previous);
        const PfGridStep step = pf_grid_steps.at(element->data);
        EXPECT_EQ(element->node, previous + step.dy * width + step.dx);
        cost += pf_grid_step_cost(element->data);
        previous = element->node;
    }
    return cost;
}

// Plain Dijkstra over the same neighbour function; -1 when unreachable.
double dijkstra_distance(const PfGridNeighbors& neighbors, int cell_count, int start, int goal) {
    std::vector<double> distance(cell_count, -1);
    using Item = std::pair<double, int>;
    std::priority_queue<Item, std::vector<Item>, std::greater<>> queue;
    std::vector<PfNeighbor<int, int>*> out;
    StructPool<PfNeighbor<int, int>> pool;
    distance[start] = 0;
    queue.push({0, start});
    while (!queue.empty()) {
        auto [d, cell] = queue.top();
        queue.pop();
        if (d > distance[cell])
            continue;
        if (cell == goal)
            return d;
        pool.expire_all();
        const int count = neighbors(cell, out, pool);
        for (int i = 0; i < count; ++i) {
            const double nd = d + out[i]->cost;
            if (distance[out[i]->node] < 0 || nd < distance[out[i]->node]) {
                distance[out[i]->node] = nd;
                queue.push({nd, out[i]->node});
            }
        }
    }
    return -1;
}

struct Outcome {
    bool found;
    int steps;
    std::vector<PfPathElement<int, int>> path;
};

template <class Finder>
Outcome search(Finder& finder, int start, int goal, double bound) {
    finder.options().max_estimation = bound;
    Outcome outcome{};
    for (const auto* element : *finder.find_path(start, goal, false)) {
        outcome.path.push_back(*element);
    }
    outcome.found = finder.path_is_found();
    outcome.steps = finder.num_steps_performed();
    return outcome;
}

void expect_same(const Outcome& a, const Outcome& b) {
    EXPECT_EQ(a.found, b.found);
    EXPECT_EQ(a.steps, b.steps);
    ASSERT_EQ(a.path.size(), b.path.size());
    for (std::size_t i = 0; i < a.path.size(); ++i) {
        EXPECT_EQ(a.path[i].node, b.path[i].node);
        EXPECT_EQ(a.path[i].previous_node, b.path[i].previous_node);
        EXPECT_EQ(a.path[i].data, b.path[i].data);
    }
}

TEST(PathfinderGridTest, HashAndDensePoliciesAgreeOnRandomGrids) {
    constexpr int size = 24;
    const PfGridNeighbors* current = nullptr;
    // The dense pathfinders live across all grids; the narrow stamps wrap every 255 searches,
    // which must be invisible.
    Pathfinder<int, int, PfDenseNodeMap<int, int>> dense(&euclidean<size>, forward_to(&current));
    using NarrowMap = PfDenseNodeMap<int, int, PfIdentityIndex, std::uint8_t>;
    Pathfinder<int, int, NarrowMap> narrow(&euclidean<size>, forward_to(&current));
    int found = 0;
    int partial = 0;
    for (std::uint32_t seed = 1; seed <= 40; ++seed) {
        RandomGrid grid(size, size, 30, seed);
        const PfGridNeighbors neighbors = grid.neighbors(PfGridMoves::with_diagonals);
        current = &neighbors;
        for (int pair = 0; pair < 10; ++pair) {
            const int start = grid.random_open_cell();
            const int goal = grid.random_open_cell();
            // Unbounded, then a bound that often stops the search short of the goal.
            for (double bound : {-1.0, 1.1 * pf_grid_euclidean(size, start, goal)}) {
                SCOPED_TRACE(testing::Message() << "seed " << seed << " pair " << pair);
                Pathfinder<int, int> hash(&euclidean<size>, neighbors);
                const Outcome expected = search(hash, start, goal, bound);
                expect_same(search(dense, start, goal, bound), expected);
                expect_same(search(narrow, start, goal, bound), expected);

                expect_chain_and_sum_cost(hash.get_path(), start, size);
                const int end = expected.path.empty() ? start : expected.path.back().node;
                if (expected.found) {
                    EXPECT_EQ(end, goal);
                    ++found;
                } else if (end != start) {
                    ++partial;
                }
            }
        }
    }
    // Both outcomes must have been exercised for the comparison to mean anything.
    EXPECT_GT(found, 100);
    EXPECT_GT(partial, 50);
}

TEST(PathfinderGridTest, InlinedGridCallablesAndBucketsGiveTheSameSearches) {
    // The grid's own callable types take other code paths (the visiting neighbour walk, the
    // table heuristic, the bucket open set); each search must still be step for step the one
    // the std::function form makes.
    constexpr int width = 29;
    constexpr int height = 17;
    int partial = 0;
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        RandomGrid grid(width, height, 25, seed);
        for (PfGridMoves moves : {PfGridMoves::with_diagonals, PfGridMoves::orthogonal}) {
            const PfGridNeighbors neighbors = grid.neighbors(moves);
            Pathfinder<int, int> generic(&euclidean<width>, neighbors);
            Pathfinder<int, int, PfDenseNodeMap<int, int>, PfGridEuclidean, PfGridNeighbors,
                       PfBucketOpenSet<int>>
                inlined(PfGridEuclidean(width, height), neighbors);
            // Few narrow buckets, so most entries go through the respreading of the last one.
            Pathfinder<int, int, PfHashNodeMap<int, int>, PfGridEuclidean, PfGridNeighbors,
                       PfBucketOpenSet<int>>
                respread(PfGridEuclidean(width, height), neighbors, {}, {},
                         PfBucketOpenSet<int>(0.01, 8));
            for (int pair = 0; pair < 10; ++pair) {
                const int start = grid.random_open_cell();
                const int goal = grid.random_open_cell();
                for (double bound : {-1.0, 1.05 * pf_grid_euclidean(width, start, goal)}) {
                    SCOPED_TRACE(testing::Message() << "seed " << seed << " pair " << pair);
                    const Outcome expected = search(generic, start, goal, bound);
                    expect_same(search(inlined, start, goal, bound), expected);
                    expect_same(search(respread, start, goal, bound), expected);
                    partial += !expected.found && !expected.path.empty();
                }
            }
        }
    }
    EXPECT_GT(partial, 20);
}

TEST(PathfinderGridTest, EuclideanObjectMatchesTheDirectFormula) {
    // Not square, so swapped rows and columns would show. The small grid reads its square
    // roots from the table, the large one is past the table's size and computes them.
    struct Size {
        int width;
        int height;
    };
    for (const Size size : {Size{7, 5}, Size{300, 41}}) {
        const PfGridEuclidean euclidean(size.width, size.height);
        const int cells = size.width * size.height;
        const int stride = cells > 1000 ? 97 : 1;
        for (int a = 0; a < cells; a += stride) {
            for (int b = 0; b < cells; b += stride) {
                ASSERT_EQ(euclidean(a, b), pf_grid_euclidean(size.width, a, b))
                    << size.width << " wide, " << a << " to " << b;
            }
        }
        // The far corners: the largest distance either way of computing it sees.
        EXPECT_EQ(euclidean(0, cells - 1), pf_grid_euclidean(size.width, 0, cells - 1));
        EXPECT_EQ(euclidean(size.width - 1, cells - size.width),
                  pf_grid_euclidean(size.width, size.width - 1, cells - size.width));
    }
}

TEST(PathfinderGridTest, VisitingAndPoolFormsListTheSameNeighbours) {
    RandomGrid grid(11, 9, 30, 7);
    std::vector<PfNeighbor<int, int>*> out;
    StructPool<PfNeighbor<int, int>> pool;
    for (PfGridMoves moves : {PfGridMoves::with_diagonals, PfGridMoves::orthogonal}) {
        const PfGridNeighbors neighbors = grid.neighbors(moves);
        for (int cell = 0; cell < 11 * 9; ++cell) {
            pool.expire_all();
            const int count = neighbors(cell, out, pool);
            int visited = 0;
            neighbors(cell, [&](const int& to, double cost, const int& step) {
                ASSERT_LT(visited, count) << "cell " << cell;
                EXPECT_EQ(to, out[visited]->node) << "cell " << cell;
                EXPECT_EQ(cost, out[visited]->cost) << "cell " << cell;
                EXPECT_EQ(step, out[visited]->data) << "cell " << cell;
                ++visited;
            });
            EXPECT_EQ(visited, count) << "cell " << cell;
        }
    }
}

TEST(PathfinderGridTest, WeightedStepsCostTheirLengthTimesTheFactorOfTheCellEntered) {
    RandomGrid grid(13, 8, 25, 3);
    grid.weigh(40, 1.5);
    grid.factors[5] = 2.75;  // a factor that is not the common one
    std::vector<PfNeighbor<int, int>*> out;
    StructPool<PfNeighbor<int, int>> pool;
    int weighted = 0;
    for (PfGridMoves moves : {PfGridMoves::with_diagonals, PfGridMoves::orthogonal}) {
        const PfGridNeighbors plain = grid.neighbors(moves);
        const PfGridWeightedNeighbors neighbors = grid.weighted_neighbors(moves);
        for (int cell = 0; cell < 13 * 8; ++cell) {
            pool.expire_all();
            const int count = plain(cell, out, pool);
            int visited = 0;
            // The same steps in the same order; only the costs differ, and by the factor of
            // the cell stepped into, never the one left.
            neighbors(cell, [&](const int& to, double cost, const int& step) {
                ASSERT_LT(visited, count) << "cell " << cell;
                EXPECT_EQ(to, out[visited]->node) << "cell " << cell;
                EXPECT_EQ(step, out[visited]->data) << "cell " << cell;
                EXPECT_EQ(cost, out[visited]->cost * grid.factors[to]) << "cell " << cell;
                weighted += grid.factors[to] != 1.0;
                ++visited;
            });
            EXPECT_EQ(visited, count) << "cell " << cell;
        }
    }
    EXPECT_GT(weighted, 50);
}

TEST(PathfinderGridTest, WeightedGridCallablesGiveTheSearchesOfAPlainCallback) {
    // What a caller writing its own callback would do: walk the eight steps, skip cut corners,
    // charge the length times the factor of the cell entered. The weighted grid callables and
    // the buckets must give the very same searches, step for step, costs to the last bit.
    constexpr int width = 31;
    constexpr int height = 19;
    int partial = 0;
    int found = 0;
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        RandomGrid grid(width, height, 20, seed);
        grid.weigh(30, 1.5);
        auto open = [&](int cx, int cy) {
            return cx >= 0 && cy >= 0 && cx < width && cy < height && grid.open[cy * width + cx];
        };
        Pathfinder<int, int, PfDenseNodeMap<int, int>> plain(
            &euclidean<width>, [&](const int& cell, auto& out, auto& pool) {
                const int cx = cell % width;
                const int cy = cell / width;
                int count = 0;
                for (int d = 0; d < 8; ++d) {
                    const auto [dx, dy] = pf_grid_steps[d];
                    if (!open(cx + dx, cy + dy) ||
                        (d >= 4 && !(open(cx + dx, cy) && open(cx, cy + dy))))
                        continue;
                    const int to = cell + dy * width + dx;
                    count = pf_add_neighbor(out, count, pool, to,
                                            pf_grid_step_cost(d) * grid.factors[to], d);
                }
                return count;
            });
        Pathfinder<int, int, PfDenseNodeMap<int, int>, PfGridEuclidean, PfGridWeightedNeighbors,
                   PfBucketOpenSet<int>>
            inlined(PfGridEuclidean(width, height),
                    grid.weighted_neighbors(PfGridMoves::with_diagonals));
        for (int pair = 0; pair < 15; ++pair) {
            const int start = grid.random_open_cell();
            const int goal = grid.random_open_cell();
            for (double bound : {-1.0, 1.05 * pf_grid_euclidean(width, start, goal)}) {
                SCOPED_TRACE(testing::Message() << "seed " << seed << " pair " << pair);
                const Outcome expected = search(plain, start, goal, bound);
                expect_same(search(inlined, start, goal, bound), expected);
                found += expected.found;
                partial += !expected.found && !expected.path.empty();
            }
        }
    }
    EXPECT_GT(found, 100);
    EXPECT_GT(partial, 20);
}

TEST(PathfinderGridTest, CostOnFourConnectedGridsIsTheShortestDistance) {
    constexpr int size = 32;
    const PfGridNeighbors* current = nullptr;
    Pathfinder<int, int, PfDenseNodeMap<int, int>> finder(&euclidean<size>, forward_to(&current));
    int reachable = 0;
    for (std::uint32_t seed = 100; seed < 130; ++seed) {
        RandomGrid grid(size, size, 25, seed);
        const PfGridNeighbors neighbors = grid.neighbors(PfGridMoves::orthogonal);
        current = &neighbors;
        for (int pair = 0; pair < 20; ++pair) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " pair " << pair);
            const int start = grid.random_open_cell();
            const int goal = grid.random_open_cell();
            const double shortest = dijkstra_distance(neighbors, size * size, start, goal);
            ASSERT_EQ(finder.find_path(start, goal, true) != nullptr, shortest >= 0);
            if (shortest < 0)
                continue;
            ++reachable;
            EXPECT_DOUBLE_EQ(expect_chain_and_sum_cost(finder.get_path(), start, size), shortest);
        }
    }
    EXPECT_GT(reachable, 300);
}

TEST(PathfinderGridTest, DiagonalsNeverCutABlockedCorner) {
    // . # .
    // . . .
    // . . #
    RandomGrid grid(3, 3, 0, 1);
    grid.open[1] = 0;
    grid.open[8] = 0;
    const PfGridNeighbors neighbors = grid.neighbors(PfGridMoves::with_diagonals);
    std::vector<PfNeighbor<int, int>*> out;
    StructPool<PfNeighbor<int, int>> pool;
    auto listed = [&](int cell) {
        std::vector<int> cells;
        const int count = neighbors(cell, out, pool);
        for (int i = 0; i < count; ++i)
            cells.push_back(out[i]->node);
        return cells;
    };
    EXPECT_EQ(listed(4), (std::vector<int>{5, 7, 3, 6}));  // 0 and 2 touch 1; 8 is blocked
    EXPECT_EQ(listed(0), (std::vector<int>{3}));           // 4 would cut past 1
    EXPECT_EQ(listed(5), (std::vector<int>{4, 2}));        // 8 blocked; 7 and 1 cut corners
    EXPECT_EQ(out[1]->cost, 1.0);
    EXPECT_EQ(listed(3), (std::vector<int>{4, 6, 0, 7}));
    EXPECT_DOUBLE_EQ(out[3]->cost, std::numbers::sqrt2);
    EXPECT_EQ(out[3]->data, 4);
    EXPECT_TRUE(listed(1).empty());  // nothing leaves a blocked cell
}

}  // namespace
}  // namespace veldra

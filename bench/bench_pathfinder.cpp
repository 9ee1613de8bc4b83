// Microseconds per A* search on 64 x 64 grids with 20 % random obstacles, for the same 200
// start/goal pairs (both traversable; a few may be unreachable): our pathfinder with the
// dense-grid node map, with the hash node map, and Boost.Graph's astar_search on an adjacency
// list built once from the same neighbour function. 8-connected (diagonals cost sqrt(2), no
// corner cutting) and 4-connected, euclidean estimate in both. Before timing, every pair is
// searched once by all three and the path costs compared (see verify); the summary goes to
// stderr and the program fails if a search is wrong.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/astar_search.hpp>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "world/pathfinder.h"

namespace {

using namespace veldra;

constexpr int grid_size = 64;
constexpr int blocked_percent = 20;
constexpr int pair_count = 200;

using BoostGraph =
    boost::adjacency_list<boost::vecS, boost::vecS, boost::directedS, boost::no_property,
                          boost::property<boost::edge_weight_t, double>>;
using Vertex = BoostGraph::vertex_descriptor;

struct Pair {
    int start;
    int goal;
};

// 20 % of the cells blocked, drawn from the raw generator output so every platform agrees.
std::vector<std::uint8_t> random_open_cells(std::mt19937& rng) {
    std::vector<std::uint8_t> open(grid_size * grid_size);
    for (auto& cell : open)
        cell = rng() % 100 >= blocked_percent;
    return open;
}

// One grid, its pairs, and the Boost graph of the same neighbours, both built once.
struct Scenario {
    Scenario(PfGridMoves moves, std::uint32_t seed)
        : rng(seed),
          open(random_open_cells(rng)),
          neighbors(grid_size, grid_size, moves, [this](int cell) { return open[cell] != 0; }),
          graph(grid_size * grid_size) {
        while (pairs.size() < pair_count) {
            const int start = static_cast<int>(rng() % open.size());
            const int goal = static_cast<int>(rng() % open.size());
            if (open[start] && open[goal])
                pairs.push_back({start, goal});
        }
        std::vector<PfNeighbor<int, int>*> out;
        StructPool<PfNeighbor<int, int>> pool;
        for (int cell = 0; cell < grid_size * grid_size; ++cell) {
            pool.expire_all();
            const int count = neighbors(cell, out, pool);
            for (int i = 0; i < count; ++i) {
                boost::add_edge(cell, out[i]->node, out[i]->cost, graph);
            }
        }
    }

    std::mt19937 rng;
    std::vector<std::uint8_t> open;
    PfGridNeighbors neighbors;
    std::vector<Pair> pairs;
    BoostGraph graph;
};

double euclidean(const int& a, const int& b) {
    return pf_grid_euclidean(grid_size, a, b);
}

// The grid's own callable types, so the heuristic and the neighbour walk are inlined.
template <class NodeMap, class OpenSet = PfBucketOpenSet<int>>
using GridPathfinder = Pathfinder<int, int, NodeMap, PfGridEuclidean, PfGridNeighbors, OpenSet>;

template <class NodeMap, class OpenSet = PfBucketOpenSet<int>>
GridPathfinder<NodeMap, OpenSet> make_pathfinder(const Scenario& scenario) {
    return GridPathfinder<NodeMap, OpenSet>(PfGridEuclidean(grid_size, grid_size),
                                            scenario.neighbors);
}

// The default std::function form with the same callables, as a caller with lambdas gets it.
Pathfinder<int, int, PfDenseNodeMap<int, int>> make_function_pathfinder(const Scenario& scenario) {
    return Pathfinder<int, int, PfDenseNodeMap<int, int>>(&euclidean, scenario.neighbors);
}

// The cells of the found path, start first; empty when the goal was not reached.
template <class Finder>
std::vector<int> our_cells(Finder& finder, const Pair& pair) {
    std::vector<int> cells;
    const auto* path = finder.find_path(pair.start, pair.goal, true);
    if (!path)
        return cells;
    cells.push_back(pair.start);
    for (const auto* element : *path)
        cells.push_back(element->node);
    return cells;
}

// Cost of a path of our_cells on the benchmark grid, or -1 when there was none.
double cost_of(const std::vector<int>& cells) {
    if (cells.empty())
        return -1;
    double cost = 0;
    for (std::size_t i = 1; i < cells.size(); ++i) {
        const bool diagonal = cells[i] % grid_size != cells[i - 1] % grid_size &&
                              cells[i] / grid_size != cells[i - 1] / grid_size;
        cost += pf_grid_step_cost(diagonal ? 4 : 0);
    }
    return cost;
}

struct FoundGoal {};

class GoalVisitor : public boost::default_astar_visitor {
public:
    GoalVisitor(Vertex goal, long* examined) : goal_(goal), examined_(examined) {}
    void examine_vertex(Vertex u, const BoostGraph&) const {
        ++*examined_;
        if (u == goal_)
            throw FoundGoal{};
    }

private:
    Vertex goal_;
    long* examined_;  // owned by the BoostSearch
};

class EuclideanToGoal : public boost::astar_heuristic<BoostGraph, double> {
public:
    explicit EuclideanToGoal(Vertex goal) : goal_(static_cast<int>(goal)) {}
    double operator()(Vertex v) const { return euclidean(static_cast<int>(v), goal_); }

private:
    int goal_;
};

// Boost's search. Stops at the goal through the visitor's exception, the documented way. The
// cost comes from a search with caller-owned property maps, which each call reinitialises but
// does not allocate.
class BoostSearch {
public:
    explicit BoostSearch(const Scenario& scenario)
        : graph_(scenario.graph),
          predecessor_(boost::num_vertices(graph_)),
          distance_(predecessor_.size()),
          rank_(predecessor_.size()),
          color_(predecessor_.size()) {}

    // Cost of the path found, or -1 when the goal was not reached.
    double cost(const Pair& pair) {
        const auto goal = static_cast<Vertex>(pair.goal);
        try {
            boost::astar_search(graph_, static_cast<Vertex>(pair.start), EuclideanToGoal(goal),
                                boost::visitor(GoalVisitor(goal, &examined_))
                                    .predecessor_map(predecessor_.data())
                                    .distance_map(distance_.data())
                                    .rank_map(rank_.data())
                                    .color_map(color_.data()));
        } catch (const FoundGoal&) {
            return distance_[goal];
        }
        return -1;
    }

    // The timed form: Boost's default named parameters, where it makes its own property maps
    // (and no predecessor map). Measured faster than handing it the caller-owned maps above, so
    // that is what Boost is timed with. Whether the goal was reached.
    bool reaches(const Pair& pair) {
        const auto goal = static_cast<Vertex>(pair.goal);
        try {
            boost::astar_search(graph_, static_cast<Vertex>(pair.start), EuclideanToGoal(goal),
                                boost::visitor(GoalVisitor(goal, &examined_)));
        } catch (const FoundGoal&) {
            return true;
        }
        return false;
    }

    // Vertices taken from the queue over all searches so far.
    long examined() const { return examined_; }

private:
    const BoostGraph& graph_;
    std::vector<Vertex> predecessor_;
    std::vector<double> distance_;
    std::vector<double> rank_;
    std::vector<boost::default_color_type> color_;
    long examined_ = 0;
};

// Runs every pair through all searches once. Boost's cost is the optimum (it lowers
// priorities). Ours must reach the same pairs, all our variants must give the same path, and
// ours may exceed the optimum but never undercut it: a node waiting in our open set keeps its
// first priority, so a cheaper route found meanwhile can be taken too late. Returns false on an
// error.
bool verify(const Scenario& scenario, const char* name) {
    auto dense = make_pathfinder<PfDenseNodeMap<int, int>>(scenario);
    auto hash = make_pathfinder<PfHashNodeMap<int, int>>(scenario);
    auto function_form = make_function_pathfinder(scenario);
    BoostSearch boost_search(scenario);
    BoostSearch boost_timed(scenario);  // the form that is timed, which gives no cost
    int errors = 0;
    int unreachable = 0;
    int costlier = 0;
    double worst_excess = 0;
    long steps = 0;
    for (const Pair& pair : scenario.pairs) {
        const double optimum = boost_search.cost(pair);
        const std::vector<int> dense_cells = our_cells(dense, pair);
        const std::vector<int> hash_cells = our_cells(hash, pair);
        const bool same_paths = dense_cells == hash_cells &&
                                dense_cells == our_cells(function_form, pair) &&
                                dense.num_steps_performed() == hash.num_steps_performed() &&
                                dense.num_steps_performed() == function_form.num_steps_performed();
        const double dense_cost = cost_of(dense_cells);
        const double hash_cost = cost_of(hash_cells);
        steps += dense.num_steps_performed();
        if (optimum < 0)
            ++unreachable;
        const bool reach_agrees =
            (dense_cost < 0) == (optimum < 0) && boost_timed.reaches(pair) == (optimum >= 0);
        if (!same_paths || !reach_agrees || dense_cost < optimum - 1e-9) {
            ++errors;
            std::fprintf(stderr, "%s: ERROR pair %d -> %d: dense %.6f hash %.6f boost %.6f\n", name,
                         pair.start, pair.goal, dense_cost, hash_cost, optimum);
        } else if (dense_cost > optimum + 1e-9) {
            ++costlier;
            worst_excess = std::max(worst_excess, dense_cost - optimum);
        }
    }
    std::fprintf(stderr,
                 "%s: %d pairs, %d unreachable, %d errors; equal cost for %d, costlier for %d "
                 "(worst +%.3f); %.1f steps per search (boost: %.1f)\n",
                 name, pair_count, unreachable, errors, pair_count - costlier - errors, costlier,
                 worst_excess, static_cast<double>(steps) / pair_count,
                 static_cast<double>(boost_search.examined()) / pair_count);
    return errors == 0;
}

// Reports time per search (seconds, shown in us) besides time per pass over all pairs.
void count_searches(benchmark::State& state) {
    state.counters["per_search"] = benchmark::Counter(
        pair_count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <class MakeFinder>
void register_ours(const Scenario& scenario, const std::string& name, MakeFinder make_finder) {
    benchmark::RegisterBenchmark(name.c_str(), [&scenario, make_finder](benchmark::State& state) {
        auto finder = make_finder(scenario);
        for (auto _ : state) {
            for (const Pair& pair : scenario.pairs) {
                benchmark::DoNotOptimize(finder.find_path(pair.start, pair.goal, true));
            }
        }
        count_searches(state);
    })->Unit(benchmark::kMicrosecond);
}

void register_boost(const Scenario& scenario, const std::string& name) {
    benchmark::RegisterBenchmark(name.c_str(), [&scenario](benchmark::State& state) {
        BoostSearch search(scenario);
        for (auto _ : state) {
            for (const Pair& pair : scenario.pairs)
                benchmark::DoNotOptimize(search.reaches(pair));
        }
        count_searches(state);
    })->Unit(benchmark::kMicrosecond);
}

}  // namespace

int main(int argc, char** argv) {
    const Scenario eight(PfGridMoves::with_diagonals, 20240611);
    const Scenario four(PfGridMoves::orthogonal, 20240611);
    const bool eight_ok = verify(eight, "8-connected");
    const bool four_ok = verify(four, "4-connected");
    if (!eight_ok || !four_ok)
        return 1;
    for (const auto& [scenario, suffix] : {std::pair{&eight, "8"}, std::pair{&four, "4"}}) {
        register_ours(*scenario, std::string("dense_grid/") + suffix,
                      &make_pathfinder<PfDenseNodeMap<int, int>>);
        register_ours(*scenario, std::string("hash_map/") + suffix,
                      &make_pathfinder<PfHashNodeMap<int, int>>);
        register_ours(*scenario, std::string("dense_grid_function/") + suffix,
                      &make_function_pathfinder);
        register_boost(*scenario, std::string("boost_astar/") + suffix);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

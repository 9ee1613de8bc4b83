// Search rules on small hand-made graphs, run through both node-map policies.

#include "world/pathfinder.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <utility>
#include <vector>

namespace veldra {
namespace {

struct Step {
    int node;
    int previous_node;
    int data;
    bool operator==(const Step&) const = default;
};

// Neighbour data is from * 100 + to, so a path shows which edge reached each node.
int edge_data(int from, int to) {
    return from * 100 + to;
}

template <class NodeMap>
class PathfinderTest : public ::testing::Test {
protected:
    using Finder = Pathfinder<int, int, NodeMap>;

    void edge(int from, int to, double cost) { edges[from].push_back({to, cost}); }

    typename Finder::Heuristic heuristic() {
        return [this](const int& node, const int&) {
            auto it = estimates.find(node);
            return it == estimates.end() ? 0.0 : it->second;
        };
    }

    typename Finder::NeighborFunction neighbors() {
        return [this](const int& node, auto& out, auto& pool) {
            ++expansions[node];
            int count = 0;
            for (auto [to, cost] : edges[node]) {
                count = pf_add_neighbor(out, count, pool, to, cost, edge_data(node, to));
            }
            return count;
        };
    }

    Finder make(PathfinderOptions options = {}) {
        return Finder(heuristic(), neighbors(), options);
    }

    static std::vector<Step> steps_of(const typename Finder::Path& path) {
        std::vector<Step> steps;
        for (const auto* e : path)
            steps.push_back({e->node, e->previous_node, e->data});
        return steps;
    }

    std::map<int, std::vector<std::pair<int, double>>> edges;
    std::map<int, double> estimates;  // to whatever goal the test uses; absent means 0
    std::map<int, int> expansions;
};

using Policies = ::testing::Types<PfHashNodeMap<int, int>, PfDenseNodeMap<int, int>>;
TYPED_TEST_SUITE(PathfinderTest, Policies);

TYPED_TEST(PathfinderTest, StartEqualToGoalIsFoundOnTheFirstStepWithAnEmptyPath) {
    this->edge(3, 4, 1);
    auto finder = this->make();
    finder.start(3, 3);
    EXPECT_FALSE(finder.is_done());
    finder.step();
    EXPECT_TRUE(finder.is_done());
    EXPECT_TRUE(finder.path_is_found());
    EXPECT_EQ(finder.num_steps_performed(), 1);
    EXPECT_TRUE(finder.construct_path());
    EXPECT_TRUE(finder.get_path().empty());
    EXPECT_TRUE(this->expansions.empty());
}

TYPED_TEST(PathfinderTest, BoundBelowTheStartEstimateEndsOnTheFirstStep) {
    this->edge(0, 1, 1);
    this->estimates = {{0, 10}};
    auto finder = this->make(PathfinderOptions{5});
    finder.start(0, 1);
    finder.step();
    EXPECT_TRUE(finder.is_done());
    EXPECT_FALSE(finder.path_is_found());
    EXPECT_EQ(finder.num_steps_performed(), 1);

    auto partial = find_path<int, int, TypeParam>(0, 1, this->heuristic(), this->neighbors(),
                                                  PathfinderOptions{5}, false);
    ASSERT_TRUE(partial.has_value());
    EXPECT_TRUE(partial->empty());
    const auto complete =
        find_path<int, int, TypeParam>(0, 1, this->heuristic(), this->neighbors(), {5}, true);
    EXPECT_FALSE(complete.has_value());
}

TYPED_TEST(PathfinderTest, BoundReachedPartwayGivesThePathToTheNearestExpandedNode) {
    // A line 0-1-2-3-4 with an admissible estimate: priorities 2, 2.5, 3, 3.5 for nodes 0..3.
    for (int n = 0; n < 4; ++n)
        this->edge(n, n + 1, 1);
    for (int n = 0; n <= 4; ++n)
        this->estimates[n] = 0.5 * (4 - n);
    auto finder = this->make(PathfinderOptions{3.2});
    finder.start(0, 4);
    EXPECT_FALSE(finder.finish());
    EXPECT_EQ(finder.num_steps_performed(), 4);  // node 3 is taken, then the bound ends it
    EXPECT_FALSE(finder.construct_path());
    // Node 3 was reached but never expanded; the substitute target is an expanded node.
    EXPECT_EQ(this->steps_of(finder.get_path()),
              (std::vector<Step>{{1, 0, edge_data(0, 1)}, {2, 1, edge_data(1, 2)}}));
}

TYPED_TEST(PathfinderTest, FinishOnAFinishedSearchChangesNothing) {
    this->edge(0, 1, 1);
    this->edge(1, 2, 1);
    auto finder = this->make();
    finder.start(0, 2);
    EXPECT_TRUE(finder.finish());
    EXPECT_EQ(finder.num_steps_performed(), 3);
    EXPECT_TRUE(finder.finish());
    finder.step();
    EXPECT_EQ(finder.num_steps_performed(), 3);
    EXPECT_EQ(this->expansions.size(), 2u);
}

TYPED_TEST(PathfinderTest, UnreachableGoalExhaustsTheOpenSetAndTiesKeepTheFirstEntry) {
    // 1 and 2 look equally near the unreachable goal 9; whichever is listed first wins.
    for (bool one_first : {true, false}) {
        this->edges.clear();
        this->edge(0, one_first ? 1 : 2, 1);
        this->edge(0, one_first ? 2 : 1, 1);
        this->edge(1, 3, 1);
        this->edge(2, 4, 1);
        this->estimates = {{0, 5}, {1, 1}, {2, 1}, {3, 7}, {4, 7}};
        auto finder = this->make();
        finder.start(0, 9);
        EXPECT_FALSE(finder.finish());
        EXPECT_EQ(finder.num_steps_performed(), 5);
        EXPECT_FALSE(finder.construct_path());
        const int kept = one_first ? 1 : 2;
        EXPECT_EQ(this->steps_of(finder.get_path()),
                  (std::vector<Step>{{kept, 0, edge_data(0, kept)}}));

        auto partial =
            find_path<int, int, TypeParam>(0, 9, this->heuristic(), this->neighbors(), {}, false);
        ASSERT_TRUE(partial.has_value());
        ASSERT_EQ(partial->size(), 1u);
        EXPECT_EQ((*partial)[0].node, kept);
    }
}

TYPED_TEST(PathfinderTest, OverestimatingHeuristicGivesThePathInCameFrom) {
    // Cheapest is 0-2-3-9 (cost 3); the estimate on 2 and 3 hides it behind 0-1-9 (cost 6).
    this->edge(0, 1, 1);
    this->edge(0, 2, 1);
    this->edge(1, 9, 5);
    this->edge(2, 3, 1);
    this->edge(3, 9, 1);
    this->estimates = {{2, 10}, {3, 10}};
    auto path =
        find_path<int, int, TypeParam>(0, 9, this->heuristic(), this->neighbors(), {}, true);
    ASSERT_TRUE(path.has_value());
    ASSERT_EQ(path->size(), 2u);
    EXPECT_EQ((*path)[0].node, 1);
    EXPECT_EQ((*path)[1].data, edge_data(1, 9));
}

TYPED_TEST(PathfinderTest, CheaperRouteRecordedWhileWaitingKeepsThePriorityButWinsThePath) {
    // 9 is first queued at priority 10 via 0; 0-1-9 lowers its g to 2 but not its priority.
    this->edge(0, 9, 10);
    this->edge(0, 1, 1);
    this->edge(1, 9, 1);
    auto finder = this->make();
    finder.start(0, 9);
    EXPECT_TRUE(finder.finish());
    EXPECT_EQ(finder.num_steps_performed(), 3);
    finder.construct_path();
    EXPECT_EQ(this->steps_of(finder.get_path()),
              (std::vector<Step>{{1, 0, edge_data(0, 1)}, {9, 1, edge_data(1, 9)}}));
}

TYPED_TEST(PathfinderTest, ExpandedNodeReachedMoreCheaplyIsExpandedAgain) {
    // 1 is expanded first (g 5); 2 then reaches it for 2 and it goes back into the open set.
    this->edge(0, 1, 5);
    this->edge(0, 2, 1);
    this->edge(2, 1, 1);
    this->edge(1, 9, 10);
    this->estimates = {{2, 6}};
    auto finder = this->make();
    finder.start(0, 9);
    EXPECT_TRUE(finder.finish());
    EXPECT_EQ(this->expansions[1], 2);
    finder.construct_path();
    EXPECT_EQ(this->steps_of(finder.get_path()),
              (std::vector<Step>{{2, 0, edge_data(0, 2)}, {1, 2, edge_data(2, 1)}, {9, 1, 109}}));
}

TYPED_TEST(PathfinderTest, InfiniteStepCostReachesANewNodeButNeverImprovesAKnownOne) {
    // 9 is first reached for an infinite cost and queued; the second infinite route, through 1,
    // is no cheaper, so the path keeps the first one.
    const double infinity = std::numeric_limits<double>::infinity();
    this->edge(0, 9, infinity);
    this->edge(0, 1, 1);
    this->edge(1, 9, infinity);
    auto finder = this->make();
    finder.start(0, 9);
    EXPECT_TRUE(finder.finish());
    EXPECT_EQ(finder.num_steps_performed(), 3);
    finder.construct_path();
    EXPECT_EQ(this->steps_of(finder.get_path()), (std::vector<Step>{{9, 0, edge_data(0, 9)}}));
}

TYPED_TEST(PathfinderTest, RestartForgetsThePreviousSearch) {
    // The first search ends with 1 still waiting in the open set with g 5; a stale flag or
    // g_score would stop the second search from queueing it again.
    this->edge(0, 2, 1);
    this->edge(0, 1, 5);
    auto finder = this->make();
    finder.start(0, 2);
    EXPECT_TRUE(finder.finish());
    finder.construct_path();
    EXPECT_EQ(this->steps_of(finder.get_path()), (std::vector<Step>{{2, 0, edge_data(0, 2)}}));

    finder.start(0, 1);
    EXPECT_TRUE(finder.get_path().empty());
    EXPECT_TRUE(finder.finish());
    EXPECT_EQ(finder.num_steps_performed(), 3);
    finder.construct_path();
    EXPECT_EQ(this->steps_of(finder.get_path()), (std::vector<Step>{{1, 0, edge_data(0, 1)}}));

    finder.start(7, 1);  // 7 has no neighbours
    EXPECT_FALSE(finder.finish());
    EXPECT_EQ(finder.num_steps_performed(), 1);
    EXPECT_FALSE(finder.construct_path());
    EXPECT_TRUE(finder.get_path().empty());
}

}  // namespace
}  // namespace veldra

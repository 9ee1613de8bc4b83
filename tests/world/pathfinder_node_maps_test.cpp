// Node maps on their own: entries vanish on clear, iteration follows insertion order.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include "world/pathfinder.h"

namespace veldra {
namespace {

template <class Map>
std::vector<double> g_scores_in_order(const Map& map) {
    std::vector<double> scores;
    map.for_each_entry([&](const auto& entry) { scores.push_back(entry.g_score); });
    return scores;
}

template <class Map>
class NodeMapTest : public ::testing::Test {};

using Maps = ::testing::Types<PfHashNodeMap<int, int>, PfDenseNodeMap<int, int>>;
TYPED_TEST_SUITE(NodeMapTest, Maps);

TYPED_TEST(NodeMapTest, IteratesInInsertionOrderAndForgetsOnClear) {
    TypeParam map;
    map.clear();
    // Dense slots beyond the initial size appear on demand; order is not index order.
    for (int node : {40, 3, 17, 0})
        map.insert(node).g_score = node;
    EXPECT_EQ(map.size(), 4u);
    EXPECT_EQ(g_scores_in_order(map), (std::vector<double>{40, 3, 17, 0}));
    ASSERT_NE(map.find(17), nullptr);
    EXPECT_EQ(map.find(17)->g_score, 17);
    EXPECT_EQ(map.find(18), nullptr);

    map.clear();
    EXPECT_EQ(map.size(), 0u);
    EXPECT_EQ(map.find(40), nullptr);
    EXPECT_TRUE(g_scores_in_order(map).empty());
    EXPECT_FALSE(map.insert(3).in_open_set);  // a re-inserted node starts fresh
}

TYPED_TEST(NodeMapTest, FindOrInsertMakesAnEntryOnlyForANewNode) {
    TypeParam map;
    map.clear();
    map.insert(7).g_score = 2;
    const auto [existing, made_existing] = map.find_or_insert(7);
    EXPECT_FALSE(made_existing);
    EXPECT_EQ(existing, map.find(7));
    EXPECT_EQ(existing->g_score, 2);

    const auto [fresh, made_fresh] = map.find_or_insert(300);
    ASSERT_TRUE(made_fresh);
    EXPECT_FALSE(fresh->has_came_from);
    fresh->g_score = 5;
    EXPECT_EQ(map.find(300), fresh);
    EXPECT_EQ(g_scores_in_order(map), (std::vector<double>{2, 5}));

    map.clear();
    EXPECT_TRUE(map.find_or_insert(7).second);  // a cleared node is new again
}

TYPED_TEST(NodeMapTest, CostLookupGivesNaNForEveryNodeNotReachedInThisSearch) {
    TypeParam map;
    map.clear();
    map.insert(4).g_score = 2.5;
    EXPECT_EQ(map.g_score_or_nan(4), 2.5);
    EXPECT_TRUE(std::isnan(map.g_score_or_nan(5)));
    EXPECT_TRUE(std::isnan(map.g_score_or_nan(100000)));  // past every dense slot
    EXPECT_EQ(map.find(100000), nullptr);                 // and the lookup made none
    map.clear();
    EXPECT_TRUE(std::isnan(map.g_score_or_nan(4)));
}

TEST(DenseNodeMapTest, StaleEntriesStayInvisibleWhenTheGenerationWraps) {
    // With 8-bit stamps the generation wraps every 255 searches; an entry made long ago must not
    // come back to life when its stamp value is reached again.
    PfDenseNodeMap<int, int, PfIdentityIndex, std::uint8_t> map;
    map.clear();
    map.insert(5).g_score = 1;
    for (int search = 0; search < 600; ++search) {
        map.clear();
        ASSERT_EQ(map.find(5), nullptr) << "search " << search;
        map.insert(search % 3);
    }
}

}  // namespace
}  // namespace veldra

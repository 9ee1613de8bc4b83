#include "runtime/flat_id_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace veldra {
namespace {

// Every key of `reference` is found with its value and nothing else is: the map must answer as
// std::unordered_map would whatever came and went before.
void expect_same(const FlatIdMap<std::string>& map,
                 const std::unordered_map<std::int64_t, std::string>& reference,
                 const std::vector<std::int64_t>& keys_ever_used) {
    ASSERT_EQ(map.size(), reference.size());
    for (std::int64_t key : keys_ever_used) {
        const auto it = reference.find(key);
        const std::string* found = map.find(key);
        if (it == reference.end()) {
            EXPECT_EQ(found, nullptr) << "key " << key;
        } else {
            ASSERT_NE(found, nullptr) << "key " << key;
            EXPECT_EQ(*found, it->second) << "key " << key;
        }
    }
}

TEST(FlatIdMapTest, AnswersAsAnUnorderedMapThroughInsertsErasesAndGrowth) {
    // Ids in the way the runtime hands them out (one after another, the old ones dying), and
    // a crowd from a small range that keeps the table near half full: long probe runs, some
    // wrapping past the end, are where shifting entries back on an erase can go wrong.
    std::mt19937 gen(3);
    FlatIdMap<std::string> map;
    std::unordered_map<std::int64_t, std::string> reference;
    std::vector<std::int64_t> keys;
    std::int64_t next_id = 100000;
    for (int step = 0; step < 100000; ++step) {
        std::int64_t key;
        switch (gen() % 4) {
            case 0:
                key = next_id++;
                break;
            case 1:
                key = static_cast<std::int64_t>(gen() % 300) - 5;
                break;
            default:
                key = keys.empty() ? next_id : keys[gen() % keys.size()];
                break;
        }
        if (std::find(keys.begin(), keys.end(), key) == keys.end())
            keys.push_back(key);
        if (gen() % 2 == 0 || map.size() > 120) {
            EXPECT_EQ(map.erase(key), reference.erase(key) == 1) << "key " << key;
        } else {
            const std::string value = std::to_string(step);
            map[key] = value;
            reference[key] = value;
        }
        if (step % 5000 == 0)
            expect_same(map, reference, keys);
    }
    expect_same(map, reference, keys);
    // And emptied again, one by one.
    for (const auto& [key, value] : std::unordered_map(reference)) {
        EXPECT_TRUE(map.erase(key));
        reference.erase(key);
    }
    expect_same(map, reference, keys);
    EXPECT_TRUE(map.empty());
}

TEST(FlatIdMapTest, MissingIdsAndNegativeOnesOnEmptyAndFilledMaps) {
    FlatIdMap<int> map;
    EXPECT_EQ(map.find(-4), nullptr);
    EXPECT_FALSE(map.erase(-4));
    map[-4] = 1;
    map[12] = 2;
    // Value-initialised when first asked for.
    EXPECT_EQ(map[28], 0);
    ASSERT_NE(map.find(-4), nullptr);
    EXPECT_EQ(*map.find(-4), 1);
    EXPECT_EQ(map.find(-3), nullptr);
    EXPECT_EQ(map.size(), 3u);
}

}  // namespace
}  // namespace veldra

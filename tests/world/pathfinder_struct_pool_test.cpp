// The pathfinder's record pools: stable records, bulk expiry, reuse without new memory.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "util/struct_pool.h"

namespace veldra {
namespace {

struct Record {
    int a = 0;
    std::string b{};
    double c = 0;
};

TEST(StructPoolTest, CreateNewReinitialisesEveryFieldInOrder) {
    StructPool<Record> pool;
    pool.create_new(1, "one", 1.5);
    pool.expire_all();
    // The same record comes back; fields not given return to their defaults.
    Record& again = pool.create_new(2);
    EXPECT_EQ(again.a, 2);
    EXPECT_EQ(again.b, "");
    EXPECT_EQ(again.c, 0);
}

TEST(StructPoolTest, RecordsStayPutWhileThePoolGrowsAndAreReusedAfterExpiry) {
    StructPool<Record> pool;
    const std::size_t count = 3 * StructPool<Record>::block_size + 7;
    std::vector<Record*> first;
    for (std::size_t i = 0; i < count; ++i)
        first.push_back(&pool.create_new(static_cast<int>(i)));
    for (std::size_t i = 0; i < count; ++i)
        ASSERT_EQ(first[i]->a, static_cast<int>(i));
    EXPECT_EQ(pool.size(), count);
    const std::size_t capacity = pool.capacity();
    EXPECT_GE(capacity, count);

    pool.expire_all();
    EXPECT_EQ(pool.size(), 0u);
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_EQ(&pool.create_new(-1), first[i]) << "record " << i << " was not reused";
    }
    EXPECT_EQ(pool.capacity(), capacity);

    // Moving the pool moves its blocks, not the records in them.
    StructPool<Record> moved = std::move(pool);
    EXPECT_EQ(moved.size(), count);
    moved.expire_all();
    EXPECT_EQ(&moved.create_new(7), first[0]);
}

TEST(StructPoolTest, ReleaseEmptiesThePoolAndItCanBeUsedAgain) {
    StructPool<Record> pool;
    pool.create_new(1);
    pool.release();
    EXPECT_EQ(pool.size(), 0u);
    EXPECT_EQ(pool.capacity(), 0u);
    EXPECT_EQ(pool.create_new(4).a, 4);
}

}  // namespace
}  // namespace veldra

#include "runtime/gc.h"

#include <gtest/gtest.h>

#include <memory>

#include "runtime/process_state.h"
#include "runtime/value.h"

namespace veldra {
namespace {

// Counts its own destruction; captured by a method, it tells when the method was freed.
struct FreeCounter {
    explicit FreeCounter(int& count) : freed(&count) {}
    ~FreeCounter() { ++*freed; }
    int* freed;
};

Value counted_method(int& freed, Value self = {}) {
    auto counter = std::make_shared<FreeCounter>(freed);
    return Value::method([counter](const Value&, std::span<const Value>) { return Value(); },
                         std::move(self));
}

class GcTest : public ::testing::Test {
protected:
    GcScope collector;
};

TEST_F(GcTest, ReferenceCountsFreeNestedStructsAtOnce) {
    Value parent = Value::make_struct();
    parent.set("child", Value::make_struct());
    parent.get("child").set("grandchild", Value::make_struct());
    EXPECT_EQ(gc_object_count(), 3u);
    parent = Value();
    EXPECT_EQ(gc_object_count(), 0u);
}

TEST_F(GcTest, SelfCycleIsCollected) {
    Value s = Value::make_struct();
    s.set("me", s);
    s = Value();
    EXPECT_EQ(gc_object_count(), 1u);
    EXPECT_EQ(gc_collect(), 1u);
    EXPECT_EQ(gc_object_count(), 0u);
}

TEST_F(GcTest, TwoStructCycleIsCollected) {
    Value a = Value::make_struct();
    Value b = Value::make_struct();
    a.set("other", b);
    b.set("other", a);
    a = b = Value();
    EXPECT_EQ(gc_collect(), 2u);
    EXPECT_EQ(gc_object_count(), 0u);
}

TEST_F(GcTest, CycleThroughNestedArraysIsCollected) {
    Value s = Value::make_struct();
    s.set("list", Value::array({Value::array({s, "x"})}));
    s = Value();
    EXPECT_EQ(gc_collect(), 1u);
}

TEST_F(GcTest, MethodBoundToItsStructIsCollectedWithIt) {
    int freed = 0;
    Value s = Value::make_struct();
    s.set("run", counted_method(freed, s));
    s = Value();
    EXPECT_EQ(gc_collect(), 2u);
    EXPECT_EQ(freed, 1);
}

TEST_F(GcTest, CycleHeldByALocalSurvivesWithItsFields) {
    Value a = Value::make_struct();
    Value b = Value::make_struct();
    a.set("other", b);
    b.set("other", a);
    b.set("name", "b");
    b = Value();
    EXPECT_EQ(gc_collect(), 0u);
    EXPECT_EQ(a.get("other").get("name"), Value("b"));
    EXPECT_EQ(a.get("other").get("other"), a);
}

TEST_F(GcTest, CycleHeldThroughALocalArraySurvives) {
    Value s = Value::make_struct();
    s.set("me", s);
    Value list = Value::array({s});
    s = Value();
    EXPECT_EQ(gc_collect(), 0u);
    EXPECT_EQ(list.at(0).get("me"), list.at(0));
}

TEST_F(GcTest, ArraySharedByACycleAndALocalKeepsTheCycle) {
    // The array is held by the struct and by a local: the local's reference is outside.
    Value s = Value::make_struct();
    Value list = Value::array({s});
    s.set("list", list);
    s = Value();
    EXPECT_EQ(gc_collect(), 0u);
    EXPECT_TRUE(list.at(0).is_struct());
    list = Value();
    EXPECT_EQ(gc_collect(), 1u);
}

TEST_F(GcTest, LiveStructReferencedFromGarbageSurvives) {
    Value live = Value::make_struct();
    live.set("name", "live");
    Value garbage = Value::make_struct();
    garbage.set("me", garbage);
    garbage.set("friend", live);
    garbage = Value();
    EXPECT_EQ(gc_collect(), 1u);
    EXPECT_EQ(live.get("name"), Value("live"));
    EXPECT_EQ(gc_object_count(), 1u);
}

TEST_F(GcTest, CollectingTwiceFindsNothingNew) {
    Value s = Value::make_struct();
    s.set("me", s);
    s = Value();
    EXPECT_EQ(gc_collect(), 1u);
    EXPECT_EQ(gc_collect(), 0u);
}

TEST_F(GcTest, CollectionCalledFromADestructorItTriggeredIsIgnored) {
    struct CollectsOnFree {
        std::size_t* result;
        ~CollectsOnFree() { *result = gc_collect(); }
    };
    std::size_t nested_result = 99;
    auto collector = std::make_shared<CollectsOnFree>(CollectsOnFree{&nested_result});
    Value s = Value::make_struct();
    s.set("m",
          Value::method([collector](const Value&, std::span<const Value>) { return Value(); }, s));
    collector.reset();
    s = Value();
    EXPECT_EQ(gc_collect(), 2u);
    EXPECT_EQ(nested_result, 0u);
}

TEST(GcScopeTest, EndingAScopeFreesItsCyclesAndDetachesLiveValues) {
    int freed = 0;
    Value survivor;
    {
        GcScope collector;
        Value cycle = Value::make_struct();
        cycle.set("run", counted_method(freed, cycle));
        cycle = Value();
        survivor = Value::make_struct();
        survivor.set("me", survivor);
        survivor.set("name", "kept");
    }
    EXPECT_EQ(freed, 1);
    EXPECT_EQ(survivor.get("name"), Value("kept"));
    // Detached: freed by reference count once the cycle is broken by hand.
    survivor.remove("me");
    survivor = Value();
}

TEST(GcScopeTest, StructsMadeWithoutAScopeAreFreedByCount) {
    ASSERT_EQ(process_state().collector, nullptr);
    int freed = 0;
    Value s = Value::make_struct();
    s.set("m", counted_method(freed));
    EXPECT_EQ(gc_collect(), 0u);
    s = Value();
    EXPECT_EQ(freed, 1);
}

TEST(GcScopeTest, EachScopeCollectsOnlyItsOwnObjects) {
    GcScope outer;
    Value cycle = Value::make_struct();
    cycle.set("me", cycle);
    cycle = Value();  // unreachable now, and the outer scope's
    {
        GcScope inner;
        Value own = Value::make_struct();
        own.set("me", own);
        own = Value();
        EXPECT_EQ(gc_object_count(), 1u);
        EXPECT_EQ(gc_collect(), 1u);
    }
    EXPECT_EQ(gc_object_count(), 1u);
    EXPECT_EQ(gc_collect(), 1u);
}

}  // namespace
}  // namespace veldra

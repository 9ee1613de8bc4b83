#include "runtime/runtime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "runtime/gc.h"
#include "runtime/services.h"

namespace veldra {
namespace {

std::vector<std::string>* journal = nullptr;

class obj_probe : public Instance {
    VELDRA_OBJECT(obj_probe, Instance)
public:
    std::string tag = "probe";
    void note(const std::string& event) { journal->push_back(tag + ":" + event); }
    void on_create() override { note("create"); }
    void on_destroy() override { note("destroy"); }
    void on_clean_up() override { note("clean_up"); }
    void on_room_start() override { note("room_start"); }
    void on_step_begin() override { note("step_begin"); }
    void on_alarm() override { note("alarm"); }
    void on_step() override { note("step"); }
    void on_step_end() override { note("step_end"); }
    void on_draw() override { note("draw"); }
    void on_draw_end() override { note("draw_end"); }
    void on_draw_gui() override { note("draw_gui"); }
    void on_draw_gui_end() override { note("draw_gui_end"); }
};

class obj_child : public obj_probe {
    VELDRA_OBJECT(obj_child, obj_probe)
};

class obj_other : public Instance {
    VELDRA_OBJECT(obj_other, Instance)
};

class RuntimeTest : public ::testing::Test {
protected:
    RuntimeTest() { journal = &lines; }
    ~RuntimeTest() override { journal = nullptr; }
    GcScope collector;
    Services services;
    Runtime runtime{services};
    std::vector<std::string> lines;
};

TEST_F(RuntimeTest, FrameRaisesTheEightEventsInTheirFixedOrder) {
    runtime.instance_create<obj_probe>(0, 0);
    lines.clear();
    runtime.run_frame();
    EXPECT_EQ(lines, (std::vector<std::string>{"probe:step_begin", "probe:alarm", "probe:step",
                                               "probe:step_end", "probe:draw", "probe:draw_end",
                                               "probe:draw_gui", "probe:draw_gui_end"}));
}

TEST_F(RuntimeTest, QueriesIncludeDescendantsInCreationOrder) {
    auto& a = runtime.instance_create<obj_probe>(0, 0);
    runtime.instance_create<obj_other>(1, 1);
    auto& b = runtime.instance_create<obj_child>(10, 0);
    EXPECT_EQ(runtime.instance_number<obj_probe>(), 2u);
    EXPECT_EQ(runtime.instance_number<obj_child>(), 1u);
    EXPECT_EQ(runtime.instance_number<Instance>(), 3u);
    EXPECT_EQ(runtime.instance_find<obj_probe>(0), &a);
    EXPECT_EQ(runtime.instance_find<obj_probe>(1), &b);
    EXPECT_EQ(runtime.instance_find<obj_probe>(2), nullptr);
    EXPECT_EQ(runtime.instance_nearest<obj_probe>(9, 0), &b);
    EXPECT_EQ(runtime.instance_nearest<obj_child>(0, 0), &b);
    EXPECT_EQ(runtime.find_as<obj_child>(a.id()), nullptr);
    EXPECT_EQ(runtime.find_as<obj_probe>(b.id()), &b);
}

TEST_F(RuntimeTest, NearestRanksBySquaredDistanceAndTheEarliestWinsTies) {
    // Exactly 5 away, all four: the first made is the nearest.
    auto& first = runtime.instance_create<obj_probe>(3, 4);
    runtime.instance_create<obj_probe>(4, 3);
    runtime.instance_create<obj_probe>(-5, 0);
    EXPECT_EQ(runtime.instance_nearest<obj_probe>(0, 0), &first);
    // One unit in the last place nearer, made later: it wins, and once it is gone the first is
    // the nearest again.
    auto& closer = runtime.instance_create<obj_probe>(0, std::nextafter(-5.0, 0.0));
    EXPECT_EQ(runtime.instance_nearest<obj_probe>(0, 0), &closer);
    runtime.instance_destroy(closer.id());
    EXPECT_EQ(runtime.instance_nearest<obj_probe>(0, 0), &first);
    for (std::size_t i = 0; i < runtime.instance_number<obj_probe>();)
        runtime.instance_destroy(runtime.instance_find<obj_probe>(i)->id());
    // Equally far by the exact distance, but the later one's rounded square is the smaller:
    // the square decides, the same on every system, where the platform's hypot would not.
    auto& earlier = runtime.instance_create<obj_probe>(-1014.8549913382579, 185.532602406759);
    auto& later = runtime.instance_create<obj_probe>(-732, -727);
    ASSERT_GT(earlier.x * earlier.x + earlier.y * earlier.y, later.x * later.x + later.y * later.y);
    EXPECT_EQ(runtime.instance_nearest<obj_probe>(0, 0), &later);
    // Nothing at a finite distance: no nearest.
    for (std::size_t i = 0; i < runtime.instance_number<obj_probe>();)
        runtime.instance_destroy(runtime.instance_find<obj_probe>(i)->id());
    runtime.instance_create<obj_probe>(std::numeric_limits<double>::quiet_NaN(), 0);
    EXPECT_EQ(runtime.instance_nearest<obj_probe>(0, 0), nullptr);
}

TEST_F(RuntimeTest, DestroyRunsDestroyAndCleanUpAtOnceAndIdsAreNeverReused) {
    auto& a = runtime.instance_create<obj_probe>(0, 0);
    const InstanceId first = a.id();
    lines.clear();
    runtime.instance_destroy(first);
    EXPECT_EQ(lines, (std::vector<std::string>{"probe:destroy", "probe:clean_up"}));
    EXPECT_FALSE(runtime.instance_exists(first));
    runtime.instance_destroy(first);  // a second destroy is ignored
    runtime.instance_destroy(NO_INSTANCE);
    EXPECT_EQ(lines.size(), 2u);
    auto& b = runtime.instance_create<obj_probe>(0, 0);
    EXPECT_GT(b.id(), first);
    EXPECT_EQ(runtime.instance_number<obj_probe>(), 1u);
}

// Destroys another instance in its clean-up, then reads its own fields: the owner of views.
class obj_owner : public Instance {
    VELDRA_OBJECT(obj_owner, Instance)
public:
    void on_clean_up() override {
        runtime().instance_destroy(part);
        runtime().instance_destroy(part);  // its own field, read after the nested destroy
    }
    InstanceId part = NO_INSTANCE;
};

TEST_F(RuntimeTest, AnInstanceDestroyingOthersInItsCleanUpIsNotFreedUnderItself) {
    auto& inner = runtime.instance_create<obj_owner>(0, 0);
    inner.part = runtime.instance_create<obj_probe>(0, 0).id();
    auto& outer = runtime.instance_create<obj_owner>(0, 0);
    outer.part = inner.id();
    const InstanceId outer_id = outer.id(), inner_id = inner.id(), probe_id = inner.part;
    runtime.instance_destroy(outer_id);  // outer ends inner, which ends the probe
    for (InstanceId id : {outer_id, inner_id, probe_id})
        EXPECT_FALSE(runtime.instance_exists(id));
    EXPECT_EQ(runtime.instance_number<obj_owner>(), 0u);
    EXPECT_EQ(runtime.instance_number<obj_probe>(), 0u);
}

TEST_F(RuntimeTest, DestroyingDuringIterationIsSafeAndSkipsTheDead) {
    std::vector<InstanceId> ids;
    for (int i = 0; i < 5; ++i)
        ids.push_back(runtime.instance_create<obj_probe>(i, 0).id());
    int visited = 0;
    runtime.for_each<obj_probe>([&](obj_probe& p) {
        ++visited;
        // Each visit destroys itself and the next one.
        runtime.instance_destroy(p.id());
        auto next = std::find(ids.begin(), ids.end(), p.id()) + 1;
        if (next != ids.end())
            runtime.instance_destroy(*next);
    });
    EXPECT_EQ(visited, 3);  // 0, 2, 4
    EXPECT_EQ(runtime.instance_number<obj_probe>(), 0u);
    EXPECT_EQ(runtime.instance_find<obj_probe>(0), nullptr);
}

TEST_F(RuntimeTest, InstancesCreatedDuringAnEventPassGetThatEvent) {
    struct obj_spawner : Instance {
        void on_step() override {
            if (!spawned)
                runtime().instance_create<obj_probe>(0, 0);
            spawned = true;
        }
        bool spawned = false;
    };
    runtime.instance_create<obj_spawner>(0, 0);
    lines.clear();
    runtime.run_frame();
    EXPECT_EQ(lines.front(), "probe:create");
    EXPECT_EQ(lines[1], "probe:step");
}

TEST_F(RuntimeTest, RoomChangeAtEndOfFrameKeepsPersistentInstances) {
    int created_in_b = 0;
    int room_a =
        runtime.room_add({"a", [](Runtime& r) { r.instance_create<obj_probe>(0, 0).tag = "a"; }});
    int room_b = runtime.room_add({"b", [&](Runtime& r) {
                                       ++created_in_b;
                                       r.instance_create<obj_probe>(0, 0).tag = "b";
                                   }});
    runtime.start(room_a);
    auto& keeper = runtime.instance_create<obj_probe>(0, 0);
    keeper.tag = "keeper";
    keeper.persistent = true;
    lines.clear();
    runtime.room_goto(room_b);
    EXPECT_EQ(runtime.room(), room_a);  // not before the frame ends
    runtime.run_frame();
    EXPECT_EQ(runtime.room(), room_b);
    EXPECT_EQ(created_in_b, 1);
    auto tail = std::vector<std::string>(lines.end() - 5, lines.end());
    EXPECT_EQ(tail, (std::vector<std::string>{"keeper:draw_gui_end", "a:clean_up", "probe:create",
                                              "keeper:room_start", "b:room_start"}));
    EXPECT_EQ(runtime.instance_number<obj_probe>(), 2u);

    lines.clear();
    runtime.room_restart();
    runtime.run_frame();
    EXPECT_EQ(runtime.room(), room_b);
    EXPECT_EQ(created_in_b, 2);
    EXPECT_EQ(runtime.instance_number<obj_probe>(), 2u);
}

TEST_F(RuntimeTest, ShutdownCleansUpEveryInstanceNewestFirst) {
    auto& first = runtime.instance_create<obj_probe>(0, 0);
    first.persistent = true;
    first.tag = "first";
    runtime.instance_create<obj_child>(0, 0).tag = "second";
    lines.clear();
    runtime.shutdown();
    EXPECT_EQ(lines, (std::vector<std::string>{"second:clean_up", "first:clean_up"}));
    EXPECT_EQ(runtime.instance_number<Instance>(), 0u);
}

}  // namespace
}  // namespace veldra

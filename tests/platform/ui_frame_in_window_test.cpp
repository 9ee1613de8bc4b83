// In a real window Dear ImGui's frame is opened once and closed once per game frame: open
// through the step and draw events, closed again once the frame is presented.

#include <imgui.h>

#include "platform/window_test_support.h"
#include "runtime/frame_loop.h"
#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "ui/overlay.h"

namespace veldra::platform::test {
namespace {

// Which Dear ImGui frame each event of the last game frame saw, if any.
class obj_frame_probe : public Instance {
    VELDRA_OBJECT(obj_frame_probe, Instance)
public:
    void on_step() override { step_frame = seen(); }
    void on_draw_gui_end() override { draw_frame = seen(); }
    int step_frame = -1;
    int draw_frame = -1;

private:
    static int seen() { return overlay_frame_open() ? ImGui::GetFrameCount() : -1; }
};

class UiFrameInWindowTest : public WindowTest {};

TEST_F(UiFrameInWindowTest, EachGameFrameOpensOneImGuiFrameAndPresentingClosesIt) {
    VELDRA_NEED_DISPLAY();
    ASSERT_TRUE(open(800, 450));
    GcScope collector;
    Runtime runtime(services);
    runtime.start(runtime.room_add({"room", nullptr}));
    const auto& probe = runtime.instance_create<obj_frame_probe>(0, 0);
    run_program_frame(runtime, services);
    const int first = ImGui::GetFrameCount();
    for (int i = 1; i <= 5; ++i) {
        run_program_frame(runtime, services);
        EXPECT_FALSE(overlay_frame_open()) << "frame " << i << " was left open";
        EXPECT_EQ(ImGui::GetFrameCount(), first + i);
        EXPECT_EQ(probe.step_frame, first + i);
        EXPECT_EQ(probe.draw_frame, first + i);
    }
    runtime.shutdown();
}

}  // namespace
}  // namespace veldra::platform::test

// The one owner of Dear ImGui's frame: one frame opened and closed per game frame in a window,
// none at all without one.

#include "ui/ui_frame.h"

#include <gtest/gtest.h>
#include <imgui.h>

#include "async/promise_event_loop.h"
#include "runtime/frame_loop.h"
#include "runtime/gc.h"
#include "runtime/renderer.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "support/headless_imgui.h"
#include "ui/overlay.h"
#include "ui/popup_menu.h"

namespace veldra {
namespace {

int g_window_frames_read = 0;
void read_window() {
    ++g_window_frames_read;
    ImGui::GetIO().DeltaTime = 1.0f / 60.0f;
}

TEST(UiFrame, OpensOnTheLogicalScreenAndClosesOnceWithWhatWasDrawn) {
    test::HeadlessImGui imgui;
    UiFrame frame;
    g_window_frames_read = 0;
    EXPECT_EQ(frame.close(), nullptr);  // nothing open: nothing to paint
    EXPECT_EQ(frame.closed(), 0u);

    frame.open(read_window, ImVec2(100, 200));
    EXPECT_TRUE(frame.is_open());
    EXPECT_TRUE(overlay_frame_open());
    EXPECT_EQ(g_window_frames_read, 1);
    EXPECT_EQ(ImGui::GetIO().DisplaySize.x, LOGICAL_WIDTH);
    EXPECT_EQ(ImGui::GetIO().MousePos.x, 100);
    ImGui::Begin("probe");
    ImGui::TextUnformatted("drawn");
    ImGui::End();
    ImDrawData* drawn = frame.close();
    ASSERT_NE(drawn, nullptr);
    EXPECT_TRUE(drawn->Valid);
    EXPECT_FALSE(overlay_frame_open());
    EXPECT_EQ(frame.close(), nullptr);  // a second close paints nothing twice
    EXPECT_EQ(frame.opened(), 1u);
    EXPECT_EQ(frame.closed(), 1u);

    // A pointer outside the window is nowhere on the screen.
    frame.open(read_window, std::nullopt);
    EXPECT_FALSE(ImGui::IsMousePosValid());
    // A frame that was never presented is ended before the next opens.
    frame.open(read_window, ImVec2(1, 1));
    EXPECT_EQ(frame.opened(), 3u);
    EXPECT_EQ(frame.closed(), 2u);
    EXPECT_NE(frame.close(), nullptr);
    EXPECT_EQ(frame.opened(), frame.closed());
}

// Notes in every event whether overlays could draw.
class obj_frame_probe : public Instance {
    VELDRA_OBJECT(obj_frame_probe, Instance)
public:
    void on_step() override { step_saw_frame = overlay_frame_open(); }
    void on_draw_gui_end() override { draw_saw_frame = overlay_frame_open(); }
    bool step_saw_frame = true;
    bool draw_saw_frame = true;
};

TEST(UiFrame, AHeadlessRunHasNoFrameAndItsOverlaysStillWork) {
    ASSERT_EQ(ImGui::GetCurrentContext(), nullptr);
    GcScope collector;
    Services services;
    Runtime runtime{services};
    start_promise_event_loop(runtime);
    runtime.start(runtime.room_add({"room", nullptr}));
    const auto& probe = runtime.instance_create<obj_frame_probe>(0, 0);
    Promise chosen = create_popup_menu(runtime, MenuDefinition{{menu_button("Go", 1)}});
    for (int i = 0; i < 3; ++i)
        run_program_frame(runtime, services);
    EXPECT_FALSE(probe.step_saw_frame);
    EXPECT_FALSE(probe.draw_saw_frame);
    EXPECT_EQ(ImGui::GetCurrentContext(), nullptr);
    ASSERT_NE(front_overlay(runtime), nullptr);
    EXPECT_TRUE(front_overlay(runtime)->controls().shows("Go"));
    EXPECT_TRUE(runtime.instance_find<obj_popup_menu>(0)->activate("Go"));
    run_program_frame(runtime, services);
    EXPECT_EQ(front_overlay(runtime), nullptr);
    runtime.shutdown();
}

}  // namespace
}  // namespace veldra

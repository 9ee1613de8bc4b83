// Menus and dialogs as one stack of overlays: which one takes the keys, and the one record of
// drawn controls that tests and UI scripts click by label.

#include "ui/overlay.h"

#include <gtest/gtest.h>
#include <imgui.h>

#include <optional>
#include <string>

#include "async/promise_event_loop.h"
#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "support/headless_imgui.h"
#include "ui/dialog_host.h"
#include "ui/imgui_dialogs.h"
#include "ui/popup_menu.h"

namespace veldra {
namespace {

class OverlayTest : public ::testing::Test {
protected:
    OverlayTest() {
        start_promise_event_loop(runtime);
        dialogs = &install_window_dialogs(runtime);
        runtime.start(runtime.room_add({"room", nullptr}));
    }
    ~OverlayTest() override { runtime.shutdown(); }

    void frames(int count = 1) {
        for (int i = 0; i < count; ++i) {
            imgui.new_frame();
            runtime.run_frame();
            imgui.end_frame();
        }
    }
    void key(ImGuiKey key) {
        imgui.key(key);
        frames(2);
    }
    // Clicks what the overlay in front drew as `text`, the way a UI script does.
    void click(const std::string& text) {
        const obj_overlay* front = front_overlay(runtime);
        ASSERT_NE(front, nullptr);
        const DrawnControl* control = front->controls().find_shown(text);
        ASSERT_NE(control, nullptr) << text << " was not drawn in front";
        press_at(control->rect.x + control->rect.w / 2, control->rect.y + control->rect.h / 2, 30);
    }
    // Moves there, presses and releases, then lets `frames_after` frames pass.
    void press_at(float x, float y, int frames_after) {
        imgui.move(x, y);
        frames();
        imgui.press(x, y);
        frames();
        imgui.release(x, y);
        frames(frames_after);
    }
    obj_popup_menu* menu(std::size_t n) { return runtime.instance_find<obj_popup_menu>(n); }
    void ask(std::optional<std::string>& answer, int& calls) {
        dialogs->get_string("Your name?", "Ada", [&](std::optional<std::string> text) {
            ++calls;
            answer = std::move(text);
        });
    }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    test::HeadlessImGui imgui;
    ImGuiDialogs* dialogs = nullptr;
};

TEST_F(OverlayTest, ADialogOverAMenuTakesTheKeysAndGivesThemBackWhenAnswered) {
    Promise chosen = create_popup_menu(runtime, MenuDefinition{{menu_button("Go", "go")}});
    frames(2);
    ASSERT_NE(menu(0), nullptr);
    EXPECT_TRUE(menu(0)->in_front());

    // A message: no field of its own holds the keys, so only the focus rule keeps Escape from
    // the menu below.
    dialogs->show_message("Saved.");
    frames(2);
    EXPECT_EQ(front_overlay(runtime), runtime.instance_find<obj_dialog_host>(0));
    EXPECT_FALSE(menu(0)->in_front());

    // Escape closes the message only; the menu below does not hear it.
    key(ImGuiKey_Escape);
    EXPECT_EQ(dialogs->waiting(), 0u);
    ASSERT_NE(menu(0), nullptr);
    EXPECT_TRUE(chosen.is_pending());
    EXPECT_TRUE(menu(0)->in_front());

    // With the dialog gone the menu has the keys again.
    key(ImGuiKey_Escape);
    EXPECT_EQ(menu(0), nullptr);
    EXPECT_TRUE(chosen.is_fulfilled());
}

TEST_F(OverlayTest, ABackgroundMenuStaysBehindMenusOpenedBeforeOrAfterIt) {
    Promise level = create_popup_menu(runtime, MenuDefinition{{menu_button("Go", "go")}});
    Promise tools = create_popup_menu(runtime, MenuDefinition{{menu_button("Close", "closed")}},
                                      {.persistent = true,
                                       .name = "tools",
                                       .dim_behind = false,
                                       .keep_clear = {},
                                       .behind_others = true});
    frames(2);
    obj_popup_menu* level_menu = menu(0);
    obj_popup_menu* tools_menu = menu(1);
    ASSERT_EQ(tools_menu->name(), "tools");
    EXPECT_EQ(front_overlay(runtime), level_menu);
    // Behind, it is still drawn.
    EXPECT_GT(tools_menu->entry_rect("Close").w, 0);

    key(ImGuiKey_Escape);
    EXPECT_TRUE(level.is_fulfilled());
    ASSERT_EQ(runtime.instance_number<obj_popup_menu>(), 1u);
    EXPECT_TRUE(menu(0)->in_front());

    // A menu opened later goes in front of it too.
    Promise later = create_popup_menu(runtime, MenuDefinition{{menu_button("Later", 1)}});
    frames(2);
    EXPECT_EQ(front_overlay(runtime), menu(1));
    click("Later");
    EXPECT_TRUE(later.is_fulfilled());
    click("Close");
    EXPECT_TRUE(tools.is_fulfilled());
    EXPECT_EQ(front_overlay(runtime), nullptr);
}

// A developer panel that draws nothing: only its place in the stack matters here.
class obj_test_panel : public obj_overlay {
    VELDRA_OBJECT(obj_test_panel, obj_overlay)
public:
    OverlayLayer overlay_layer() const override { return OverlayLayer::panel; }
    bool showing() const override { return shown; }
    const ControlRecord& controls() const override { return record; }
    bool shown = true;
    ControlRecord record;
};

TEST_F(OverlayTest, PanelsSideBySideAllTakeInputUntilAMenuComesInFront) {
    auto& first = runtime.instance_create<obj_test_panel>(0, 0);
    auto& second = runtime.instance_create<obj_test_panel>(0, 0);
    auto& hidden = runtime.instance_create<obj_test_panel>(0, 0);
    hidden.shown = false;
    frames();
    EXPECT_EQ(overlays_taking_input(runtime), (std::vector<obj_overlay*>{&second, &first}));
    Promise asked = create_popup_menu(runtime, MenuDefinition{{menu_button("Go", "go")}});
    frames(2);
    EXPECT_EQ(overlays_taking_input(runtime), (std::vector<obj_overlay*>{menu(0)}));
    key(ImGuiKey_Escape);
    EXPECT_TRUE(asked.is_fulfilled());
    second.shown = false;
    EXPECT_EQ(overlays_taking_input(runtime), (std::vector<obj_overlay*>{&first}));
}

TEST_F(OverlayTest, OneRecordFindsAMenusAndADialogsControlsByWhatTheyRead) {
    auto level = std::make_shared<MenuField>(MenuField{"", 2, 0, 10});
    Promise chosen = create_popup_menu(
        runtime,
        MenuDefinition{{menu_slider("Level", level), menu_button("[#ff5555]Start[/c]", 1)}});
    frames(2);
    const ControlRecord& record = front_overlay(runtime)->controls();
    EXPECT_TRUE(record.shows("Start"));
    // Parts by the label as given; the whole by what it reads too.
    const DrawnControl* bar = record.find("Level", ControlPart::bar);
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->maximum, 10);
    ASSERT_NE(record.find("Level", ControlPart::box), nullptr);
    EXPECT_EQ(record.find("Start"), nullptr);
    ASSERT_NE(record.find_shown("Start"), nullptr);

    // The grab goes where the record says a value is.
    press_at(slider_value_x(*bar, 7), bar->rect.y + bar->rect.h / 2, 2);
    EXPECT_EQ(level->number, 7);

    std::optional<std::string> answer;
    int calls = 0;
    ask(answer, calls);
    frames(2);
    EXPECT_TRUE(front_overlay(runtime)->controls().shows("Your name?"));
    EXPECT_EQ(front_overlay(runtime)->controls().find_shown("Start"), nullptr);
    click("OK");
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(answer, "Ada");

    click("Start");
    ASSERT_TRUE(chosen.is_fulfilled());
    EXPECT_EQ(chosen.value(), Value(1));
}

}  // namespace
}  // namespace veldra

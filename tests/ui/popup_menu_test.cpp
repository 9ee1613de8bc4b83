#include "ui/popup_menu.h"

#include <gtest/gtest.h>
#include <imgui.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "async/promise_event_loop.h"
#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "support/headless_imgui.h"
#include "ui/popup_menu_window.h"

namespace veldra {
namespace {

using Labels = std::vector<std::string>;

// Where a field's widget starts in its row, and the typed value's box beside a slider (with the
// gap before it).
constexpr float FIELD_COLUMN = 0.3f;
constexpr float NUMBER_BOX = 110 + 12;

// A runtime with the promise event loop and default services, framed the way the window frames
// it: ImGui's frame opens before the events and closes after them.
class PopupMenuTest : public ::testing::Test {
protected:
    PopupMenuTest() {
        start_promise_event_loop(runtime);
        services.open_url = [this](const std::string& url) { opened.push_back(url); };
    }
    ~PopupMenuTest() override { runtime.shutdown(); }

    void frames(int count = 1) {
        for (int i = 0; i < count; ++i) {
            imgui.new_frame();
            runtime.run_frame();
            imgui.end_frame();
        }
    }
    // The n-th open popup, oldest first; ends the test when there is none.
    obj_popup_menu& popup(std::size_t n = 0) {
        obj_popup_menu* menu = runtime.instance_find<obj_popup_menu>(n);
        if (!menu)
            throw std::runtime_error("popup " + std::to_string(n) + " is not open");
        return *menu;
    }
    std::size_t open_popups() const { return runtime.instance_number<obj_popup_menu>(); }
    // A real click: the mouse moves there, goes down and comes up, a frame each.
    void click_at(float x, float y) {
        imgui.move(x, y);
        frames();
        imgui.press(x, y);
        frames();
        imgui.release(x, y);
        frames(30);  // and half a second more, so that the next click is no double click
    }
    void click(obj_popup_menu& menu, const std::string& label) {
        const obj_popup_menu::Rect rect = menu.entry_rect(label);
        ASSERT_GT(rect.w, 0) << label << " was not drawn";
        click_at(rect.x + rect.w / 2, rect.y + rect.h / 2);
    }
    // The input box of a field sits under its label, at the bottom of the entry.
    void click_field(obj_popup_menu& menu, const std::string& label, float from_left) {
        const obj_popup_menu::Rect rect = menu.entry_rect(label);
        ASSERT_GT(rect.h, 0) << label << " was not drawn";
        click_at(rect.x + from_left, rect.y + rect.h - 6);
    }
    void key(ImGuiKey key) {
        imgui.key(key);
        frames(2);
    }
    std::int64_t clicks_heard() const {
        return static_cast<SilentAudio&>(*services.audio)
            .played[static_cast<std::size_t>(Sound::ui_click)];
    }

    GcScope collector;
    Services services;
    Runtime runtime{services};
    test::HeadlessImGui imgui;
    std::vector<std::string> opened;
    double elapsed_ms_ = 0;
};

TEST_F(PopupMenuTest, AClickOnAButtonFulfilsThePromiseWithItsValueAndClosesTheMenu) {
    MenuDefinition menu;
    menu.width = 600;
    menu.entries = {menu_heading("[pin_center]Ready?"), menu_text("Pick one."),
                    menu_button("Yes", "yes"), menu_button("[#ff5555]No[/c]", 2)};
    Promise<Value> chosen = create_popup_menu(runtime, menu);
    frames(2);
    ASSERT_EQ(open_popups(), 1u);
    // Centred, and the buttons span the window inside its padding.
    const obj_popup_menu::Rect no = popup().entry_rect("[#ff5555]No[/c]");
    EXPECT_NEAR(no.x + no.w / 2, 800, 1);
    EXPECT_NEAR(no.w, 600 - 2 * 32, 1);
    EXPECT_LT(popup().entry_rect("Yes").y, no.y);

    click(popup(), "[pin_center]Ready?");
    EXPECT_TRUE(chosen.is_pending());
    EXPECT_EQ(clicks_heard(), 0);

    click(popup(), "[#ff5555]No[/c]");
    ASSERT_TRUE(chosen.is_fulfilled());
    EXPECT_EQ(chosen.value(), Value(2));
    EXPECT_EQ(open_popups(), 0u);
    EXPECT_EQ(clicks_heard(), 1);
}

TEST_F(PopupMenuTest, AFunctionRunsEachTimeAndTheMenuStaysOpen) {
    int runs = 0;
    MenuDefinition menu;
    menu.entries = {menu_function("Again", [&] { ++runs; }),
                    menu_function("Again", [&] { runs += 100; })};
    Promise<Value> chosen = create_popup_menu(runtime, menu);
    frames(2);
    click(popup(), "Again");
    click(popup(), "Again");
    EXPECT_EQ(runs, 2);  // the first of two equal labels, each time
    EXPECT_TRUE(chosen.is_pending());
    EXPECT_EQ(open_popups(), 1u);
    EXPECT_EQ(clicks_heard(), 2);
}

TEST_F(PopupMenuTest, TheKeyboardMovesBetweenEntriesAndPressesWithSpaceOrEnter) {
    int runs = 0;
    MenuDefinition menu;
    menu.entries = {menu_heading("Keys"), menu_function("Run", [&] { ++runs; }),
                    menu_button("Done", "done")};
    Promise<Value> chosen = create_popup_menu(runtime, menu);
    frames(2);
    key(ImGuiKey_Space);
    EXPECT_EQ(runs, 1);
    key(ImGuiKey_DownArrow);
    key(ImGuiKey_Enter);
    ASSERT_TRUE(chosen.is_fulfilled());
    EXPECT_EQ(chosen.value(), Value("done"));
}

TEST_F(PopupMenuTest, APageOpensAndBackOrEscapeReturnsThenEscapeClosesTheMenu) {
    const std::string back = "Zur\u00fcck";
    MenuDefinition settings;
    settings.back_label = back;
    settings.entries = {menu_text("Inside"), menu_button("Deep", 3)};
    MenuDefinition menu;
    menu.entries = {menu_heading("Main"), menu_page("Settings", settings)};
    Promise<Value> chosen = create_popup_menu(runtime, menu);
    frames(2);

    click(popup(), "Settings");
    EXPECT_EQ(popup().current_labels(), (Labels{"Inside", "Deep", back}));
    EXPECT_EQ(popup().entry_rect("Settings").w, 0);  // no longer shown
    click(popup(), back);
    EXPECT_EQ(popup().current_labels(), (Labels{"Main", "Settings"}));

    ASSERT_TRUE(popup().activate("Settings"));
    frames(2);
    key(ImGuiKey_Escape);
    EXPECT_EQ(popup().current_labels(), (Labels{"Main", "Settings"}));
    EXPECT_TRUE(chosen.is_pending());

    // From the top page Escape dismisses a menu that is not persistent.
    key(ImGuiKey_Escape);
    EXPECT_EQ(open_popups(), 0u);
    ASSERT_TRUE(chosen.is_fulfilled());
    EXPECT_TRUE(chosen.value().is_undefined());
}

TEST_F(PopupMenuTest, TypingIntoATextFieldChangesTheSharedFieldAndEscapeOnlyLeavesTheField) {
    auto name = std::make_shared<MenuField>();
    name->text = "Ann";
    MenuDefinition menu;
    menu.entries = {menu_text_field("Your name", name), menu_button("OK")};
    Promise<Value> chosen = create_popup_menu(runtime, menu);
    frames(2);
    const obj_popup_menu::Rect rect = popup().entry_rect("Your name");
    click_field(popup(), "Your name", rect.w - 10);  // right of the text: the caret goes last
    imgui.type(" Lee");
    frames();
    EXPECT_EQ(name->text, "Ann Lee");
    key(ImGuiKey_Enter);

    click_field(popup(), "Your name", rect.w - 10);
    imgui.type("x");
    frames();
    EXPECT_EQ(name->text, "Ann Leex");
    key(ImGuiKey_Escape);  // undoes this edit, and leaves the menu open
    EXPECT_EQ(name->text, "Ann Lee");
    ASSERT_EQ(open_popups(), 1u);
    EXPECT_TRUE(chosen.is_pending());
}

TEST_F(PopupMenuTest, ANumberFieldAndASliderStayWithinTheirRange) {
    auto count = std::make_shared<MenuField>(MenuField{"", 50, 0, 100});
    auto level = std::make_shared<MenuField>(MenuField{"", 25, 10, 20});
    MenuDefinition menu;
    menu.entries = {menu_number_field("Count", count), menu_slider("Level", level)};
    create_popup_menu(runtime, menu);
    frames(2);
    EXPECT_EQ(level->number, 20);  // out of range from the start

    click_field(popup(), "Count", popup().entry_rect("Count").w * FIELD_COLUMN + 20);
    imgui.type("250");
    frames();
    key(ImGuiKey_Enter);
    EXPECT_EQ(count->number, 100);

    // The slider runs from the field column to the typed value's box at the right.
    const obj_popup_menu::Rect row = popup().entry_rect("Level");
    const float bar_y = row.y + row.h / 2;
    const float bar_left = row.x + row.w * FIELD_COLUMN;
    const float bar_right = row.x + row.w - NUMBER_BOX;
    imgui.press(bar_left + 2, bar_y);
    frames();
    EXPECT_EQ(level->number, 10);
    imgui.move((bar_left + bar_right) / 2, bar_y);
    frames();
    EXPECT_GT(level->number, 13);
    EXPECT_LT(level->number, 17);
    imgui.move(row.x + row.w + 300, bar_y);  // dragged far past the end
    frames();
    imgui.release(row.x + row.w + 300, bar_y);
    frames();
    EXPECT_EQ(level->number, 20);
}

// Three sliders over [-1, 1] and a button, as in the traits menu.
class SliderKeysTest : public PopupMenuTest {
protected:
    SliderKeysTest() : chosen(create_popup_menu(runtime, menu())) { frames(2); }
    MenuDefinition menu() {
        for (auto* field : {&a, &b, &c})
            *field = std::make_shared<MenuField>(MenuField{"", 0, -1, 1});
        MenuDefinition menu;
        menu.entries = {menu_slider("A", a), menu_slider("B", b), menu_slider("C", c),
                        menu_button("Start", true)};
        return menu;
    }
    void type(const std::string& text) {
        imgui.type(text);
        frames();
    }
    std::shared_ptr<MenuField> a, b, c;
    Promise<Value> chosen;
};

TEST_F(SliderKeysTest, TabAfterAClickedSliderGoesToItsOwnBoxAndOnDownTheMenu) {
    const obj_popup_menu::Rect bar = popup().entry_rect("B", obj_popup_menu::Part::bar);
    ASSERT_GT(bar.w, 0);
    click_at(popup().slider_x("B", 0.61), bar.y + bar.h / 2);
    // A click lands on a step, so the value the trial runs with is the one the records show.
    EXPECT_DOUBLE_EQ(b->number, 0.6);
    key(ImGuiKey_Tab);
    type("0.45");
    key(ImGuiKey_Tab);
    EXPECT_DOUBLE_EQ(b->number, 0.45);
    type("-0.3");  // the next slider, typed into
    key(ImGuiKey_Tab);
    EXPECT_DOUBLE_EQ(c->number, -0.3);
    EXPECT_DOUBLE_EQ(a->number, 0);
    EXPECT_DOUBLE_EQ(b->number, 0.45);
}

TEST_F(SliderKeysTest, ArrowsReachEverySliderAndMoveItByOneStepThenStartsWithEnter) {
    key(ImGuiKey_RightArrow);
    key(ImGuiKey_RightArrow);
    key(ImGuiKey_RightArrow);
    EXPECT_DOUBLE_EQ(a->number, 0.3);
    key(ImGuiKey_DownArrow);
    key(ImGuiKey_LeftArrow);
    EXPECT_DOUBLE_EQ(b->number, -0.1);
    key(ImGuiKey_DownArrow);
    for (int i = 0; i < 15; ++i)
        key(ImGuiKey_RightArrow);
    EXPECT_DOUBLE_EQ(c->number, 1);  // no further than the end
    key(ImGuiKey_DownArrow);
    key(ImGuiKey_Enter);
    EXPECT_TRUE(chosen.is_fulfilled());
    EXPECT_DOUBLE_EQ(a->number, 0.3);
}

TEST_F(SliderKeysTest, TypedValuesKeepTwoDecimalsAndStayInRange) {
    key(ImGuiKey_Tab);  // the keyboard starts on A's slider: Tab goes to its box
    type("0.123456");
    key(ImGuiKey_Tab);
    EXPECT_DOUBLE_EQ(a->number, 0.12);
    type("7");  // into B's slider
    key(ImGuiKey_Enter);
    EXPECT_DOUBLE_EQ(b->number, 1);
    EXPECT_DOUBLE_EQ(a->number, 0.12);
}

TEST(MenuFieldSteps, TenthsForNarrowRangesWholeStepsForWideOnesAlwaysInRange) {
    const MenuField narrow{"", 0, -1, 1};
    EXPECT_DOUBLE_EQ(menu_field_step(narrow), 0.1);
    EXPECT_DOUBLE_EQ(menu_field_snapped(narrow, -0.328055), -0.3);
    EXPECT_EQ(menu_field_snapped(narrow, 0.3), 0.3);  // exactly, not 0.30000000000000004
    EXPECT_DOUBLE_EQ(menu_field_snapped(narrow, 1.04), 1);
    const MenuField wide{"", 0, 0, 100};
    EXPECT_DOUBLE_EQ(menu_field_step(wide), 1);
    EXPECT_DOUBLE_EQ(menu_field_snapped(wide, 41.6), 42);
    EXPECT_DOUBLE_EQ(menu_field_snapped(wide, -3), 0);
}

TEST_F(PopupMenuTest, AMenuBetweenTrialsDimsTheGameBehindItOthersDoNot) {
    MenuDefinition menu;
    menu.entries = {menu_button("Continue")};
    create_popup_menu(runtime, menu);
    frames(2);
    EXPECT_EQ(ImGui::GetBackgroundDrawList()->CmdBuffer.Size, 1);  // nothing but its start
    EXPECT_EQ(ImGui::GetBackgroundDrawList()->VtxBuffer.Size, 0);
    PopupOptions between_trials;
    between_trials.dim_behind = true;
    create_popup_menu(runtime, menu, between_trials);
    frames(2);
    const ImDrawList& behind = *ImGui::GetBackgroundDrawList();
    ASSERT_EQ(behind.VtxBuffer.Size, 4);  // one rectangle over the whole screen
    EXPECT_EQ(behind.VtxBuffer[0].pos.x, 0);
    EXPECT_EQ(behind.VtxBuffer[2].pos.x, 1600);
    EXPECT_EQ(behind.VtxBuffer[2].pos.y, 900);
}

TEST_F(PopupMenuTest, AMenuStepsAsideFromAPointItMustNotHide) {
    MenuDefinition menu;
    menu.entries = {menu_button("Continue")};
    PopupOptions options;
    options.keep_clear = ScreenPoint{820, 450};  // just right of the centre
    create_popup_menu(runtime, menu, options);
    frames(2);
    const auto rect = runtime.instance_find<obj_popup_menu>(0)->entry_rect("Continue");
    ASSERT_GT(rect.w, 0);
    EXPECT_LT(rect.x + rect.w, 820 - 40);  // beside it, on the left where there is more room

    options.keep_clear = ScreenPoint{150, 450};  // the centred menu leaves it free
    close_popup_menus(runtime, "");
    create_popup_menu(runtime, menu, options);
    frames(2);
    const auto centred = runtime.instance_find<obj_popup_menu>(0)->entry_rect("Continue");
    EXPECT_NEAR(centred.x + centred.w / 2, 800, 1);
}

TEST(MenuWindowPlace, BesideThePointOnTheSideWithRoomCentredWhenNeitherSideHasIt) {
    using detail::menu_window_left;
    EXPECT_FLOAT_EQ(menu_window_left(1600, 400, std::nullopt), 600);
    EXPECT_FLOAT_EQ(menu_window_left(1600, 400, ScreenPoint{700, 0}), 756);  // left half: right
    EXPECT_FLOAT_EQ(menu_window_left(1600, 400, ScreenPoint{900, 0}), 444);  // right half: left
    EXPECT_FLOAT_EQ(menu_window_left(1600, 400, ScreenPoint{500, 0}), 600);  // not covered
    EXPECT_FLOAT_EQ(menu_window_left(1600, 700, ScreenPoint{500, 0}), 556);  // no room left
    EXPECT_FLOAT_EQ(menu_window_left(700, 400, ScreenPoint{350, 0}), 150);   // no room at all
}

TEST_F(PopupMenuTest, ALinkOpensItsAddressAndLeavesTheMenuOpen) {
    MenuDefinition menu;
    menu.entries = {menu_text("Thank you!"),
                    menu_link("Continue to the questionnaire", "https://example.org/q?id=7")};
    Promise<Value> chosen = create_popup_menu(runtime, menu);
    frames(2);
    click(popup(), "Continue to the questionnaire");
    EXPECT_EQ(opened, (Labels{"https://example.org/q?id=7"}));
    EXPECT_EQ(open_popups(), 1u);
    EXPECT_TRUE(chosen.is_pending());
    EXPECT_EQ(clicks_heard(), 1);
}

TEST_F(PopupMenuTest, OnlyTheNewestPopupTakesClicksAndKeys) {
    MenuDefinition below;
    below.width = 900;
    below.entries = {menu_heading("Below"), menu_text("One"),  menu_text("Two"),
                     menu_text("Three"),    menu_text("Four"), menu_button("Below's button", 1)};
    MenuDefinition above;
    above.width = 300;
    above.entries = {menu_button("Above's button", 2)};
    Promise<Value> lower = create_popup_menu(runtime, below);
    Promise<Value> upper = create_popup_menu(runtime, above);
    frames(2);

    // The lower button is drawn (outside the upper popup) but takes no click.
    click(popup(0), "Below's button");
    EXPECT_TRUE(lower.is_pending());
    key(ImGuiKey_Escape);
    EXPECT_TRUE(upper.is_fulfilled());
    EXPECT_TRUE(lower.is_pending());
    ASSERT_EQ(open_popups(), 1u);

    frames();
    click(popup(0), "Below's button");
    ASSERT_TRUE(lower.is_fulfilled());
    EXPECT_EQ(lower.value(), Value(1));
}

TEST_F(PopupMenuTest, APersistentPopupOutlivesItsRoomAndIgnoresEscapeOnItsTopPage) {
    const int first = runtime.room_add({"first", nullptr});
    const int second = runtime.room_add({"second", nullptr});
    runtime.start(first);
    MenuDefinition tools;
    tools.entries = {menu_page("More", MenuDefinition{{menu_text("Deeper")}}),
                     menu_button("Close", "closed")};
    Promise<Value> developer = create_popup_menu(
        runtime, tools,
        {.persistent = true, .name = "tools", .dim_behind = false, .keep_clear = {}});
    Promise<Value> level_menu = create_popup_menu(runtime, MenuDefinition{{menu_button("Go")}});
    runtime.room_goto(second);
    frames(2);
    ASSERT_EQ(open_popups(), 1u);
    EXPECT_TRUE(level_menu.is_pending());  // destroyed with its room, never answered

    key(ImGuiKey_Escape);
    ASSERT_EQ(open_popups(), 1u);
    ASSERT_TRUE(popup().activate("More"));
    frames(2);
    key(ImGuiKey_Escape);
    EXPECT_EQ(popup().current_labels(), (Labels{"More", "Close"}));

    click(popup(), "Close");
    EXPECT_EQ(open_popups(), 0u);
    ASSERT_TRUE(developer.is_fulfilled());
    EXPECT_EQ(developer.value(), Value("closed"));
}

TEST(PopupMenuHeadless, AMenuWithoutImGuiDrawsNothingButStillAnswers) {
    ASSERT_EQ(ImGui::GetCurrentContext(), nullptr);
    GcScope collector;
    Services services;
    Runtime runtime{services};
    start_promise_event_loop(runtime);
    MenuDefinition menu;
    menu.entries = {menu_page("Options", MenuDefinition{{menu_button("Start", "start")}})};
    Promise<Value> chosen = create_popup_menu(runtime, menu);
    for (int i = 0; i < 3; ++i)
        runtime.run_frame();
    obj_popup_menu* popup = runtime.instance_find<obj_popup_menu>(0);
    ASSERT_NE(popup, nullptr);
    EXPECT_EQ(popup->entry_rect("Options").w, 0);
    EXPECT_FALSE(popup->activate("Start"));
    EXPECT_TRUE(popup->activate("Options"));
    EXPECT_EQ(popup->current_labels(), (Labels{"Start", "Back"}));
    EXPECT_TRUE(popup->activate("Start"));
    runtime.run_frame();
    EXPECT_EQ(runtime.instance_number<obj_popup_menu>(), 0u);
    ASSERT_TRUE(chosen.is_fulfilled());
    EXPECT_EQ(chosen.value(), Value("start"));
    runtime.shutdown();
}

TEST_F(PopupMenuTest, ATypedTextShowsMoreOfItselfAsTimeGoesOn) {
    MenuEntry typed = menu_text("You survived! Score: 61");
    typed.typewriter = 10;  // characters a second
    MenuDefinition menu;
    menu.entries = {typed, menu_button("Continue", Value(true))};
    create_popup_menu(runtime, menu);
    frames(3);  // a new window is measured in its first frame and drawn from the next
    // Vertices drawn in a frame at `ms` after the menu showed: four for each glyph shown.
    auto vertices_after = [this](double ms) {
        while (elapsed_ms_ < ms) {
            services.clock->frame_done();
            elapsed_ms_ += 1000.0 / 60.0;
        }
        frames();
        return ImGui::GetDrawData()->TotalVtxCount;
    };
    const int at_first = vertices_after(0);
    const int after_one_second = vertices_after(1050);
    const int after_ten_seconds = vertices_after(10000);
    EXPECT_EQ(after_one_second - at_first, 9 * 4);  // "You surviv": 9 letters and a space

    EXPECT_GT(after_ten_seconds, after_one_second);
    EXPECT_EQ(after_ten_seconds, vertices_after(20000));  // all shown: nothing more to type
}

}  // namespace
}  // namespace veldra

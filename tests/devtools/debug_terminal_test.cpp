// The terminal and the time-control panel as a developer uses them: typed commands, Tab and the
// arrow keys in the command line, the panel's buttons, and what the terminal keeps while hidden.

#include "devtools/debug_terminal.h"

#include <gtest/gtest.h>

#include "config/debug_settings.h"
#include "devtools/debug_tools.h"
#include "devtools/terminal_tap.h"
#include "devtools/time_control.h"
#include "runtime/files.h"
#include "support/headless_imgui.h"
#include "ui/trial_views_fixture.h"

namespace veldra {
namespace {

class DebugTerminalTest : public testing::TrialViewsTest {
protected:
    void SetUp() override {
        TrialViewsTest::SetUp();
        tools = &create_debug_tools(runtime, {sim, debugs, files});
        terminal = runtime.instance_find<obj_debug_terminal>(0);
        time_control = runtime.instance_find<obj_debug_time_control>(0);
        ASSERT_NE(terminal, nullptr);
        ASSERT_NE(time_control, nullptr);
    }
    void gui_frames(int count = 1) {
        for (int i = 0; i < count; ++i) {
            imgui.new_frame();
            frames(1);
            imgui.end_frame();
        }
    }
    void key(ImGuiKey which) {
        imgui.key(which);
        gui_frames(2);
    }
    void type_line(const std::string& text) {
        gui_frames(1);  // the field has taken the keyboard
        imgui.type(text);
        gui_frames(1);
    }
    void click(const obj_overlay& panel, const std::string& label) {
        const DrawnControl* control = panel.controls().find_shown(label);
        ASSERT_NE(control, nullptr) << label;
        const float x = control->rect.x + control->rect.w / 2;
        const float y = control->rect.y + control->rect.h / 2;
        imgui.move(x, y);
        gui_frames(1);
        imgui.press(x, y);
        gui_frames(1);
        imgui.release(x, y);
        gui_frames(2);  // the button's command, then a frame of the trial after it
    }
    bool terminal_says(std::string_view fragment) {
        for (const TerminalLine& line : terminal->log().lines())
            if (line.text.find(fragment) != std::string::npos)
                return true;
        return false;
    }

    test::HeadlessImGui imgui;
    DebugSettings debugs;
    MemoryFiles files;
    obj_debug_tools* tools = nullptr;
    obj_debug_terminal* terminal = nullptr;
    obj_debug_time_control* time_control = nullptr;
};

TEST_F(DebugTerminalTest, KeepsLoggedLinesWhileHiddenAndPutsTheOldTerminalBackAtTheEnd) {
    EXPECT_FALSE(terminal->showing());
    services.terminal->println(LogLevel::error, "[#dd5555]Error:[/c] broken");
    services.terminal->println(LogLevel::info, "fine");
    ASSERT_EQ(terminal->log().lines().size(), 2u);
    EXPECT_EQ(terminal->log().lines()[0].level, LogLevel::error);
    EXPECT_EQ(terminal->log().lines()[0].text, "[#dd5555]Error:[/c] broken");
    EXPECT_NE(dynamic_cast<TerminalTap*>(services.terminal.get()), nullptr);
    runtime.instance_destroy(terminal->id());
    EXPECT_NE(dynamic_cast<StderrTerminal*>(services.terminal.get()), nullptr);
}

TEST_F(DebugTerminalTest, ShowsOverAPlayedTrialWithTheLogSwitchOn) {
    tools->visible = true;
    EXPECT_FALSE(terminal->showing()) << "no trial";
    start_trial(level_from_rows({"xxxxx", "x p x", "xxxxx"}));
    EXPECT_TRUE(terminal->showing());
    EXPECT_TRUE(time_control->showing());
    debugs.show_log = false;
    EXPECT_FALSE(terminal->showing());
    EXPECT_TRUE(time_control->showing()) << "the time control does not depend on the log switch";
}

TEST_F(DebugTerminalTest, LaysOutOnlyTheRowsInViewAndFollowsTheNewest) {
    tools->visible = true;
    start_trial(level_from_rows({"xxxxx", "x p x", "xxxxx"}));
    // Empty lines and a table among them, as the traits' print-out logs them.
    services.terminal->println(LogLevel::info, "");
    services.terminal->println(LogLevel::info, "Give      | 0.64\n\nTake      | 1.36");
    for (int i = 0; i < 300; ++i)
        services.terminal->println(LogLevel::info, "line " + std::to_string(i));
    gui_frames(4);
    const std::size_t shown = terminal->log().shown_count();
    auto [first, end] = terminal->drawn_rows();
    EXPECT_EQ(end, shown) << "the newest row is in view";
    EXPECT_LT(end - first, 30u) << "only a screenful is laid out";
    for (int i = 0; i < 50; ++i)
        services.terminal->println(LogLevel::info, "more " + std::to_string(i));
    gui_frames(3);
    EXPECT_EQ(terminal->drawn_rows().second, terminal->log().shown_count()) << "still following";
}

TEST_F(DebugTerminalTest, EnterRunsTheCommandLineAndTheArrowsAndTabEditIt) {
    tools->visible = true;
    obj_trial& trial = start_trial(level_from_rows({"xxxxxx", "xp h x", "xxxxxx"}));
    gui_frames(2);
    type_line("pause");
    EXPECT_EQ(terminal->input, "pause");
    key(ImGuiKey_Enter);
    EXPECT_TRUE(trial.paused());
    EXPECT_TRUE(terminal->input.empty());
    EXPECT_TRUE(terminal_says("> pause"));
    EXPECT_TRUE(terminal_says("Paused at tick"));

    // The field keeps the keyboard after Enter, so the next command follows at once.
    type_line("step 3");
    const Ticks before = trial.ticker.spent_ticks;
    key(ImGuiKey_Enter);
    EXPECT_EQ(trial.ticker.spent_ticks, before + 3);

    key(ImGuiKey_UpArrow);
    EXPECT_EQ(terminal->input, "step 3");
    key(ImGuiKey_UpArrow);
    EXPECT_EQ(terminal->input, "pause");
    key(ImGuiKey_DownArrow);
    key(ImGuiKey_DownArrow);
    EXPECT_EQ(terminal->input, "");

    type_line("step_d");
    key(ImGuiKey_Tab);
    EXPECT_EQ(terminal->input, "step_decision ");
    key(ImGuiKey_Backspace);
    for (int i = 0; i < 10; ++i)
        key(ImGuiKey_Backspace);
    EXPECT_EQ(terminal->input, "ste");
    const std::size_t lines = terminal->log().lines().size();
    key(ImGuiKey_Tab);
    EXPECT_EQ(terminal->input, "step");
    ASSERT_EQ(terminal->log().lines().size(), lines + 1) << "the candidates are printed";
    EXPECT_EQ(terminal->log().lines().back().text, "step  step_decision");

    terminal->input.clear();
    terminal->enter("warp 9");
    EXPECT_EQ(terminal->log().lines().back().level, LogLevel::error);
    EXPECT_TRUE(terminal_says("Unknown command \"warp\""));
}

TEST_F(DebugTerminalTest, TimeControlButtonsPauseStepAndSetTheSpeed) {
    tools->visible = true;
    debugs.show_log = false;  // the panel alone, so no field takes the keys
    obj_trial& trial = start_trial(level_from_rows({"xxxxxx", "xp h x", "xxxxxx"}));
    gui_frames(2);
    EXPECT_TRUE(time_control->controls().shows("Speed x1"));
    click(*time_control, "Pause");
    EXPECT_TRUE(trial.paused());
    EXPECT_TRUE(time_control->controls().shows("Paused"));
    const Ticks paused_at = trial.ticker.spent_ticks;
    click(*time_control, "Step tick");
    EXPECT_EQ(trial.ticker.spent_ticks, paused_at + 1);
    const std::uint64_t decisions = sim.world.decisions;
    click(*time_control, "Step decision");
    EXPECT_GT(sim.world.decisions, decisions);
    EXPECT_TRUE(trial.paused());
    click(*time_control, "x8");
    EXPECT_EQ(trial.game_speed, 8);
    EXPECT_TRUE(time_control->controls().shows("Speed x8"));
    click(*time_control, "x0.25");
    EXPECT_EQ(trial.game_speed, 0.25);
    click(*time_control, "Fast-forward");
    EXPECT_TRUE(trial.result.has_value());
}

}  // namespace
}  // namespace veldra

#include "platform/sdl_input.h"

#include <imgui.h>

#include <cstring>
#include <string>

#include "platform/window_test_support.h"
#include "runtime/log.h"

namespace veldra::platform::test {
namespace {

TEST(KeyMapping, EveryGameKeyHasItsKeysAndOthersNone) {
    const std::pair<SDL_Keycode, Key> cases[] = {
        {SDLK_UP, Key::up},
        {SDLK_DOWN, Key::down},
        {SDLK_LEFT, Key::left},
        {SDLK_RIGHT, Key::right},
        {SDLK_w, Key::w},
        {SDLK_a, Key::a},
        {SDLK_s, Key::s},
        {SDLK_d, Key::d},
        {SDLK_SPACE, Key::space},
        {SDLK_RETURN, Key::enter},
        {SDLK_KP_ENTER, Key::enter},
        {SDLK_ESCAPE, Key::escape},
        {SDLK_TAB, Key::tab},
        {SDLK_BACKSPACE, Key::backspace},
        {SDLK_F11, Key::f11},
        {SDLK_F12, Key::f12},
        {SDLK_PLUS, Key::plus},
        {SDLK_EQUALS, Key::plus},
        {SDLK_KP_PLUS, Key::plus},
        {SDLK_MINUS, Key::minus},
        {SDLK_KP_MINUS, Key::minus},
        {SDLK_p, Key::p},
    };
    for (const auto& [code, key] : cases)
        EXPECT_EQ(key_for_sdl_keycode(code), key) << SDL_GetKeyName(code);
    EXPECT_EQ(key_for_sdl_keycode(SDLK_q), std::nullopt);
    EXPECT_EQ(key_for_sdl_keycode(SDLK_F1), std::nullopt);
}

class SdlInputTest : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        VELDRA_NEED_DISPLAY();
        ASSERT_TRUE(open(1920, 1080));
        keep_foreign_focus_changes_out();
    }
    void push_focus_lost() {
        SDL_Event e{};
        e.type = SDL_WINDOWEVENT;
        e.window.windowID = window->window_id();
        e.window.event = SDL_WINDOWEVENT_FOCUS_LOST;
        e.window.data1 = PUSHED_BY_TEST;
        SDL_PushEvent(&e);
    }
    void push_button(Uint32 type, Uint8 button, int x, int y) {
        SDL_Event e{};
        e.type = type;
        e.button.windowID = window->window_id();
        e.button.button = button;
        e.button.state = type == SDL_MOUSEBUTTONDOWN ? SDL_PRESSED : SDL_RELEASED;
        e.button.x = x;
        e.button.y = y;
        SDL_PushEvent(&e);
    }
    const InputFrame& poll() {
        services.input->poll();
        services.renderer->present();  // ends the menu frame as the frame loop does
        return services.input->frame();
    }
};

TEST_F(SdlInputTest, KeysHavePressHoldAndReleaseEdges) {
    push_key(SDL_KEYDOWN, SDLK_w);
    push_key(SDL_KEYDOWN, SDLK_KP_PLUS);
    const InputFrame& first = poll();
    EXPECT_TRUE(first.pressed(Key::w));
    EXPECT_TRUE(first.down(Key::w));
    EXPECT_TRUE(first.pressed(Key::plus));
    EXPECT_FALSE(first.released(Key::w));

    const InputFrame& held = poll();
    EXPECT_FALSE(held.pressed(Key::w));
    EXPECT_TRUE(held.down(Key::w));

    push_key(SDL_KEYUP, SDLK_w);
    const InputFrame& up = poll();
    EXPECT_TRUE(up.released(Key::w));
    EXPECT_FALSE(up.down(Key::w));
    EXPECT_TRUE(up.down(Key::plus));
}

TEST_F(SdlInputTest, LosingTheFocusReleasesWhatWasHeld) {
    push_key(SDL_KEYDOWN, SDLK_d);
    push_button(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT, 100, 100);
    const InputFrame& held = poll();
    ASSERT_TRUE(held.down(Key::d));
    ASSERT_TRUE(held.down(MouseButton::left));
    // The key-up goes to whichever window has the focus now, so the player would walk on forever.
    push_focus_lost();
    const InputFrame& lost = poll();
    EXPECT_TRUE(lost.released(Key::d));
    EXPECT_FALSE(lost.down(Key::d));
    EXPECT_TRUE(lost.released(MouseButton::left));
    EXPECT_FALSE(lost.down(MouseButton::left));
}

TEST_F(SdlInputTest, MouseIsInLogicalPixels) {
    SDL_Event motion{};
    motion.type = SDL_MOUSEMOTION;
    motion.motion.windowID = window->window_id();
    motion.motion.x = 960;
    motion.motion.y = 540;
    SDL_PushEvent(&motion);
    push_button(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_RIGHT, 1920 - 12, 1080 - 12);
    SDL_Event wheel{};
    wheel.type = SDL_MOUSEWHEEL;
    wheel.wheel.windowID = window->window_id();
    wheel.wheel.y = 1;
    wheel.wheel.preciseY = 1;
    SDL_PushEvent(&wheel);
    const InputFrame& frame = poll();
    // The window is 1.2 times the logical screen.
    EXPECT_NEAR(frame.mouse_x, 1590, 1);
    EXPECT_NEAR(frame.mouse_y, 890, 1);
    EXPECT_TRUE(frame.pressed(MouseButton::right));
    EXPECT_FALSE(frame.pressed(MouseButton::left));
    EXPECT_DOUBLE_EQ(frame.wheel, 1);

    SDL_PushEvent(&motion);
    push_button(SDL_MOUSEBUTTONUP, SDL_BUTTON_RIGHT, 960, 540);
    const InputFrame& next = poll();
    EXPECT_NEAR(next.mouse_x, 800, 1);
    EXPECT_NEAR(next.mouse_y, 450, 1);
    EXPECT_TRUE(next.released(MouseButton::right));
    EXPECT_FALSE(next.down(MouseButton::right));
    EXPECT_DOUBLE_EQ(next.wheel, 0);
}

// What other windows on the display cause reaches SDL's queue the way a test's pushed events do,
// so a plain SDL_PushEvent stands for the display here, and only the inject_ calls are a script's.
TEST_F(SdlInputTest, AScriptedWindowTakesOnlyItsScriptsInput) {
    window->take_only_injected_input();
    window->inject_mouse_move(400, 300);
    window->inject_mouse_button(true, 400, 300);
    SDL_Event motion{};
    motion.type = SDL_MOUSEMOTION;
    motion.motion.windowID = window->window_id();
    motion.motion.x = 1800;  // another program's pointer, after the script's press
    motion.motion.y = 1000;
    SDL_PushEvent(&motion);
    push_key(SDL_KEYDOWN, SDLK_a);
    push_focus_lost();
    window->inject_key(Key::d, true);
    const InputFrame& pressed = poll();
    EXPECT_NEAR(pressed.mouse_x, 400, 1);
    EXPECT_NEAR(pressed.mouse_y, 300, 1);
    EXPECT_TRUE(pressed.pressed(MouseButton::left));
    EXPECT_TRUE(pressed.down(Key::d));
    EXPECT_FALSE(pressed.down(Key::a));
    // The script's text reaches the menus whoever has the display's focus.
    window->inject_text("typed");
    SDL_Event foreign_text{};
    foreign_text.type = SDL_TEXTINPUT;
    foreign_text.text.windowID = window->window_id();
    std::strcpy(foreign_text.text.text, "X");
    SDL_PushEvent(&foreign_text);
    services.input->poll();
    const ImVector<ImWchar>& queued = ImGui::GetIO().InputQueueCharacters;
    EXPECT_EQ(std::string(queued.begin(), queued.end()), "typed");
    services.renderer->present();
    EXPECT_TRUE(services.input->frame().down(Key::d));  // the focus loss was not the script's
    // The display itself may add focus changes of its own, so only the keys are counted exactly.
    const std::string ignored = window->ignored_input_summary();
    EXPECT_EQ(ignored.rfind("2 keyboard, ", 0), 0u) << ignored;
    EXPECT_NE(ignored.find(" pointer"), std::string::npos) << ignored;
}

TEST_F(SdlInputTest, ClosingTheWindowAsksToQuitForOneFrame) {
    SDL_Event close{};
    close.type = SDL_WINDOWEVENT;
    close.window.windowID = window->window_id();
    close.window.event = SDL_WINDOWEVENT_CLOSE;
    SDL_PushEvent(&close);
    EXPECT_TRUE(poll().quit_requested);
    EXPECT_FALSE(poll().quit_requested);
}

TEST_F(SdlInputTest, MenusCanBeBuiltBetweenPollAndPresent) {
    // A new ImGui window sizes itself in its first frame and shows from the second.
    for (int frame = 0; frame < 2; ++frame) {
        if (frame > 0)
            services.renderer->present();
        services.input->poll();
        ImGui::SetNextWindowPos(ImVec2(20, 20));
        ImGui::Begin("Test menu");
        ImGui::Text("hello");
        ImGui::End();
    }
    EXPECT_FLOAT_EQ(ImGui::GetIO().DisplaySize.x, LOGICAL_WIDTH);
    const Image image = present_and_capture();
    // The menu shows where it was put, in logical pixels (the window is 1.2 times larger).
    EXPECT_NE(image.at(40, 40), (std::array<int, 3>{0, 0, 0}));
    int drawn = 0;
    for (int y = 24; y < 60; ++y)
        for (int x = 24; x < 100; ++x)
            drawn += image.at(x, y) != std::array<int, 3>{0, 0, 0} ? 1 : 0;
    EXPECT_GT(drawn, 100);
    // Presenting without polling draws no stale menu and does not trip Dear ImGui.
    const Image bare = present_and_capture();
    EXPECT_EQ(bare.at(40, 40), (std::array<int, 3>{0, 0, 0}));
}

TEST_F(SdlInputTest, F12SavesAScreenshotAfterTheNextPresent) {
    LogCapture log;
    push_key(SDL_KEYDOWN, SDLK_F12);
    services.input->poll();
    EXPECT_TRUE(services.input->frame().pressed(Key::f12));
    services.renderer->draw_list().rect(0, 0, 1600, 900, {0, 128, 0});
    services.renderer->present();
    const auto shots = folder / "shots";
    ASSERT_TRUE(std::filesystem::is_directory(shots));
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(shots))
        files.push_back(entry.path());
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].filename().string().rfind("veldra-", 0), 0u);
    EXPECT_TRUE(log.contains(files[0].string()));
    const Image image = read_png(files[0].string());
    ASSERT_EQ(image.width, 1920);
    EXPECT_EQ(image.at(960, 540), (std::array<int, 3>{0, 128, 0}));
}

}  // namespace
}  // namespace veldra::platform::test

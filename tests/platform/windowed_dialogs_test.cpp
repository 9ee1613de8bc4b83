// The in-game dialogs in a real window: SDL's text and keys reach a question through the
// window's input, and the dialog is drawn over the game between polling and presenting.
#include <gtest/gtest.h>

#include <cstring>

#include "platform/window_test_support.h"
#include "runtime/frame_loop.h"
#include "runtime/runtime.h"
#include "ui/dialog_host.h"

namespace veldra::platform::test {
namespace {

class WindowedDialogsTest : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        VELDRA_NEED_DISPLAY();
        ASSERT_TRUE(open(1600, 900));
        keep_foreign_focus_changes_out();
        runtime = std::make_unique<Runtime>(services);
        install_window_dialogs(*runtime);
        runtime->start(runtime->room_add({"room", nullptr}));
    }
    void TearDown() override {
        runtime.reset();
        WindowTest::TearDown();
    }
    void frames(int n) {
        for (int i = 0; i < n; ++i)
            run_program_frame(*runtime, services);
    }
    void push_text(const char* text) {
        SDL_Event e{};
        e.type = SDL_TEXTINPUT;
        e.text.windowID = window->window_id();
        std::strncpy(e.text.text, text, sizeof e.text.text - 1);
        SDL_PushEvent(&e);
    }

    std::unique_ptr<Runtime> runtime;
};

TEST_F(WindowedDialogsTest, TypedTextAndReturnAnswerAQuestionDrawnOverTheGame) {
    int calls = 0;
    std::optional<std::string> answer;
    services.dialogs->get_string("Your name?", "", [&](std::optional<std::string> text) {
        ++calls;
        answer = std::move(text);
    });
    frames(3);
    // The dialog's panel is drawn in the middle of the otherwise black screen.
    std::string error;
    ASSERT_TRUE(services.renderer->save_screenshot((folder / "dialog.png").string(), error))
        << error;
    const Image shown = read_png((folder / "dialog.png").string());
    int drawn = 0;
    for (int y = 420; y < 480; ++y)
        for (int x = 500; x < 1100; ++x)
            drawn += shown.at(x, y) != std::array<int, 3>{0, 0, 0} ? 1 : 0;
    EXPECT_GT(drawn, 10000);

    push_text("Zoe");
    frames(1);
    push_key(SDL_KEYDOWN, SDLK_RETURN);
    frames(1);
    push_key(SDL_KEYUP, SDLK_RETURN);
    frames(1);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(answer, "Zoe");
}

}  // namespace
}  // namespace veldra::platform::test

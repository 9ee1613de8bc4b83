#pragma once
// Shared by the tests that open a real window. Each test process draws on a virtual X display of
// its own (support/private_display.h); where Xvfb is missing, a desktop's display will do.
// Without either the tests are skipped, unless VELDRA_REQUIRE_DISPLAY says a display must be
// there, and then they fail.

#include <SDL.h>
#include <gtest/gtest.h>
#include <stb_image.h>

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/game_window.h"
#include "support/private_display.h"

namespace veldra::platform::test {

inline bool display_available(std::string& why) {
    if (!::veldra::testing::use_private_display(why) &&
        (std::getenv("VELDRA_REQUIRE_DISPLAY") || !std::getenv("DISPLAY")))
        return false;
    if (SDL_Init(SDL_INIT_VIDEO) != 0) {
        why = SDL_GetError();
        return false;
    }
    SDL_Quit();
    return true;
}

#define VELDRA_NEED_DISPLAY()                                                            \
    do {                                                                                 \
        std::string why_;                                                                \
        if (!::veldra::platform::test::display_available(why_)) {                        \
            if (std::getenv("VELDRA_REQUIRE_DISPLAY"))                                   \
                FAIL() << "VELDRA_REQUIRE_DISPLAY is set but no window opens: " << why_; \
            GTEST_SKIP() << "no display: " << why_;                                      \
        }                                                                                \
    } while (false)

struct Image {
    int width = 0;
    int height = 0;
    std::unique_ptr<unsigned char, void (*)(void*)> pixels{nullptr, stbi_image_free};

    // R, G, B of the pixel at (x, y).
    std::array<int, 3> at(int x, int y) const {
        const unsigned char* p = pixels.get() + (static_cast<std::size_t>(y) * width + x) * 4;
        return {p[0], p[1], p[2]};
    }
};

inline Image read_png(const std::string& path) {
    Image image;
    int channels = 0;
    image.pixels.reset(stbi_load(path.c_str(), &image.width, &image.height, &channels, 4));
    return image;
}

// A window with its services, a scratch folder, and no sleeping or sound device.
class WindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        setenv("SDL_AUDIODRIVER", "dummy", 1);
        folder = std::filesystem::temp_directory_path() /
                 ("veldra-window-test-" + std::to_string(::getpid()));
        std::filesystem::create_directories(folder);
    }
    void TearDown() override {
        SDL_SetEventFilter(nullptr, nullptr);
        window.reset();
        std::error_code ec;
        std::filesystem::remove_all(folder, ec);
    }

    // Opens a window of the given size; fails the test with the reason when it cannot.
    bool open(int width, int height) {
        WindowOptions options;
        options.width = width;
        options.height = height;
        options.vsync = false;
        options.pace_frames = false;
        options.screenshot_dir = (folder / "shots").string();
        std::string error;
        window = open_game_window(services, options, error);
        EXPECT_NE(window, nullptr) << error;
        return window != nullptr;
    }

    // A window manager or a desktop may move the focus at any moment, and the focus loss
    // rightly releases every key. From here on only the focus changes a test pushes itself
    // (marked PUSHED_BY_TEST) reach the input.
    void keep_foreign_focus_changes_out() {
        SDL_PumpEvents();
        SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);  // the window's own opening events
        SDL_SetEventFilter(only_pushed_focus_changes, nullptr);
    }
    static constexpr Sint32 PUSHED_BY_TEST = 0x7e57;
    static int only_pushed_focus_changes(void*, SDL_Event* e) {
        const bool focus =
            e->type == SDL_WINDOWEVENT && (e->window.event == SDL_WINDOWEVENT_FOCUS_LOST ||
                                           e->window.event == SDL_WINDOWEVENT_FOCUS_GAINED);
        return !focus || e->window.data1 == PUSHED_BY_TEST;
    }
    void push_key(Uint32 type, SDL_Keycode code) {
        SDL_Event e{};
        e.type = type;
        e.key.windowID = window->window_id();
        e.key.state = type == SDL_KEYDOWN ? SDL_PRESSED : SDL_RELEASED;
        e.key.keysym.sym = code;
        e.key.keysym.scancode = SDL_GetScancodeFromKey(code);
        SDL_PushEvent(&e);
    }

    // Presents the frame drawn so far and reads it back as the player would see it.
    Image present_and_capture() {
        services.renderer->present();
        const std::string path = (folder / "frame.png").string();
        std::string error;
        EXPECT_TRUE(services.renderer->save_screenshot(path, error)) << error;
        return read_png(path);
    }

    Services services;
    std::unique_ptr<GameWindow> window;
    std::filesystem::path folder;
};

}  // namespace veldra::platform::test

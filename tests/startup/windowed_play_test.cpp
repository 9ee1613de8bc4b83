// The program in a real window: a played trial's screenshot shows the HUD and the player where
// they must be, and the picture fills or letterboxes the window as its shape asks.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/window_test_support.h"
#include "runtime/files.h"
#include "trials/input_record.h"
#include "ui/camera.h"
#include "ui/hud_layout.h"
#include "ui/sprites.h"
#include "ui/trial_hud.h"
#include "ui/world_drawing.h"
#include "veldra_version.h"

namespace veldra {
namespace {

namespace fs = std::filesystem;
using platform::test::Image;
using platform::test::read_png;

// The player walled in by rocks, so it stands on its cell whatever it decides.
constexpr const char* WALLED_IN_LEVEL = "rrrrr\nrrprr\nrrrrr\n";
constexpr int LEVEL_W = 5 * 64, LEVEL_H = 3 * 64;
constexpr double PLAYER_X = 2 * 64 + 32, PLAYER_Y = 1 * 64 + 32;

class WindowedPlayTest : public ::testing::Test {
protected:
    void SetUp() override {
        VELDRA_NEED_DISPLAY();
        folder = fs::temp_directory_path() / ("veldra-windowed-play-" + std::to_string(::getpid()));
        fs::create_directories(folder);
        std::ofstream(folder / "walled.txt") << WALLED_IN_LEVEL;
    }
    void TearDown() override {
        std::error_code ec;
        fs::remove_all(folder, ec);
    }

    // Plays the walled-in level in a window of `size` for `frames` frames; the screenshot and
    // the recording (abandoned when the frames run out) land in the scratch folder. The
    // language and the configuration are given, so start-up asks nothing in the window.
    int play(const std::string& size, int frames, const std::string& settings = "lang=en config=") {
        const std::string command =
            "cd '" + folder.string() + "' && SDL_AUDIODRIVER=dummy '" +
            fs::absolute("veldra").string() +
            "' play_level=walled.txt seed=5 camera_zoom=fit frames=" + std::to_string(frames) +
            " window_size=" + size + " " + settings +
            " screenshot=shot.png record_inputs=play.inputs 2>err.txt";
        return std::system(command.c_str());
    }

    Ticks ticks_played() {
        DiskFiles files;
        const FileText text = files.read((folder / "play.inputs").string(), 1 << 20);
        std::string why;
        auto record = text ? input_record_parse(*text.text, why) : std::nullopt;
        EXPECT_TRUE(record) << why;
        return record ? record->abandoned_at : -1;
    }

    static void expect_colour(const Image& image, double x, double y, Rgba expected,
                              const char* what) {
        const auto p = image.at(static_cast<int>(x), static_cast<int>(y));
        EXPECT_NEAR(p[0], expected.r, 3) << what << " at " << x << "," << y;
        EXPECT_NEAR(p[1], expected.g, 3) << what << " at " << x << "," << y;
        EXPECT_NEAR(p[2], expected.b, 3) << what << " at " << x << "," << y;
    }

    fs::path folder;
};

TEST_F(WindowedPlayTest, AScreenshotShowsTheTimeSpentAndThePlayerInAFullHdWindow) {
    ASSERT_EQ(play("1920x1080", 150), 0) << std::ifstream(folder / "err.txt").rdbuf();
    const Image shot = read_png((folder / "shot.png").string());
    ASSERT_EQ(shot.width, 1920);
    ASSERT_EQ(shot.height, 1080);
    const double scale = 1920.0 / LOGICAL_WIDTH;  // 16:9 like the game: no bars, only scaling

    const Ticks ticks = ticks_played();
    ASSERT_GT(ticks, 100);
    const float fill = time_bar_fill_width(double(ticks), 3600, TIME_BAR_WIDTH);
    const double bar_y = (TIME_BAR_Y + TIME_BAR_HEIGHT / 2) * scale;
    expect_colour(shot, (TIME_BAR_X + 2) * scale, bar_y, TIME_BAR_FILL, "start of the fill");
    expect_colour(shot, (TIME_BAR_X + fill - 3) * scale, bar_y, TIME_BAR_FILL, "end of the fill");
    expect_colour(shot, (TIME_BAR_X + fill + 3) * scale, bar_y, TIME_BAR_BACKGROUND,
                  "time still to come");

    Camera camera(LEVEL_W, LEVEL_H, PLAYER_X, PLAYER_Y);
    camera.set_zoom(camera.fit_zoom());
    const ScreenPoint body = creature_body_screen_point(camera, PLAYER_X, PLAYER_Y);
    expect_colour(shot, body.x * scale, body.y * scale, PLAYER_BODY_COLOR, "the player's body");

    // The picture reaches the window's corners: the level's background, not a black bar.
    Rgba background{46, 59, 51, 255};
    expect_colour(shot, 3, 1076, background, "bottom-left corner");
    expect_colour(shot, 1916, 1076, background, "bottom-right corner");
}

TEST_F(WindowedPlayTest, AWiderWindowGetsBlackBarsBesideThePicture) {
    ASSERT_EQ(play("1920x900", 20), 0) << std::ifstream(folder / "err.txt").rdbuf();
    const Image shot = read_png((folder / "shot.png").string());
    ASSERT_EQ(shot.width, 1920);
    const Rgba black{0, 0, 0, 255}, background{46, 59, 51, 255};
    // 1600 x 900 centred in 1920 x 900: 160 pixels of bar on either side.
    expect_colour(shot, 80, 850, black, "left bar");
    expect_colour(shot, 1840, 850, black, "right bar");
    expect_colour(shot, 165, 850, background, "the picture's left edge");
    expect_colour(shot, 1754, 850, background, "the picture's right edge");
}

// A participant at a release build is never stopped by the developer's start-up questions; a
// debug build asks for the language before anything else.
TEST_F(WindowedPlayTest, WithoutALanguageOnlyADebugBuildAsksBeforeTheTrialStarts) {
    ASSERT_EQ(play("1600x900", 20, "config="), 0) << std::ifstream(folder / "err.txt").rdbuf();
    if (!DEBUG_BUILD) {
        EXPECT_TRUE(fs::exists(folder / "play.inputs"));  // the trial started and was recorded
        return;
    }
    // The question waits for an answer: no trial has started, so nothing was recorded.
    EXPECT_FALSE(fs::exists(folder / "play.inputs"));
    const Image shot = read_png((folder / "shot.png").string());
    ASSERT_EQ(shot.width, 1600);
    // The dialog's panel (680 pixels wide, centred: its padding at x 474) over a screen dimmed
    // to nearly black.
    const Rgba panel{15, 15, 15, 255}, dimmed{3, 4, 6, 255};
    expect_colour(shot, 474, 450, panel, "the dialog's edge");
    expect_colour(shot, 40, 40, dimmed, "the screen around it");
}

}  // namespace
}  // namespace veldra

#include "platform/game_window.h"

#include "platform/window_test_support.h"
#include "runtime/paths.h"

namespace veldra::platform::test {
namespace {

using Rgb = std::array<int, 3>;
constexpr Rgb BLACK{0, 0, 0};
constexpr Rgb RED{255, 0, 0};
constexpr Rgb BLUE{0, 0, 255};

class GameWindowTest : public WindowTest {};

TEST_F(GameWindowTest, LogicalFrameIsScaledToFillA1080pWindow) {
    VELDRA_NEED_DISPLAY();
    ASSERT_TRUE(open(1920, 1080));
    EXPECT_FALSE(services.headless);
    DrawList& list = services.renderer->draw_list();
    list.rect(0, 0, 100, 100, {255, 0, 0});
    list.rect(1500, 800, 100, 100, {0, 0, 255});
    const Image image = present_and_capture();
    ASSERT_EQ(image.width, 1920);
    ASSERT_EQ(image.height, 1080);
    // 1.2 window pixels per logical pixel: the 100-pixel squares cover 120 pixels.
    EXPECT_EQ(image.at(10, 10), RED);
    EXPECT_EQ(image.at(110, 110), RED);
    EXPECT_EQ(image.at(130, 130), BLACK);
    EXPECT_EQ(image.at(1909, 1069), BLUE);
    EXPECT_EQ(image.at(1810, 970), BLUE);
    EXPECT_EQ(image.at(1790, 950), BLACK);
}

TEST_F(GameWindowTest, WiderWindowIsLetterboxedWithBlackBars) {
    VELDRA_NEED_DISPLAY();
    ASSERT_TRUE(open(1920, 900));
    services.renderer->draw_list().rect(0, 0, LOGICAL_WIDTH, LOGICAL_HEIGHT, {128, 128, 128});
    const Image image = present_and_capture();
    ASSERT_EQ(image.width, 1920);
    const Rgb grey{128, 128, 128};
    EXPECT_EQ(image.at(50, 450), BLACK);
    EXPECT_EQ(image.at(1870, 450), BLACK);
    EXPECT_EQ(image.at(170, 450), grey);
    EXPECT_EQ(image.at(960, 450), grey);
    EXPECT_EQ(image.at(1750, 450), grey);
}

TEST_F(GameWindowTest, ClosingPutsHeadlessBackendsBack) {
    VELDRA_NEED_DISPLAY();
    ASSERT_TRUE(open(800, 450));
    services.audio->set_volume(0.25);
    window.reset();
    EXPECT_TRUE(services.headless);
    EXPECT_NE(dynamic_cast<NullRenderer*>(services.renderer.get()), nullptr);
    EXPECT_NE(dynamic_cast<ScriptedInput*>(services.input.get()), nullptr);
    EXPECT_NE(dynamic_cast<SilentAudio*>(services.audio.get()), nullptr);
    EXPECT_DOUBLE_EQ(services.audio->volume(), 0.25);
    // SDL is down and up again cleanly: a second window opens.
    EXPECT_TRUE(open(800, 450));
}

TEST_F(GameWindowTest, FailuresLeaveTheServicesUntouched) {
    VELDRA_NEED_DISPLAY();
    WindowOptions options;
    options.pace_frames = false;
    std::string error;

    options.font_folder = (folder / "no-fonts-here").string();
    EXPECT_EQ(open_game_window(services, options, error), nullptr);
    EXPECT_NE(error.find("no-fonts-here/DejaVuSans.ttf"), std::string::npos) << error;
    EXPECT_NE(error.find("fonts-dejavu-core"), std::string::npos) << error;

    // A folder with the regular face only: the oblique faces' package is named.
    const std::filesystem::path partial = folder / "regular-only";
    std::filesystem::create_directories(partial);
    const std::filesystem::path fonts = std::filesystem::path(make_included_file_filename("fonts"));
    std::filesystem::copy_file(fonts / "DejaVuSans.ttf", partial / "DejaVuSans.ttf");
    std::filesystem::copy_file(fonts / "DejaVuSans-Bold.ttf", partial / "DejaVuSans-Bold.ttf");
    options.font_folder = partial.string();
    EXPECT_EQ(open_game_window(services, options, error), nullptr);
    EXPECT_NE(error.find("DejaVuSans-Oblique.ttf"), std::string::npos) << error;
    EXPECT_NE(error.find("fonts-dejavu-extra"), std::string::npos) << error;

    std::FILE* f = std::fopen((partial / "DejaVuSans-Oblique.ttf").c_str(), "w");
    std::fputs("these are not glyphs", f);
    std::fclose(f);
    EXPECT_EQ(open_game_window(services, options, error), nullptr);
    EXPECT_NE(error.find("not a TrueType"), std::string::npos) << error;

    options.font_folder.clear();
    options.width = 0;
    EXPECT_EQ(open_game_window(services, options, error), nullptr);
    EXPECT_NE(error.find("not positive"), std::string::npos) << error;

    EXPECT_TRUE(services.headless);
    EXPECT_NE(dynamic_cast<NullRenderer*>(services.renderer.get()), nullptr);

    ASSERT_TRUE(open(640, 360));
    Services other;
    options.width = 640;
    EXPECT_EQ(open_game_window(other, options, error), nullptr);
    EXPECT_NE(error.find("already open"), std::string::npos) << error;
    EXPECT_TRUE(other.headless);
}

TEST_F(GameWindowTest, ScreenshotErrorsAreExplained) {
    VELDRA_NEED_DISPLAY();
    ASSERT_TRUE(open(640, 360));
    std::string error;
    EXPECT_FALSE(services.renderer->save_screenshot((folder / "early.png").string(), error));
    EXPECT_NE(error.find("no frame"), std::string::npos) << error;

    services.renderer->present();
    EXPECT_FALSE(services.renderer->save_screenshot(folder.string(), error));
    EXPECT_NE(error.find("is a folder"), std::string::npos) << error;
    EXPECT_FALSE(
        services.renderer->save_screenshot((folder / "missing" / "a.png").string(), error));
    EXPECT_NE(error.find("does not exist"), std::string::npos) << error;
    EXPECT_FALSE(std::filesystem::exists(folder / "missing"));

    EXPECT_TRUE(services.renderer->save_screenshot((folder / "ok.png").string(), error)) << error;
    const Image image = read_png((folder / "ok.png").string());
    EXPECT_EQ(image.width, 640);
    EXPECT_EQ(image.height, 360);
}

}  // namespace
}  // namespace veldra::platform::test

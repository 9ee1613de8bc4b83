#include "platform/sdl_renderer.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/window_test_support.h"
#include "runtime/log.h"

namespace veldra::platform::test {
namespace {

using Rgb = std::array<int, 3>;

// Pixels in [x0, x1) x [y0, y1) for which `keep` holds.
template <class Keep>
int count_pixels(const Image& image, int x0, int y0, int x1, int y1, Keep keep) {
    int n = 0;
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x)
            n += keep(image.at(x, y)) ? 1 : 0;
    return n;
}

bool lit(const Rgb& p) {
    return p[0] + p[1] + p[2] > 60;
}

// 1:1 with the logical screen, so logical coordinates are image coordinates.
class SdlRendererTest : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        VELDRA_NEED_DISPLAY();
        ASSERT_TRUE(open(LOGICAL_WIDTH, LOGICAL_HEIGHT));
    }
    Renderer& renderer() { return *services.renderer; }
};

TEST_F(SdlRendererTest, TextIsDrawnInsideItsMeasuredBox) {
    const TextSize size = renderer().measure_text("Veldra 42", 20);
    EXPECT_GT(size.width, 50);
    EXPECT_LT(size.width, 150);
    EXPECT_FLOAT_EQ(size.height, 20);
    renderer().draw_list().text(100, 100, "Veldra 42", {255, 255, 255});
    const Image image = present_and_capture();
    const int w = static_cast<int>(size.width);
    EXPECT_GT(count_pixels(image, 100, 100, 100 + w, 120, lit), 40);
    // Nothing spills far outside the box.
    EXPECT_EQ(count_pixels(image, 100 + w + 3, 95, 100 + w + 60, 125, lit), 0);
    EXPECT_EQ(count_pixels(image, 95, 124, 100 + w, 140, lit), 0);
}

TEST_F(SdlRendererTest, MeasuringFollowsLinesSizesAndIgnoresTags) {
    const TextSize one = renderer().measure_text("Harvest", 20);
    EXPECT_FLOAT_EQ(renderer().measure_text("[#ff0000]Harvest[/c]", 20).width, one.width);
    EXPECT_FLOAT_EQ(renderer().measure_text("[pin_center]Harvest", 20).width, one.width);
    EXPECT_GT(renderer().measure_text("[not a tag]Harvest", 20).width, one.width);
    const TextSize two = renderer().measure_text("Harvest\nHa", 20);
    EXPECT_FLOAT_EQ(two.width, one.width);
    EXPECT_FLOAT_EQ(two.height, 40);
    const TextSize big = renderer().measure_text("Harvest", 40);
    EXPECT_NEAR(big.width, 2 * one.width, 0.1 * one.width);
    EXPECT_FLOAT_EQ(renderer().measure_text("", 20).width, 0);
}

TEST_F(SdlRendererTest, ColourTagsChangeTheColourAndAreNotDrawn) {
    renderer().draw_list().text(100, 100, "[#ff0000]MMMM[/c]MMMM", {255, 255, 255});
    // The same words without tags, each in its own colour, lower down.
    renderer().draw_list().text(100, 200, "MMMM", {255, 0, 0});
    const float red_width = renderer().measure_text("MMMM", 20).width;
    renderer().draw_list().text(100 + red_width, 200, "MMMM", {255, 255, 255});
    const Image image = present_and_capture();
    const int w = static_cast<int>(red_width);
    auto reddish = [](const Rgb& p) { return p[0] > 150 && p[1] < 60 && p[2] < 60; };
    auto whitish = [](const Rgb& p) { return p[0] > 150 && p[1] > 150 && p[2] > 150; };
    EXPECT_GT(count_pixels(image, 100, 100, 100 + w, 120, reddish), 30);
    EXPECT_EQ(count_pixels(image, 100, 100, 100 + w - 2, 120, whitish), 0);
    EXPECT_GT(count_pixels(image, 100 + w + 2, 100, 100 + 2 * w, 120, whitish), 30);
    EXPECT_EQ(count_pixels(image, 100 + w + 2, 100, 100 + 2 * w, 120, reddish), 0);
    // Tags take no room: the tagged line is pixel for pixel the untagged one.
    for (int y = 0; y < 22; ++y)
        for (int x = 0; x < 2 * w + 4; ++x)
            ASSERT_EQ(image.at(100 + x, 100 + y), image.at(100 + x, 200 + y)) << x << "," << y;
}

// The lit columns of the rows [y0, y1): first and one past the last.
std::pair<int, int> lit_columns(const Image& image, int y0, int y1) {
    int first = image.width;
    int last = -1;
    for (int y = y0; y < y1; ++y)
        for (int x = 0; x < image.width; ++x)
            if (lit(image.at(x, y))) {
                first = std::min(first, x);
                last = std::max(last, x);
            }
    return {first, last + 1};
}

TEST_F(SdlRendererTest, PinnedTextIsDrawnCentredInItsBoxAndMeasuredAsDrawn) {
    renderer().draw_list().text_box(200, 300, 1000, "[pin_center]Harvest [b]moon", {255, 255, 255});
    const std::string wrapped = "[pin_right]one two three four five six";
    const TextSize measured = renderer().measure_text_box(wrapped, 20, 150);
    renderer().draw_list().text_box(200, 500, 150, wrapped, {255, 255, 255});
    const Image image = present_and_capture();
    const auto [left, right] = lit_columns(image, 298, 324);
    ASSERT_LT(left, right);
    EXPECT_NEAR((left + right) / 2.0, 700, 3);
    EXPECT_NEAR(right - left, renderer().measure_text("Harvest [b]moon", 20).width, 4);
    // Wrapped lines end at the box's right edge, and take the height measured for them.
    const int lines = static_cast<int>(measured.height / 20);
    EXPECT_FLOAT_EQ(measured.height, 20.0f * lines);
    ASSERT_GE(lines, 2);
    EXPECT_LE(measured.width, 150);
    for (int line = 0; line < lines; ++line) {
        const auto [line_left, line_right] = lit_columns(image, 500 + 20 * line, 520 + 20 * line);
        EXPECT_NEAR(line_right, 350, 3) << line;
        EXPECT_GT(line_left, 200) << line;
    }
    const int bottom = 500 + 20 * lines;
    EXPECT_EQ(count_pixels(image, 190, bottom + 2, 360, bottom + 40, lit), 0);
}

TEST_F(SdlRendererTest, LaterCommandsCoverEarlierText) {
    renderer().draw_list().text(100, 100, "covered", {255, 255, 255});
    renderer().draw_list().rect(90, 90, 200, 40, {0, 0, 80});
    renderer().draw_list().text(400, 100, "visible", {255, 255, 255});
    const Image image = present_and_capture();
    auto text_pixel = [](const Rgb& p) { return p[0] > 60; };
    EXPECT_EQ(count_pixels(image, 90, 90, 290, 130, text_pixel), 0);
    EXPECT_GT(count_pixels(image, 400, 100, 470, 120, text_pixel), 20);
}

TEST_F(SdlRendererTest, TexturesTakeTintFlipAndRotation) {
    // Left pixel red, right pixel green.
    const std::vector<std::uint32_t> pixels{0xff0000ff, 0x00ff00ff};
    const TextureId two_tone = renderer().create_texture(2, 1, pixels);
    const std::vector<std::uint32_t> white(4, 0xffffffff);
    const TextureId plain = renderer().create_texture(2, 2, white);
    ASSERT_NE(two_tone, 0u);
    ASSERT_NE(plain, two_tone);
    DrawList& list = renderer().draw_list();
    list.texture(two_tone, 100, 100, 200, 100);
    list.texture(two_tone, 100, 300, 200, 100, {255, 255, 255}, 0, true);
    list.texture(two_tone, 100, 500, 200, 100, {255, 255, 255}, 180);
    list.texture(plain, 500, 100, 100, 100, {0, 0, 255});
    list.texture(plain, 500, 300, 100, 100, {255, 255, 255, 0});
    const Image image = present_and_capture();
    const Rgb red{255, 0, 0};
    const Rgb green{0, 255, 0};
    EXPECT_EQ(image.at(120, 150), red);
    EXPECT_EQ(image.at(280, 150), green);
    EXPECT_EQ(image.at(120, 350), green);
    EXPECT_EQ(image.at(280, 350), red);
    EXPECT_EQ(image.at(120, 550), green);
    EXPECT_EQ(image.at(280, 550), red);
    EXPECT_EQ(image.at(550, 150), (Rgb{0, 0, 255}));
    EXPECT_EQ(image.at(550, 350), (Rgb{0, 0, 0}));
}

TEST_F(SdlRendererTest, ShapesBlendAndStayInTheirBounds) {
    DrawList& list = renderer().draw_list();
    list.rect(100, 100, 100, 100, {200, 0, 0});
    list.rect(100, 100, 100, 100, {0, 0, 200, 128});
    list.circle(500, 500, 40, {0, 255, 0});
    list.rect_outline(800, 100, 100, 100, {255, 255, 0});
    list.line(1000, 300, 1200, 300, {0, 255, 255});
    const Image image = present_and_capture();
    const Rgb blended = image.at(150, 150);
    EXPECT_NEAR(blended[0], 100, 3);
    EXPECT_NEAR(blended[2], 100, 3);
    EXPECT_EQ(image.at(500, 500), (Rgb{0, 255, 0}));
    EXPECT_EQ(image.at(530, 500), (Rgb{0, 255, 0}));
    EXPECT_EQ(image.at(535, 535), (Rgb{0, 0, 0}));  // outside the rim, inside the square
    EXPECT_EQ(image.at(800, 150), (Rgb{255, 255, 0}));
    EXPECT_EQ(image.at(850, 150), (Rgb{0, 0, 0}));
    EXPECT_EQ(image.at(1100, 300), (Rgb{0, 255, 255}));
}

TEST_F(SdlRendererTest, BadTexturesAreRefusedWithAWarning) {
    LogCapture log;
    const std::vector<std::uint32_t> three(3, 0xffffffff);
    EXPECT_EQ(renderer().create_texture(2, 2, three), 0u);
    EXPECT_EQ(renderer().create_texture(0, 0, {}), 0u);
    EXPECT_TRUE(log.contains("is not made"));
    // Drawing a texture that does not exist draws nothing and does not fail.
    renderer().draw_list().texture(0, 0, 0, 100, 100);
    renderer().draw_list().texture(99, 0, 0, 100, 100);
    const Image image = present_and_capture();
    EXPECT_EQ(image.at(50, 50), (Rgb{0, 0, 0}));
}

TEST_F(SdlRendererTest, ScreenshotShowsTheLastFrameNotTheNextOne) {
    renderer().draw_list().rect(0, 0, 50, 50, {255, 0, 0});
    renderer().present();
    renderer().draw_list().rect(0, 0, 50, 50, {0, 255, 0});  // drawn but not presented
    const std::string path = (folder / "last.png").string();
    std::string error;
    ASSERT_TRUE(renderer().save_screenshot(path, error)) << error;
    EXPECT_EQ(read_png(path).at(10, 10), (Rgb{255, 0, 0}));
    EXPECT_EQ(renderer().draw_list().commands().size(), 1u);
}

}  // namespace
}  // namespace veldra::platform::test

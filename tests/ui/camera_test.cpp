#include "ui/camera.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

constexpr double VIEW_CENTRE_X = Camera::VIEW_LEFT + Camera::VIEW_WIDTH / 2;
constexpr double VIEW_CENTRE_Y = Camera::VIEW_TOP + Camera::VIEW_HEIGHT / 2;

TEST(CameraTest, ASmallLevelIsFittedWholeAndCentredWhereverThePlayerGoes) {
    Camera camera(640, 320, 50, 50);  // 10 x 5 cells
    EXPECT_DOUBLE_EQ(camera.zoom(), Camera::VIEW_WIDTH / 640);  // width is the tighter side
    const ScreenPoint top_left = camera.world_to_screen(0, 0);
    const ScreenPoint bottom_right = camera.world_to_screen(640, 320);
    EXPECT_NEAR(top_left.x, Camera::VIEW_LEFT, 1e-9);
    EXPECT_NEAR(bottom_right.x, Camera::VIEW_LEFT + Camera::VIEW_WIDTH, 1e-9);
    // Equal margins above and below.
    EXPECT_NEAR(top_left.y - Camera::VIEW_TOP, Camera::VIEW_TOP + Camera::VIEW_HEIGHT - bottom_right.y,
                1e-9);
    EXPECT_GT(top_left.y, Camera::VIEW_TOP);
    camera.follow(600, 300, true);
    EXPECT_DOUBLE_EQ(camera.centre_x(), 320);
    EXPECT_DOUBLE_EQ(camera.centre_y(), 160);
}

TEST(CameraTest, ALargeLevelFollowsThePlayerButNeverShowsPastItsEdges) {
    Camera camera(3072, 3072, 100, 100);
    camera.set_zoom(1);
    camera.follow(100, 100, true);
    // Pinned to the top-left corner: the level's corner is the viewport's corner.
    const ScreenPoint corner = camera.world_to_screen(0, 0);
    EXPECT_DOUBLE_EQ(corner.x, Camera::VIEW_LEFT);
    EXPECT_DOUBLE_EQ(corner.y, Camera::VIEW_TOP);
    camera.follow(3000, 3050, true);
    const ScreenPoint far = camera.world_to_screen(3072, 3072);
    EXPECT_DOUBLE_EQ(far.x, Camera::VIEW_LEFT + Camera::VIEW_WIDTH);
    EXPECT_DOUBLE_EQ(far.y, Camera::VIEW_TOP + Camera::VIEW_HEIGHT);
    // In the middle the player is at the viewport's centre once the camera has caught up.
    camera.follow(1500, 1400, true);
    EXPECT_DOUBLE_EQ(camera.world_to_screen(1500, 1400).x, VIEW_CENTRE_X);
    EXPECT_DOUBLE_EQ(camera.world_to_screen(1500, 1400).y, VIEW_CENTRE_Y);
}

TEST(CameraTest, FollowingIsSmoothAndConvergesOnThePlayer) {
    Camera camera(3072, 3072, 1000, 1000);
    camera.set_zoom(1);
    camera.follow(1000, 1000, true);
    camera.follow(1200, 1000);
    EXPECT_GT(camera.centre_x(), 1000);
    EXPECT_LT(camera.centre_x(), 1100);  // a small part of the way in one frame
    for (int i = 0; i < 200; ++i)
        camera.follow(1200, 1000);
    EXPECT_NEAR(camera.centre_x(), 1200, 1e-6);
}

TEST(CameraTest, WheelZoomsWithinItsRangeAndKeepsTheLevelInside) {
    Camera camera(2048, 2048, 1500, 1500);
    const double fitted = camera.zoom();
    camera.wheel(1);
    EXPECT_NEAR(camera.zoom(), fitted * Camera::WHEEL_STEP, 1e-12);
    camera.wheel(-2);
    EXPECT_NEAR(camera.zoom(), fitted / Camera::WHEEL_STEP, 1e-12);
    camera.wheel(100);
    EXPECT_EQ(camera.zoom(), Camera::MAX_ZOOM);
    camera.wheel(-100);
    EXPECT_EQ(camera.zoom(), Camera::MIN_ZOOM);
    // Zoomed out this far the level fits again and is centred.
    EXPECT_DOUBLE_EQ(camera.centre_x(), 1024);
}

TEST(CameraTest, ScreenToWorldUndoesWorldToScreenAtAnyZoomAndPosition) {
    Camera camera(2048, 1536, 700, 900);
    for (double zoom : {0.25, 0.6, 1.0, 2.2}) {
        camera.set_zoom(zoom);
        camera.follow(300 * zoom, 1200, true);
        for (auto [x, y] : {std::pair{0.0, 0.0}, {123.5, 987.25}, {2048.0, 1536.0}}) {
            const ScreenPoint screen = camera.world_to_screen(x, y);
            const ScreenPoint back = camera.screen_to_world(screen.x, screen.y);
            EXPECT_NEAR(back.x, x, 1e-9) << zoom;
            EXPECT_NEAR(back.y, y, 1e-9) << zoom;
        }
        // One world pixel is `zoom` screen pixels.
        EXPECT_NEAR(camera.world_to_screen(11, 0).x - camera.world_to_screen(10, 0).x, zoom, 1e-9);
    }
}

}  // namespace
}  // namespace veldra

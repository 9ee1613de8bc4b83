#pragma once
// Which part of the level the window shows and how large. The world is shown in the viewport,
// the screen below the HUD's band; a level that fits at the chosen zoom is shown whole and
// centred, a larger one follows the player without showing anything beyond the level's edge.

namespace veldra {

struct ScreenPoint {
    double x = 0;
    double y = 0;
};

class Camera {
public:
    static constexpr double MIN_ZOOM = 0.25;
    // A large level starts no smaller than this, following the player: at the zoom that shows
    // all of it, creatures are too small to click. The wheel zooms out further.
    static constexpr double SMALLEST_START_ZOOM = 0.6;
    static constexpr double MAX_ZOOM = 3;
    static constexpr double WHEEL_STEP = 1.15;  // zoom factor per wheel notch
    static constexpr double FOLLOW_RATE = 0.12;  // share of the way to the player per frame
    // The world's part of the 1600 x 900 screen: everything below the HUD band.
    static constexpr double VIEW_LEFT = 0;
    static constexpr double VIEW_TOP = 84;
    static constexpr double VIEW_WIDTH = 1600;
    static constexpr double VIEW_HEIGHT = 900 - VIEW_TOP;

    // A level of `width` x `height` pixels, shown fitted to the viewport (within the zoom range)
    // and centred on (focus_x, focus_y) as far as its edges allow.
    Camera(double level_width, double level_height, double focus_x, double focus_y);

    // The zoom at which the level fills the viewport in one direction and fits in the other.
    double fit_zoom() const;
    double zoom() const { return zoom_; }
    void set_zoom(double zoom);
    // Mouse wheel notches: positive zooms in.
    void wheel(double notches) { set_zoom(zoom_ * pow_step(notches)); }

    // Eases toward (x, y), the player's position; `snap` jumps there at once.
    void follow(double x, double y, bool snap = false);

    ScreenPoint world_to_screen(double x, double y) const;
    ScreenPoint screen_to_world(double x, double y) const;
    // The world point at the viewport's centre, after clamping.
    double centre_x() const { return centre_x_; }
    double centre_y() const { return centre_y_; }
    double level_width() const { return level_width_; }
    double level_height() const { return level_height_; }

private:
    static double pow_step(double notches);
    // Keeps the view inside the level, or centres the level on an axis where it fits.
    void clamp_centre();

    double level_width_;
    double level_height_;
    double zoom_ = 1;
    double centre_x_ = 0;
    double centre_y_ = 0;
    double target_x_ = 0;
    double target_y_ = 0;
};

}  // namespace veldra

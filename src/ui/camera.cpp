#include "ui/camera.h"

#include <algorithm>
#include <cmath>

namespace veldra {

Camera::Camera(double level_width, double level_height, double focus_x, double focus_y)
    : level_width_(std::max(1.0, level_width)), level_height_(std::max(1.0, level_height)) {
    target_x_ = focus_x;
    target_y_ = focus_y;
    set_zoom(std::max(fit_zoom(), SMALLEST_START_ZOOM));
    follow(focus_x, focus_y, true);
}

double Camera::fit_zoom() const {
    return std::min(VIEW_WIDTH / level_width_, VIEW_HEIGHT / level_height_);
}

void Camera::set_zoom(double zoom) {
    zoom_ = std::clamp(std::isfinite(zoom) ? zoom : 1.0, MIN_ZOOM, MAX_ZOOM);
    // Zooming about the player rather than the old centre keeps them in view.
    centre_x_ = target_x_;
    centre_y_ = target_y_;
    clamp_centre();
}

double Camera::pow_step(double notches) { return std::pow(WHEEL_STEP, notches); }

void Camera::follow(double x, double y, bool snap) {
    target_x_ = x;
    target_y_ = y;
    const double rate = snap ? 1 : FOLLOW_RATE;
    centre_x_ += (x - centre_x_) * rate;
    centre_y_ += (y - centre_y_) * rate;
    clamp_centre();
}

void Camera::clamp_centre() {
    auto clamp_axis = [this](double& centre, double level, double view) {
        const double half = view / zoom_ / 2;
        centre = level <= 2 * half ? level / 2 : std::clamp(centre, half, level - half);
    };
    clamp_axis(centre_x_, level_width_, VIEW_WIDTH);
    clamp_axis(centre_y_, level_height_, VIEW_HEIGHT);
}

ScreenPoint Camera::world_to_screen(double x, double y) const {
    return {VIEW_LEFT + VIEW_WIDTH / 2 + (x - centre_x_) * zoom_,
            VIEW_TOP + VIEW_HEIGHT / 2 + (y - centre_y_) * zoom_};
}

ScreenPoint Camera::screen_to_world(double x, double y) const {
    return {centre_x_ + (x - VIEW_LEFT - VIEW_WIDTH / 2) / zoom_,
            centre_y_ + (y - VIEW_TOP - VIEW_HEIGHT / 2) / zoom_};
}

}  // namespace veldra

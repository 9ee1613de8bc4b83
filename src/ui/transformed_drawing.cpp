// PixelCanvas::draw_transformed: the boulders and leaves of the level's ground, hundreds of
// them turned, scaled and tinted each, at start-up. Rotating every covered pixel in doubles
// cost more than the rest of the ground picture, so positions in the source step along a row
// in fixed point, only the box the source's visible pixels can reach is visited, and the
// source is premultiplied by alpha once a call, so sampling, tinting and blending onto the
// opaque ground are integer mixes without a division.

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "ui/pixel_canvas.h"

namespace veldra {

namespace {

constexpr int FRACTION_BITS = 16;  // of a position in the source picture
constexpr double FIXED_ONE = 1 << FRACTION_BITS;

// Inclusive pixel indices; empty when right < left.
struct PixelBox {
    int left, top, right, bottom;
};

PixelBox visible_box(const PixelCanvas& picture) {
    PixelBox box{picture.width(), picture.height(), -1, -1};
    const std::uint32_t* row = picture.pixels().data();
    for (int y = 0; y < picture.height(); ++y, row += picture.width()) {
        for (int x = 0; x < picture.width(); ++x) {
            if (row[x] & 0xff) {
                box.left = std::min(box.left, x);
                box.right = std::max(box.right, x);
                box.top = std::min(box.top, y);
                box.bottom = y;
            }
        }
    }
    return box;
}

// x * y / 255 rounded, exact for 8-bit x and y.
constexpr std::uint32_t scale_channel(std::uint32_t x, std::uint32_t y) {
    const std::uint32_t v = x * y + 128;
    return (v + (v >> 8)) >> 8;
}

// The four channels of packed `a` and `b` mixed, `t` of 256 toward `b`: two channels at a time
// in 16-bit lanes, which 255 * 256 plus rounding never overflows.
constexpr std::uint32_t mix_packed(std::uint32_t a, std::uint32_t b, std::uint32_t t) {
    const std::uint32_t even =
        ((a & 0x00ff00ff) * (256 - t) + (b & 0x00ff00ff) * t + 0x00800080) >> 8 & 0x00ff00ff;
    const std::uint32_t odd =
        ((a >> 8 & 0x00ff00ff) * (256 - t) + (b >> 8 & 0x00ff00ff) * t + 0x00800080) & 0xff00ff00;
    return odd | even;
}

// The visible box of a picture with colours premultiplied by alpha, so bilinear sampling is a
// plain mix that transparent neighbours cannot darken, framed by one transparent pixel so that
// sampling anywhere a visible pixel reaches needs no bounds checks.
class PremultipliedPatch {
public:
    PremultipliedPatch(const PixelCanvas& picture, const PixelBox& box)
        : left_(box.left - 1), top_(box.top - 1), width_(box.right - box.left + 3),
          pixels_(std::size_t(width_) * std::size_t(box.bottom - box.top + 3), 0) {
        for (int y = box.top; y <= box.bottom; ++y) {
            for (int x = box.left; x <= box.right; ++x) {
                const Rgba p = picture.at(x, y);
                pixels_[std::size_t(y - top_) * std::size_t(width_) + std::size_t(x - left_)] =
                    scale_channel(p.r, p.a) << 24 | scale_channel(p.g, p.a) << 16 |
                    scale_channel(p.b, p.a) << 8 | p.a;
            }
        }
    }

    // Premultiplied, at a position of the source relative to its pixel centres in fixed point,
    // which must lie within the patch's frame.
    std::uint32_t sample(std::int32_t fx, std::int32_t fy) const {
        const std::uint32_t tx = std::uint32_t(fx >> 8) & 0xff, ty = std::uint32_t(fy >> 8) & 0xff;
        const std::uint32_t* top = pixels_.data() +
                                   std::size_t((fy >> FRACTION_BITS) - top_) * std::size_t(width_) +
                                   std::size_t((fx >> FRACTION_BITS) - left_);
        const std::uint32_t* bottom = top + width_;
        return mix_packed(mix_packed(top[0], top[1], tx), mix_packed(bottom[0], bottom[1], tx), ty);
    }

private:
    int left_, top_, width_;
    std::vector<std::uint32_t> pixels_;
};

Rgba unpremultiplied(std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t alpha) {
    auto straight = [alpha](std::uint32_t c) {
        return static_cast<std::uint8_t>(std::min<std::uint32_t>(255, (c * 255 + alpha / 2) / alpha));
    };
    return {straight(r), straight(g), straight(b), static_cast<std::uint8_t>(alpha)};
}

}  // namespace

void PixelCanvas::draw_transformed(const PixelCanvas& source, double cx, double cy, double scale,
                                   double angle, bool mirrored, Rgba tint) {
    const PixelBox box = visible_box(source);
    if (box.right < box.left || scale <= 0)
        return;
    const double radians = angle * std::numbers::pi / 180;
    const double c = std::cos(radians), s = std::sin(radians), flip = mirrored ? -1 : 1;
    const double half_w = source.width_ / 2.0, half_h = source.height_ / 2.0;
    // Screen y points down, so a counter-clockwise turn on screen is clockwise in these
    // coordinates; undoing it maps a canvas pixel to its source position, taken relative to
    // the source's pixel centres as sampling wants it.
    auto source_x = [&](double x, double y) {
        return flip * ((x + 0.5 - cx) * c - (y + 0.5 - cy) * s) / scale + half_w - 0.5;
    };
    auto source_y = [&](double x, double y) {
        return ((x + 0.5 - cx) * s + (y + 0.5 - cy) * c) / scale + half_h - 0.5;
    };
    // The canvas box that the visible source pixels, widened by the one pixel bilinear
    // sampling reaches, turn into.
    double min_x = 1e9, max_x = -1e9, min_y = 1e9, max_y = -1e9;
    for (const double fx : {box.left - 1.0, box.right + 1.0}) {
        for (const double fy : {box.top - 1.0, box.bottom + 1.0}) {
            const double rx = flip * (fx + 0.5 - half_w), ry = fy + 0.5 - half_h;
            const double x = cx + (c * rx + s * ry) * scale - 0.5;
            const double y = cy + (c * ry - s * rx) * scale - 0.5;
            min_x = std::min(min_x, x), max_x = std::max(max_x, x);
            min_y = std::min(min_y, y), max_y = std::max(max_y, y);
        }
    }
    const int x0 = std::max(0, static_cast<int>(std::floor(min_x)));
    const int x1 = std::min(width_ - 1, static_cast<int>(std::ceil(max_x)));
    const int y0 = std::max(0, static_cast<int>(std::floor(min_y)));
    const int y1 = std::min(height_ - 1, static_cast<int>(std::ceil(max_y)));
    const PremultipliedPatch patch(source, box);
    // Premultiplied colours take the tint's alpha along with the tint.
    const std::uint32_t tint_r = scale_channel(tint.r, tint.a), tint_g = scale_channel(tint.g, tint.a),
                        tint_b = scale_channel(tint.b, tint.a);
    const auto step_x = static_cast<std::int32_t>(std::lround(flip * c / scale * FIXED_ONE));
    const auto step_y = static_cast<std::int32_t>(std::lround(s / scale * FIXED_ONE));
    for (int y = y0; y <= y1; ++y) {
        auto fx = static_cast<std::int32_t>(std::lround(source_x(x0, y) * FIXED_ONE));
        auto fy = static_cast<std::int32_t>(std::lround(source_y(x0, y) * FIXED_ONE));
        std::uint32_t* row = pixels_.data() + index(0, y);
        for (int x = x0; x <= x1; ++x, fx += step_x, fy += step_y) {
            const int ix = fx >> FRACTION_BITS, iy = fy >> FRACTION_BITS;
            if (ix < box.left - 1 || ix > box.right || iy < box.top - 1 || iy > box.bottom)
                continue;  // every pixel sampled there is transparent
            const std::uint32_t p = patch.sample(fx, fy);
            const std::uint32_t alpha = scale_channel(p & 0xff, tint.a);
            if (alpha == 0)
                continue;
            const std::uint32_t r = scale_channel(p >> 24, tint_r);
            const std::uint32_t g = scale_channel(p >> 16 & 0xff, tint_g);
            const std::uint32_t b = scale_channel(p >> 8 & 0xff, tint_b);
            std::uint32_t& under = row[x];
            if ((under & 0xff) == 0xff) {  // the level's ground: opaque, and stays so
                const std::uint32_t keep = 255 - alpha;
                under = (r + scale_channel(under >> 24, keep)) << 24 |
                        (g + scale_channel(under >> 16 & 0xff, keep)) << 16 |
                        (b + scale_channel(under >> 8 & 0xff, keep)) << 8 | 0xff;
            } else {
                blend(x, y, unpremultiplied(r, g, b, alpha));
            }
        }
    }
}

}  // namespace veldra

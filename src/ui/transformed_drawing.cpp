// PixelCanvas::draw_transformed: the boulders and leaves of the level's ground, hundreds of
// them turned, scaled and tinted each, at start-up. Rotating every covered pixel in doubles
// cost more than the rest of the ground picture, so positions in the source step along a row
// in fixed point, only the box the source's visible pixels can reach is visited, and the
// sampling and blending stay in integers.

#include <algorithm>
#include <cmath>
#include <numbers>

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

// `source` over an opaque `under`, one channel, `alpha` of 255.
constexpr std::uint32_t over_opaque(std::uint32_t source, std::uint32_t under, std::uint32_t alpha) {
    const std::uint32_t v = source * alpha + under * (255 - alpha) + 128;
    return (v + (v >> 8)) >> 8;
}

std::uint32_t pixel_or_clear(const PixelCanvas& picture, int x, int y) {
    if (x < 0 || y < 0 || x >= picture.width() || y >= picture.height())
        return 0;
    return picture.pixels()[std::size_t(y) * std::size_t(picture.width()) + std::size_t(x)];
}

// Bilinear between the pixel centres around (fx, fy), a position relative to pixel centres in
// fixed point; straight alpha. Colours are weighted by alpha, so transparent neighbours do not
// darken an edge. Weights are in 1/65536 and sums fit 32 bits: 255 * 255 * 65536 < 2^32.
std::uint32_t sample(const PixelCanvas& picture, std::int32_t fx, std::int32_t fy) {
    const int ix = fx >> FRACTION_BITS, iy = fy >> FRACTION_BITS;
    const std::uint32_t tx = std::uint32_t(fx >> 8) & 0xff, ty = std::uint32_t(fy >> 8) & 0xff;
    std::uint32_t p[4];
    if (ix >= 0 && iy >= 0 && ix + 1 < picture.width() && iy + 1 < picture.height()) {
        const std::uint32_t* top =
            picture.pixels().data() + std::size_t(iy) * std::size_t(picture.width()) + std::size_t(ix);
        const std::uint32_t* bottom = top + picture.width();
        p[0] = top[0], p[1] = top[1], p[2] = bottom[0], p[3] = bottom[1];
    } else {
        p[0] = pixel_or_clear(picture, ix, iy), p[1] = pixel_or_clear(picture, ix + 1, iy);
        p[2] = pixel_or_clear(picture, ix, iy + 1), p[3] = pixel_or_clear(picture, ix + 1, iy + 1);
    }
    const std::uint32_t w[4] = {(256 - tx) * (256 - ty), tx * (256 - ty), (256 - tx) * ty, tx * ty};
    std::uint32_t r = 0, g = 0, b = 0;
    if ((p[0] & p[1] & p[2] & p[3] & 0xff) == 0xff) {  // inside the picture: plain weights
        for (int i = 0; i < 4; ++i) {
            r += (p[i] >> 24) * w[i];
            g += (p[i] >> 16 & 0xff) * w[i];
            b += (p[i] >> 8 & 0xff) * w[i];
        }
        return (r + 32768) >> 16 << 24 | (g + 32768) >> 16 << 16 | (b + 32768) >> 16 << 8 | 0xff;
    }
    std::uint32_t total = 0;
    for (int i = 0; i < 4; ++i) {
        const std::uint32_t weight = w[i] * (p[i] & 0xff);
        total += weight;
        r += (p[i] >> 24) * weight;
        g += (p[i] >> 16 & 0xff) * weight;
        b += (p[i] >> 8 & 0xff) * weight;
    }
    if (total == 0)
        return 0;
    const std::uint32_t half = total / 2;
    return (r + half) / total << 24 | (g + half) / total << 16 | (b + half) / total << 8 |
           (total + 32768) >> 16;
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
            const std::uint32_t p = sample(source, fx, fy);
            const std::uint32_t alpha = scale_channel(p & 0xff, tint.a);
            if (alpha == 0)
                continue;
            const std::uint32_t r = scale_channel(p >> 24, tint.r);
            const std::uint32_t g = scale_channel(p >> 16 & 0xff, tint.g);
            const std::uint32_t b = scale_channel(p >> 8 & 0xff, tint.b);
            std::uint32_t& under = row[x];
            if (alpha == 255) {
                under = r << 24 | g << 16 | b << 8 | 0xff;
            } else if ((under & 0xff) == 0xff) {  // the level's ground: opaque
                under = over_opaque(r, under >> 24, alpha) << 24 |
                        over_opaque(g, under >> 16 & 0xff, alpha) << 16 |
                        over_opaque(b, under >> 8 & 0xff, alpha) << 8 | 0xff;
            } else {
                blend(x, y, {std::uint8_t(r), std::uint8_t(g), std::uint8_t(b), std::uint8_t(alpha)});
            }
        }
    }
}

}  // namespace veldra

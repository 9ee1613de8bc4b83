#include "ui/pixel_canvas.h"

#include <algorithm>
#include <cmath>

namespace veldra {

namespace {

std::uint8_t channel(double v) { return static_cast<std::uint8_t>(std::clamp(v, 0.0, 255.0) + 0.5); }

}  // namespace

Rgba shade(Rgba c, double factor) {
    return {channel(c.r * factor), channel(c.g * factor), channel(c.b * factor), c.a};
}

Rgba with_alpha(Rgba c, std::uint8_t alpha) {
    c.a = alpha;
    return c;
}

Rgba mix(Rgba a, Rgba b, double t) {
    auto lerp = [t](double x, double y) { return channel(x + (y - x) * t); };
    return {lerp(a.r, b.r), lerp(a.g, b.g), lerp(a.b, b.b), lerp(a.a, b.a)};
}

PixelCanvas::PixelCanvas(int width, int height, Rgba fill)
    : width_(width),
      height_(height),
      pixels_(std::size_t(width) * std::size_t(height), pack_rgba(fill)) {}

void PixelCanvas::blend(int x, int y, Rgba c, double coverage) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_)
        return;
    const double sa = c.a / 255.0 * std::clamp(coverage, 0.0, 1.0);
    if (sa <= 0)
        return;
    std::uint32_t& p = pixels_[index(x, y)];
    const Rgba d = unpack_rgba(p);
    const double da = d.a / 255.0;
    const double out_a = sa + da * (1 - sa);
    auto over = [&](double s, double dst) { return (s * sa + dst * da * (1 - sa)) / out_a; };
    p = pack_rgba({channel(over(c.r, d.r)), channel(over(c.g, d.g)), channel(over(c.b, d.b)),
                   channel(out_a * 255)});
}

void PixelCanvas::shape(double left, double top, double right, double bottom,
                        const Distance& distance, const Paint& paint) {
    const int x0 = std::max(0, static_cast<int>(std::floor(left)) - 1);
    const int y0 = std::max(0, static_cast<int>(std::floor(top)) - 1);
    const int x1 = std::min(width_ - 1, static_cast<int>(std::ceil(right)) + 1);
    const int y1 = std::min(height_ - 1, static_cast<int>(std::ceil(bottom)) + 1);
    for (int y = y0; y <= y1; ++y) {
        for (int x = x0; x <= x1; ++x) {
            const double px = x + 0.5, py = y + 0.5;
            const double coverage = 0.5 - distance(px, py);
            if (coverage > 0)
                blend(x, y, paint(px, py), coverage);
        }
    }
}

void PixelCanvas::shape(double left, double top, double right, double bottom,
                        const Distance& distance, Rgba color) {
    shape(left, top, right, bottom, distance, [color](double, double) { return color; });
}

void PixelCanvas::circle(double cx, double cy, double r, Rgba color) {
    ellipse(cx, cy, r, r, color);
}

void PixelCanvas::ellipse(double cx, double cy, double rx, double ry, Rgba color) {
    shape(cx - rx, cy - ry, cx + rx, cy + ry,
          [=](double x, double y) { return ellipse_distance(x, y, cx, cy, rx, ry); }, color);
}

void PixelCanvas::capsule(double x1, double y1, double x2, double y2, double width, Rgba color) {
    const double r = width / 2;
    shape(std::min(x1, x2) - r, std::min(y1, y2) - r, std::max(x1, x2) + r, std::max(y1, y2) + r,
          [=](double x, double y) { return capsule_distance(x, y, x1, y1, x2, y2, r); }, color);
}

void PixelCanvas::triangle(double x1, double y1, double x2, double y2, double x3, double y3,
                           Rgba color) {
    const double px[3] = {x1, x2, x3};
    const double py[3] = {y1, y2, y3};
    shape(std::min({x1, x2, x3}), std::min({y1, y2, y3}), std::max({x1, x2, x3}),
          std::max({y1, y2, y3}),
          [px, py](double x, double y) { return triangle_distance(x, y, px, py); }, color);
}

void PixelCanvas::draw(const PixelCanvas& source, int x, int y) {
    for (int sy = 0; sy < source.height_; ++sy) {
        const int ty = y + sy;
        if (ty < 0 || ty >= height_)
            continue;
        const auto row = source.pixels_.begin() + static_cast<std::ptrdiff_t>(source.index(0, sy));
        // Ground tiles are opaque and lie inside the picture: whole rows are copied.
        if (x >= 0 && x + source.width_ <= width_ &&
            std::all_of(row, row + source.width_, [](std::uint32_t p) { return (p & 0xff) == 0xff; })) {
            std::copy(row, row + source.width_, pixels_.begin() + static_cast<std::ptrdiff_t>(index(x, ty)));
            continue;
        }
        for (int sx = 0; sx < source.width_; ++sx) {
            const std::uint32_t p = source.pixels_[source.index(sx, sy)];
            const std::uint8_t alpha = p & 0xff;
            if (alpha == 255 && x + sx >= 0 && x + sx < width_)
                pixels_[index(x + sx, ty)] = p;  // opaque: the common case of ground tiles
            else if (alpha != 0)
                blend(x + sx, ty, unpack_rgba(p));
        }
    }
}

void PixelCanvas::multiply(Rgba tint) {
    for (std::uint32_t& p : pixels_) {
        const Rgba c = unpack_rgba(p);
        p = pack_rgba({channel(c.r * tint.r / 255.0), channel(c.g * tint.g / 255.0),
                       channel(c.b * tint.b / 255.0), channel(c.a * tint.a / 255.0)});
    }
}

TextureId PixelCanvas::upload(Renderer& renderer) const {
    return renderer.create_texture(width_, height_, pixels_);
}

double ellipse_distance(double x, double y, double cx, double cy, double rx, double ry) {
    // Scaled to the smaller radius: exact for circles, close enough at the edge of the gentle
    // ellipses sprites use.
    const double nx = (x - cx) / rx, ny = (y - cy) / ry;
    return (std::sqrt(nx * nx + ny * ny) - 1) * std::min(rx, ry);
}

double capsule_distance(double x, double y, double x1, double y1, double x2, double y2,
                        double radius) {
    const double dx = x2 - x1, dy = y2 - y1;
    const double length_sq = dx * dx + dy * dy;
    const double t =
        length_sq > 0 ? std::clamp(((x - x1) * dx + (y - y1) * dy) / length_sq, 0.0, 1.0) : 0;
    return std::hypot(x - (x1 + t * dx), y - (y1 + t * dy)) - radius;
}

double triangle_distance(double x, double y, const double (&px)[3], const double (&py)[3]) {
    // The largest signed distance to the three edge lines: exact inside and near the edges,
    // which is all the antialiasing needs.
    const double orientation =
        (px[1] - px[0]) * (py[2] - py[0]) - (py[1] - py[0]) * (px[2] - px[0]) > 0 ? 1 : -1;
    double worst = -1e9;
    for (int i = 0; i < 3; ++i) {
        const int j = (i + 1) % 3;
        const double ex = px[j] - px[i], ey = py[j] - py[i];
        const double length = std::hypot(ex, ey);
        if (length == 0)
            continue;
        const double d = -orientation * (ex * (y - py[i]) - ey * (x - px[i])) / length;
        worst = std::max(worst, d);
    }
    return worst;
}

double pixel_noise(int x, int y, std::uint32_t salt) {
    std::uint32_t h = static_cast<std::uint32_t>(x) * 0x8da6b343u ^
                      static_cast<std::uint32_t>(y) * 0xd8163841u ^ salt * 0xcb1ab31fu;
    h ^= h >> 15;
    h *= 0x2c1b3c6du;
    h ^= h >> 12;
    h *= 0x297a2d39u;
    h ^= h >> 15;
    return (h & 0xffffff) / double(0x1000000);
}

}  // namespace veldra

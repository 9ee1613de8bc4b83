#pragma once
// A picture in memory that sprites and the level's ground are painted into before they become
// textures. Shapes are given as signed distances (negative inside), so every edge gets one pixel
// of antialiasing for free and a soft outline is just the same shape grown and drawn first.

#include <cstdint>
#include <functional>
#include <vector>

#include "runtime/renderer.h"
#include "ui/picture_memory.h"

namespace veldra {

// 0xRRGGBBAA, the layout Renderer::create_texture takes.
constexpr std::uint32_t pack_rgba(Rgba c) {
    return std::uint32_t(c.r) << 24 | std::uint32_t(c.g) << 16 | std::uint32_t(c.b) << 8 | c.a;
}
constexpr Rgba unpack_rgba(std::uint32_t p) {
    return {std::uint8_t(p >> 24), std::uint8_t(p >> 16), std::uint8_t(p >> 8), std::uint8_t(p)};
}
// Each channel times `factor` (above 1 lightens), alpha kept.
Rgba shade(Rgba c, double factor);
Rgba with_alpha(Rgba c, std::uint8_t alpha);
Rgba mix(Rgba a, Rgba b, double t);

class PixelCanvas {
public:
    using Pixels = std::vector<std::uint32_t, PictureMemory<std::uint32_t>>;

    PixelCanvas(int width, int height, Rgba fill = {0, 0, 0, 0});

    int width() const { return width_; }
    int height() const { return height_; }
    const Pixels& pixels() const { return pixels_; }
    Rgba at(int x, int y) const { return unpack_rgba(pixels_[index(x, y)]); }
    void set(int x, int y, Rgba c) { pixels_[index(x, y)] = pack_rgba(c); }

    // Source-over of `c` at `coverage` (0..1) of its alpha; outside the canvas nothing happens.
    void blend(int x, int y, Rgba c, double coverage = 1);
    // Multiplies every pixel's channels by `tint` (the alpha too).
    void multiply(Rgba tint);

    // Paints every pixel of the box whose centre has a distance below 0.5; the colour may
    // depend on the pixel (shading).
    using Distance = std::function<double(double x, double y)>;
    using Paint = std::function<Rgba(double x, double y)>;
    void shape(double left, double top, double right, double bottom, const Distance& distance,
               const Paint& paint);
    void shape(double left, double top, double right, double bottom, const Distance& distance,
               Rgba color);

    void circle(double cx, double cy, double r, Rgba color);
    void ellipse(double cx, double cy, double rx, double ry, Rgba color);
    // A line with round ends, `width` pixels thick.
    void capsule(double x1, double y1, double x2, double y2, double width, Rgba color);
    void triangle(double x1, double y1, double x2, double y2, double x3, double y3, Rgba color);
    // Copies `source` with its top-left at (x, y), blending by its alpha.
    void draw(const PixelCanvas& source, int x, int y);
    // Draws `source` centred on (cx, cy), scaled, turned by `angle` degrees (counter-clockwise
    // on screen), optionally mirrored, each channel multiplied by `tint`; sampled bilinearly
    // between pixel centres, weighted by alpha. Fixed point (1/256 pixel, 8-bit channels).
    void draw_transformed(const PixelCanvas& source, double cx, double cy, double scale,
                          double angle, bool mirrored, Rgba tint);

    TextureId upload(Renderer& renderer) const;

private:
    std::size_t index(int x, int y) const { return std::size_t(y) * std::size_t(width_) + x; }

    int width_;
    int height_;
    Pixels pixels_;
};

// Distances for PixelCanvas::shape.
double ellipse_distance(double x, double y, double cx, double cy, double rx, double ry);
double capsule_distance(double x, double y, double x1, double y1, double x2, double y2,
                        double radius);
double triangle_distance(double x, double y, const double (&px)[3], const double (&py)[3]);

// A stable pseudo-random value in [0, 1) for integer coordinates and a salt: speckles and grains
// that look the same every time without a generator.
double pixel_noise(int x, int y, std::uint32_t salt);

}  // namespace veldra

#include "world/perlin.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

TEST(Perlin, HalfAtWholeNumberPoints) {
    Rng rng(11);
    const PerlinGeneratorCpu2d noise(32, rng);
    for (int x = -40; x <= 40; x += 7) {
        for (int y = -40; y <= 40; y += 5)
            EXPECT_EQ(noise.get(x, y), 0.5);
    }
}

TEST(Perlin, PeriodicInSizeAlsoThroughNegativeCoordinates) {
    Rng rng(12);
    const PerlinGeneratorCpu2d noise(16, rng);
    for (double x = -3.875; x < 3; x += 0.625) {
        for (double y = -2.25; y < 2; y += 0.5) {
            EXPECT_EQ(noise.get(x, y), noise.get(x + 16, y));
            EXPECT_EQ(noise.get(x, y), noise.get(x, y + 16));
            EXPECT_EQ(noise.get(x, y), noise.get(x - 32, y - 16));
        }
    }
}

TEST(Perlin, ValuesInRangeAndVaried) {
    Rng rng(13);
    const PerlinGeneratorCpu2d noise(32, rng);
    double low = 1, high = 0;
    for (int i = 0; i < 200; ++i) {
        for (int j = 0; j < 200; ++j) {
            const double value = noise.get(i * 0.173, j * 0.131);
            low = std::min(low, value);
            high = std::max(high, value);
        }
    }
    EXPECT_GE(low, 0.0);
    EXPECT_LE(high, 1.0);
    EXPECT_LT(low, 0.3);
    EXPECT_GT(high, 0.7);
}

TEST(Perlin, SameGeneratorStateSameField) {
    Rng a(14), b(14), c(15);
    const PerlinGeneratorCpu2d first(32, a), second(32, b), other(32, c);
    EXPECT_EQ(a.seed, b.seed);
    bool differs = false;
    for (double x = 0.1; x < 20; x += 0.7) {
        EXPECT_EQ(first.get(x, x * 0.5), second.get(x, x * 0.5));
        differs |= first.get(x, x * 0.5) != other.get(x, x * 0.5);
    }
    EXPECT_TRUE(differs);
}

}  // namespace
}  // namespace veldra

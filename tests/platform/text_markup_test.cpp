#include "platform/text_markup.h"

#include <gtest/gtest.h>

namespace veldra::platform {
namespace {

constexpr Rgba BASE{10, 20, 30, 200};

struct Read {
    std::size_t length;
    Rgba colour;
};

Read read(std::string_view text) {
    Rgba colour{1, 2, 3, 4};
    const std::size_t length = read_text_tag(text, BASE, colour);
    return {length, colour};
}

TEST(TextMarkup, ColourTagsSetTheColourKeepingTheTextsAlpha) {
    EXPECT_EQ(read("[#ff8000]rest").length, 9u);
    EXPECT_EQ(read("[#ff8000]rest").colour, (Rgba{255, 128, 0, 200}));
    EXPECT_EQ(read("[#F80]").colour, (Rgba{255, 136, 0, 200}));
    EXPECT_EQ(read("[#11223344]").colour, (Rgba{0x11, 0x22, 0x33, 0x44}));
    EXPECT_EQ(read("[red]").colour, (Rgba{255, 0, 0, 200}));
    EXPECT_EQ(read("[/c]").colour, BASE);
    EXPECT_EQ(read("[/]").colour, BASE);
}

TEST(TextMarkup, LayoutTagsAreSkippedWithoutChangingTheColour) {
    const Read r = read("[pin_center]Title");
    EXPECT_EQ(r.length, 12u);
    EXPECT_EQ(r.colour, (Rgba{1, 2, 3, 4}));
}

TEST(TextMarkup, OtherBracketsAreText) {
    for (std::string_view text : {"[localization]", "[#ggg]", "[#12345]", "[#]", "[", "[red",
                                  "a[i]", "[]"})
        EXPECT_EQ(read(text).length, 0u) << text;
    EXPECT_EQ(read("[#12345]").colour, (Rgba{1, 2, 3, 4}));
}

}  // namespace
}  // namespace veldra::platform

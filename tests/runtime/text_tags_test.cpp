#include "runtime/text_tags.h"

#include <gtest/gtest.h>

#include "runtime/log.h"

namespace veldra {
namespace {

TEST(TextTags, ColoursCarryTheirValueAndWhetherTheyNameAnAlpha) {
    const auto orange = read_text_tag("[#ff8000]rest");
    ASSERT_TRUE(orange);
    EXPECT_EQ(orange->kind, TextTagKind::colour);
    EXPECT_EQ(orange->length, 9u);
    EXPECT_EQ(orange->colour, (Rgba{255, 128, 0, 255}));
    EXPECT_FALSE(orange->has_alpha);
    EXPECT_EQ(read_text_tag("[#F80]")->colour, (Rgba{255, 136, 0, 255}));
    const auto faded = read_text_tag("[#11223344]");
    EXPECT_EQ(faded->colour, (Rgba{0x11, 0x22, 0x33, 0x44}));
    EXPECT_TRUE(faded->has_alpha);
    EXPECT_EQ(read_text_tag("[teal]")->colour, (Rgba{0, 128, 128, 255}));
    EXPECT_EQ(read_text_tag("[/c]")->kind, TextTagKind::colour_end);
}

TEST(TextTags, StylesAlignmentsAndTheEndOfAll) {
    const std::pair<std::string_view, TextTagKind> kinds[] = {
        {"[b]", TextTagKind::bold},      {"[/b]", TextTagKind::bold_end},
        {"[slant]", TextTagKind::slant}, {"[/slant]", TextTagKind::slant_end},
        {"[/]", TextTagKind::end_all},   {"[pin_left]", TextTagKind::align},
    };
    for (const auto& [text, kind] : kinds) {
        const auto tag = read_text_tag(text);
        ASSERT_TRUE(tag) << text;
        EXPECT_EQ(tag->kind, kind) << text;
        EXPECT_EQ(tag->length, text.size()) << text;
    }
    EXPECT_EQ(read_text_tag("[pin_center]x")->align, TextAlign::center);
    EXPECT_EQ(read_text_tag("[pin_right]")->align, TextAlign::right);
}

TEST(TextTags, EveryOtherBracketIsText) {
    for (std::string_view text :
         {"[localization]", "[#ggg]", "[#12345]", "[#]", "[", "[red", "a[i]", "[]", "[B]", "[bold]",
          "[italic]", "[ b]", "[/x]", "[[b]", "[pin_center", "x[b]"})
        EXPECT_FALSE(read_text_tag(text)) << text;
    // A ']' far beyond the '[' closes no tag, however long the text.
    EXPECT_FALSE(read_text_tag("[" + std::string(5000, 'a') + "]"));
}

TEST(RemoveTextTags, StripsEveryTagAndNothingElse) {
    EXPECT_EQ(remove_text_tags("[#dd5555]Error:[/c] x"), "Error: x");
    EXPECT_EQ(remove_text_tags("[pin_center][slant](not connected)"), "(not connected)");
    EXPECT_EQ(remove_text_tags("[b]bold[/b], [slant]slant[/slant][pin_right][/]"), "bold, slant");
    EXPECT_EQ(remove_text_tags("array [1, 2] and [Caps]"), "array [1, 2] and [Caps]");
    EXPECT_EQ(remove_text_tags("unclosed [#abc"), "unclosed [#abc");
    EXPECT_EQ(remove_text_tags("[red]x[/] has no [localization] section, a[i]"),
              "x has no [localization] section, a[i]");
    EXPECT_EQ(remove_text_tags("[#12345g]"), "[#12345g]");
    EXPECT_EQ(remove_text_tags("[[b]x]"), "[x]");
}

}  // namespace
}  // namespace veldra

#include "ui/text_markup.h"

#include <gtest/gtest.h>

#include <string>

#include "runtime/log.h"

namespace veldra {
namespace {

constexpr Rgba OWN{10, 20, 30, 200};
constexpr Rgba RED{255, 0, 0, 200};

std::vector<TextRun> runs_of(std::string_view markup, TextAlign align = TextAlign::left) {
    std::vector<TextRun> runs(1);  // replaced, not appended to
    read_text_runs(markup, OWN, align, runs);
    return runs;
}

// Each run as "text|b|s|align", the style bits only where set, for readable expectations.
std::vector<std::string> describe(const std::vector<TextRun>& runs) {
    std::vector<std::string> out;
    for (const TextRun& run : runs) {
        std::string d(run.text);
        if (run.bold)
            d += "|b";
        if (run.slant)
            d += "|s";
        if (run.align == TextAlign::center)
            d += "|center";
        if (run.align == TextAlign::right)
            d += "|right";
        out.push_back(d);
    }
    return out;
}

using Strings = std::vector<std::string>;

TEST(TextRuns, ColoursChangeAtTagsAndEndWithTheTextsOwn) {
    const auto runs = runs_of("[#ff5555]|[/c] At:");
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_EQ(runs[0].text, "|");
    EXPECT_EQ(runs[0].colour, (Rgba{0xff, 0x55, 0x55, 200}));
    EXPECT_EQ(runs[1].text, " At:");
    EXPECT_EQ(runs[1].colour, OWN);
    // Colours do not nest; a colour with alpha digits keeps them.
    const auto plain = runs_of("[red]a[#11223344]b[/c]c");
    EXPECT_EQ(plain[0].colour, RED);
    EXPECT_EQ(plain[1].colour, (Rgba{0x11, 0x22, 0x33, 0x44}));
    EXPECT_EQ(plain[2].colour, OWN);
}

TEST(TextRuns, StylesNestAndEndOneOpeningAtATime) {
    EXPECT_EQ(describe(runs_of("[b]a[b]b[/b]c[/b]d")), (Strings{"a|b", "b|b", "c|b", "d"}));
    EXPECT_EQ(describe(runs_of("a[b]b[slant]c[/b]d[/slant]e")),
              (Strings{"a", "b|b", "c|b|s", "d|s", "e"}));
    // An end with nothing open is still a tag, and does nothing.
    EXPECT_EQ(describe(runs_of("[/b]x[/slant]y[/c]")), (Strings{"x", "y"}));
    // Unclosed styles last to the end of the text.
    EXPECT_EQ(describe(runs_of("x[slant]y\nz")), (Strings{"x", "y\nz|s"}));
}

TEST(TextRuns, TheEndOfAllReturnsToTheTextsOwnStyleColourAndAlignment) {
    const auto runs = runs_of("[b][slant][red][pin_right]x[/]y", TextAlign::center);
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_EQ(describe(runs), (Strings{"x|b|s|right", "y|center"}));
    EXPECT_EQ(runs[0].colour, RED);
    EXPECT_EQ(runs[1].colour, OWN);
    EXPECT_EQ(describe(runs_of("[pin_center]a\nb[pin_left]c")), (Strings{"a\nb|center", "c"}));
}

TEST(TextRuns, BracketsThatAreNoTagStayInTheText) {
    EXPECT_EQ(describe(runs_of("a[i] [localization] [] [#12345] [bold]")),
              (Strings{"a[i] [localization] [] [#12345] [bold]"}));
    EXPECT_EQ(describe(runs_of("[[b]x]")), (Strings{"[", "x]|b"}));
    EXPECT_EQ(describe(runs_of("unclosed [#abc")), (Strings{"unclosed [#abc"}));
    EXPECT_TRUE(runs_of("").empty());
    EXPECT_TRUE(runs_of("[b][/b][pin_center]").empty());
}

TEST(TextRuns, ShowExactlyWhatTheLogKeeps) {
    for (std::string_view markup :
         {"[pin_center][slant](not connected to a server)", "[#55dd55]TRIAL(3) TICK#0[/c] ok",
          "[[b]x]][/]", "a[i] [#12345] [/x] [b", "[b][slant][/slant][/b]", "ü[red]\n[/c]ß"}) {
        std::string shown;
        for (const TextRun& run : runs_of(markup))
            shown += run.text;
        EXPECT_EQ(shown, remove_text_tags(markup)) << markup;
        EXPECT_EQ(markup_character_count(markup), markup_character_count(shown)) << markup;
    }
}

TEST(MarkupCharacters, CountsCharactersNotTagsNorBytes) {
    EXPECT_EQ(markup_character_count("[#f00]ab[/c]cd"), 4u);
    EXPECT_EQ(markup_character_count("a\nb"), 3u);
    EXPECT_EQ(markup_character_count("Grüße, 日本"), 9u);
    EXPECT_EQ(markup_character_count("[b][/b]"), 0u);
    EXPECT_EQ(markup_character_count("a[i]"), 4u);
    // A broken sequence is one character with its stray bytes, never more than four bytes.
    EXPECT_EQ(markup_character_count("\xC3"), 1u);
    EXPECT_EQ(markup_character_count("\x80\x80\x80\x80\x80"), 2u);
}

TEST(MarkupCharacters, ThePrefixKeepsTagsWholeAndCharactersUncut) {
    const std::string_view markup = "[pin_center][#f00]ab[/c]c[b]d[/b]";
    EXPECT_EQ(visible_markup_prefix(markup, 0), "[pin_center][#f00]");
    EXPECT_EQ(visible_markup_prefix(markup, 1), "[pin_center][#f00]a");
    EXPECT_EQ(visible_markup_prefix(markup, 2), "[pin_center][#f00]ab[/c]");
    EXPECT_EQ(visible_markup_prefix(markup, 4), markup);
    EXPECT_EQ(visible_markup_prefix(markup, std::string::npos), markup);
    EXPECT_EQ(visible_markup_prefix("Grüße", 3), "Grü");
    EXPECT_EQ(visible_markup_prefix("日本語", 1), "日");
    EXPECT_EQ(visible_markup_prefix("[x]y", 1), "[");
    EXPECT_EQ(visible_markup_prefix("", 3), "");
    // What the prefix shows is exactly the first characters of what the whole text shows.
    const std::string_view mixed = "[slant]ä[b]ö\n[/]ü [red]ß[/c]!";
    for (std::size_t n = 0; n <= markup_character_count(mixed); ++n)
        EXPECT_EQ(markup_character_count(visible_markup_prefix(mixed, n)), n) << n;
}

}  // namespace
}  // namespace veldra

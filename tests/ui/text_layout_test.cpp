#include "ui/text_layout.h"

#include <gtest/gtest.h>
#include <imgui.h>

#include <algorithm>
#include <map>
#include <string>

#include "ui/text_fonts_fixture.h"

namespace veldra {
namespace {

class TextLayoutTest : public test::TextFontsTest {
protected:
    const TextLayout& lay_out(std::string_view markup, float width = 0,
                              TextAlign align = TextAlign::left) {
        layout_.lay_out(*font, markup, {20, width, {255, 255, 255, 255}, align});
        return layout_;
    }
    float width_of(std::string_view markup) { return lay_out(markup).size().width; }

    // The text of each line, by the glyphs' line tops.
    std::vector<std::string> lines() const {
        std::map<float, std::string> by_top;
        for (const PlacedGlyph& g : layout_.glyphs())
            by_top[g.y] += static_cast<char>(g.glyph->Codepoint);
        std::vector<std::string> out;
        for (auto& [top, text] : by_top)
            out.push_back(text);
        return out;
    }
    // Left edge of the first glyph on the line whose top is `top`.
    float line_left(float top) const {
        for (const PlacedGlyph& g : layout_.glyphs())
            if (g.y == top)
                return g.x;
        ADD_FAILURE() << "no line at " << top;
        return -1;
    }

    TextLayout layout_;
};

TEST_F(TextLayoutTest, TheFourFacesAreOneFamilyOfDistinctFonts) {
    const ImFont* faces[] = {family.regular, family.bold, family.italic, family.bold_italic};
    for (const ImFont* face : faces) {
        ASSERT_NE(face, nullptr);
        EXPECT_EQ(text_font_style_family(*face).regular, font);
    }
    EXPECT_EQ(std::count(std::begin(faces), std::end(faces), faces[0]), 1);
    EXPECT_NE(family.bold, family.italic);
    EXPECT_NE(family.bold_italic, family.bold);
    EXPECT_GT(width_of("[b]Harvest"), width_of("Harvest") + 2);
}

TEST_F(TextLayoutTest, BoldAndSlantedRunsTakeTheirFaces) {
    lay_out("a[b]b[slant]c[/b]d[/slant]e");
    const auto& glyphs = layout_.glyphs();
    ASSERT_EQ(glyphs.size(), 5u);
    EXPECT_EQ(glyphs[0].face, family.regular);
    EXPECT_EQ(glyphs[1].face, family.bold);
    EXPECT_EQ(glyphs[2].face, family.bold_italic);
    EXPECT_EQ(glyphs[3].face, family.italic);
    EXPECT_EQ(glyphs[4].face, family.regular);
    for (const PlacedGlyph& g : glyphs)
        EXPECT_EQ(g.glyph, g.face->FindGlyph(static_cast<ImWchar>(g.glyph->Codepoint)));
    // Text set in the bold face stays bold; a slant there is bold and slanted.
    layout_.lay_out(*family.bold, "x[slant]y", {20, 0, {}, TextAlign::left});
    EXPECT_EQ(layout_.glyphs()[0].face, family.bold);
    EXPECT_EQ(layout_.glyphs()[1].face, family.bold_italic);
}

TEST_F(TextLayoutTest, AFontInNoFamilyDrawsEveryStyleItself) {
    ImFont* loose = ImGui::GetIO().Fonts->AddFontDefault();
    build_atlas();
    layout_.lay_out(*loose, "a[b]b[slant]c", {13, 0, {}, TextAlign::left});
    ASSERT_EQ(layout_.glyphs().size(), 3u);
    for (const PlacedGlyph& g : layout_.glyphs())
        EXPECT_EQ(g.face, loose);
}

TEST_F(TextLayoutTest, CentredAndRightAlignedLinesSitInTheBox) {
    const float wide = width_of("Harvest");
    lay_out("[pin_center]Harvest", 400);
    EXPECT_NEAR(layout_.glyphs()[0].x, (400 - wide) / 2, 0.6);
    EXPECT_FLOAT_EQ(layout_.size().width, wide);
    lay_out("[pin_right]Harvest", 400);
    EXPECT_NEAR(layout_.glyphs()[0].x, 400 - wide, 0.6);
    // The box's own alignment holds until a tag changes it, and "[/]" returns to it.
    lay_out("Harvest\n[pin_left]Harvest\n[/]Harvest", 400, TextAlign::center);
    EXPECT_NEAR(line_left(0), (400 - wide) / 2, 0.6);
    EXPECT_FLOAT_EQ(line_left(20), 0);
    EXPECT_NEAR(line_left(40), (400 - wide) / 2, 0.6);
}

TEST_F(TextLayoutTest, ALineIsAlignedAsItsFirstCharacterSays) {
    const float wide = width_of("Harvest");
    lay_out("[pin_center]Title[/]\nbody [pin_right]text\nHarvest", 400);
    EXPECT_GT(line_left(0), 100);       // the "[/]" after the title does not undo it
    EXPECT_FLOAT_EQ(line_left(20), 0);  // a tag within a line holds from the next one
    EXPECT_NEAR(line_left(40), 400 - wide, 0.6);
    // Without a box width the lines centre on the widest.
    const float widest = width_of("Harvest and more");
    lay_out("[pin_center]Harvest and more\nHarvest");
    EXPECT_FLOAT_EQ(line_left(0), 0);
    EXPECT_NEAR(line_left(20), (widest - wide) / 2, 0.6);
}

TEST_F(TextLayoutTest, WrappingBreaksBetweenWordsWithinTheWidth) {
    const float width = width_of("one two three") + 1;
    lay_out("one two three four five six seven", width);
    EXPECT_EQ(lines(), (std::vector<std::string>{"one two three ", "four five six ", "seven"}));
    EXPECT_EQ(layout_.line_count(), 3u);
    EXPECT_FLOAT_EQ(layout_.size().height, 60);
    for (const PlacedGlyph& g : layout_.glyphs()) {
        if (g.glyph->Codepoint != ' ') {
            EXPECT_LE(g.x + g.glyph->AdvanceX * g.scale, width + 0.01f);
        }
    }
    // The trailing space of a wrapped line does not count when centring it.
    const float four = width_of("four");
    lay_out("[pin_center]one two three four", width);
    EXPECT_NEAR(line_left(20), (width - four) / 2, 0.6);
    // Styles and colours change inside words without breaking them.
    lay_out("one [b]t[/b]wo [red]three[/c] four", width_of("one [b]t[/b]wo") + 1);
    EXPECT_EQ(lines(), (std::vector<std::string>{"one two ", "three ", "four"}));
}

TEST_F(TextLayoutTest, AWordWiderThanTheBoxBreaksBetweenCharacters) {
    const float width = width_of("abcde") + 1;
    lay_out("abcdefghijkl xy", width);
    const auto text = lines();
    ASSERT_GE(text.size(), 3u);
    EXPECT_EQ(text[0], "abcde");
    std::string joined;
    for (const std::string& line : text)
        joined += line;
    EXPECT_EQ(joined, "abcdefghijkl xy");
    // A box narrower than one glyph still shows every glyph, one a line.
    lay_out("WW", 1);
    EXPECT_EQ(lines(), (std::vector<std::string>{"W", "W"}));
}

TEST_F(TextLayoutTest, LinesAndCharactersAreCountedAsTheMarkupCountsThem) {
    EXPECT_FLOAT_EQ(lay_out("a\nb").size().height, 40);
    EXPECT_FLOAT_EQ(lay_out("a\n").size().height, 40);
    EXPECT_FLOAT_EQ(lay_out("").size().height, 0);
    EXPECT_FLOAT_EQ(lay_out("[b][/b]").size().height, 0);
    lay_out("[red]é\n[b]x[/b] y");
    std::vector<std::size_t> characters;
    for (const PlacedGlyph& g : layout_.glyphs())
        characters.push_back(g.character);
    EXPECT_EQ(characters, (std::vector<std::size_t>{0, 2, 3, 4}));
    EXPECT_EQ(layout_.glyphs()[0].colour, (Rgba{255, 0, 0, 255}));
}

TEST_F(TextLayoutTest, OnlyInkedGlyphsAmongTheVisibleCharactersAreDrawn) {
    lay_out("ab cd", 0);
    auto quads = [&](std::size_t visible) {
        std::vector<GlyphQuad> out;
        layout_.for_each_quad(100, 50, visible, [&](const GlyphQuad& q) { out.push_back(q); });
        return out;
    };
    EXPECT_EQ(quads(std::string::npos).size(), 4u);
    EXPECT_EQ(quads(3).size(), 2u);  // the space has no ink
    EXPECT_EQ(quads(0).size(), 0u);
    const auto all = quads(std::string::npos);
    const auto some = quads(4);
    ASSERT_EQ(some.size(), 3u);
    EXPECT_FLOAT_EQ(some[2].x0, all[2].x0);  // revealing moves nothing
    EXPECT_GE(all[0].x0, 100);
    EXPECT_GE(all[0].y0, 50);
    EXPECT_LE(all[0].y1, 70);
}

}  // namespace
}  // namespace veldra

#include "ui/styled_text.h"

#include <gtest/gtest.h>
#include <imgui.h>

#include <algorithm>

#include "ui/text_fonts_fixture.h"
#include "ui/text_layout.h"

namespace veldra {
namespace {

// One frame with one window, as a menu would draw in.
class StyledTextTest : public test::TextFontsTest {
protected:
    void SetUp() override {
        TextFontsTest::SetUp();
        ImGuiIO& io = ImGui::GetIO();
        io.DisplaySize = {1600, 900};
        io.DeltaTime = 1.0f / 60;
        ImGui::NewFrame();
        ImGui::SetNextWindowPos({100, 100});
        ImGui::SetNextWindowSize({600, 400});
        ImGui::Begin("menu", nullptr, ImGuiWindowFlags_NoDecoration);
    }
    void TearDown() override {
        ImGui::End();
        ImGui::EndFrame();
        TextFontsTest::TearDown();
    }

    // The vertices `draw` adds to the window's draw list.
    template <class Draw>
    std::vector<ImDrawVert> drawn(Draw&& draw) {
        const ImDrawList& list = *ImGui::GetWindowDrawList();
        const int before = list.VtxBuffer.Size;
        draw();
        return {list.VtxBuffer.begin() + before, list.VtxBuffer.end()};
    }
};

TEST_F(StyledTextTest, EntriesStackBelowEachOther) {
    const float top = ImGui::GetCursorScreenPos().y;
    styled_text("[b]Title[/b]\nsecond line", 300);
    const float spacing = ImGui::GetStyle().ItemSpacing.y;
    EXPECT_FLOAT_EQ(ImGui::GetCursorScreenPos().y, top + 2 * ImGui::GetFontSize() + spacing);
    styled_text("one more", 300);
    EXPECT_FLOAT_EQ(ImGui::GetCursorScreenPos().y, top + 3 * ImGui::GetFontSize() + 2 * spacing);
}

TEST_F(StyledTextTest, CentresInTheWrapWidthAsTheLayoutDoes) {
    const float left = ImGui::GetCursorScreenPos().x;
    const std::vector<ImDrawVert> vertices = drawn([] { styled_text("[pin_center]Harvest", 300); });
    ASSERT_EQ(vertices.size(), 7u * 4);
    float min_x = vertices[0].pos.x;
    float max_x = min_x;
    for (const ImDrawVert& v : vertices) {
        min_x = std::min(min_x, v.pos.x);
        max_x = std::max(max_x, v.pos.x);
    }
    EXPECT_NEAR((min_x + max_x) / 2, left + 150, 2);
    // The widget and the draw list's text share one layout: same glyphs, same places.
    TextLayout layout;
    layout.lay_out(*font, "[pin_center]Harvest", {20, 300, {}, TextAlign::left});
    layout.for_each_quad(left, 0, std::string::npos, [&, i = 0u](const GlyphQuad& q) mutable {
        EXPECT_FLOAT_EQ(vertices[4 * i++].pos.x, q.x0);
    });
}

TEST_F(StyledTextTest, ShowsOnlyTheVisibleCharactersInTheTextColour) {
    ImGui::PushStyleColor(ImGuiCol_Text, IM_COL32(10, 20, 30, 255));
    const auto some = drawn([] { styled_text("[#ff0000]ab[/c] cd", 0, 4); });
    ImGui::PopStyleColor();
    ASSERT_EQ(some.size(), 3u * 4);
    EXPECT_EQ(some[0].col, IM_COL32(255, 0, 0, 255));
    EXPECT_EQ(some[8].col, IM_COL32(10, 20, 30, 255));
    EXPECT_TRUE(drawn([] { styled_text("[b]abc", 0, 0); }).empty());
}

}  // namespace
}  // namespace veldra

#pragma once
// A Dear ImGui context with nothing on screen, holding the four faces the build copied into its
// data folder at the small size the window uses, its atlas built, for text tests without a
// window.

#include <gtest/gtest.h>
#include <imgui.h>

#include <string>

#include "ui/text_fonts.h"

namespace veldra::test {

class TextFontsTest : public ::testing::Test {
protected:
    void SetUp() override {
        context = ImGui::CreateContext();
        std::string error;
        font = add_text_font_family(VELDRA_BUILD_FONT_DIR, 20, error);
        ASSERT_NE(font, nullptr) << error;
        build_atlas();
        family = text_font_style_family(*font);
    }
    void TearDown() override { ImGui::DestroyContext(context); }

    static void build_atlas() {
        unsigned char* pixels = nullptr;
        int width = 0;
        int height = 0;
        ImGui::GetIO().Fonts->GetTexDataAsAlpha8(&pixels, &width, &height);
    }

    ImGuiContext* context = nullptr;
    ImFont* font = nullptr;
    TextFontFamily family;
};

}  // namespace veldra::test

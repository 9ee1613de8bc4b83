// A popup menu in the real window: the game's ImGui context, its fonts and its renderer.

#include <imgui.h>

#include "async/promise_event_loop.h"
#include "platform/window_test_support.h"
#include "runtime/frame_loop.h"
#include "runtime/gc.h"
#include "runtime/runtime.h"
#include "ui/popup_menu.h"

namespace veldra::platform::test {
namespace {

using Rgb = std::array<int, 3>;
constexpr Rgb GAME{40, 120, 60};

// Draws a green field under every menu, as a level would be.
class obj_green_field : public Instance {
    VELDRA_OBJECT(obj_green_field, Instance)
public:
    void on_draw() override {
        runtime().services().renderer->draw_list().rect(0, 0, LOGICAL_WIDTH, LOGICAL_HEIGHT,
                                                        {40, 120, 60});
    }
};

class MenuInWindowTest : public WindowTest {
protected:
    void frames(int count) {
        for (int i = 0; i < count; ++i)
            run_program_frame(*runtime, services);
    }
    Image capture() {
        const std::string path = (folder / "menu.png").string();
        std::string error;
        EXPECT_TRUE(services.renderer->save_screenshot(path, error)) << error;
        return read_png(path);
    }
    int brightness(const Rgb& rgb) { return rgb[0] + rgb[1] + rgb[2]; }

    GcScope collector;
    std::unique_ptr<Runtime> runtime;
};

TEST_F(MenuInWindowTest, AMenuIsADarkPanelInTheMiddleWithTheGameAroundIt) {
    VELDRA_NEED_DISPLAY();
    ASSERT_TRUE(open(1600, 900));
    runtime = std::make_unique<Runtime>(services);
    start_promise_event_loop(*runtime);
    runtime->instance_create<obj_green_field>(0, 0);
    EXPECT_TRUE(ImGui::GetIO().ConfigFlags & ImGuiConfigFlags_NavEnableKeyboard);

    auto openness = std::make_shared<MenuField>(MenuField{"", 0.5, 0, 1});
    MenuDefinition menu;
    menu.width = 640;
    menu.entries = {menu_heading("[pin_center]Choose your personality"),
                    menu_text("[pin_center]Move the sliders, then press Start."),
                    menu_slider("Openness", openness),
                    menu_page("More", MenuDefinition{}),
                    menu_link("Questionnaire", "https://example.org"),
                    menu_button("Start", "start")};
    create_popup_menu(*runtime, menu);
    frames(3);
    obj_popup_menu& popup = *runtime->instance_find<obj_popup_menu>(0);
    const obj_popup_menu::Rect start = popup.entry_rect("Start");
    const obj_popup_menu::Rect heading = popup.entry_rect("[pin_center]Choose your personality");
    ASSERT_GT(start.w, 0);
    // The title is drawn in the large font, taller than a button's text line.
    EXPECT_GT(heading.h, 36);

    const Image image = capture();
    ASSERT_EQ(image.width, 1600);
    EXPECT_EQ(image.at(100, 450), GAME);
    EXPECT_EQ(image.at(800, 40), GAME);
    // The panel: darker than the game, and the game does not show through its middle.
    const Rgb panel = image.at(800 - 640 / 2 + 12, static_cast<int>(start.y) - 4);
    EXPECT_LT(brightness(panel), brightness(GAME) / 2);
    EXPECT_NE(image.at(static_cast<int>(start.x + 4), static_cast<int>(start.y + 4)), panel);
    runtime->shutdown();
}

}  // namespace
}  // namespace veldra::platform::test

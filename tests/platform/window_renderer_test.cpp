#include "platform/window_renderer.h"

#include <gtest/gtest.h>

#include "platform/window_test_support.h"

namespace veldra::platform {
namespace {

TEST(WindowRendererTest, CpuRasterisersAreToldFromGpus) {
    EXPECT_TRUE(is_software_gl("llvmpipe (LLVM 15.0.6, 256 bits)"));
    EXPECT_TRUE(is_software_gl("softpipe"));
    EXPECT_TRUE(is_software_gl("Mesa X11 Software Rasterizer"));
    EXPECT_FALSE(is_software_gl("AMD Radeon RX 6600 (navi23, LLVM 15.0.6, DRM 3.49)"));
    EXPECT_FALSE(is_software_gl("Mesa Intel(R) UHD Graphics 620 (KBL GT2)"));
    EXPECT_FALSE(is_software_gl(""));
}

TEST(WindowRendererTest, AVirtualDisplayGetsTheSoftwareRendererWithoutGlPresenting) {
    VELDRA_NEED_DISPLAY();
    if (SDL_getenv("SDL_RENDER_DRIVER"))
        GTEST_SKIP() << "SDL_RENDER_DRIVER chooses the renderer here";
    // CI's display is a virtual one (scripts/test.sh); a developer's may have a GPU.
    if (!SDL_getenv("VELDRA_REQUIRE_DISPLAY"))
        GTEST_SKIP() << "not on CI's virtual display";
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0) << SDL_GetError();
    SDL_Window* window = SDL_CreateWindow("test", 0, 0, 320, 180, SDL_WINDOW_HIDDEN);
    ASSERT_NE(window, nullptr) << SDL_GetError();
    std::string error;
    SDL_Renderer* renderer = create_window_renderer(window, false, error);
    ASSERT_NE(renderer, nullptr) << error;
    SDL_RendererInfo info{};
    SDL_GetRendererInfo(renderer, &info);
    // Whatever GL a virtual display offers runs on the CPU.
    EXPECT_STREQ(info.name, "software");
    EXPECT_STREQ(SDL_GetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION), "0");
    SDL_DestroyRenderer(renderer);
    SDL_DestroyWindow(window);
    SDL_Quit();
}

}  // namespace
}  // namespace veldra::platform

#pragma once
// A Dear ImGui context with no window, for tests of widgets: the default font, a 1600 x 900
// display (the game's logical screen), keyboard navigation on, and input given by the test.
// A frame is new_frame() ... (widgets, or runtime.run_frame()) ... end_frame(). Mouse and key
// changes are seen by the next new_frame(), the way a window's events reach the next frame.

#include <imgui.h>

#include <string>
#include <vector>

namespace veldra::test {

class HeadlessImGui {
public:
    HeadlessImGui() : context_(ImGui::CreateContext()) {
        ImGui::SetCurrentContext(context_);
        ImGuiIO& io = ImGui::GetIO();
        io.IniFilename = nullptr;
        io.LogFilename = nullptr;
        io.DisplaySize = ImVec2(1600, 900);
        io.ConfigFlags |= ImGuiConfigFlags_NavEnableKeyboard;
        // A backend maps ImGui's named keys to its own key codes; here they are their own.
        for (int key = 0; key < ImGuiKey_COUNT; ++key)
            io.KeyMap[key] = key;
        io.Fonts->AddFontDefault();
        unsigned char* pixels = nullptr;
        int width = 0;
        int height = 0;
        io.Fonts->GetTexDataAsRGBA32(&pixels, &width, &height);
        ImGui::StyleColorsDark();
    }
    ~HeadlessImGui() {
        ImGui::SetCurrentContext(context_);
        ImGui::DestroyContext(context_);
    }
    HeadlessImGui(const HeadlessImGui&) = delete;
    HeadlessImGui& operator=(const HeadlessImGui&) = delete;

    void new_frame() {
        ImGui::SetCurrentContext(context_);
        ImGuiIO& io = ImGui::GetIO();
        // A key pressed before the last frame is let go now, so each press is one edge.
        for (int key : held_keys_)
            io.KeysDown[key] = false;
        held_keys_ = std::move(pressed_keys_);
        pressed_keys_.clear();
        io.DeltaTime = 1.0f / 60.0f;
        ImGui::NewFrame();
    }
    void end_frame() { ImGui::Render(); }

    void move(float x, float y) { ImGui::GetIO().MousePos = ImVec2(x, y); }
    // Mouse down at (x, y); the next frame sees it.
    void press(float x, float y) {
        move(x, y);
        ImGui::GetIO().MouseDown[0] = true;
    }
    void release(float x, float y) {
        move(x, y);
        ImGui::GetIO().MouseDown[0] = false;
    }
    void type(const std::string& text) { ImGui::GetIO().AddInputCharactersUTF8(text.c_str()); }
    // Down for the next frame, up again for the one after.
    void key(ImGuiKey key) {
        ImGuiIO& io = ImGui::GetIO();
        io.KeysDown[io.KeyMap[key]] = true;
        pressed_keys_.push_back(io.KeyMap[key]);
    }

private:
    ImGuiContext* context_;
    std::vector<int> pressed_keys_;  // down since the last new_frame()
    std::vector<int> held_keys_;     // seen down by the last frame
};

}  // namespace veldra::test

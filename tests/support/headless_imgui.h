#pragma once
// A Dear ImGui context with no window: the default font, a 1600 x 900 display, and input given
// by the test. Frames: new_frame() ... (widgets) ... end_frame().
//
// Input reaches Dear ImGui at the next new_frame(), as a window's would: press() before a frame
// is seen by that frame. Keys are mapped to themselves (io.KeyMap[k] == k), so a widget that
// asks ImGui::IsKeyPressed(ImGui::GetKeyIndex(ImGuiKey_Enter)) sees key(ImGuiKey_Enter).

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
        for (int key = 0; key < ImGuiKey_COUNT; ++key)
            io.KeyMap[key] = key;
        unsigned char* pixels = nullptr;
        int width = 0;
        int height = 0;
        io.Fonts->GetTexDataAsRGBA32(&pixels, &width, &height);
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
        io.DeltaTime = 1.0f / 60.0f;
        // A key pressed before the last frame goes up now: that frame saw it pressed.
        for (int key : releasing_)
            io.KeysDown[key] = false;
        releasing_ = std::move(pressing_);
        pressing_.clear();
        ImGui::NewFrame();
    }
    void end_frame() { ImGui::Render(); }

    void move(float x, float y) { ImGui::GetIO().MousePos = ImVec2(x, y); }
    // Mouse down at (x, y) (the next frame sees it).
    void press(float x, float y) {
        move(x, y);
        ImGui::GetIO().MouseDown[0] = true;
    }
    void release(float x, float y) {
        move(x, y);
        ImGui::GetIO().MouseDown[0] = false;
    }
    void type(const std::string& text) { ImGui::GetIO().AddInputCharactersUTF8(text.c_str()); }
    // A press and release over two frames, as the caller frames it.
    void key(ImGuiKey key) {
        ImGuiIO& io = ImGui::GetIO();
        io.KeysDown[io.KeyMap[key]] = true;
        pressing_.push_back(io.KeyMap[key]);
    }

private:
    ImGuiContext* context_;
    std::vector<int> pressing_;   // down since the last new_frame
    std::vector<int> releasing_;  // seen down by the last frame; up at the next
};

}  // namespace veldra::test

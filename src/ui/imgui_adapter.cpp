#include "ui/imgui_adapter.h"

#include <imgui_internal.h>

namespace veldra::imgui_adapter {

namespace {

// 1.87 gave keys their own enumeration (and renamed the keypad's Enter); before it, a key was
// looked up through the back end's key map.
#if IMGUI_VERSION_NUM >= 18700
constexpr ImGuiKey KEYPAD_ENTER = ImGuiKey_KeypadEnter;
bool pressed(ImGuiKey key, bool repeat) {
    return ImGui::IsKeyPressed(key, repeat);
}
#else
constexpr ImGuiKey KEYPAD_ENTER = ImGuiKey_KeyPadEnter;
bool pressed(ImGuiKey key, bool repeat) {
    return ImGui::IsKeyPressed(ImGui::GetKeyIndex(key), repeat);
}
#endif

// A context's shutdown hooks carry the attached data; the hook's callback frees it.
struct Attached {
    void* data;
    ContextDataRelease release;
};

void release_hook(ImGuiContext*, ImGuiContextHook* hook) {
    if (auto* attached = static_cast<Attached*>(hook->UserData)) {
        attached->release(attached->data);
        delete attached;
    }
    hook->UserData = nullptr;
}

}  // namespace

bool frame_open() {
    const ImGuiContext* context = ImGui::GetCurrentContext();
    return context && context->WithinFrameScope;
}

void bring_current_window_to_front() {
    ImGui::BringWindowToDisplayFront(ImGui::GetCurrentWindow());
}

bool current_window_measuring() {
    return ImGui::GetCurrentWindowRead()->Hidden;
}

bool current_window_skips_items() {
    return ImGui::GetCurrentWindowRead()->SkipItems;
}

float current_line_text_offset() {
    return ImGui::GetCurrentWindowRead()->DC.CurrLineTextBaseOffset;
}

float content_right() {
    // GetWindowContentRegionMax is gone from later versions; the window's content rectangle
    // says the same.
    const ImGuiWindow& window = *ImGui::GetCurrentWindowRead();
    return window.ContentRegionRect.Max.x - window.Pos.x;
}

bool keyboard_highlight_shown() {
#if IMGUI_VERSION_NUM >= 19140
    return ImGui::GetCurrentContext()->NavCursorVisible;
#else
    return !ImGui::GetCurrentContext()->NavDisableHighlight;
#endif
}

void show_keyboard_highlight() {
#if IMGUI_VERSION_NUM >= 19140  // 1.91.4 calls the highlight the "nav cursor"
    ImGui::SetNavCursorVisible(true);
#else
    ImGui::GetCurrentContext()->NavDisableHighlight = false;
#endif
}

void cancel_keyboard_move() {
    ImGui::NavMoveRequestCancel();
}

void capture_keyboard() {
#if IMGUI_VERSION_NUM >= 18700
    ImGui::SetNextFrameWantCaptureKeyboard(true);
#else
    ImGui::CaptureKeyboardFromApp(true);
#endif
}

bool key_pressed(ImGuiKey key) {
    return pressed(key, false) || (key == ImGuiKey_Enter && pressed(KEYPAD_ENTER, false));
}

bool key_pressed_or_repeated(ImGuiKey key) {
    return pressed(key, true);
}

unsigned int decode_utf8(const char* text, const char* end, int& bytes) {
    unsigned int c = 0;
    bytes = ImTextCharFromUtf8(&c, text, end);
    if (bytes < 1)
        bytes = 1;
    return c;
}

void* context_data(ImGuiContext& context, ContextDataRelease release) {
    for (const ImGuiContextHook& hook : context.Hooks) {
        const auto* attached = static_cast<const Attached*>(hook.UserData);
        if (hook.Type == ImGuiContextHookType_Shutdown && hook.Callback == release_hook &&
            attached && attached->release == release)
            return attached->data;
    }
    return nullptr;
}

void attach_context_data(ImGuiContext& context, void* data, ContextDataRelease release) {
    ImGuiContextHook hook;
    hook.Type = ImGuiContextHookType_Shutdown;
    hook.Callback = release_hook;
    hook.UserData = new Attached{data, release};
    ImGui::AddContextHook(&context, &hook);
}

}  // namespace veldra::imgui_adapter

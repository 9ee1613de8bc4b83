#pragma once
// What the menus, dialogs and styled text need of Dear ImGui beyond its stable interface: frame
// state, window order, the keyboard highlight, keys under their current names, UTF-8 decoding
// and data owned by a context. Only imgui_adapter.cpp reaches into Dear ImGui's internals, and
// calls that later versions renamed or removed are spelled per version there, so an upgrade
// of Dear ImGui is mended in one file.

#include <imgui.h>

namespace veldra::imgui_adapter {

// Between NewFrame and Render: widgets may be submitted.
bool frame_open();

// The window being built is drawn above every other window (a dialog above the menus).
void bring_current_window_to_front();
// The window being built is in its first, measuring frame: it is not shown, and the places of
// its items are not where they will be drawn.
bool current_window_measuring();
// The window being built is collapsed or clipped away: items would not be drawn.
bool current_window_skips_items();
// How far below the line's top a text on it sits, so that a label beside a field (after
// AlignTextToFramePadding) shares the field's baseline.
float current_line_text_offset();
// The right edge of the window's content, in window coordinates.
float content_right();

// Whether the keyboard highlight (the frame around the entry that has the keyboard) shows. Dear
// ImGui shows it once a key has moved it and hides it at a mouse click.
bool keyboard_highlight_shown();
void show_keyboard_highlight();
// Drops this frame's keyboard move between items (arrows that a slider took for itself).
void cancel_keyboard_move();
// The application takes the keyboard this frame, whatever Dear ImGui would decide.
void capture_keyboard();

// A key pressed this frame (no repeats); Enter includes the keypad's.
bool key_pressed(ImGuiKey key);
// A key pressed this frame or repeating while held.
bool key_pressed_or_repeated(ImGuiKey key);

// The character at the start of [text, end) and how many bytes it takes (at least 1).
unsigned int decode_utf8(const char* text, const char* end, int& bytes);

// Data that lives as long as a context: `release` frees it when the context is destroyed, and
// also serves as its key. Null when nothing was attached under `release`.
using ContextDataRelease = void (*)(void* data);
void* context_data(ImGuiContext& context, ContextDataRelease release);
void attach_context_data(ImGuiContext& context, void* data, ContextDataRelease release);

}  // namespace veldra::imgui_adapter

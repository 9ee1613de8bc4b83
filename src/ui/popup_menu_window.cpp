#include "ui/popup_menu_window.h"

#include <imgui.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>

#include "runtime/number_format.h"
#include "ui/imgui_adapter.h"
#include "ui/menu_text.h"
#include "ui/overlay_input.h"
#include "ui/overlay_style.h"
#include "ui/typewriter.h"

namespace veldra::detail {

namespace {

using namespace overlay_style;

// "›" and "‹": a page button leads somewhere, its back button returns.
constexpr const char* PAGE_MARK = " \xE2\x80\xBA";
constexpr const char* BACK_MARK = "\xE2\x80\xB9 ";
// How far a menu stays from a point it must not hide: a creature's sprite and a little air.
constexpr float KEEP_CLEAR_RADIUS = 56;

// Titles take the largest font of the atlas (the first face of that size is the regular one);
// with one font loaded, that one.
ImFont* title_font() {
    const ImFontAtlas& atlas = *ImGui::GetIO().Fonts;
    ImFont* title = atlas.Fonts[0];
    for (ImFont* font : atlas.Fonts)
        if (font->FontSize > title->FontSize)
            title = font;
    return title;
}

using EntryRects = std::array<ControlRect, 3>;

// Dear ImGui 1.86 sends Tab to the first field of the window whenever no item is being edited,
// even when the keyboard is on a slider just clicked or moved, so typed values went to the
// wrong trait. The menu takes Tab from wherever the keyboard is to the next field below it.
struct TabFollow {
    bool pressed = false;     // Tab this frame, with no field being edited
    bool past_focus = false;  // the item with the keyboard has been drawn
    bool done = false;

    static TabFollow of_this_frame(const OverlayKeys& keys) {
        TabFollow tab;
        tab.pressed = keys.moves_to_next_field();
        return tab;
    }
    // Call before each field's widget.
    void before_field() {
        if (pressed && past_focus && !done) {
            ImGui::SetKeyboardFocusHere();
            done = true;
        }
    }
    // Call after each widget.
    void after_item() {
        if (ImGui::IsItemFocused())
            past_focus = true;
    }
};

int resize_string(ImGuiInputTextCallbackData* data) {
    if (data->EventFlag == ImGuiInputTextFlags_CallbackResize) {
        auto& text = *static_cast<std::string*>(data->UserData);
        text.resize(static_cast<std::size_t>(data->BufTextLen));
        data->Buf = text.data();
    }
    return 0;
}

void text_input(std::string& text, TabFollow& tab) {
    tab.before_field();
    ImGui::SetNextItemWidth(-FLT_MIN);
    ImGui::InputText("##text", text.data(), text.capacity() + 1, ImGuiInputTextFlags_CallbackResize,
                     resize_string, &text);
    tab.after_item();
}

ControlRect last_item_rect() {
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    return {min.x, min.y, max.x - min.x, max.y - min.y};
}

void remember_part(EntryRects& rects, ControlPart part) {
    rects[static_cast<std::size_t>(part)] = last_item_rect();
}

void number_input(MenuField& field, EntryRects& rects, TabFollow& tab, bool with_buttons = true) {
    const double step = menu_field_step(field);
    tab.before_field();
    ImGui::SetNextItemWidth(-FLT_MIN);
    // A typed value keeps the two decimals that the records are written with.
    if (ImGui::InputDouble("##number", &field.number, with_buttons ? step : 0, step * 10, "%g"))
        field.number = menu_field_typed(field, field.number);
    field.number = std::clamp(field.number, field.minimum, field.maximum);
    remember_part(rects, ControlPart::box);
    tab.after_item();
}

// Left and right move a slider that has the keyboard by one step, instead of moving the
// keyboard to the box beside it.
void step_slider_with_arrows(MenuField& field, const OverlayKeys& keys) {
    if (!ImGui::IsItemFocused() || ImGui::IsItemActive())
        return;
    const int direction = (keys.pressed_or_repeated(ImGuiKey_RightArrow) ? 1 : 0) -
                          (keys.pressed_or_repeated(ImGuiKey_LeftArrow) ? 1 : 0);
    if (direction == 0)
        return;
    field.number = menu_field_snapped(field, field.number + direction * menu_field_step(field));
    imgui_adapter::cancel_keyboard_move();
}

// A slider to drag and, beside it, a box to type the exact value: both edit the same number.
// Both are Tab stops, so Tab after a slider goes to its own box and then to the next slider.
void slider(MenuField& field, EntryRects& rects, TabFollow& tab, const OverlayKeys& keys) {
    field.number = std::clamp(field.number, field.minimum, field.maximum);
    // The value is written the way the game writes numbers everywhere else; the text has no
    // conversion in it, so ImGui shows it as it is.
    const std::string shown = number_to_string(field.number);
    const float box = SLIDER_NUMBER_BOX_WIDTH;
    tab.before_field();
    ImGui::SetNextItemWidth(ImGui::GetContentRegionAvail().x - box - ITEM_SPACING.x);
    const bool moved =
        ImGui::SliderScalar("##slider", ImGuiDataType_Double, &field.number, &field.minimum,
                            &field.maximum, shown.c_str(), ImGuiSliderFlags_AlwaysClamp);
    // Dragged values land on a step; a value typed into the slider (Tab, or Ctrl and a click)
    // keeps two decimals like the box's.
    if (moved)
        field.number = ImGui::IsMouseDown(ImGuiMouseButton_Left)
                           ? menu_field_snapped(field, field.number)
                           : menu_field_typed(field, field.number);
    step_slider_with_arrows(field, keys);
    remember_part(rects, ControlPart::bar);
    tab.after_item();
    ImGui::SameLine();
    number_input(field, rects, tab, false);
}

// A field's label in the left column, its widget to the right on the same line, so a menu of
// several fields stays short enough for the screen.
void field_label(const std::string& plain, float width) {
    if (plain.empty())
        return;
    ImGui::AlignTextToFramePadding();
    ImGui::TextUnformatted(plain.c_str());
    ImGui::SameLine(width * FIELD_LABEL_COLUMN);
}

// How much of a typed text shows after `age_ms`.
std::size_t typed_characters(const MenuEntry& entry, double age_ms) {
    if (entry.typewriter <= 0)
        return std::string::npos;
    Typewriter typewriter(entry.label, entry.typewriter, 0);
    typewriter.update(age_ms);
    return typewriter.visible_characters();
}

// Draws one entry; true when the player chose it.
bool draw_entry(const MenuEntry& entry, float width, double age_ms, EntryRects& rects,
                TabFollow& tab, const OverlayKeys& keys) {
    const std::string plain = menu_plain_text(entry.label);
    switch (entry.kind) {
        case MenuEntryKind::heading:
            ImGui::PushFont(title_font());
            draw_menu_text(entry.label, width, typed_characters(entry, age_ms));
            ImGui::PopFont();
            return false;
        case MenuEntryKind::text:
            draw_menu_text(entry.label, width, typed_characters(entry, age_ms));
            return false;
        case MenuEntryKind::button:
        case MenuEntryKind::function:
            return overlay_button(plain, -FLT_MIN, &keys);
        case MenuEntryKind::page:
            return overlay_button(plain + PAGE_MARK, -FLT_MIN, &keys);
        case MenuEntryKind::link: {
            ImGui::PushStyleColor(ImGuiCol_Text, LINK_TEXT);
            const bool chosen = overlay_button(plain, -FLT_MIN, &keys);
            ImGui::PopStyleColor();
            return chosen;
        }
        case MenuEntryKind::text_field:
            field_label(plain, width);
            text_input(entry.field->text, tab);
            return false;
        case MenuEntryKind::number_field:
            field_label(plain, width);
            number_input(*entry.field, rects, tab);
            return false;
        case MenuEntryKind::slider:
            field_label(plain, width);
            slider(*entry.field, rects, tab, keys);
            return false;
    }
    return false;
}

// Where the entry's parts were drawn, into the menu's record under the entry's label.
void record_entry(ControlRecord& record, const std::string& label, const MenuField* field,
                  const EntryRects& rects) {
    for (const ControlPart part : {ControlPart::whole, ControlPart::bar, ControlPart::box}) {
        const ControlRect& rect = rects[static_cast<std::size_t>(part)];
        if (part != ControlPart::whole && rect.w <= 0)
            continue;
        const bool bar = part == ControlPart::bar && field;
        record.controls.push_back({.label = label,
                                   .part = part,
                                   .rect = rect,
                                   .minimum = bar ? field->minimum : 0,
                                   .maximum = bar ? field->maximum : 0});
    }
}

void draw_entries(const MenuDefinition& page, const std::string* back_label, double age_ms,
                  const OverlayKeys& keys, MenuWindowResult& result) {
    const float width = ImGui::GetContentRegionAvail().x;
    TabFollow tab = TabFollow::of_this_frame(keys);
    const std::size_t count = page.entries.size() + (back_label ? 1 : 0);
    for (std::size_t i = 0; i < count; ++i) {
        const bool is_entry = i < page.entries.size();
        // Labels may repeat; the index keeps every widget's id apart.
        ImGui::PushID(static_cast<int>(i));
        ImGui::BeginGroup();
        EntryRects rects{};
        const bool chosen =
            is_entry ? draw_entry(page.entries[i], width, age_ms, rects, tab, keys)
                     : overlay_button(BACK_MARK + menu_plain_text(*back_label), -FLT_MIN, &keys);
        ImGui::EndGroup();
        tab.after_item();  // a button or a text with the keyboard
        ImGui::PopID();
        remember_part(rects, ControlPart::whole);
        record_entry(result.controls, is_entry ? page.entries[i].label : *back_label,
                     is_entry ? page.entries[i].field.get() : nullptr, rects);
        if (chosen && !result.chosen)
            result.chosen = i;
        if (is_entry && page.entries[i].kind == MenuEntryKind::heading)
            ImGui::Spacing();
    }
}

}  // namespace

float menu_window_left(float screen_width, float width, std::optional<ScreenPoint> keep_clear) {
    const float centred = (screen_width - width) / 2;
    if (!keep_clear)
        return centred;
    const auto x = static_cast<float>(keep_clear->x);
    if (x + KEEP_CLEAR_RADIUS <= centred || x - KEEP_CLEAR_RADIUS >= centred + width)
        return centred;
    const float left_of = x - KEEP_CLEAR_RADIUS - width;
    const float right_of = x + KEEP_CLEAR_RADIUS;
    const bool fits_left = left_of >= SCREEN_MARGIN;
    const bool fits_right = right_of + width <= screen_width - SCREEN_MARGIN;
    if (fits_left && (!fits_right || x >= screen_width / 2))
        return left_of;
    if (fits_right)
        return right_of;
    return centred;  // too narrow a screen to step aside: the menu matters more
}

MenuWindowResult draw_menu_window(const MenuDefinition& page, const std::string* back_label,
                                  const MenuWindowRequest& request) {
    MenuWindowResult result;
    // Escape that leaves a text field is the field's; it only goes back once nothing is edited.
    const OverlayKeys keys(request.has_keys);
    result.escape = !ImGui::IsAnyItemActive() && keys.cancel();

    const ImVec2 screen = ImGui::GetIO().DisplaySize;
    if (request.dim_behind)
        ImGui::GetBackgroundDrawList()->AddRectFilled(ImVec2(0, 0), screen,
                                                      ImGui::GetColorU32(MENU_DIM_BEHIND));
    const float width = std::min(page.width, screen.x - 2 * SCREEN_MARGIN);
    ImGui::SetNextWindowPos(
        ImVec2(menu_window_left(screen.x, width, request.keep_clear), screen.y / 2),
        ImGuiCond_Always, ImVec2(0, 0.5f));
    ImGui::SetNextWindowSizeConstraints(ImVec2(width, 0),
                                        ImVec2(width, screen.y - 2 * SCREEN_MARGIN));
    if (request.take_focus) {
        ImGui::SetNextWindowFocus();
        // The first entry shows the keyboard highlight at once, so a player who reaches for
        // the keys sees where they are and Enter or Space works without moving first.
        imgui_adapter::show_keyboard_highlight();
    }
    ImGuiWindowFlags flags = ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoMove |
                             ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoCollapse |
                             ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_AlwaysAutoResize;
    if (!request.interactive)
        flags |= ImGuiWindowFlags_NoInputs | ImGuiWindowFlags_NoBringToFrontOnFocus |
                 ImGuiWindowFlags_NoFocusOnAppearing;

    push_menu_window_style();
    if (ImGui::Begin(request.name.c_str(), nullptr, flags)) {
        if (!request.interactive)
            ImGui::BeginDisabled();
        draw_entries(page, back_label, request.page_age_ms, keys, result);
        // A new window is measured in a first frame it does not show: its places are not
        // where it will be drawn.
        if (imgui_adapter::current_window_measuring())
            result.controls.controls.clear();
        if (!request.interactive)
            ImGui::EndDisabled();
    }
    result.any_window_focused = ImGui::IsWindowFocused(ImGuiFocusedFlags_AnyWindow);
    ImGui::End();
    pop_menu_window_style();
    if (!request.interactive)
        result.chosen.reset();
    return result;
}

}  // namespace veldra::detail

#include "ui/popup_menu.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "runtime/assertion.h"
#include "runtime/log.h"
#include "runtime/runtime.h"
#include "runtime/services.h"
#include "ui/popup_menu_window.h"

namespace veldra {

namespace {

MenuEntry make_entry(MenuEntryKind kind, std::string label) {
    MenuEntry entry;
    entry.kind = kind;
    entry.label = std::move(label);
    return entry;
}

// A page is checked when it is shown, so that a mistake names the entry before it is drawn.
void check_page(const MenuDefinition& page) {
    for (const MenuEntry& entry : page.entries) {
        switch (entry.kind) {
            case MenuEntryKind::function:
                VELDRA_ASSERT(entry.action, "menu function \"" + entry.label + "\" has no action");
                break;
            case MenuEntryKind::page:
                VELDRA_ASSERT(entry.page, "menu page \"" + entry.label + "\" has no page to open");
                break;
            case MenuEntryKind::text_field:
            case MenuEntryKind::number_field:
            case MenuEntryKind::slider:
                VELDRA_ASSERT(entry.field, "menu field \"" + entry.label + "\" has no MenuField");
                VELDRA_ASSERT(
                    entry.field->minimum <= entry.field->maximum,
                    "menu field \"" + entry.label + "\" has its minimum above its maximum");
                break;
            default:
                break;
        }
    }
}

}  // namespace

double menu_field_step(const MenuField& field) {
    return field.maximum - field.minimum >= 10 ? 1 : 0.1;
}

double menu_field_snapped(const MenuField& field, double number) {
    const double step = menu_field_step(field);
    const double steps = std::round((number - field.minimum) / step);
    // Computed from the range's start, the step count and the step, then rounded to the two
    // decimals numbers are written with, so 0.1 steps give 0.3 and not 0.30000000000000004.
    return menu_field_typed(field, field.minimum + steps * step);
}

double menu_field_typed(const MenuField& field, double number) {
    return std::clamp(std::round(number * 100) / 100, field.minimum, field.maximum);
}

MenuEntry menu_heading(std::string text) {
    return make_entry(MenuEntryKind::heading, std::move(text));
}

MenuEntry menu_text(std::string text) {
    return make_entry(MenuEntryKind::text, std::move(text));
}

MenuEntry menu_button(std::string label, Value value) {
    MenuEntry entry = make_entry(MenuEntryKind::button, std::move(label));
    entry.value = std::move(value);
    return entry;
}

MenuEntry menu_function(std::string label, std::function<void()> action) {
    MenuEntry entry = make_entry(MenuEntryKind::function, std::move(label));
    entry.action = std::move(action);
    return entry;
}

MenuEntry menu_page(std::string label, MenuDefinition page) {
    MenuEntry entry = make_entry(MenuEntryKind::page, std::move(label));
    entry.page = std::make_shared<MenuDefinition>(std::move(page));
    return entry;
}

MenuEntry menu_text_field(std::string label, std::shared_ptr<MenuField> field) {
    MenuEntry entry = make_entry(MenuEntryKind::text_field, std::move(label));
    entry.field = std::move(field);
    return entry;
}

MenuEntry menu_number_field(std::string label, std::shared_ptr<MenuField> field) {
    MenuEntry entry = make_entry(MenuEntryKind::number_field, std::move(label));
    entry.field = std::move(field);
    return entry;
}

MenuEntry menu_slider(std::string label, std::shared_ptr<MenuField> field) {
    MenuEntry entry = make_entry(MenuEntryKind::slider, std::move(label));
    entry.field = std::move(field);
    return entry;
}

MenuEntry menu_link(std::string label, std::string url) {
    MenuEntry entry = make_entry(MenuEntryKind::link, std::move(label));
    entry.url = std::move(url);
    return entry;
}

Promise<Value> create_popup_menu(Runtime& runtime, MenuDefinition definition,
                                 PopupOptions options) {
    return Promise<Value>([&runtime, definition = std::move(definition), options](
                              const Resolve<Value>& resolve, const Reject&) {
        runtime.instance_create<obj_popup_menu>(0, 0, "Menus", definition, options, resolve);
    });
}

obj_popup_menu::obj_popup_menu(MenuDefinition definition, PopupOptions options,
                               Resolve<Value> resolve)
    : options_(options), resolve_(std::move(resolve)) {
    persistent = options.persistent;
    show_page(std::make_shared<const MenuDefinition>(std::move(definition)));
}

void obj_popup_menu::on_step() {
    if (!overlay_frame_open())
        return;
    const bool top = on_top();
    if (top && !was_on_top_)
        want_focus_ = true;
    was_on_top_ = top;
    // Under a dialog the popup is drawn as it was, but takes no keys until the dialog is gone.
    const bool front = in_front();
    // One ImGui window per page: a page appears as a window of its own, measured before it is
    // shown and with the keyboard on its first entry, rather than in the old page's size.
    detail::MenuWindowRequest request;
    request.name = "##popup_menu_" + std::to_string(id()) + "_" +
                   std::to_string(reinterpret_cast<std::uintptr_t>(pages_.back().get()));
    request.interactive = top;
    request.has_keys = front;
    request.take_focus = front && want_focus_;
    request.dim_behind = options_.dim_behind;
    request.keep_clear = options_.keep_clear;
    if (!page_shown_ms_)
        page_shown_ms_ = runtime().current_time();
    request.page_age_ms = runtime().current_time() - *page_shown_ms_;
    const detail::MenuWindowResult drawn =
        detail::draw_menu_window(page(), on_sub_page() ? &page().back_label : nullptr, request);
    record_.controls = drawn.controls.controls;
    // A click on the game leaves no window with the keyboard; the menu takes it back, but leaves
    // it to another window (a developer window) that has it. Under a dialog, a wish to take the
    // keyboard waits until the dialog is answered.
    if (front)
        want_focus_ = !drawn.any_window_focused;
    if (drawn.chosen)
        activate_at(*drawn.chosen);
    else if (drawn.escape)
        escape();
}

bool obj_popup_menu::activate(const std::string& label) {
    const std::optional<std::size_t> index = find_entry(label);
    if (!alive() || !index)
        return false;
    activate_at(*index);
    return true;
}

std::vector<std::string> obj_popup_menu::current_labels() const {
    std::vector<std::string> labels;
    for (std::size_t i = 0; i < entry_count(); ++i)
        labels.push_back(label_at(i));
    return labels;
}

obj_popup_menu::Rect obj_popup_menu::entry_rect(const std::string& label, Part part) const {
    const DrawnControl* control = record_.find(label, part);
    return control ? control->rect : Rect{};
}

const MenuField* obj_popup_menu::entry_field(const std::string& label) const {
    const std::optional<std::size_t> index = find_entry(label);
    return index && *index < page().entries.size() ? page().entries[*index].field.get() : nullptr;
}

float obj_popup_menu::slider_x(const std::string& label, double value) const {
    const DrawnControl* bar = record_.find(label, Part::bar);
    return bar ? slider_value_x(*bar, value) : 0;
}

std::size_t obj_popup_menu::entry_count() const {
    return page().entries.size() + (on_sub_page() ? 1 : 0);
}

const std::string& obj_popup_menu::label_at(std::size_t index) const {
    return index < page().entries.size() ? page().entries[index].label : page().back_label;
}

std::optional<std::size_t> obj_popup_menu::find_entry(const std::string& label) const {
    for (std::size_t i = 0; i < entry_count(); ++i)
        if (label_at(i) == label)
            return i;
    return std::nullopt;
}

void obj_popup_menu::activate_at(std::size_t index) {
    // The page stays alive through whatever the entry does, even if that leaves the page.
    const std::shared_ptr<const MenuDefinition> shown = pages_.back();
    Audio& audio = *runtime().services().audio;
    if (index == shown->entries.size()) {
        audio.play(Sound::ui_click);
        go_back();
        return;
    }
    const MenuEntry& entry = shown->entries.at(index);
    switch (entry.kind) {
        case MenuEntryKind::button:
            audio.play(Sound::ui_click);
            close(entry.value);
            break;
        case MenuEntryKind::function:
            audio.play(Sound::ui_click);
            entry.action();
            break;
        case MenuEntryKind::page:
            audio.play(Sound::ui_click);
            show_page(entry.page);
            break;
        case MenuEntryKind::link:
            audio.play(Sound::ui_click);
            runtime().services().open_url(entry.url);
            break;
        default:  // texts and fields do nothing when clicked as a whole
            break;
    }
}

void obj_popup_menu::show_page(std::shared_ptr<const MenuDefinition> page) {
    check_page(*page);
    pages_.push_back(std::move(page));
    record_page();
    page_shown_ms_.reset();
    want_focus_ = true;
}

void obj_popup_menu::go_back() {
    if (!on_sub_page())
        return;
    pages_.pop_back();
    record_page();
    page_shown_ms_.reset();
    want_focus_ = true;
}

void obj_popup_menu::escape() {
    if (on_sub_page())
        go_back();
    else if (!options_.persistent)
        close(Value());
}

void obj_popup_menu::close(const Value& result) {
    // Destroyed first, so that whatever the promise's handlers open is the only popup left.
    const Resolve<Value> resolve = resolve_;
    const Value value = result;
    runtime().instance_destroy(id());
    resolve(value);
}

OverlayLayer obj_popup_menu::overlay_layer() const {
    return options_.behind_others ? OverlayLayer::background_menu : OverlayLayer::menu;
}

bool obj_popup_menu::on_top() const {
    return front_overlay_up_to(runtime(), OverlayLayer::menu) == this;
}

void obj_popup_menu::record_page() {
    record_.texts.clear();
    for (std::size_t i = 0; i < entry_count(); ++i)
        record_.texts.push_back(remove_text_tags(label_at(i)));
    record_.controls.clear();
}

std::size_t popup_menus_open(const Runtime& runtime, std::string_view name) {
    std::size_t open = 0;
    const std::size_t count = runtime.instance_number<obj_popup_menu>();
    for (std::size_t i = 0; i < count; ++i)
        if (runtime.instance_find<obj_popup_menu>(i)->name() == name)
            ++open;
    return open;
}

void close_popup_menus(Runtime& runtime, std::string_view name) {
    runtime.for_each<obj_popup_menu>([&runtime, name](obj_popup_menu& menu) {
        if (menu.name() == name)
            runtime.instance_destroy(menu.id());
    });
}

}  // namespace veldra

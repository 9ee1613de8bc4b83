#pragma once
// Popup menus: a menu is data (a MenuDefinition, a list of entries) shown by one entity that
// draws it with Dear ImGui over the game and answers through a promise, so a session chains a
// menu like any other wait: create_popup_menu(...).and_then(...). Texts may carry the game's
// markup ("[pin_center]", colours, ...).
//
// Entry kinds:
//   heading       a title line
//   text          a paragraph
//   button        closes the menu and fulfils its promise with the entry's `value`
//   function      runs `action`; the menu stays open
//   page          opens `page` as a sub-page of the same popup, with a back button on it;
//                 Escape goes back too
//   text_field    a one-line text input bound to `field->text`
//   number_field  a number input bound to `field->number`, kept within [minimum, maximum]
//   slider        a slider bound to `field->number` over [minimum, maximum], with a box beside
//                 it to type the exact value
//
// Numbers move in steps: whole ones over a range of 10 or more, tenths over a narrower one. A
// slider moved with the mouse or the arrow keys lands on a step; a typed value is kept to the
// two decimals the game writes numbers with, so what is recorded is what was chosen.
//
// Every entry works from the keyboard: the arrows move between entries (and move a slider that
// has the keyboard by one step), Tab goes to the next field or slider box from top to bottom,
// Space or Enter presses a button.
//   link          a button that opens `url` in the system browser (Services::open_url)
//
// Fields are shared cells: the code that built the menu keeps the same MenuField and reads what
// the user typed or slid once the promise is fulfilled.
//
// Several popups may be open at once: they are overlays (ui/overlay.h). The newest is drawn on
// top and is the only one that takes clicks and keys; the ones below are dimmed. A background
// popup (the developer menu) stays behind the others, and a dialog comes in front of every popup:
// the popup then takes no keys until the dialog is answered. A run without Dear ImGui (headless)
// draws nothing, but activate() works there as in a window.

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "async/promise.h"
#include "runtime/value.h"
#include "ui/camera.h"
#include "ui/control_record.h"
#include "ui/overlay.h"

namespace veldra {

class Runtime;

enum class MenuEntryKind {
    heading,
    text,
    button,
    function,
    page,
    text_field,
    number_field,
    slider,
    link
};

struct MenuField {
    std::string text;
    double number = 0;
    double minimum = 0;
    double maximum = 1;
};

// The step a field's number moves by, and a number put onto the nearest step of the field's
// range (within the range).
double menu_field_step(const MenuField& field);
double menu_field_snapped(const MenuField& field, double number);
// A typed number kept to the two decimals numbers are written with, within the field's range.
double menu_field_typed(const MenuField& field, double number);

struct MenuDefinition;

struct MenuEntry {
    MenuEntryKind kind = MenuEntryKind::text;
    std::string label;                     // what is shown; markup allowed
    Value value;                           // button: what the menu's promise is fulfilled with
    std::function<void()> action;          // function: what a click runs
    std::shared_ptr<MenuDefinition> page;  // page: the sub-page it opens
    std::shared_ptr<MenuField> field;      // the fields' and the slider's value
    std::string url;                       // link
    // heading and text: characters a second that reveal it, as if typed; 0 shows it at once.
    double typewriter = 0;
};

struct MenuDefinition {
    std::vector<MenuEntry> entries;
    float width = 640;  // logical pixels; the height follows the entries
    // The label of the back button a sub-page gets (markup allowed), for menus in other languages.
    std::string back_label = "Back";
};

MenuEntry menu_heading(std::string text);
MenuEntry menu_text(std::string text);
MenuEntry menu_button(std::string label, Value value = Value());
MenuEntry menu_function(std::string label, std::function<void()> action);
MenuEntry menu_page(std::string label, MenuDefinition page);
MenuEntry menu_text_field(std::string label, std::shared_ptr<MenuField> field);
MenuEntry menu_number_field(std::string label, std::shared_ptr<MenuField> field);
MenuEntry menu_slider(std::string label, std::shared_ptr<MenuField> field);
MenuEntry menu_link(std::string label, std::string url);

struct PopupOptions {
    // A persistent popup survives room changes and cannot be closed with Escape on its top page
    // (the developer menu); others are destroyed with their room. A button closes either kind.
    bool persistent = false;
    // What kind of menu this is, so callers can find menus of a kind (popup_menus_open).
    std::string name;
    // Dims the game behind the menu, for menus that stand between trials: the finished world
    // steps back and the menu is what to read.
    bool dim_behind = false;
    // A point of the 1600 x 900 screen the menu must not hide, such as the player at the end of
    // a trial: the menu moves sideways off it when the centre would cover it.
    std::optional<ScreenPoint> keep_clear;
    // Stays behind every other popup, whenever they were opened: a menu that waits in the
    // background (the developer menu) while the game's own menus come and go over it.
    bool behind_others = false;
};

// Opens `definition` centred on the screen (or beside its keep_clear point), above every other
// popup. The promise is fulfilled with the pressed button's value when a button closes the menu,
// and with undefined when Escape closes a non-persistent menu from its top page (a dismissal, not a
// choice: give buttons values when the difference matters). It is never rejected, and stays pending
// when the menu is destroyed another way (its room ends, or code destroys it).
Promise<Value> create_popup_menu(Runtime& runtime, MenuDefinition definition,
                                 PopupOptions options = {});

// How many popups named `name` are open.
std::size_t popup_menus_open(const Runtime& runtime, std::string_view name);
// Destroys every popup named `name` (their promises stay pending).
void close_popup_menus(Runtime& runtime, std::string_view name);

class obj_popup_menu : public obj_overlay {
    VELDRA_OBJECT(obj_popup_menu, obj_overlay)
public:
    obj_popup_menu(MenuDefinition definition, PopupOptions options, Resolve<Value> resolve);

    // Draws the current page with Dear ImGui (when a frame is open) and acts on clicks and keys.
    void on_step() override;

    // A popup that stays behind the others is in the background layer.
    OverlayLayer overlay_layer() const override;
    // The current page's labels (markup removed) and its entries as last drawn.
    const ControlRecord& controls() const override { return record_; }

    // What a click on the entry labelled `label` on the current page does, for tests and
    // automation; false when the current page has no such entry.
    bool activate(const std::string& label);
    // The labels of the current page's entries, in order (markup kept).
    std::vector<std::string> current_labels() const;
    // Logical-pixel rectangle of the entry labelled `label` as last drawn ({0,0,0,0} when not
    // drawn), so windowed tests can click it with real mouse events: the whole entry, or a
    // slider's bar or the box of a slider or number field.
    using Rect = ControlRect;
    using Part = ControlPart;
    Rect entry_rect(const std::string& label, Part part = Part::whole) const;
    // The field of the entry labelled `label`, or nullptr.
    const MenuField* entry_field(const std::string& label) const;
    // Where on the bar of the slider labelled `label`, as last drawn, a press sets `value`.
    float slider_x(const std::string& label, double value) const;
    const std::string& name() const { return options_.name; }

private:
    // The current page's entries are indexed in order; a sub-page's back button comes last.
    const MenuDefinition& page() const { return *pages_.back(); }
    bool on_sub_page() const { return pages_.size() > 1; }
    std::size_t entry_count() const;
    const std::string& label_at(std::size_t index) const;
    std::optional<std::size_t> find_entry(const std::string& label) const;
    void activate_at(std::size_t index);
    void show_page(std::shared_ptr<const MenuDefinition> page);
    void go_back();
    void escape();
    void close(const Value& result);
    // The front one of the popups: not dimmed, and takes the pointer unless a dialog covers it.
    bool on_top() const;
    // A new page: its labels are known at once, its places once drawn.
    void record_page();

    // The top page first, the one shown last; never empty.
    std::vector<std::shared_ptr<const MenuDefinition>> pages_;
    PopupOptions options_;
    Resolve<Value> resolve_;
    ControlRecord record_;
    bool was_on_top_ = false;
    std::optional<double> page_shown_ms_;  // the clock when the current page was first drawn
    bool want_focus_ = true;
};

}  // namespace veldra

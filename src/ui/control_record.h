#pragma once
// What an overlay (a menu, a dialog) drew in its last frame: its texts and where each labelled
// control was. Tests and UI scripts read it to find a control by its label and click it where a
// user would, the same way whichever kind of overlay is in front.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veldra {

struct ControlRect {
    float x = 0, y = 0, w = 0, h = 0;  // logical pixels
};

// A control may have parts a pointer aims at on their own: a slider's bar, a number's box.
enum class ControlPart { whole, bar, box };

struct DrawnControl {
    std::string label;  // as the overlay was given it, markup kept
    ControlPart part = ControlPart::whole;
    ControlRect rect;
    // A slider's bar: the values its two ends stand for.
    double minimum = 0;
    double maximum = 0;
};

struct ControlRecord {
    std::vector<std::string> texts;  // markup removed, in drawing order
    std::vector<DrawnControl> controls;

    // Whether one of the texts contains `fragment`.
    bool shows(std::string_view fragment) const;
    // The first control labelled exactly `label`.
    const DrawnControl* find(std::string_view label, ControlPart part = ControlPart::whole) const;
    // The first control whose label reads `text` once its markup is removed: what a user sees.
    const DrawnControl* find_shown(std::string_view text,
                                   ControlPart part = ControlPart::whole) const;
    // The whole of the control labelled exactly `label`.
    std::optional<ControlRect> item(std::string_view label) const;
};

// Records the last Dear ImGui item under `label`.
void remember_item(ControlRecord& record, std::string label, ControlPart part = ControlPart::whole);

// Where on a slider's bar, as drawn, the grab's centre stands for `value`.
float slider_value_x(const DrawnControl& bar, double value);

}  // namespace veldra

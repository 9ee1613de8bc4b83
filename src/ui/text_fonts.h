#pragma once
// The faces styled text is set in: regular, bold, italic (oblique) and bold-italic DejaVu Sans,
// loaded into Dear ImGui's font atlas at each size the game uses and registered as one family
// per size, so text set in a family's face takes its "[b]" and "[slant]" runs from the others.
// Families belong to the Dear ImGui context that was current when they were registered and are
// forgotten with it.

#include <string>

struct ImFont;

namespace veldra {

struct TextFontFamily {
    const ImFont* regular = nullptr;
    const ImFont* bold = nullptr;
    const ImFont* italic = nullptr;
    const ImFont* bold_italic = nullptr;

    const ImFont& face(bool bold_style, bool slant_style) const;
};

// Registers the four faces, all of one size, as a family in the current Dear ImGui context.
void text_font_set_style_family(const ImFont& regular, const ImFont& bold, const ImFont& italic,
                                const ImFont& bold_italic);

// The registered family that has `font` as one of its faces; a font in no family is a family of
// its own (every style drawn in it), as is any font when no context is current.
TextFontFamily text_font_style_family(const ImFont& font);

// Loads the four DejaVu Sans faces from `folder` at `pixels` (line height) into the current
// context's atlas and registers them as a family; the atlas still has to be built. Returns the
// regular face, or nullptr with a clear `error` naming the file and the package that has it.
ImFont* add_text_font_family(const std::string& folder, float pixels, std::string& error);

}  // namespace veldra

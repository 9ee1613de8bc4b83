#include "ui/text_fonts.h"

#include <imgui.h>

#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/assertion.h"
#include "runtime/file_io.h"
#include "ui/imgui_adapter.h"

namespace veldra {

namespace {

// The families live in their Dear ImGui context and are freed when it is destroyed, so no
// family outlives the atlas its faces are in.
struct Families {
    std::vector<TextFontFamily> list;
};

void forget_families(void* families) {
    delete static_cast<Families*>(families);
}

Families* families_of(ImGuiContext& context) {
    return static_cast<Families*>(imgui_adapter::context_data(context, forget_families));
}

Families& make_families(ImGuiContext& context) {
    if (Families* families = families_of(context))
        return *families;
    auto families = std::make_unique<Families>();
    imgui_adapter::attach_context_data(context, families.get(), forget_families);
    return *families.release();
}

struct FaceFile {
    std::string_view name;
    std::string_view package;  // the Debian package that installs it
};

// In the order of TextFontFamily's members.
constexpr std::array<FaceFile, 4> FACE_FILES = {{
    {"DejaVuSans.ttf", "fonts-dejavu-core"},
    {"DejaVuSans-Bold.ttf", "fonts-dejavu-core"},
    {"DejaVuSans-Oblique.ttf", "fonts-dejavu-extra"},
    {"DejaVuSans-BoldOblique.ttf", "fonts-dejavu-extra"},
}};

// Latin with its accents (the game's languages), and the punctuation block for dashes, quotes and
// the ellipsis.
constexpr ImWchar GLYPH_RANGES[] = {0x0020, 0x017F, 0x2010, 0x205E, 0};

// A DejaVu face is under a megabyte; a font file this large is something else.
constexpr std::size_t MAX_FONT_BYTES = 64u << 20;

// The font's bytes, read by the game itself so that a font folder named in any letters opens on
// every system. Dear ImGui stops the program on a file it cannot parse, so the file must start
// like a TrueType or OpenType font.
std::optional<std::string> read_font(const std::string& path, std::string_view package,
                                     std::string& error) {
    FileText file = read_whole_file(path, MAX_FONT_BYTES);
    if (!file) {
        error = "cannot open the font \"" + path + "\": " + file.error + " (install the package " +
                std::string(package) + ", or rebuild so that the build copies it)";
        return std::nullopt;
    }
    if (file.text->size() < 4) {
        error = "the font \"" + path + "\" is empty or truncated";
        return std::nullopt;
    }
    constexpr std::string_view KNOWN[] = {{"\0\1\0\0", 4}, "true", "OTTO", "ttcf"};
    for (const std::string_view known : KNOWN)
        if (std::string_view(*file.text).substr(0, 4) == known)
            return std::move(file.text);
    error = "\"" + path + "\" is not a TrueType or OpenType font";
    return std::nullopt;
}

}  // namespace

const ImFont& TextFontFamily::face(bool bold_style, bool slant_style) const {
    const ImFont* chosen =
        bold_style ? (slant_style ? bold_italic : bold) : (slant_style ? italic : regular);
    VELDRA_ASSERT(chosen, "a text font family with a face left out?");
    return *chosen;
}

void text_font_set_style_family(const ImFont& regular, const ImFont& bold, const ImFont& italic,
                                const ImFont& bold_italic) {
    ImGuiContext* context = ImGui::GetCurrentContext();
    VELDRA_ASSERT(context, "text fonts registered before the Dear ImGui context was made?");
    Families& families = make_families(*context);
    const TextFontFamily family{&regular, &bold, &italic, &bold_italic};
    for (TextFontFamily& known : families.list) {
        if (known.regular == &regular) {
            known = family;
            return;
        }
    }
    families.list.push_back(family);
}

TextFontFamily text_font_style_family(const ImFont& font) {
    if (ImGuiContext* context = ImGui::GetCurrentContext()) {
        if (const Families* families = families_of(*context)) {
            for (const TextFontFamily& family : families->list)
                for (const ImFont* face :
                     {family.regular, family.bold, family.italic, family.bold_italic})
                    if (face == &font)
                        return family;
        }
    }
    return {&font, &font, &font, &font};
}

ImFont* add_text_font_family(const std::string& folder, float pixels, std::string& error) {
    ImFontAtlas& atlas = *ImGui::GetIO().Fonts;
    std::array<ImFont*, FACE_FILES.size()> faces{};
    for (std::size_t i = 0; i < FACE_FILES.size(); ++i) {
        const std::string path = folder + "/" + std::string(FACE_FILES[i].name);
        const std::optional<std::string> bytes = read_font(path, FACE_FILES[i].package, error);
        if (!bytes)
            return nullptr;
        // The atlas keeps the bytes and frees them with its own allocator.
        void* owned = IM_ALLOC(bytes->size());
        std::memcpy(owned, bytes->data(), bytes->size());
        // Glyphs rasterised at the size they are drawn and placed on whole pixels: the software
        // renderer then copies each one as it is, where a glyph three times as wide (Dear
        // ImGui's default) made it scale every glyph through a scratch picture.
        ImFontConfig config;
        config.OversampleH = 1;
        config.PixelSnapH = true;
        faces[i] = atlas.AddFontFromMemoryTTF(owned, static_cast<int>(bytes->size()), pixels,
                                              &config, GLYPH_RANGES);
        if (!faces[i]) {
            error = "cannot read the glyphs of the font \"" + path + "\"";
            return nullptr;
        }
    }
    text_font_set_style_family(*faces[0], *faces[1], *faces[2], *faces[3]);
    return faces[0];
}

}  // namespace veldra

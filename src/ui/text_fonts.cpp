#include "ui/text_fonts.h"

#include <imgui.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
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

// Dear ImGui stops the program on a file it cannot parse, so the file is checked first: it must
// open and start like a TrueType or OpenType font.
bool looks_like_font(const std::string& path, std::string_view package, std::string& error) {
    std::string why;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(open_file(path, "rb", why), std::fclose);
    if (!file) {
        error = "cannot open the font \"" + path + "\": " + why + " (install the package " +
                std::string(package) + ", or rebuild so that the build copies it)";
        return false;
    }
    std::array<unsigned char, 4> magic{};
    if (std::fread(magic.data(), 1, magic.size(), file.get()) != magic.size()) {
        error = "the font \"" + path + "\" is empty or truncated";
        return false;
    }
    constexpr std::array<unsigned char, 4> KNOWN[] = {
        {0, 1, 0, 0}, {'t', 'r', 'u', 'e'}, {'O', 'T', 'T', 'O'}, {'t', 't', 'c', 'f'}};
    for (const auto& known : KNOWN)
        if (magic == known)
            return true;
    error = "\"" + path + "\" is not a TrueType or OpenType font";
    return false;
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
        if (!looks_like_font(path, FACE_FILES[i].package, error))
            return nullptr;
        faces[i] = atlas.AddFontFromFileTTF(path.c_str(), pixels, nullptr, GLYPH_RANGES);
        if (!faces[i]) {
            error = "cannot read the glyphs of the font \"" + path + "\"";
            return nullptr;
        }
    }
    text_font_set_style_family(*faces[0], *faces[1], *faces[2], *faces[3]);
    return faces[0];
}

}  // namespace veldra

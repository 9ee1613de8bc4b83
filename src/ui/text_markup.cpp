#include "ui/text_markup.h"

#include <optional>

#include "runtime/text_tags.h"

namespace veldra {

namespace {

struct MarkupState {
    Rgba colour;
    int bold = 0;   // open "[b]"s
    int slant = 0;  // open "[slant]"s
    TextAlign align = TextAlign::left;
};

void apply_tag(const TextTag& tag, Rgba own_colour, TextAlign own_align, MarkupState& state) {
    switch (tag.kind) {
        case TextTagKind::colour:
            state.colour = tag.colour;
            if (!tag.has_alpha)
                state.colour.a = own_colour.a;
            break;
        case TextTagKind::colour_end:
            state.colour = own_colour;
            break;
        case TextTagKind::bold:
            ++state.bold;
            break;
        case TextTagKind::bold_end:
            state.bold -= state.bold > 0 ? 1 : 0;
            break;
        case TextTagKind::slant:
            ++state.slant;
            break;
        case TextTagKind::slant_end:
            state.slant -= state.slant > 0 ? 1 : 0;
            break;
        case TextTagKind::align:
            state.align = tag.align;
            break;
        case TextTagKind::end_all:
            state = {own_colour, 0, 0, own_align};
            break;
    }
}

// Walks `markup` a tag or a character at a time: `on_tag(tag, at)` and `on_character(at,
// length)` with byte offsets; either returns false to stop the walk.
template <class OnTag, class OnCharacter>
void walk_markup(std::string_view markup, OnTag&& on_tag, OnCharacter&& on_character) {
    std::size_t at = 0;
    while (at < markup.size()) {
        if (const std::optional<TextTag> tag = read_text_tag(markup.substr(at))) {
            if (!on_tag(*tag, at))
                return;
            at += tag->length;
            continue;
        }
        const std::size_t length = utf8_character_length(markup.substr(at));
        if (!on_character(at, length))
            return;
        at += length;
    }
}

}  // namespace

std::size_t utf8_character_length(std::string_view text) {
    if (text.empty())
        return 0;
    std::size_t length = 1;
    while (length < text.size() && length < 4 &&
           (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
        ++length;
    return length;
}

void read_text_runs(std::string_view markup, Rgba colour, TextAlign align,
                    std::vector<TextRun>& runs) {
    runs.clear();
    MarkupState state{colour, 0, 0, align};
    std::size_t run_start = 0;
    auto close_run = [&](std::size_t end) {
        if (end > run_start)
            runs.push_back({markup.substr(run_start, end - run_start), state.colour, state.bold > 0,
                            state.slant > 0, state.align});
    };
    walk_markup(
        markup,
        [&](const TextTag& tag, std::size_t at) {
            close_run(at);
            apply_tag(tag, colour, align, state);
            run_start = at + tag.length;
            return true;
        },
        [](std::size_t, std::size_t) { return true; });
    close_run(markup.size());
}

std::size_t markup_character_count(std::string_view markup) {
    std::size_t count = 0;
    walk_markup(
        markup, [](const TextTag&, std::size_t) { return true; },
        [&](std::size_t, std::size_t) {
            ++count;
            return true;
        });
    return count;
}

std::string_view visible_markup_prefix(std::string_view markup, std::size_t characters) {
    std::size_t end = markup.size();
    std::size_t seen = 0;
    walk_markup(
        markup, [](const TextTag&, std::size_t) { return true; },
        [&](std::size_t at, std::size_t) {
            if (seen == characters) {
                end = at;
                return false;
            }
            ++seen;
            return true;
        });
    return markup.substr(0, end);
}

}  // namespace veldra

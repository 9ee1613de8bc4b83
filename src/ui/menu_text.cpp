#include "ui/menu_text.h"

#include "runtime/log.h"
#include "ui/styled_text.h"

namespace veldra {

std::string menu_plain_text(std::string_view markup) {
    return remove_text_tags(markup);
}

void draw_menu_text(std::string_view markup, float width, std::size_t visible_characters) {
    styled_text(markup, width, visible_characters);
}

}  // namespace veldra

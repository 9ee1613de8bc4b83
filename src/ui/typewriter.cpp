#include "ui/typewriter.h"

#include <cmath>
#include <utility>

#include "ui/text_markup.h"

namespace veldra {

Typewriter::Typewriter(std::string markup, double characters_per_second, double start_ms)
    : markup_(std::move(markup)),
      characters_per_second_(characters_per_second),
      start_ms_(start_ms),
      total_(markup_character_count(markup_)) {
    if (characters_per_second_ <= 0)
        skip();
}

void Typewriter::update(double now_ms) {
    const double due = std::floor((now_ms - start_ms_) / 1000.0 * characters_per_second_);
    if (!(due > static_cast<double>(visible_)))  // NaN too
        return;
    visible_ = due >= static_cast<double>(total_) ? total_ : static_cast<std::size_t>(due);
}

void Typewriter::skip() {
    visible_ = total_;
}

std::string_view Typewriter::visible_text() const {
    return visible_markup_prefix(markup_, visible_);
}

}  // namespace veldra

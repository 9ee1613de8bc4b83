#pragma once
// The game's text and Dear ImGui's share one font atlas: the four DejaVu Sans faces (regular,
// bold, oblique, bold oblique) at two sizes, each size registered as a style family
// (ui/text_fonts.h).

#include <string>

#include "platform/window_session.h"

namespace veldra::platform {

inline constexpr float SMALL_FONT_PIXELS = 20;
inline constexpr float LARGE_FONT_PIXELS = 40;

// Adds the faces in `folder` to the session's ImGui atlas and uploads the atlas as an SDL
// texture. False with a clear `error` when a face is missing, unreadable or not a TrueType font.
bool load_font_atlas(WindowSession& session, const std::string& folder, std::string& error);

}  // namespace veldra::platform

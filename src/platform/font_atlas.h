#pragma once
// The game's text and Dear ImGui's share one font atlas, built from a TrueType file at two sizes.

#include <string>

#include "platform/window_session.h"

namespace veldra::platform {

inline constexpr float SMALL_FONT_PIXELS = 20;
inline constexpr float LARGE_FONT_PIXELS = 40;

// Adds the fonts at `path` to the session's ImGui atlas and uploads the atlas as an SDL texture.
// False with a clear `error` when the file is missing, unreadable or not a TrueType font.
bool load_font_atlas(WindowSession& session, const std::string& path, std::string& error);

}  // namespace veldra::platform

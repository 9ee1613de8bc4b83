#pragma once
// Whether output goes to a person at a terminal or to a file or pipe: progress is redrawn in
// place for the one and written as plain lines for the other.

namespace veldra::platform {

bool stderr_is_terminal();

}  // namespace veldra::platform

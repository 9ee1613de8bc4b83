#pragma once
// Where --help, the log and errors go when the program has no console of its own. The Windows
// program is built for the GUI, so a double-click opens no console window; started from a
// Command Prompt or PowerShell it writes into that one instead. Elsewhere nothing changes.

namespace veldra::platform {

// Call first thing: output written before it is lost.
void use_parent_console();

}  // namespace veldra::platform

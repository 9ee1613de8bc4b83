#pragma once
// Signals the program changes the handling of, besides Ctrl-C (platform/interrupt.h).

namespace veldra::platform {

// Writing to a pipe whose reader is gone then fails with an error the writer handles, instead
// of ending the whole process.
void ignore_broken_pipes();

}  // namespace veldra::platform

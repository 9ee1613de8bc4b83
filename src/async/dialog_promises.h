#pragma once
// Dialogs as promises, so a question asked in a window (open over many frames) and one answered
// by a script (at once) read the same in game code. Each promise is fulfilled with the answer,
// or cancelled when the user cancels; none is ever rejected.

#include <string>
#include <string_view>

#include "async/promise.h"
#include "runtime/dialogs.h"

namespace veldra {

Promise<std::string> dialog_get_string(Dialogs& dialogs, std::string_view prompt,
                                       std::string_view initial);
Promise<std::string> dialog_get_open_filename(Dialogs& dialogs, std::string_view filter,
                                              std::string_view initial,
                                              std::string_view title = {});
Promise<std::string> dialog_get_save_filename(Dialogs& dialogs, std::string_view filter,
                                              std::string_view initial, std::string_view title);

}  // namespace veldra

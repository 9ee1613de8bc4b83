#pragma once
// Which custom configuration to lay over the base one: the `config` parameter when given, else
// (a developer's run) the answer to a question, remembered in the debug settings.

#include "async/promise.h"

namespace veldra {

struct DebugSettings;
struct ProgramParameters;
class Dialogs;

// Fulfilled with the custom file's name, "" for none. `debugs` must outlive the question.
Promise ask_custom_configuration_name(const ProgramParameters& params, DebugSettings& debugs,
                                      Dialogs& dialogs);

}  // namespace veldra

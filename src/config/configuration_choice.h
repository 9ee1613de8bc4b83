#pragma once
// Which custom configuration to lay over the base one: the `config` parameter when given, else
// (a developer's run) the answer to a question, remembered in the debug settings.

#include "async/promise.h"

namespace veldra {

struct DebugSettings;
struct ProgramParameters;
class Dialogs;
class Files;

// Fulfilled with the custom file's name, "" for none. `debugs` and `files` (where an answer is
// saved) must outlive the question.
Promise<std::string> ask_custom_configuration_name(const ProgramParameters& params,
                                                   DebugSettings& debugs, Dialogs& dialogs,
                                                   Files& files);

}  // namespace veldra

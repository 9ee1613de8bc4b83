#pragma once
// Scripted dialogs answer at the end of the frame after the one that asked. A test without a
// frame loop lets those two frames end here.

#include "runtime/dialogs.h"

namespace veldra::testing {

inline void let_scripted_dialogs_answer(ScriptedDialogs& dialogs) {
    dialogs.end_frame();  // the frame that asked
    dialogs.end_frame();  // the next, which answers
}

// Lets frames end until no question waits: an answer may ask the next question.
inline void answer_every_scripted_question(ScriptedDialogs& dialogs) {
    while (dialogs.waiting() > 0)
        dialogs.end_frame();
}

}  // namespace veldra::testing

#include "runtime/once.h"

#include <string>

#include "runtime/callstack.h"
#include "runtime/log.h"

namespace veldra {

bool once_only_first_call(bool& called, SourceLocation where) {
    if (!called) {
        called = true;
        return true;
    }
    log_error(std::string(ONCE_ONLY_MESSAGE) + "\n" + debug_callstack_text(where));
    return false;
}

}  // namespace veldra

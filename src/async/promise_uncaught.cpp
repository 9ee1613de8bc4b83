#include <string>

#include "async/promise_untyped.h"
#include "runtime/log.h"
#include "runtime/number_format.h"

namespace veldra {

void log_uncaught_rejection(const UntypedPromise& promise) {
    std::string text = "A promise was rejected but not caught:\n";
    text += "[#ff5555]|[/c]";
    text += "\n[#ff5555]| [/c]\"" + to_string(promise.reason()) + "\"";
    text += "\n[#ff5555]|[/c]";
    text += "\n[#ff5555]| [/c]At:";
    for (const std::string& entry : promise.debug_callstack())
        text += "\n[#ff5555]| [/c]" + entry;
    text += "\n[#ff5555]|__________[/c]";
    log_error(text);
}

}  // namespace veldra

#include "runtime/callstack.h"

#include <string_view>

namespace veldra {

namespace {
// The frames of the one simulation thread. Bounded by the program's own call depth.
thread_local std::vector<SourceLocation> frames;

std::string describe(const SourceLocation& where) {
    std::string_view file = where.file_name();
    if (auto slash = file.rfind('/'); slash != std::string_view::npos)
        file = file.substr(slash + 1);
    return std::string(where.function_name()) + " (" + std::string(file) + ":" +
           std::to_string(where.line()) + ")";
}
}  // namespace

CallstackScope::CallstackScope(SourceLocation where) {
    frames.push_back(where);
}
CallstackScope::~CallstackScope() {
    frames.pop_back();
}

std::vector<std::string> debug_get_callstack(SourceLocation where) {
    std::vector<std::string> out;
    out.reserve(frames.size() + 1);
    out.push_back(describe(where));
    auto it = frames.rbegin();
    // `where` inside the function whose marker is innermost is that frame, at a later line: one
    // frame, not the same function twice.
    if (it != frames.rend() && std::string_view(it->function_name()) == where.function_name() &&
        std::string_view(it->file_name()) == where.file_name())
        ++it;
    for (; it != frames.rend(); ++it)
        out.push_back(describe(*it));
    return out;
}

std::string debug_callstack_text(SourceLocation where) {
    std::string text;
    for (const auto& frame : debug_get_callstack(where)) {
        if (!text.empty())
            text += "\n";
        text += frame;
    }
    return text;
}

}  // namespace veldra

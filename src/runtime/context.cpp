#include "runtime/context.h"
#include "runtime/assertion.h"

namespace veldra {

namespace {
Context* current_context = nullptr;
}

std::size_t detail::next_context_slot_id() {
    static std::size_t next = 0;
    return next++;
}

Context::Context() = default;

Context::~Context() {
    // A slot's destructor may still ask for slots made before it, never for later ones.
    while (!owned_.empty()) {
        slots_[owned_.back()->id] = nullptr;
        owned_.pop_back();
    }
}

Context& ctx() {
    VELDRA_ASSERT(current_context,
                  "ctx() with no current Context: create one and a ContextScope first?");
    return *current_context;
}

bool has_ctx() {
    return current_context != nullptr;
}

ContextScope::ContextScope(Context& context) : previous_(current_context) {
    current_context = &context;
}

ContextScope::~ContextScope() {
    current_context = previous_;
}

}  // namespace veldra

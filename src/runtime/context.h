#pragma once
// The one object that holds every game-wide singleton (Configs, Trial, the log, the entity
// runtime, ...). Each subsystem keeps its globals in a "slot": a struct of its own, created
// fresh the first time it is asked for and destroyed with the context. Tests make a Context of
// their own and make it current with ContextScope, so no test sees another's state.

#include <cstddef>
#include <memory>
#include <vector>

namespace veldra {

namespace detail {
std::size_t next_context_slot_id();
template <class T>
std::size_t context_slot_id() {
    static const std::size_t id = next_context_slot_id();
    return id;
}
}  // namespace detail

class Context {
public:
    Context();
    ~Context();
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    // The slot of type T, default-constructed on first use. Slots are destroyed in the reverse
    // order of their creation, so a slot made later may refer to one made earlier.
    template <class T>
    T& slot() {
        const std::size_t id = detail::context_slot_id<T>();
        if (id >= slots_.size())
            slots_.resize(id + 1, nullptr);
        if (!slots_[id]) {
            auto owned = std::make_unique<Holder<T>>();
            owned->id = id;
            slots_[id] = &owned->value;
            owned_.push_back(std::move(owned));
        }
        return *static_cast<T*>(slots_[id]);
    }

    template <class T>
    bool has_slot() const {
        const std::size_t id = detail::context_slot_id<T>();
        return id < slots_.size() && slots_[id] != nullptr;
    }

private:
    struct HolderBase {
        virtual ~HolderBase() = default;
        std::size_t id = 0;
    };
    template <class T>
    struct Holder final : HolderBase {
        T value{};
    };
    std::vector<void*> slots_;
    std::vector<std::unique_ptr<HolderBase>> owned_;
};

// The current context. The program makes one in main(); tests make their own.
Context& ctx();
bool has_ctx();

// Makes a context current for its lifetime and restores the previous one afterwards.
class ContextScope {
public:
    explicit ContextScope(Context& context);
    ~ContextScope();
    ContextScope(const ContextScope&) = delete;
    ContextScope& operator=(const ContextScope&) = delete;

private:
    Context* previous_;
};

}  // namespace veldra

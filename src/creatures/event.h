#pragma once
// A creature's own events: a small list of handlers called in subscription order. Handlers are
// owned by the event, so they go away with the creature that holds it; a token lets a listener
// that outlives nothing in particular (a HUD) unsubscribe.

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace veldra {

using EventToken = std::uint64_t;

template <class... Args>
class Event {
public:
    using Handler = std::function<void(Args...)>;

    EventToken subscribe(Handler handler) {
        const EventToken token = next_token_++;
        handlers_.push_back(Entry{token, std::move(handler)});
        return token;
    }

    // Ignores tokens that are unknown or already unsubscribed.
    void unsubscribe(EventToken token) {
        for (auto it = handlers_.begin(); it != handlers_.end(); ++it) {
            if (it->token == token) {
                handlers_.erase(it);
                return;
            }
        }
    }

    // Handlers subscribed while invoking are not called until the next invocation; an index
    // loop keeps that safe when the vector grows.
    void invoke(Args... args) {
        const std::size_t count = handlers_.size();
        for (std::size_t i = 0; i < count && i < handlers_.size(); ++i)
            handlers_[i].handler(args...);
    }

    std::size_t size() const { return handlers_.size(); }

private:
    struct Entry {
        EventToken token;
        Handler handler;
    };
    std::vector<Entry> handlers_;
    EventToken next_token_ = 1;
};

}  // namespace veldra

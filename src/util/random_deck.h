#pragma once
// A deck that deals every element exactly once per round, in an order shuffled afresh at the
// start of every round, the first included. It deals forever: callers that want one pass count
// their draws against get_size().

#include <cstddef>
#include <vector>

#include "runtime/assertion.h"
#include "util/rng.h"

namespace veldra {

template <class T>
class RandomDeck {
public:
    // Keeps its own copy of the elements. `rng` is not owned and must outlive the deck.
    RandomDeck(std::vector<T> elements, Rng& rng)
        : elements_(std::move(elements)), rng_(&rng), running_index_(elements_.size()) {}

    const T& draw_one() {
        VELDRA_ASSERT(!elements_.empty(), "draw_one on an empty deck; check get_size() first");
        if (running_index_ >= elements_.size()) {
            rng_->rng_array_shuffle(elements_);
            running_index_ = 0;
        }
        return elements_[running_index_++];
    }

    std::size_t get_size() const { return elements_.size(); }

private:
    std::vector<T> elements_;
    Rng* rng_;
    std::size_t running_index_;  // next card; == size means the round is over
};

template <class T>
RandomDeck<T> random_deck_from_array(const std::vector<T>& array, Rng& rng) {
    return RandomDeck<T>(array, rng);
}

}  // namespace veldra

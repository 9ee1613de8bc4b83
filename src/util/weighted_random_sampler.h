#pragma once
// Weighted random draws: the next kind of action, the target, the outcome of a blow. A sampler
// holds no random state; every draw takes the caller's Rng, so a trial stays reproducible.
//
// Entries are plain values or nested samplers (drawing a nested entry draws again from it).
// Humans refill their samplers on every re-evaluation and ask for an ordered array on every
// decision, so get_ordered_array can fill a caller's vector without allocating after warm-up.

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include "runtime/assertion.h"
#include "util/rng.h"

namespace veldra {

template <class T>
class WeightedRandomSampler {
public:
    using NestedSampler = std::shared_ptr<const WeightedRandomSampler>;

    // Negative weights are accepted as given; such entries are never drawn by get.
    void add(T value, double weight) {
        elements_.push_back(Element{weight, std::move(value)});
        total_weight_ += weight;
    }

    void add_sampler(NestedSampler sampler, double weight) {
        VELDRA_ASSERT(sampler, "add_sampler with a null sampler");
        elements_.push_back(Element{weight, std::move(sampler)});
        total_weight_ += weight;
    }

    // One value drawn by weight, or `fallback` when the total weight is 0 or less (then the
    // generator is not advanced). A nested sampler passes `fallback` on to its own draw.
    T get(const T& fallback, Rng& rng) const {
        if (total_weight_ <= 0.0)
            return fallback;
        double r = rng.rng_random(total_weight_);
        const Element* drawn = nullptr;
        const Element* last_drawable = nullptr;
        for (const Element& element : elements_) {
            if (r < element.weight) {
                drawn = &element;
                break;
            }
            r -= element.weight;
            if (element.weight > 0.0)
                last_drawable = &element;
        }
        // Rounding in the running subtraction can leave r just above the last weight; the last
        // entry that can be drawn is then the one meant.
        if (drawn == nullptr)
            drawn = last_drawable;
        if (drawn == nullptr)
            return fallback;
        if (const auto* nested = std::get_if<NestedSampler>(&drawn->value)) {
            return (*nested)->get(fallback, rng);
        }
        return std::get<T>(drawn->value);
    }

    // All plain values, nested ones included, in a weighted random order: each value gets the
    // key rng_random(p) with p its overall probability, and keys are sorted descending. Equal
    // keys keep insertion order (depth first through nested samplers). With a total weight of 0
    // or less every p is 0, so every key is 0 and the order is the insertion order.
    void get_ordered_array(Rng& rng, std::vector<T>& out) {
        keyed_.clear();
        add_keys(keyed_, 1.0, rng);
        std::sort(keyed_.begin(), keyed_.end(), [](const Keyed& x, const Keyed& y) {
            return x.key != y.key ? x.key > y.key : x.order < y.order;
        });
        out.clear();
        for (const Keyed& entry : keyed_)
            out.push_back(*entry.value);
    }

    std::vector<T> get_ordered_array(Rng& rng) {
        std::vector<T> out;
        get_ordered_array(rng, out);
        return out;
    }

    std::size_t get_num_elements() const { return elements_.size(); }
    double total_weight() const { return total_weight_; }

    void change_weight_at(std::size_t index, double weight) {
        VELDRA_ASSERT(index < elements_.size(), "change_weight_at past the last entry");
        total_weight_ += weight - elements_[index].weight;
        elements_[index].weight = weight;
    }

    // Keeps the storage, so a sampler refilled every re-evaluation stops allocating.
    void clear() {
        elements_.clear();
        total_weight_ = 0.0;
    }

private:
    struct Element {
        double weight;
        std::variant<T, NestedSampler> value;
    };

    // Points into the samplers' entries; valid until one of them changes.
    struct Keyed {
        double key;
        std::size_t order;
        const T* value;
    };

    void add_keys(std::vector<Keyed>& keyed, double probability_scale, Rng& rng) const {
        for (const Element& element : elements_) {
            const double p =
                total_weight_ > 0.0 ? element.weight / total_weight_ * probability_scale : 0.0;
            if (const auto* nested = std::get_if<NestedSampler>(&element.value)) {
                (*nested)->add_keys(keyed, p, rng);
            } else {
                keyed.push_back(
                    Keyed{rng.rng_random(p), keyed.size(), &std::get<T>(element.value)});
            }
        }
    }

    std::vector<Element> elements_;
    double total_weight_ = 0.0;
    std::vector<Keyed> keyed_;  // scratch of get_ordered_array, kept for its capacity
};

// A sampler with one add per (value, weight) pair, in order.
template <class T>
WeightedRandomSampler<T> weighted_random_sampler_from_array(
    const std::vector<std::pair<T, double>>& entries) {
    WeightedRandomSampler<T> sampler;
    for (const auto& [value, weight] : entries)
        sampler.add(value, weight);
    return sampler;
}

}  // namespace veldra

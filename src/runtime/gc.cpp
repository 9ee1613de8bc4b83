#include "runtime/gc.h"

#include <vector>

#include "runtime/process_state.h"
#include "runtime/value.h"
#include "runtime/value_rep.h"

namespace veldra {

using detail::ArrayRep;
using detail::GcNode;
using detail::ValueAccess;

namespace detail {

// The registry of one GcScope: every tracked struct and method in creation order, so that a
// collection visits and frees them in an order that does not depend on addresses.
class Collector {
public:
    Collector() = default;
    Collector(const Collector&) = delete;
    Collector& operator=(const Collector&) = delete;
    ~Collector();

    void track(GcNode& node);
    void unlink(GcNode& node);
    std::size_t collect();
    std::size_t count() const { return count_; }

private:
    std::vector<GcNode*> find_garbage();

    GcNode* head_ = nullptr;
    GcNode* tail_ = nullptr;
    std::size_t count_ = 0;
    bool collecting_ = false;
};

namespace {

// Finds the tracked objects that only other tracked objects refer to, by counting: an object
// whose reference count is larger than the references it gets from tracked objects (and from
// the arrays they hold) is held from outside, and everything it reaches is alive. This needs
// no list of roots, so locals, members and other scopes all count as "outside" for free.
class CycleScan {
public:
    explicit CycleScan(const Collector* owner) : owner_(owner) {}
    ~CycleScan() {
        for (ArrayRep* array : arrays_) {
            array->gc_seen = false;
            array->gc_reachable = false;
            array->gc_refs = 0;
        }
    }

    // Counts one reference held by a tracked object or by an array one of them reaches.
    void subtract(const Value& v) {
        if (GcNode* node = ours(v)) {
            --node->gc_refs;
        } else if (ArrayRep* array = ValueAccess::array(v)) {
            if (!array->gc_seen) {
                array->gc_seen = true;
                array->gc_refs = static_cast<std::ptrdiff_t>(array->refs);
                arrays_.push_back(array);
                pending_arrays_.push_back(array);
            }
            --array->gc_refs;
        }
    }

    void subtract_pending_arrays() {
        while (!pending_arrays_.empty()) {
            ArrayRep* array = pending_arrays_.back();
            pending_arrays_.pop_back();
            for (const Value& item : array->items)
                subtract(item);
        }
    }

    // Marks everything reachable from the objects still held from outside.
    void mark_from_outside_roots(GcNode* head) {
        for (GcNode* node = head; node; node = node->next)
            if (node->gc_refs > 0)
                mark_node(node);
        for (ArrayRep* array : arrays_)
            if (array->gc_refs > 0)
                mark_array(array);
        while (!node_stack_.empty() || !array_stack_.empty()) {
            if (!node_stack_.empty()) {
                GcNode* node = node_stack_.back();
                node_stack_.pop_back();
                for_each_child(*node, [this](const Value& child) { visit(child); });
            } else {
                ArrayRep* array = array_stack_.back();
                array_stack_.pop_back();
                for (const Value& item : array->items)
                    visit(item);
            }
        }
    }

private:
    GcNode* ours(const Value& v) const {
        GcNode* node = ValueAccess::node(v);
        return node && node->owner == owner_ ? node : nullptr;
    }
    void visit(const Value& v) {
        if (GcNode* node = ours(v)) {
            mark_node(node);
        } else if (ArrayRep* array = ValueAccess::array(v); array && array->gc_seen) {
            mark_array(array);
        }
    }
    void mark_node(GcNode* node) {
        if (node->gc_reachable)
            return;
        node->gc_reachable = true;
        node_stack_.push_back(node);
    }
    void mark_array(ArrayRep* array) {
        if (array->gc_reachable)
            return;
        array->gc_reachable = true;
        array_stack_.push_back(array);
    }

    const Collector* owner_;
    std::vector<ArrayRep*> arrays_;  // every array seen, to reset their scratch state
    std::vector<ArrayRep*> pending_arrays_;
    std::vector<GcNode*> node_stack_;
    std::vector<ArrayRep*> array_stack_;
};

// Drops everything a doomed object holds; the object itself goes with its last reference.
void clear_contents(GcNode& node) {
    if (node.kind == ValueKind::structure) {
        auto doomed = std::move(static_cast<StructRep&>(node).fields);
        static_cast<StructRep&>(node).fields.clear();
    } else {
        auto& method = static_cast<MethodRep&>(node);
        Value doomed_self = std::move(method.self);
        MethodFn doomed_fn = std::move(method.fn);
        method.fn = nullptr;
    }
}

}  // namespace

Collector::~Collector() {
    collect();
    for (GcNode* node = head_; node;) {
        GcNode* next = node->next;
        node->owner = nullptr;
        node->prev = node->next = nullptr;
        node = next;
    }
}

void Collector::track(GcNode& node) {
    node.owner = this;
    node.prev = tail_;
    node.next = nullptr;
    (tail_ ? tail_->next : head_) = &node;
    tail_ = &node;
    ++count_;
}

void Collector::unlink(GcNode& node) {
    (node.prev ? node.prev->next : head_) = node.next;
    (node.next ? node.next->prev : tail_) = node.prev;
    node.prev = node.next = nullptr;
    node.owner = nullptr;
    --count_;
}

std::vector<GcNode*> Collector::find_garbage() {
    CycleScan scan(this);
    for (GcNode* node = head_; node; node = node->next) {
        node->gc_refs = static_cast<std::ptrdiff_t>(node->refs);
        node->gc_reachable = false;
    }
    for (GcNode* node = head_; node; node = node->next)
        for_each_child(*node, [&scan](const Value& child) { scan.subtract(child); });
    scan.subtract_pending_arrays();
    scan.mark_from_outside_roots(head_);
    std::vector<GcNode*> garbage;
    for (GcNode* node = head_; node; node = node->next)
        if (!node->gc_reachable)
            garbage.push_back(node);
    return garbage;
}

std::size_t Collector::collect() {
    if (collecting_)
        return 0;
    collecting_ = true;
    const std::vector<GcNode*> garbage = find_garbage();
    // Hold every doomed object while their contents go, so none is freed while another still
    // points at it; then let go, and each is freed by its own count reaching zero.
    std::vector<Value> held;
    held.reserve(garbage.size());
    for (GcNode* node : garbage) {
        ++node->refs;
        held.push_back(ValueAccess::adopt(node->kind, node));
    }
    for (GcNode* node : garbage)
        clear_contents(*node);
    held.clear();
    collecting_ = false;
    return garbage.size();
}

void gc_track(GcNode& node) {
    if (Collector* collector = process_state().collector)
        collector->track(node);
}

void gc_untrack(GcNode& node) {
    if (node.owner)
        node.owner->unlink(node);
}

}  // namespace detail

GcScope::GcScope()
    : collector_(std::make_unique<detail::Collector>()), previous_(process_state().collector) {
    process_state().collector = collector_.get();
}

GcScope::~GcScope() {
    process_state().collector = previous_;
    collector_.reset();
}

std::size_t gc_collect() {
    detail::Collector* collector = process_state().collector;
    return collector ? collector->collect() : 0;
}

std::size_t gc_object_count() {
    detail::Collector* collector = process_state().collector;
    return collector ? collector->count() : 0;
}

}  // namespace veldra

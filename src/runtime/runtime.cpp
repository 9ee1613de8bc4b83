#include "runtime/runtime.h"

#include "runtime/assertion.h"
#include "runtime/services.h"

#include <algorithm>
#include <limits>

namespace veldra {

Runtime::Runtime(Services& services) : services_(services) {}

double Runtime::current_time() const {
    return services_.clock->current_time();
}

// Events need live services and state, which may already be going away here: shutdown() is the
// orderly end, this only frees memory.
Runtime::~Runtime() = default;

void Runtime::adopt(std::unique_ptr<Instance> owned) {
    Instance& inst = *owned;
    inst.id_ = next_id_++;
    inst.alive_ = true;
    inst.runtime_ = this;
    by_id_[inst.id_] = &inst;
    // Asking for the type first makes sure its descriptor (and its ancestors') has an index.
    const ObjectType& type = inst.object_type();
    if (by_type_.size() < object_type_count()) {
        by_type_.resize(object_type_count());
        live_count_by_type_.resize(object_type_count(), 0);
    }
    for (const ObjectType* t = &type; t; t = t->parent) {
        by_type_[t->index].push_back(&inst);
        ++live_count_by_type_[t->index];
    }
    instances_.push_back(std::move(owned));
}

Instance* Runtime::find(InstanceId id) const {
    Instance* const* inst = by_id_.find(id);
    return inst && (*inst)->alive_ ? *inst : nullptr;
}

const std::vector<Instance*>& Runtime::members_of(const ObjectType& type) const {
    if (by_type_.size() <= type.index) {
        by_type_.resize(object_type_count());
        live_count_by_type_.resize(object_type_count(), 0);
    }
    return by_type_[type.index];
}

std::size_t Runtime::instance_number(const ObjectType& type) const {
    return type.index < live_count_by_type_.size() ? live_count_by_type_[type.index] : 0;
}

Instance* Runtime::instance_find(const ObjectType& type, std::size_t n) const {
    const auto& members = members_of(type);
    if (!type_lists_dirty_)
        return n < members.size() ? members[n] : nullptr;
    for (Instance* inst : members) {
        if (!inst->alive_)
            continue;
        if (n == 0)
            return inst;
        --n;
    }
    return nullptr;
}

// Compared by squared distance: it orders as the distance does (up to ties within a rounding),
// it costs a fraction of one, and additions and multiplications round alike on every system,
// where each system's own hypot does not.
Instance* Runtime::instance_nearest(double x, double y, const ObjectType& type) const {
    Instance* nearest = nullptr;
    double smallest_square = std::numeric_limits<double>::infinity();
    for (Instance* inst : members_of(type)) {
        if (!inst->alive_)
            continue;
        const double dx = inst->x - x;
        const double dy = inst->y - y;
        const double square = dx * dx + dy * dy;
        if (square < smallest_square) {  // strict: the earliest made wins ties
            smallest_square = square;
            nearest = inst;
        }
    }
    return nearest;
}

void Runtime::end_instance(Instance& inst, bool run_destroy_event) {
    if (!inst.alive_)
        return;
    // Marked dead first so that events raised from the destroy event cannot end it twice.
    inst.alive_ = false;
    for (const ObjectType* t = &inst.object_type(); t; t = t->parent)
        --live_count_by_type_[t->index];
    has_dead_ = true;
    type_lists_dirty_ = true;
    if (type_list_walks_ == 0)
        compact_type_lists();
    if (run_destroy_event)
        inst.on_destroy();
    inst.on_clean_up();
}

void Runtime::instance_destroy(InstanceId id) {
    Instance* inst = find(id);
    if (!inst)
        return;
    // Its events are still running: an instance that destroys others in its clean-up (a trial
    // its views, the views their parts) must not be freed under its own feet by theirs. The
    // guard reclaims once the outermost destroy is done.
    IterationGuard guard(*this);
    end_instance(*inst, true);
}

void Runtime::compact_type_lists() {
    if (!type_lists_dirty_)
        return;
    type_lists_dirty_ = false;
    for (auto& members : by_type_)
        std::erase_if(members, [](Instance* inst) { return !inst->alive_; });
}

void Runtime::reclaim_dead() {
    if (!has_dead_ || iteration_depth_ > 0)
        return;
    has_dead_ = false;
    compact_type_lists();
    for (auto& owned : instances_)
        if (!owned->alive_)
            by_id_.erase(owned->id_);
    std::erase_if(instances_, [](const std::unique_ptr<Instance>& inst) { return !inst->alive_; });
}

int Runtime::room_add(RoomDefinition room) {
    rooms_.push_back(std::move(room));
    return static_cast<int>(rooms_.size()) - 1;
}

void Runtime::room_goto(int room) {
    VELDRA_ASSERT(room >= 0 && room < static_cast<int>(rooms_.size()),
                  "room_goto to a room that was never added?");
    pending_room_ = room;
}

int Runtime::room_find(std::string_view name) const {
    for (std::size_t i = 0; i < rooms_.size(); ++i)
        if (rooms_[i].name == name)
            return static_cast<int>(i);
    return -1;
}

void Runtime::room_restart() {
    pending_room_ = current_room_;
}

double Runtime::layer_depth(const std::string& layer) const {
    auto it = layer_depths_.find(layer);
    return it == layer_depths_.end() ? 0.0 : it->second;
}

void Runtime::start(int first_room) {
    pending_room_ = first_room;
    change_room();
}

template <class Call>
void Runtime::raise_to_all(Call&& call) {
    IterationGuard guard(*this);
    // Instances created during the pass receive the event in the same pass, as the list grows.
    for (std::size_t i = 0; i < instances_.size(); ++i) {
        Instance* inst = instances_[i].get();
        if (inst->alive_)
            call(*inst);
    }
}

void Runtime::raise(void (Instance::*event)()) {
    raise_to_all([event](Instance& inst) { (inst.*event)(); });
}

void Runtime::run_step_events() {
    raise(&Instance::on_step_begin);
    raise(&Instance::on_alarm);
    raise(&Instance::on_step);
    raise(&Instance::on_step_end);
}

void Runtime::run_draw_events() {
    raise(&Instance::on_draw);
    raise(&Instance::on_draw_end);
    raise(&Instance::on_draw_gui);
    raise(&Instance::on_draw_gui_end);
}

void Runtime::end_frame() {
    if (pending_room_ >= 0)
        change_room();
    reclaim_dead();
    ++frame_count_;
}

void Runtime::run_frame() {
    run_step_events();
    run_draw_events();
    end_frame();
}

void Runtime::raise_async_http(const HttpAsyncEvent& response) {
    raise_to_all([&response](Instance& inst) { inst.on_async_http(response); });
}

void Runtime::change_room() {
    const int target = pending_room_;
    pending_room_ = -1;
    {
        IterationGuard guard(*this);
        // The type lists are compacted once when all are ended, not once per instance: a
        // level of many thousands of creatures would otherwise take minutes to leave.
        TypeListGuard list_guard(*this);
        // Leaving a room ends its non-persistent instances with their clean-up event only.
        for (std::size_t i = 0; i < instances_.size(); ++i) {
            Instance& inst = *instances_[i];
            if (inst.alive_ && !inst.persistent)
                end_instance(inst, false);
        }
    }
    current_room_ = target;
    const auto& create = rooms_.at(static_cast<std::size_t>(target)).create_instances;
    if (create)
        create(*this);
    raise(&Instance::on_room_start);
}

void Runtime::shutdown() {
    {
        // Newest first, like destructors: the services made at start-up (the logger) are still
        // there while the instances that use them clean up.
        IterationGuard guard(*this);
        TypeListGuard list_guard(*this);
        for (std::size_t i = instances_.size(); i-- > 0;)
            end_instance(*instances_[i], false);
    }
    reclaim_dead();
}

}  // namespace veldra

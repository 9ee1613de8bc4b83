#pragma once
// The entity runtime: owns every instance in creation order, answers queries by object type
// (descendants included) from per-type lists, raises the per-frame events in their fixed order,
// and changes rooms at the end of a frame.
//
// Destroying an instance runs its destroy and clean-up events at once and marks it dead;
// queries skip dead instances, and the memory is reclaimed at the next safe point (no event pass
// or for_each running), so destroying during iteration is always safe.

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "runtime/flat_id_map.h"
#include "runtime/instance.h"

namespace veldra {

struct RoomDefinition {
    std::string name;
    // Creates the room's own instances when the room starts (persistent ones are already there).
    std::function<void(Runtime&)> create_instances;
};

struct Services;

class Runtime {
public:
    // The services the instances use (clock, input, drawing, sound, HTTP, dialogs); they
    // outlive the runtime.
    explicit Runtime(Services& services);
    ~Runtime();
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    // Creates an instance of T at (x, y) on `layer`, then raises its create event.
    template <class T, class... Args>
    T& instance_create(double x, double y, std::string layer = "Instances", Args&&... args) {
        auto owned = std::make_unique<T>(std::forward<Args>(args)...);
        T& inst = *owned;
        inst.x = x;
        inst.y = y;
        inst.layer = std::move(layer);
        inst.depth = layer_depth(inst.layer);
        adopt(std::move(owned));
        inst.on_create();
        return inst;
    }
    template <class T, class... Args>
    T& instance_create_depth(double x, double y, double depth, Args&&... args) {
        T& inst = instance_create<T>(x, y, "", std::forward<Args>(args)...);
        inst.depth = depth;
        return inst;
    }

    Services& services() const { return services_; }
    // Milliseconds since the program started, from the clock service.
    double current_time() const;

    // Runs the destroy and clean-up events; ignores NO_INSTANCE and dead ids.
    void instance_destroy(InstanceId id);
    bool instance_exists(InstanceId id) const { return find(id) != nullptr; }

    Instance* find(InstanceId id) const;
    template <class T>
    T* find_as(InstanceId id) const {
        Instance* inst = find(id);
        return inst && inst->is_a<T>() ? static_cast<T*>(inst) : nullptr;
    }

    // Queries by object type, descendants included, in creation order.
    std::size_t instance_number(const ObjectType& type) const;
    Instance* instance_find(const ObjectType& type, std::size_t n) const;
    Instance* instance_nearest(double x, double y, const ObjectType& type) const;
    template <class T>
    std::size_t instance_number() const {
        return instance_number(T::object_type_static());
    }
    template <class T>
    T* instance_find(std::size_t n) const {
        return static_cast<T*>(instance_find(T::object_type_static(), n));
    }
    template <class T>
    T* instance_nearest(double x, double y) const {
        return static_cast<T*>(instance_nearest(x, y, T::object_type_static()));
    }
    // Calls fn(T&) for every live instance of T that existed when the call began.
    template <class T, class Fn>
    void for_each(Fn&& fn) {
        IterationGuard guard(*this);
        TypeListGuard list_guard(*this);
        const auto& members = members_of(T::object_type_static());
        const std::size_t count = members.size();
        for (std::size_t i = 0; i < count; ++i) {
            Instance* inst = members[i];
            if (inst->alive())
                fn(static_cast<T&>(*inst));
        }
    }

    // Rooms. A change requested during a frame happens at its end.
    int room_add(RoomDefinition room);
    void room_goto(int room);
    void room_restart();
    // A room change was asked for and happens at the end of this frame.
    bool room_change_pending() const { return pending_room_ >= 0; }
    int room() const { return current_room_; }
    // The room added under `name`, or -1.
    int room_find(std::string_view name) const;
    const std::string& room_name(int room) const {
        return rooms_.at(static_cast<std::size_t>(room)).name;
    }

    // Starts the first room at once (the program's start, before the first frame).
    void start(int first_room);
    // A frame's events in their fixed order, in three parts so that the frame loop
    // (runtime/frame_loop.h) can put input, HTTP and presenting between them.
    void run_step_events();  // begin step, alarms, step, end step
    void run_draw_events();  // draw, draw end, draw GUI, draw GUI end
    void end_frame();        // a requested room change, freeing the destroyed, the frame count
    // All three, with no services: what tests drive.
    void run_frame();
    // The async HTTP event, to every instance.
    void raise_async_http(const HttpAsyncEvent& response);
    std::int64_t frame_count() const { return frame_count_; }

    void game_end() { end_requested_ = true; }
    bool end_requested() const { return end_requested_; }

    // Depth of a named layer; unknown layers are at depth 0.
    void set_layer_depth(const std::string& layer, double depth) { layer_depths_[layer] = depth; }
    double layer_depth(const std::string& layer) const;

    // Ends every instance (clean-up events, newest first), as at program exit.
    void shutdown();

private:
    struct IterationGuard {
        explicit IterationGuard(Runtime& r) : runtime(r) { ++runtime.iteration_depth_; }
        ~IterationGuard() {
            if (--runtime.iteration_depth_ == 0)
                runtime.reclaim_dead();
        }
        Runtime& runtime;
    };

    // Type lists are only walked by for_each; outside it a destroyed instance leaves them at
    // once, so finding the n-th instance is a plain index.
    struct TypeListGuard {
        explicit TypeListGuard(Runtime& r) : runtime(r) { ++runtime.type_list_walks_; }
        ~TypeListGuard() {
            if (--runtime.type_list_walks_ == 0)
                runtime.compact_type_lists();
        }
        Runtime& runtime;
    };

    void adopt(std::unique_ptr<Instance> inst);
    void compact_type_lists();
    const std::vector<Instance*>& members_of(const ObjectType& type) const;
    // Calls `call(instance)` for every live instance in creation order, those made meanwhile too.
    template <class Call>
    void raise_to_all(Call&& call);
    void raise(void (Instance::*event)());
    void end_instance(Instance& inst, bool run_destroy_event);
    void change_room();
    void reclaim_dead();

    Services& services_;
    std::vector<std::unique_ptr<Instance>> instances_;     // creation order
    FlatIdMap<Instance*> by_id_;                           // live and not yet reclaimed
    mutable std::vector<std::vector<Instance*>> by_type_;  // per type index, descendants included
    mutable std::vector<std::size_t> live_count_by_type_;
    std::unordered_map<std::string, double> layer_depths_;
    std::vector<RoomDefinition> rooms_;
    InstanceId next_id_ = 100000;
    int current_room_ = -1;
    int pending_room_ = -1;
    int iteration_depth_ = 0;
    int type_list_walks_ = 0;
    bool type_lists_dirty_ = false;
    bool has_dead_ = false;
    bool end_requested_ = false;
    std::int64_t frame_count_ = 0;
};

}  // namespace veldra

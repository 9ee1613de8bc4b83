#pragma once
// Base class of every entity. Events are virtual member functions; a child that overrides one
// calls the parent's version itself when it wants the inherited behaviour. An instance is made
// only through Runtime::instance_create, which gives it its id and raises on_create.

#include <string>

#include "runtime/instance_id.h"
#include "runtime/object_type.h"

namespace veldra {

struct HttpAsyncEvent;

class Runtime;

class Instance {
public:
    Instance() = default;
    virtual ~Instance() = default;
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    static const ObjectType& object_type_static();
    virtual const ObjectType& object_type() const { return object_type_static(); }
    bool is_a(const ObjectType& type) const { return object_type().is_a(type); }
    template <class T>
    bool is_a() const {
        return is_a(T::object_type_static());
    }

    InstanceId id() const { return id_; }
    bool alive() const { return alive_; }
    Runtime& runtime() const { return *runtime_; }

    double x = 0;
    double y = 0;
    double depth = 0;
    std::string layer;
    bool persistent = false;
    bool visible = true;

    // Outside the frame order.
    virtual void on_create() {}
    virtual void on_destroy() {}
    virtual void on_clean_up() {}
    virtual void on_room_start() {}
    // A finished HTTP request, raised to every instance by the frame loop after the step events.
    virtual void on_async_http(const HttpAsyncEvent&) {}

    // The frame order, raised by Runtime::run_frame in this order.
    virtual void on_step_begin() {}
    virtual void on_alarm() {}
    virtual void on_step() {}
    virtual void on_step_end() {}
    virtual void on_draw() {}
    virtual void on_draw_end() {}
    virtual void on_draw_gui() {}
    virtual void on_draw_gui_end() {}

private:
    friend class Runtime;
    InstanceId id_ = NO_INSTANCE;
    bool alive_ = false;
    Runtime* runtime_ = nullptr;
};

}  // namespace veldra

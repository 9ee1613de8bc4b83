#pragma once
// The collector of structs and methods. Reference counts free an object as soon as the last
// Value lets go of it; what they cannot free is a cycle (a struct whose field holds itself, two
// structs holding each other, a struct inside an array inside the same struct). gc_collect()
// finds and frees those. The game runs it between auto-run trials and at other quiet moments;
// it is never run implicitly except once when a GcScope ends.
//
// A GcScope's collector tracks the structs and methods made while the scope is current (the
// process state says which one is). A struct made with no scope is never tracked: it is freed
// by reference count only. When a scope ends, its collector frees the cycles nobody can reach
// any more and then detaches the rest: Values that outlive the scope stay valid and are freed by
// reference count when the last of them goes, but cycles among them are no longer collected.
//
// Captures of a method's callable are opaque: a Value captured there counts as held from
// outside. Bind a method to its struct through `self` (Value::method(fn, self)) rather than by
// capturing the struct, or the pair is never collected.

#include <cstddef>
#include <memory>

namespace veldra {

namespace detail {
class Collector;
}

// Makes a collector of its own current for its lifetime and restores the previous one after.
// The program makes one in main(); tests that look at collection make their own.
class GcScope {
public:
    GcScope();
    ~GcScope();
    GcScope(const GcScope&) = delete;
    GcScope& operator=(const GcScope&) = delete;

private:
    std::unique_ptr<detail::Collector> collector_;
    detail::Collector* previous_;
};

// Frees every struct and method of the current collector that no Value outside the tracked
// objects can reach. Returns how many were freed. A call made while a collection is running
// (from a destructor it triggered), or with no current GcScope, does nothing and returns 0.
std::size_t gc_collect();

// Structs and methods the current collector tracks: live ones and unreachable cycles
// not yet collected.
std::size_t gc_object_count();

}  // namespace veldra

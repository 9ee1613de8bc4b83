#pragma once
// The collector of structs and methods. Reference counts free an object as soon as the last
// Value lets go of it; what they cannot free is a cycle (a struct whose field holds itself, two
// structs holding each other, a struct inside an array inside the same struct). gc_collect()
// finds and frees those. The game runs it between auto-run trials and at other quiet moments;
// it is never run implicitly except once when the Context ends.
//
// Each Context has its own collector, which tracks the structs and methods made while that
// context was current. A struct made with no current context is never tracked: it is freed by
// reference count only. When a Context ends, its collector frees the cycles nobody can reach any
// more and then detaches the rest: Values that outlive the context stay valid and are freed by
// reference count when the last of them goes, but cycles among them are no longer collected.
//
// Captures of a method's callable are opaque: a Value captured there counts as held from
// outside. Bind a method to its struct through `self` (Value::method(fn, self)) rather than by
// capturing the struct, or the pair is never collected.

#include <cstddef>

namespace veldra {

// Frees every struct and method of the current context's collector that no Value outside the
// tracked objects can reach. Returns how many were freed. A call made while a collection is
// running (from a destructor it triggered), or with no current context, does nothing and
// returns 0.
std::size_t gc_collect();

// Structs and methods the current context's collector tracks: live ones and unreachable cycles
// not yet collected.
std::size_t gc_object_count();

}  // namespace veldra

#pragma once
// Short identifiers for logs and debug views: "Human(100004)", "Monster(100007)". The kind word
// is the most specific of Entity, Player, Human, Monster and Food that the instance is.

#include <string>

#include "runtime/instance.h"

namespace veldra {

// "UNKNOWN" for nullptr or a destroyed instance. `colored` wraps the text in a colour tag of
// the text renderer ("[#rrggbb]...[/c]") in the instance's debug hue.
std::string EID(const Instance* instance, bool colored);

}  // namespace veldra

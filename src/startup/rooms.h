#pragma once

namespace veldra {

class Runtime;

// The rooms of the game; the first holds obj_init.
struct Rooms {
    int init = -1;
    int game = -1;
};

// Adds the rooms and returns the first one.
int add_rooms(Runtime& runtime);
const Rooms& rooms();

}  // namespace veldra

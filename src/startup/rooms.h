#pragma once

namespace veldra {

struct AppState;

// The rooms of the game; the first holds obj_init.
struct Rooms {
    int init = -1;
    int game = -1;
};

// Adds the rooms to the application's runtime and returns the first one.
int add_rooms(AppState& app);

}  // namespace veldra

#include "world/level_generator.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include "util/geometry.h"
#include "util/random_deck.h"
#include "world/perlin.h"

namespace veldra {

namespace {

using CellType = const LevelCellType*;

// Noise is sampled at a quarter of the cell coordinates, so features span several cells.
constexpr int NOISE_SIZE = 32;
constexpr double NOISE_SCALE = 0.25;
constexpr double NOISE_HOLE_THRESHOLD = 0.65;
constexpr int MAX_SAND_SEEDS = 3;
// Thin-feature sweeps settle within a handful of passes on real levels; a pattern that keeps
// flipping would otherwise hang the generator, so it fails the attempt instead.
constexpr int MAX_THIN_FEATURE_SWEEPS = 1000;
constexpr double PLAYER_FIRST_RING = 2.0;
constexpr double PLAYER_RING_LIMIT = 999999.0;

// The working grid of one attempt: cell types only, row-major, indexed cy * width + cx.
struct Grid {
    Grid(const LevelCellTypeTable& table, int width, int height)
        : table(table),
          width(width),
          height(height),
          types(static_cast<std::size_t>(width) * height, nullptr),
          centre_x(width / 2.0),
          centre_y(height / 2.0),
          radius(std::max(width, height) / 2.0) {}

    int cx_of(int index) const { return index % width; }
    int cy_of(int index) const { return index / width; }
    CellType& at(int cx, int cy) { return types[static_cast<std::size_t>(cy) * width + cx]; }
    double distance_to_centre(int index) const {
        return point_distance(cx_of(index), cy_of(index), centre_x, centre_y);
    }
    int size() const { return static_cast<int>(types.size()); }

    const LevelCellTypeTable& table;
    int width;
    int height;
    std::vector<CellType> types;
    double centre_x;
    double centre_y;
    double radius;  // in cells
};

// A deck dealt at most one round: after that every free cell has been offered once.
struct OneRoundDeck {
    RandomDeck<int> deck;
    std::size_t dealt = 0;
};

std::vector<int> _levgen_cells_of_type(const Grid& grid, CellType type) {
    std::vector<int> cells;
    for (int i = 0; i < grid.size(); ++i) {
        if (grid.types[i] == type)
            cells.push_back(i);
    }
    return cells;
}

Grid _levgen_create_level_base(const LevelCellTypeTable& types, int width, int height) {
    Grid grid(types, width, height);
    for (int cy = 0; cy < height; ++cy) {
        for (int cx = 0; cx < width; ++cx) {
            const bool border = cx == 0 || cy == 0 || cx == width - 1 || cy == height - 1;
            grid.at(cx, cy) = border ? grid.table.LCT_hole : grid.table.LCT_empty;
        }
    }
    return grid;
}

void _levgen_cut_noise_holes(Grid& grid, Rng& rng) {
    const PerlinGeneratorCpu2d noise(NOISE_SIZE, rng);
    for (int i = 0; i < grid.size(); ++i) {
        const double value = noise.get(grid.cx_of(i) * NOISE_SCALE, grid.cy_of(i) * NOISE_SCALE);
        if (value > NOISE_HOLE_THRESHOLD)
            grid.types[i] = grid.table.LCT_hole;
    }
}

void _levgen_cut_island(Grid& grid) {
    for (int i = 0; i < grid.size(); ++i) {
        if (grid.distance_to_centre(i) >= grid.radius)
            grid.types[i] = grid.table.LCT_hole;
    }
}

// Whether the cell flips: open ground one cell wide closes, a wall one cell thick opens.
bool _levgen_is_thin(const Grid& grid, int index) {
    const CellType type = grid.types[index];
    if (type != grid.table.LCT_empty && type != grid.table.LCT_hole)
        return false;
    const int across = (grid.types[index - 1] == type) + (grid.types[index + 1] == type);
    const int along =
        (grid.types[index - grid.width] == type) + (grid.types[index + grid.width] == type);
    return across == 0 || along == 0;
}

// Sweeps row by row, left to right, in place (later cells of a sweep see earlier flips), until
// a sweep flips nothing; false when they do not settle. A cell can only flip if it flipped in
// its last visit or a neighbour flipped since, so each sweep visits just those cells, in the
// same order: the same flips as sweeping every cell, in time that grows with the flips instead
// of with sweeps times cells (a cell flipping back and forth kept whole sweeps going).
bool _levgen_remove_thin_features(Grid& grid) {
    const int width = grid.width;
    const auto inner = [&](int index) {
        const int cx = grid.cx_of(index);
        const int cy = grid.cy_of(index);
        return cx > 0 && cy > 0 && cx < width - 1 && cy < grid.height - 1;
    };
    std::vector<char> due_now(grid.types.size(), 0);
    std::vector<char> due_next(grid.types.size(), 0);
    // Indices of this sweep still to visit (a min-heap: flips add cells further on) and of the
    // next sweep.
    std::vector<int> now;
    std::vector<int> next;
    for (int index = 0; index < grid.size(); ++index)
        if (inner(index))
            now.push_back(index);
    for (const int index : now)
        due_now[index] = 1;
    const auto later_first = std::greater<int>();
    for (int sweep = 0; sweep < MAX_THIN_FEATURE_SWEEPS; ++sweep) {
        std::make_heap(now.begin(), now.end(), later_first);
        bool changed = false;
        while (!now.empty()) {
            std::pop_heap(now.begin(), now.end(), later_first);
            const int index = now.back();
            now.pop_back();
            due_now[index] = 0;
            if (!_levgen_is_thin(grid, index))
                continue;
            grid.types[index] = grid.types[index] == grid.table.LCT_empty ? grid.table.LCT_hole
                                                                          : grid.table.LCT_empty;
            changed = true;
            for (const int other : {index, index - 1, index + 1, index - width, index + width}) {
                if (!inner(other))
                    continue;
                if (other > index) {
                    if (!due_now[other]) {
                        due_now[other] = 1;
                        now.push_back(other);
                        std::push_heap(now.begin(), now.end(), later_first);
                    }
                } else if (!due_next[other]) {
                    due_next[other] = 1;
                    next.push_back(other);
                }
            }
        }
        if (!changed)
            return true;
        std::swap(now, next);
        std::swap(due_now, due_next);
    }
    return false;
}

bool _levgen_next_to_sand(const Grid& grid, int index) {
    const CellType sand = grid.table.LCT_sand;
    const int cx = grid.cx_of(index);
    const int cy = grid.cy_of(index);
    return (cx > 0 && grid.types[index - 1] == sand) ||
           (cx < grid.width - 1 && grid.types[index + 1] == sand) ||
           (cy > 0 && grid.types[index - grid.width] == sand) ||
           (cy < grid.height - 1 && grid.types[index + grid.width] == sand);
}

// Up to three seeds, grown from a second deck until num_sand cells are sand. A whole round of
// that deck without growth means no empty cell touches sand any more, and growth stops short.
void _levgen_generate_sand(Grid& grid, int num_sand, Rng& rng) {
    const CellType empty = grid.table.LCT_empty;
    const CellType sand = grid.table.LCT_sand;
    const std::vector<int> empty_cells = _levgen_cells_of_type(grid, empty);
    num_sand = std::min(num_sand, static_cast<int>(empty_cells.size()));
    int placed = 0;
    auto seeds = random_deck_from_array(empty_cells, rng);
    for (int i = 0; i < MAX_SAND_SEEDS && placed < num_sand; ++i, ++placed) {
        grid.types[seeds.draw_one()] = sand;
    }
    auto growth = random_deck_from_array(empty_cells, rng);
    std::size_t dealt_in_round = 0;
    bool grew_in_round = false;
    while (placed < num_sand) {
        const int index = growth.draw_one();
        if (grid.types[index] == empty && _levgen_next_to_sand(grid, index)) {
            grid.types[index] = sand;
            ++placed;
            grew_in_round = true;
        }
        if (++dealt_in_round == growth.get_size()) {
            if (!grew_in_round)
                return;
            dealt_in_round = 0;
            grew_in_round = false;
        }
    }
}

// The number of traversable cells 4-connected to `start`, `start` included.
int _levgen_flood_fill_traversable_cells(const Grid& grid, int start) {
    std::vector<char> reached(grid.types.size(), 0);
    std::vector<int> frontier{start};
    reached[start] = 1;
    int count = 0;
    while (!frontier.empty()) {
        const int index = frontier.back();
        frontier.pop_back();
        ++count;
        const int cx = grid.cx_of(index);
        const int cy = grid.cy_of(index);
        const int neighbours[4] = {cx > 0 ? index - 1 : -1, cx < grid.width - 1 ? index + 1 : -1,
                                   cy > 0 ? index - grid.width : -1,
                                   cy < grid.height - 1 ? index + grid.width : -1};
        for (const int next : neighbours) {
            if (next < 0 || reached[next] || !grid.types[next]->is_traversable)
                continue;
            reached[next] = 1;
            frontier.push_back(next);
        }
    }
    return count;
}

// Valid when all open ground forms one 4-connected region.
bool _levgen_check_terrain_validity(const Grid& grid) {
    int traversable = 0;
    int start = -1;
    for (int i = 0; i < grid.size(); ++i) {
        if (!grid.types[i]->is_traversable)
            continue;
        ++traversable;
        if (start < 0)
            start = i;
    }
    return traversable == 0 || _levgen_flood_fill_traversable_cells(grid, start) == traversable;
}

// Holes stay only outside the island; the obstacles inside it are rocks.
void _levgen_place_rocks(Grid& grid) {
    for (int i = 0; i < grid.size(); ++i) {
        if (grid.types[i] == grid.table.LCT_hole && grid.distance_to_centre(i) < grid.radius) {
            grid.types[i] = grid.table.LCT_rock;
        }
    }
}

// A random free cell in the smallest ring 2, 3, 4, ... around the centre that holds one. The
// ring is found from the nearest empty cell, so no free cell fails at once.
bool _levgen_spawn_player(Grid& grid, const std::vector<int>& free_cells, Rng& rng) {
    const std::vector<int> shuffled = rng.rng_array_shuffled(free_cells);
    const CellType empty = grid.table.LCT_empty;
    double nearest = std::numeric_limits<double>::infinity();
    for (const int index : shuffled) {
        if (grid.types[index] == empty)
            nearest = std::min(nearest, grid.distance_to_centre(index));
    }
    const double max_distance = std::max(PLAYER_FIRST_RING, std::ceil(nearest));
    if (!(max_distance < PLAYER_RING_LIMIT))
        return false;
    for (const int index : shuffled) {
        if (grid.types[index] == empty && grid.distance_to_centre(index) <= max_distance) {
            grid.types[index] = grid.table.LCT_player;
            return true;
        }
    }
    return false;
}

// Up to `count` cells of `type`, skipping cells taken since the deck was made; stops when the
// deck has offered every cell once.
void _levgen_spawn_things(Grid& grid, OneRoundDeck& deck, CellType type, int count) {
    for (int placed = 0; placed < count; ++placed) {
        for (;;) {
            if (deck.dealt >= deck.deck.get_size())
                return;
            const int index = deck.deck.draw_one();
            ++deck.dealt;
            if (grid.types[index] == grid.table.LCT_empty) {
                grid.types[index] = type;
                break;
            }
        }
    }
}

Level _levgen_to_level(const Grid& grid) {
    std::vector<std::vector<LevelCell>> rows(grid.height);
    for (int cy = 0; cy < grid.height; ++cy) {
        rows[cy].reserve(grid.width);
        for (int cx = 0; cx < grid.width; ++cx) {
            rows[cy].push_back(LevelCell{cx, cy, grid.types[std::size_t(cy) * grid.width + cx]});
        }
    }
    return Level("", std::move(rows), grid.table);
}

std::optional<Level> _try_generate_level(const LevelCellTypeTable& types, int width, int height,
                                         int num_monsters, int num_food, int num_humans,
                                         int num_sand, Rng& rng) {
    Grid grid = _levgen_create_level_base(types, width, height);
    _levgen_cut_noise_holes(grid, rng);
    _levgen_cut_island(grid);
    if (!_levgen_remove_thin_features(grid))
        return std::nullopt;
    _levgen_generate_sand(grid, num_sand, rng);
    if (!_levgen_check_terrain_validity(grid))
        return std::nullopt;
    _levgen_place_rocks(grid);

    const std::vector<int> free_cells = _levgen_cells_of_type(grid, grid.table.LCT_empty);
    OneRoundDeck deck{random_deck_from_array(free_cells, rng)};
    if (!_levgen_spawn_player(grid, free_cells, rng))
        return std::nullopt;
    _levgen_spawn_things(grid, deck, grid.table.LCT_monster, num_monsters);
    _levgen_spawn_things(grid, deck, grid.table.LCT_food, num_food);
    _levgen_spawn_things(grid, deck, grid.table.LCT_human_random, num_humans);
    return _levgen_to_level(grid);
}

}  // namespace

std::optional<Level> generate_level(const LevelCellTypeTable& types, int width, int height,
                                    int num_monsters, int num_food, int num_humans, int num_sand,
                                    Rng& rng) {
    // Without a single cell no attempt can place the player.
    if (width < 1 || height < 1)
        return std::nullopt;
    for (int attempt = 0; attempt < LEVEL_GENERATOR_MAX_ATTEMPTS; ++attempt) {
        if (auto level = _try_generate_level(types, width, height, num_monsters, num_food,
                                             num_humans, num_sand, rng)) {
            return level;
        }
    }
    return std::nullopt;
}

}  // namespace veldra

// The level file reader: whatever loads is rectangular and survives a write and a read.
#include "fuzz/fuzz_support.h"
#include "runtime/files.h"
#include "world/level_cell_types.h"
#include "world/level_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace veldra;
    fuzzing::FuzzScope scope;
    LevelCellTypeTable types;
    initialize_level_cell_types(types);
    const std::string path = fuzzing::input_file(fuzzing::as_text(data, size), ".txt");
    DiskFiles files;
    const auto level = level_load_from_file(files, types, path);
    if (!level)
        return 0;
    for (const auto& row : level->cells)
        if (static_cast<int>(row.size()) != level->width)
            __builtin_trap();
    const std::string copy = path + ".copy.txt";
    if (!level_write_to_file(files, *level, copy))
        __builtin_trap();
    const auto again = level_load_from_file(files, types, copy);
    if (!again || again->width != level->width || again->height != level->height)
        __builtin_trap();
    for (int cy = 0; cy < level->height; ++cy)
        for (int cx = 0; cx < level->width; ++cx)
            if (again->cells[cy][cx].type != level->cells[cy][cx].type)
                __builtin_trap();
    return 0;
}

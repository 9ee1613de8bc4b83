#include "ui/picture_memory.h"

#include <new>

namespace veldra {

// Windows hands out large pages only to accounts granted "Lock pages in memory", which a lab PC
// does not give its users: pictures come from the ordinary heap there.
void* allocate_picture_bytes(std::size_t bytes) {
    return ::operator new(bytes);
}

void free_picture_bytes(void* memory, std::size_t) {
    ::operator delete(memory);
}

}  // namespace veldra

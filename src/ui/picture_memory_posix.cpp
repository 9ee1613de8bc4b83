#include "ui/picture_memory.h"

#include <cstdlib>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace veldra {

namespace {

constexpr std::size_t LARGE_PAGE = std::size_t(2) << 20;

bool uses_large_pages(std::size_t bytes) {
#ifdef __linux__
    return bytes >= LARGE_PAGE;
#else
    (void)bytes;
    return false;
#endif
}

}  // namespace

void* allocate_picture_bytes(std::size_t bytes) {
    if (!uses_large_pages(bytes))
        return ::operator new(bytes);
    // Large pages must start on a large-page boundary to be used at all.
    const std::size_t rounded = (bytes + LARGE_PAGE - 1) / LARGE_PAGE * LARGE_PAGE;
    void* memory = std::aligned_alloc(LARGE_PAGE, rounded);
    if (!memory)
        throw std::bad_alloc();
#ifdef __linux__
    // Only a hint: where the kernel declines, the picture is just slower to touch the first time.
    madvise(memory, rounded, MADV_HUGEPAGE);
#endif
    return memory;
}

void free_picture_bytes(void* memory, std::size_t bytes) {
    if (uses_large_pages(bytes))
        std::free(memory);
    else
        ::operator delete(memory);
}

}  // namespace veldra

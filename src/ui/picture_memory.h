#pragma once
// Where the pixels of a picture live. A picture the size of a large level spans thousands of
// 4 KiB memory pages, and the first touch of each one costs the kernel a fault: on the
// development machine faulting in the 36 MiB of the largest level's ground took over 100 ms,
// more than painting it. Large pictures therefore ask the kernel for 2 MiB pages, which cuts
// the faults 512-fold; small ones come from the ordinary heap.

#include <cstddef>

namespace veldra {

void* allocate_picture_bytes(std::size_t bytes);
void free_picture_bytes(void* memory, std::size_t bytes);

template <class T>
struct PictureMemory {
    using value_type = T;

    PictureMemory() = default;
    template <class U>
    PictureMemory(const PictureMemory<U>&) {}

    T* allocate(std::size_t count) { return static_cast<T*>(allocate_picture_bytes(count * sizeof(T))); }
    void deallocate(T* memory, std::size_t count) { free_picture_bytes(memory, count * sizeof(T)); }

    template <class U>
    bool operator==(const PictureMemory<U>&) const { return true; }
};

}  // namespace veldra

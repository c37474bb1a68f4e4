#include "support/CountedAllocations.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t heapCalls = 0;

/// Null where there is no room.
void* taken(std::size_t size, std::size_t alignment) noexcept {
    ++heapCalls;
    // The size of an aligned block is a multiple of its alignment, and never 0.
    const std::size_t whole = (std::max<std::size_t>(size, 1) + alignment - 1) & ~(alignment - 1);
    return std::aligned_alloc(alignment, whole);
}

void* counted(std::size_t size, std::size_t alignment) {
    if (void* block = taken(size, alignment)) {
        return block;
    }
    throw std::bad_alloc();
}

void release(void* block) noexcept {
    if (block != nullptr) {
        ++heapCalls;
        std::free(block);
    }
}

} // namespace

std::size_t velmora::heapCallsOfThisThread() noexcept {
    return heapCalls;
}

void* operator new(std::size_t size) {
    return counted(size, alignof(std::max_align_t));
}
void* operator new[](std::size_t size) {
    return counted(size, alignof(std::max_align_t));
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return counted(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return counted(size, static_cast<std::size_t>(alignment));
}
// The C++ library's own would call those above, a sanitizer's would not.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return taken(size, alignof(std::max_align_t));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return taken(size, alignof(std::max_align_t));
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete[](void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
    release(block);
}

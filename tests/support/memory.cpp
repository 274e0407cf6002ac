#include "tests/support/memory.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> numAllocated{0};
std::atomic<size_t> failingSize{SIZE_MAX};
thread_local bool isSpared = false;

}  // namespace

// In the place of the library's, for everything that the program loads: those that a sanitizer
// would otherwise take from elsewhere, too.
void* operator new(size_t size) {
    if (size >= failingSize && !isSpared) throw std::bad_alloc();
    void* const memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) throw std::bad_alloc();
    ++numAllocated;
    return memory;
}

void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) --numAllocated;
    std::free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
    operator delete(memory);
}

namespace ZelTest {

long NumAllocated() {
    return numAllocated;
}

OutOfMemory::OutOfMemory(size_t size) {
    isSpared = true;
    failingSize = size;
}

OutOfMemory::~OutOfMemory() {
    failingSize = SIZE_MAX;
    isSpared = false;
}

}  // namespace ZelTest

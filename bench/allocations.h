// What the calling thread has asked of the allocator. Linking allocations.cpp replaces the
// allocation functions of the whole process, those of the shared libraries included, by ones that
// count.
#pragma once

#include <cstdint>

namespace Bench {

struct Allocations {
    uint64_t calls;
    uint64_t bytes;
};

Allocations AllocationsOfThread();

}  // namespace Bench

// Allocations of the whole test program, counted and made to fail.
#ifndef ZELCAM_TESTS_MEMORY_H
#define ZELCAM_TESTS_MEMORY_H

#include <cstddef>

namespace ZelTest {

// Allocations with operator new that were not freed yet, of all threads.
long NumAllocated();

// While it lives, operator new fails for `size` bytes and more, on all threads but its own. One at
// a time.
class OutOfMemory {
  public:
    explicit OutOfMemory(size_t size);
    ~OutOfMemory();
    OutOfMemory(const OutOfMemory&) = delete;
    OutOfMemory& operator=(const OutOfMemory&) = delete;
};

}  // namespace ZelTest

#endif  // ZELCAM_TESTS_MEMORY_H

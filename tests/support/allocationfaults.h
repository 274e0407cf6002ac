// Allocations of the whole process, counted, some of which fail: of malloc and its like, and so of
// operator new; where a sanitizer has its own malloc, of operator new alone. A program that links
// allocationfaults.cpp has them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ZelTest {

class AllocationFaults {
  public:
    // Numbers begin at 0 again; `count` allocations from number `first` on fail.
    static void Begin(uint64_t first, uint64_t count);

    // None fails any more; the number of allocations since Begin.
    static uint64_t End();

    // How many failed since Begin.
    static uint64_t Failed();

    // Blocks that are allocated and not freed.
    static int64_t Live();

    // Whether the first one that failed was asked for by that shared library.
    static bool FailedIn(const char* library);

    // Writes where that was to the standard error.
    static void PrintPlace();

    // While it lives, the allocations of its thread have numbers; no others have. One at a time.
    class Counted {
      public:
        Counted();
        ~Counted();
        Counted(const Counted&) = delete;
        Counted& operator=(const Counted&) = delete;
    };
};

// While it lives, allocations of `size` bytes and more fail, on all threads but its own. One at a
// time.
class OutOfMemory {
  public:
    explicit OutOfMemory(size_t size);
    ~OutOfMemory();
    OutOfMemory(const OutOfMemory&) = delete;
    OutOfMemory& operator=(const OutOfMemory&) = delete;
};

}  // namespace ZelTest

// Allocations of the whole process, numbered, some of which fail: of malloc and its like, and so of
// operator new; where a sanitizer has its own malloc, of operator new alone. A program that links
// allocationfaults.cpp has them.
#ifndef ZELCAM_TESTS_ALLOCATIONFAULTS_H
#define ZELCAM_TESTS_ALLOCATIONFAULTS_H

#include <cstdint>

namespace ZelTest {

class AllocationFaults {
  public:
    // Whose allocations count: those of the thread that calls Begin, or of all.
    enum class Threads { This, All };

    // Numbers begin at 0 again; `count` allocations from number `first` on fail.
    static void Begin(uint64_t first, uint64_t count, Threads threads);

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

    // While it lives, allocations of this thread do not count, or count, whatever Begin said.
    class Spare {
      public:
        explicit Spare(bool spare = true);
        ~Spare();
        Spare(const Spare&) = delete;
        Spare& operator=(const Spare&) = delete;

      private:
        const int former_;
    };
};

}  // namespace ZelTest

#endif  // ZELCAM_TESTS_ALLOCATIONFAULTS_H

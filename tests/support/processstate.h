// What a process holds of the system's resources, to see that it does not grow.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <unistd.h>

namespace ZelTest {

struct ProcessState {
    long residentKiB;     // whole pages, the kernel decides which: it wavers by hundreds of KiB
    long allocatedBytes;  // from the heap and not freed; a sanitizer's allocator counts nothing
    long threads;
    long descriptors;

    // What the allocator keeps in reserve does not count.
    static ProcessState Now() {
        malloc_trim(0);
        long total = 0;
        long resident = 0;
        std::ifstream("/proc/self/statm") >> total >> resident;
        const struct mallinfo2 heap = mallinfo2();
        return {resident * (sysconf(_SC_PAGESIZE) / 1024),
                static_cast<long>(heap.uordblks + heap.hblkhd), CountEntries("/proc/self/task"),
                CountEntries("/proc/self/fd")};
    }

  private:
    static long CountEntries(const char* folder) {
        const std::filesystem::directory_iterator entries(folder);
        return static_cast<long>(std::distance(begin(entries), end(entries)));
    }
};

}  // namespace ZelTest

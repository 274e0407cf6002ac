#include "tests/support/allocationfaults.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <execinfo.h>
#include <new>
#include <unistd.h>

namespace ZelTest {

namespace {

constexpr int kMaxFrames = 40;

std::atomic<bool> active{false};
std::atomic<uint64_t> next{0};
std::atomic<uint64_t> firstFailing{0};
std::atomic<uint64_t> numFailing{0};
std::atomic<uint64_t> failed{0};
std::atomic<int64_t> live{0};

std::atomic<size_t> failingSize{SIZE_MAX};
thread_local bool isCounted = false;
thread_local bool isSpared = false;

void* place[kMaxFrames];
int placeDepth = 0;

bool IsIn(const char* library, void* const* frames, int count) {
    return std::any_of(frames, frames + count, [library](const void* address) {
        Dl_info info{};
        return dladdr(address, &info) != 0 && std::strstr(info.dli_fname, library) != nullptr;
    });
}

// What looks at frames the first time loads a library.
void PrepareToFail() {
    void* frame = nullptr;
    backtrace(&frame, 1);
}

// Counts an allocation; whether it is one that fails.
bool IsMeant(size_t size) {
    if (isSpared) return false;
    if (size >= failingSize.load(std::memory_order_relaxed)) return true;
    if (!isCounted || !active.load(std::memory_order_relaxed)) return false;
    // Wraps around before the first.
    return next.fetch_add(1) - firstFailing < numFailing;
}

bool Fails(size_t size) {
    if (!IsMeant(size)) return false;
    void* frames[kMaxFrames];
    isSpared = true;
    const int depth = backtrace(frames, kMaxFrames);
    // An exception of the logging library ends the process, as its front end documents.
    const bool isExcused = IsIn("liblog4cpp", frames, depth);
    isSpared = false;
    if (isExcused) return false;
    if (failed.fetch_add(1) == 0) {
        std::copy(frames, frames + depth, place);
        placeDepth = depth;
    }
    return true;
}

template <typename Allocate>
void* Count(size_t size, Allocate&& allocate) {
    void* const block = Fails(size) ? nullptr : allocate();
    if (block != nullptr) {
        live.fetch_add(1, std::memory_order_relaxed);
    } else {
        errno = ENOMEM;
    }
    return block;
}

void CountFree(const void* block) {
    if (block != nullptr) live.fetch_sub(1, std::memory_order_relaxed);
}

}  // namespace

void AllocationFaults::Begin(uint64_t first, uint64_t count) {
    PrepareToFail();
    next = 0;
    failed = 0;
    firstFailing = first;
    numFailing = count;
    active = true;
}

uint64_t AllocationFaults::End() {
    active = false;
    return next;
}

uint64_t AllocationFaults::Failed() {
    return failed;
}

int64_t AllocationFaults::Live() {
    return live;
}

bool AllocationFaults::FailedIn(const char* library) {
    return IsIn(library, place, placeDepth);
}

void AllocationFaults::PrintPlace() {
    backtrace_symbols_fd(place, placeDepth, STDERR_FILENO);
}

AllocationFaults::Counted::Counted() {
    isCounted = true;
}

AllocationFaults::Counted::~Counted() {
    isCounted = false;
}

OutOfMemory::OutOfMemory(size_t size) {
    PrepareToFail();
    isSpared = true;
    failingSize = size;
}

OutOfMemory::~OutOfMemory() {
    failingSize = SIZE_MAX;
    isSpared = false;
}

}  // namespace ZelTest

#define ZELTEST_EXPORT __attribute__((visibility("default")))

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

ZELTEST_EXPORT void* operator new(size_t size) {
    void* const block = ZelTest::Count(size, [size] { return std::malloc(size != 0 ? size : 1); });
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

ZELTEST_EXPORT void* operator new(size_t size, std::align_val_t alignment) {
    void* block = nullptr;
    ZelTest::Count(size, [&] {
        const int result = posix_memalign(&block, static_cast<size_t>(alignment), size);
        return result == 0 ? block : nullptr;
    });
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

ZELTEST_EXPORT void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

ZELTEST_EXPORT void operator delete(void* block) noexcept {
    ZelTest::CountFree(block);
    std::free(block);
}

ZELTEST_EXPORT void operator delete(void* block, size_t /*size*/) noexcept {
    operator delete(block);
}

ZELTEST_EXPORT void operator delete(void* block, std::align_val_t /*alignment*/) noexcept {
    operator delete(block);
}

ZELTEST_EXPORT void operator delete(void* block, size_t /*size*/,
                                    std::align_val_t /*alignment*/) noexcept {
    operator delete(block);
}

#else

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the C library's names.
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* block);

ZELTEST_EXPORT void* malloc(size_t size) {
    return ZelTest::Count(size, [size] { return __libc_malloc(size); });
}

ZELTEST_EXPORT void* calloc(size_t count, size_t size) {
    return ZelTest::Count(count * size, [count, size] { return __libc_calloc(count, size); });
}

ZELTEST_EXPORT void* realloc(void* block, size_t size) {
    if (block != nullptr && size == 0) {
        free(block);
        return nullptr;
    }
    void* const moved = ZelTest::Count(size, [block, size] { return __libc_realloc(block, size); });
    if (moved != nullptr) ZelTest::CountFree(block);
    return moved;
}

ZELTEST_EXPORT void* memalign(size_t alignment, size_t size) {
    return ZelTest::Count(size, [alignment, size] { return __libc_memalign(alignment, size); });
}

ZELTEST_EXPORT void* aligned_alloc(size_t alignment, size_t size) {
    return memalign(alignment, size);
}

ZELTEST_EXPORT int posix_memalign(void** block, size_t alignment, size_t size) {
    *block = memalign(alignment, size);
    return *block != nullptr ? 0 : ENOMEM;
}

ZELTEST_EXPORT void free(void* block) {
    ZelTest::CountFree(block);
    __libc_free(block);
}

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
}  // extern "C"

#endif

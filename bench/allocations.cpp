#include "bench/allocations.h"

#include <cerrno>
#include <cstddef>

namespace {

thread_local Bench::Allocations allocations{};

void Count(size_t bytes) {
    ++allocations.calls;
    allocations.bytes += bytes;
}

}  // namespace

Bench::Allocations Bench::AllocationsOfThread() {
    return allocations;
}

// operator new of the C++ library calls malloc or aligned_alloc, and so is counted here.
extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the C library's names.
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);

#define BENCH_EXPORT __attribute__((visibility("default")))

BENCH_EXPORT void* malloc(size_t size) {
    Count(size);
    return __libc_malloc(size);
}

BENCH_EXPORT void* calloc(size_t count, size_t size) {
    Count(count * size);
    return __libc_calloc(count, size);
}

BENCH_EXPORT void* realloc(void* memory, size_t size) {
    Count(size);
    return __libc_realloc(memory, size);
}

BENCH_EXPORT void* memalign(size_t alignment, size_t size) {
    Count(size);
    return __libc_memalign(alignment, size);
}

BENCH_EXPORT void* aligned_alloc(size_t alignment, size_t size) {
    return memalign(alignment, size);
}

BENCH_EXPORT int posix_memalign(void** memory, size_t alignment, size_t size) {
    *memory = memalign(alignment, size);
    return *memory != nullptr || size == 0 ? 0 : ENOMEM;
}

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
}  // extern "C"

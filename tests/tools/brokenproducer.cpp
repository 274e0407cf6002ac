// Producer files that fail in the ways that files in the field do. Compiled once for each: the
// macro says which function fails, and that one and those after it in the table are the last ones
// that a client calls.

#include <cstddef>
#include <cstdint>
#include <cstdio>

#define PRODUCER_FUNCTION extern "C" __attribute__((visibility("default"))) int32_t

#if defined(REFUSES_TO_START)

PRODUCER_FUNCTION GCInitLib() {
    return -1004;
}
PRODUCER_FUNCTION GCGetLastError(int32_t* code, char* text, size_t* size) {
    *code = -1004;
    std::snprintf(text, *size, "the licence is on holiday");
    return 0;
}

#elif defined(CANNOT_LIST_INTERFACES)

PRODUCER_FUNCTION GCInitLib() {
    return 0;
}
PRODUCER_FUNCTION GCCloseLib() {
    return 0;
}
PRODUCER_FUNCTION TLOpen(void** system) {
    static int module;
    *system = &module;
    return 0;
}
PRODUCER_FUNCTION TLClose(void*) {
    return 0;
}
PRODUCER_FUNCTION TLUpdateInterfaceList(void*, uint8_t*, uint64_t) {
    return 0;
}
PRODUCER_FUNCTION TLGetNumInterfaces(void*, uint32_t*) {
    return -1010;
}

#else

PRODUCER_FUNCTION SomethingElse() {
    return 0;
}

#endif

// Producer files that fail like files in the field, compiled once for each failure. A macro says
// which function fails; a client calls only that function and those behind it in the table
// afterwards.

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

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

#elif defined(FAULT)

// FAULT is Crash, Quit or Hang, and PLACE where it happens.
namespace {

enum class Place { Load, Init, Open };

[[maybe_unused]] void Crash() {
    std::raise(SIGSEGV);
}

[[maybe_unused]] void Quit() {
    std::fprintf(stderr, "looking for the driver\nthe driver is missing\n\n");
    _exit(3);
}

// Creates a file, in one step, for tests that wait for it, and holds a lock until the process ends.
[[maybe_unused]] void Hang() {
    flock(open("hanging.lock", O_RDONLY | O_CREAT, 0600), LOCK_SH);
    std::fclose(std::fopen("hanging.new", "w"));
    std::rename("hanging.new", "hanging");
    for (;;)
        pause();
}

int32_t Reach(Place place) {
    if (place == Place::PLACE) FAULT();
    return 0;
}

const int32_t kLoaded = Reach(Place::Load);

}  // namespace

PRODUCER_FUNCTION GCInitLib() {
    return kLoaded + Reach(Place::Init);
}
PRODUCER_FUNCTION TLOpen(void**) {
    return Reach(Place::Open);
}

#elif defined(HAS_NO_CAMERA)

// A working producer of a GigE Vision adapter without cameras.
namespace {

int module;

int32_t Give(const char* text, char* buffer, size_t* size) {
    *size = std::strlen(text) + 1;
    if (buffer != nullptr) std::memcpy(buffer, text, *size);
    return 0;
}

}  // namespace

PRODUCER_FUNCTION GCInitLib() {
    return 0;
}
PRODUCER_FUNCTION GCCloseLib() {
    return 0;
}
PRODUCER_FUNCTION TLOpen(void** system) {
    *system = &module;
    return 0;
}
PRODUCER_FUNCTION TLClose(void*) {
    return 0;
}
PRODUCER_FUNCTION TLUpdateInterfaceList(void*, uint8_t*, uint64_t) {
    return 0;
}
PRODUCER_FUNCTION TLGetNumInterfaces(void*, uint32_t* count) {
    *count = 1;
    return 0;
}
PRODUCER_FUNCTION TLGetInterfaceID(void*, uint32_t, char* id, size_t* size) {
    return Give("eth0", id, size);
}
PRODUCER_FUNCTION TLOpenInterface(void*, const char*, void** interface) {
    *interface = &module;
    return 0;
}
PRODUCER_FUNCTION IFClose(void*) {
    return 0;
}
PRODUCER_FUNCTION IFGetInfo(void*, int32_t, int32_t* type, void* buffer, size_t* size) {
    *type = 1;
    return Give("GEV", static_cast<char*>(buffer), size);
}
PRODUCER_FUNCTION IFUpdateDeviceList(void*, uint8_t*, uint64_t) {
    return 0;
}
PRODUCER_FUNCTION IFGetNumDevices(void*, uint32_t* count) {
    *count = 0;
    return 0;
}

#else

PRODUCER_FUNCTION SomethingElse() {
    return 0;
}

#endif

// Control of the simulated cameras of libZelCTI.cti: plug and unplug cameras, fire events, inject
// faults. The functions are exported by the producer file beside the GenTL functions; a program
// resolves them from the file it has loaded (dlopen with RTLD_NOLOAD gives the handle) through the
// pointer types PZelSim...
//
// All functions are thread-safe and act on the whole process: every System that uses the file sees
// the same simulated cameras. They return GenTL codes (GC_ERROR_LIST).
#ifndef ZELSIM_H
#define ZELSIM_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define ZELSIM_EXPORT __attribute__((visibility("default")))

// What a fault does to a call; the flags are combined.
enum ZelSimFaultAction {
    ZELSIM_FAULT_BLOCK = 1,   // wait blockMs milliseconds first (or until ZelSim_ClearFaults)
    ZELSIM_FAULT_RETURN = 2,  // do nothing and return `code`
    ZELSIM_FAULT_TYPE = 4,    // report the data type `type`
    ZELSIM_FAULT_SIZE = 8,    // report the size `size`
    ZELSIM_FAULT_VALUE = 16   // write the bytes `value` instead of the answer
};

#define ZELSIM_ANY_COMMAND INT32_MIN
#define ZELSIM_FOREVER UINT32_MAX

typedef struct ZelSimFault {
    const char* function;  // name of a GenTL function, or "*" for every function
    int32_t command;       // only calls with this info command; ZELSIM_ANY_COMMAND for all
    uint32_t skip;         // matching calls that pass unharmed first
    uint32_t count;        // calls that the fault hits then; ZELSIM_FOREVER for all
    uint32_t actions;      // ZELSIM_FAULT_... combined
    int32_t code;
    int32_t type;
    size_t size;
    const void* value;  // copied
    size_t valueSize;
    uint32_t blockMs;
} ZelSimFault;

// Adds a fault. Of several that match a call, the one added first acts.
ZELSIM_EXPORT int32_t ZelSim_InjectFault(const ZelSimFault* fault);

// Removes all faults and wakes the calls they block.
ZELSIM_EXPORT int32_t ZelSim_ClearFaults(void);

// Number of calls of a GenTL function since the file was loaded.
ZELSIM_EXPORT uint64_t ZelSim_GetCallCount(const char* function);

// Replaces all interfaces and cameras by those of a configuration text (see docs/simulator.md);
// null for the built-in ones. GC_ERR_BUSY while any module is open, GC_ERR_INVALID_PARAMETER for a
// text that is not a configuration.
ZELSIM_EXPORT int32_t ZelSim_Configure(const char* xml);

// Adds a camera to an interface: `xml` is one Camera element of the configuration. It shows after
// the next IFUpdateDeviceList.
ZELSIM_EXPORT int32_t ZelSim_PlugCamera(const char* interfaceId, const char* xml);

// Takes a camera away: open devices and streams of it fail with GC_ERR_IO from now on and their
// waits end; it vanishes from the list at the next IFUpdateDeviceList.
ZELSIM_EXPORT int32_t ZelSim_UnplugCamera(const char* deviceId);

// Puts an event with these data bytes into the queue of every registration of `eventType` on an
// interface, device or stream whose identifier is `moduleId`. `eventId` is what EventGetDataInfo
// reports as EVENT_DATA_ID.
ZELSIM_EXPORT int32_t ZelSim_FireEvent(const char* moduleId, int32_t eventType, uint64_t eventId,
                                       const void* data, size_t size);

// Number of handles of any kind that are open: 0 when a client has cleaned up after itself.
ZELSIM_EXPORT size_t ZelSim_GetNumOpenHandles(void);

typedef int32_t (*PZelSim_InjectFault)(const ZelSimFault* fault);
typedef int32_t (*PZelSim_ClearFaults)(void);
typedef uint64_t (*PZelSim_GetCallCount)(const char* function);
typedef int32_t (*PZelSim_Configure)(const char* xml);
typedef int32_t (*PZelSim_PlugCamera)(const char* interfaceId, const char* xml);
typedef int32_t (*PZelSim_UnplugCamera)(const char* deviceId);
typedef int32_t (*PZelSim_FireEvent)(const char* moduleId, int32_t eventType, uint64_t eventId,
                                     const void* data, size_t size);
typedef size_t (*PZelSim_GetNumOpenHandles)(void);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // ZELSIM_H

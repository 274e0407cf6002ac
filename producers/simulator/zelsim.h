// Control of the simulated cameras of libZelCTI.cti: plug and unplug cameras, fire events, inject
// faults. The functions are exported by the producer file beside the GenTL functions; a program
// resolves them from the file it has loaded (dlopen with RTLD_NOLOAD gives the handle) through the
// pointer types PZelSim...
//
// Simulated cameras exist only where somebody asks for them: ZelSim_Configure, or in the
// environment ZELSIM_CONFIG (a file) or ZELSIM=1 (the built-in ones), which are read when the
// producer is first initialised.
//
// All functions are thread-safe and act on the whole process: every System that uses the file sees
// the same simulated cameras. They return GenTL codes (GC_ERROR_LIST).
#ifndef ZELSIM_H
#define ZELSIM_H

// NOLINTBEGIN(modernize-*): C programs include this header as well.

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define ZELSIM_EXPORT __attribute__((visibility("default")))

// What a fault does to a call; the flags are combined, and act in this order. VALUE replaces the
// answer of a call that succeeds, or that fails only because there is no answer
// (GC_ERR_NOT_IMPLEMENTED, GC_ERR_NOT_AVAILABLE, GC_ERR_NO_DATA, GC_ERR_BUFFER_TOO_SMALL); a null
// buffer asks for its size, and a buffer too small for it gives GC_ERR_BUFFER_TOO_SMALL, as with
// any answer. With RETURN it is written only when `code` is 0.
enum ZelSimFaultAction {
    ZELSIM_FAULT_BLOCK = 1,  // wait blockMs milliseconds (ZELSIM_FOREVER: until ZelSim_ClearFaults)
    ZELSIM_FAULT_RETURN = 2,  // leave out the work of the function; its result is `code`
    ZELSIM_FAULT_VALUE = 16,  // write the bytes `value` instead of the answer
    ZELSIM_FAULT_TYPE = 4,    // report the data type `type`
    ZELSIM_FAULT_SIZE = 8     // report the size `size`
};

// What the thread of a camera that starts with a frame rate adds to the nice value of the program.
// Where it shares a processor with the thread that fetches the frames, that one goes first, as it
// does with a device of its own, and not after the preparations for the next frame.
#define ZELSIM_NICENESS 5

// What GCGetPortInfo says of an interface with simulated cameras (PORT_INFO_VENDOR,
// PORT_INFO_MODEL): programs know simulated cameras by it, whatever vendor and model the cameras
// have.
#define ZELSIM_INTERFACE_VENDOR "ZelCam"
#define ZELSIM_INTERFACE_MODEL "Simulated interface"

#define ZELSIM_ANY_COMMAND INT32_MIN
#define ZELSIM_FOREVER UINT32_MAX

typedef struct ZelSimFault {
    const char* function;  // name of a GenTL function, or "*" for every function
    int32_t command;       // only calls with this info command; ZELSIM_ANY_COMMAND for all
    uint32_t skip;         // matching calls that this fault lets pass first
    uint32_t count;        // calls that the fault hits then; ZELSIM_FOREVER for all
    uint32_t actions;      // ZELSIM_FAULT_... combined
    int32_t code;
    int32_t type;
    size_t size;
    const void* value;  // copied
    size_t valueSize;
    uint32_t blockMs;
} ZelSimFault;

// Adds a fault. Of several that match a call, the one added first acts. GC_ERR_INVALID_PARAMETER
// for an unknown function.
ZELSIM_EXPORT int32_t ZelSim_InjectFault(const ZelSimFault* fault);

// Removes all faults and wakes the calls they block.
ZELSIM_EXPORT int32_t ZelSim_ClearFaults(void);

// Number of calls of a GenTL function since the file was loaded, counted when they begin; 0 for an
// unknown name.
ZELSIM_EXPORT uint64_t ZelSim_GetCallCount(const char* function);

// Replaces all simulated interfaces and cameras by those of a configuration text (see
// docs/simulator.md); null for the built-in ones. Before the first initialisation it takes the
// place of the environment, which is not read then. GC_ERR_BUSY while any module is open,
// GC_ERR_INVALID_PARAMETER for a text that is not a configuration.
ZELSIM_EXPORT int32_t ZelSim_Configure(const char* xml);

// Adds a camera to an interface: `xml` is one Camera element of the configuration. It shows after
// the next IFUpdateDeviceList.
ZELSIM_EXPORT int32_t ZelSim_PlugCamera(const char* interfaceId, const char* xml);

// Takes a camera away: open devices and streams of it fail with GC_ERR_IO from now on and their
// waits end with it; what a client does to close them still works. The camera vanishes from the
// list at the next IFUpdateDeviceList.
ZELSIM_EXPORT int32_t ZelSim_UnplugCamera(const char* deviceId);

// Puts an event with these data bytes into the queue of every registration of `eventType` (any but
// EVENT_NEW_BUFFER) on an interface, device or stream whose identifier is `moduleId`. What
// EventGetDataInfo makes of it depends on the type:
//   EVENT_REMOTE_DEVICE, EVENT_MODULE  the identifier is `eventId`, the value is the data
//   EVENT_ERROR                        the identifier is the code `eventId`, the value is the text
//   EVENT_FEATURE_INVALIDATE           the data are the name of a feature
//   EVENT_FEATURE_CHANGE               the data are the name, a zero, and the value as text
// The data may be longer than EVENT_SIZE_MAX says. GC_ERR_INVALID_ID when no such module is open.
ZELSIM_EXPORT int32_t ZelSim_FireEvent(const char* moduleId, int32_t eventType, uint64_t eventId,
                                       const void* data, size_t size);

// Number of handles of any kind that are open: 0 when a client has cleaned up after itself.
ZELSIM_EXPORT size_t ZelSim_GetNumOpenHandles(void);

// Serves the cameras of the configuration on a network, where any program for GigE Vision cameras
// finds and uses them. They are cameras of their own, apart from those that this producer lists.
// `on` has addresses and network interfaces of this machine with blanks between them; an empty text
// means loopback, where cameras get addresses from 127.0.0.2 on, and null ends the service. What
// was served before is gone. The service ends with the file, too: null before it is unloaded lets
// no thread of it run on. GC_ERR_INVALID_PARAMETER for an address or an interface that this machine
// has not, or has too few of.
ZELSIM_EXPORT int32_t ZelSim_ServeCameras(const char* on);

// Sets a switch of a camera that is served: its address, a quirk or a fault (see
// docs/simulator.md). GC_ERR_INVALID_ID for a camera that is not served, GC_ERR_INVALID_PARAMETER
// for an unknown switch or a text that is no value of it.
ZELSIM_EXPORT int32_t ZelSim_SetNetwork(const char* deviceId, const char* name, const char* value);

// Reads a switch; "Address" is the address that the camera got. `size` is that of the memory at
// `value`, and then that of the text with its terminating zero, which is all that happens where
// `value` is null; GC_ERR_BUFFER_TOO_SMALL.
ZELSIM_EXPORT int32_t ZelSim_GetNetwork(const char* deviceId, const char* name, char* value,
                                        size_t* size);

typedef int32_t (*PZelSim_InjectFault)(const ZelSimFault* fault);
typedef int32_t (*PZelSim_ClearFaults)(void);
typedef uint64_t (*PZelSim_GetCallCount)(const char* function);
typedef int32_t (*PZelSim_Configure)(const char* xml);
typedef int32_t (*PZelSim_PlugCamera)(const char* interfaceId, const char* xml);
typedef int32_t (*PZelSim_UnplugCamera)(const char* deviceId);
typedef int32_t (*PZelSim_FireEvent)(const char* moduleId, int32_t eventType, uint64_t eventId,
                                     const void* data, size_t size);
typedef size_t (*PZelSim_GetNumOpenHandles)(void);
typedef int32_t (*PZelSim_ServeCameras)(const char* on);
typedef int32_t (*PZelSim_SetNetwork)(const char* deviceId, const char* name, const char* value);
typedef int32_t (*PZelSim_GetNetwork)(const char* deviceId, const char* name, char* value,
                                      size_t* size);

#ifdef __cplusplus
}  // extern "C"
#endif

// NOLINTEND(modernize-*)

#endif  // ZELSIM_H

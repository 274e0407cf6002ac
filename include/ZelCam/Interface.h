// One way to reach cameras: a network adapter, a USB host, a port of a frame grabber.
#ifndef ZELCAM_INTERFACE_H
#define ZELCAM_INTERFACE_H

#include <cstddef>
#include <cstdint>

#include "ZelCam/Error.h"
#include "ZelCam/List.h"

namespace ZelGenParam {
class Array;
}

namespace ZelCam {

class Device;
class DeviceInfo;

// The transport-layer type of an interface.
enum class InterfaceType : uint32_t {
    U3V = 1,       // USB3 Vision
    GEV = 2,       // GigE Vision
    CL = 3,        // Camera Link
    CXP = 4,       // CoaXPress
    HDSDI = 5,     // HD-SDI
    Unknown = 255  // another or unknown type; as a filter: every type
};

// Events that callbacks can be registered for (GenTL EVENT_TYPE). Numbers from 1000 on belong to
// the producer.
enum EventType : uint32_t {
    EventType_Error = 0,              // an error in the producer
    EventType_NewBuffer = 1,          // consumed by Stream::GetBuffer
    EventType_FeatureInvalidate = 2,  // the value of a feature must be read again
    EventType_FeatureChange = 3,      // a feature changed
    EventType_RemoteDevice = 4,       // a message of the camera
    EventType_Module = 5              // a message of the module
};

// Event callbacks. The library calls them on its own threads, one for each object and event type.
// `data` is valid during the call. `size` is the size of the library's event buffer, which is at
// least the size of the event's data; the bytes after the data are zero or left from an earlier
// event. If a callback throws, the exception is dropped and the other callbacks are still called. A
// callback may register and unregister callbacks. It must not release or destroy the object on
// which it is registered, or an owner of that object.
using EventCallback = void (*)(const void* data, size_t size, void* priv);
using EventCallback2 = void (*)(uint32_t eventType, const void* data, size_t size, void* priv);

// An opened interface of a producer. It owns every DeviceInfo that it hands out, even after the
// camera is gone: the pointers stay valid until the System is released. It has no Release itself.
//
// The interface reads the list of cameras from the producer when it first needs the list, and again
// in ReEnumerateDevices; streams of other cameras continue meanwhile.
// Thread-bound (see ZelCam.h).
class Interface {
  public:
    // A new list of the cameras, in the order in which they were found. Null if the producer fails.
    // Only an empty list is read again here: see ReEnumerateDevices.
    virtual List<DeviceInfo>* GetDeviceInfoList() = 0;

    // The first camera, or null if there is none.
    virtual DeviceInfo* GetFirstDeviceInfo() = 0;

    // The camera with the identifier `id`. An identifier that the producer does not list also gives
    // a DeviceInfo, always the same one; whether the camera exists is known only when it is opened.
    // Null for a null `id` and if the producer fails.
    virtual DeviceInfo* GetDeviceInfoById(const char* id) = 0;

    // Lets the producer search for cameras for at most `timeout` milliseconds (GenTL
    // IFUpdateDeviceList), and reads its list again if it changed. Cameras that stay keep their
    // DeviceInfo; cameras that return get a new one. `changed` may be null; only success writes it.
    // Returns the producer's code.
    //
    // A producer may return earlier. The default one does so soon after the first answers, while
    // GigE Vision cameras may take a second to answer: a slow one is in the list after the next
    // call. Who misses a camera, or wants all of them, calls this again for a second.
    //
    // If reading the list fails after a successful search, an exception leaves this operation: a
    // std::system_error with the producer's code.
    virtual ZelCamErr ReEnumerateDevices(bool* changed, uint64_t timeout) = 0;

    // Display name; null if the producer does not report it. Valid while the interface lives.
    virtual const char* GetDescription() = 0;

    // Unknown also if the producer fails or reports a type without a number, such as "Custom".
    virtual InterfaceType GetType() = 0;

    // Identifier within the System. Valid while the interface lives.
    virtual const char* GetId() = 0;

    // Version text (a producer-specific info, GenTL INTERFACE_INFO_CUSTOM_ID); null if the producer
    // has none. Valid while the interface lives.
    virtual const char* GetVersion() = 0;

    // Subscribe a callback to a GenTL event (EventType) of this interface. A callback may be
    // registered several times and is then called as many times. They return the producer's code if
    // the event cannot be registered.
    virtual ZelCamErr RegisterEvent2(uint32_t eventType, EventCallback2 cb, void* priv) = 0;
    virtual ZelCamErr RegisterEvent(uint32_t eventType, EventCallback cb, void* priv) = 0;

    // Remove one subscription with the same callback and private pointer;
    // ZelCamErr_GenTL_NotInitialized if there is none. They do not wait for a call that is already
    // running on the event thread.
    virtual ZelCamErr UnRegisterEvent2(uint32_t eventType, EventCallback2 cb, void* priv) = 0;
    virtual ZelCamErr UnRegisterEvent(uint32_t eventType, EventCallback cb, void* priv) = 0;

    // The features of the interface, which owns the array and returns the same one on every call.
    // Null on failure; the next call tries again. `*err` is then
    //   ZelCamErr_NoNodeMap     the producer has no usable description of the features
    //   ZelCamErr_RuntimeError  the description cannot be turned into features
    //   ZelCamErr_GenApiError   the module cannot be accessed, or another failure of GenApi
    // or the producer's code.
    virtual ZelGenParam::Array* GetParameters(ZelCamErr* err) = 0;

    // Opens, with exclusive access, the camera of this interface that a configuration file names
    // (see Device::SaveConfiguration), and loads the configuration into it. It ignores the
    // interface that the file names. Null on failure; `*err` is then
    //   0                      the file cannot be read or is not XML
    //   ZelCamErr_InvalidFile  the file lacks "Camera" or its "cameraId"
    //   ZelCamErr_NotFound     the interface cannot list its cameras
    // or the code of ZelCam_CreateDevice. If only loading the configuration fails, the device is
    // returned, and `*err` is the code of Device::LoadConfiguration.
    virtual Device* CreateDeviceFromConfig(const char* fileName, ZelCamErr* err) = 0;

    // Vendor and model that the producer reports of the interface's port (GenTL PORT_INFO_VENDOR,
    // PORT_INFO_MODEL): "ZelCam" and "Simulated interface" if its cameras are simulated. Null if
    // the producer does not report it. Valid while the interface lives. They have a body, so that
    // stand-ins of programs need not know them.
    virtual const char* GetVendor() { return nullptr; }
    virtual const char* GetModel() { return nullptr; }

  protected:
    ~Interface() = default;
};

}  // namespace ZelCam

#endif  // ZELCAM_INTERFACE_H

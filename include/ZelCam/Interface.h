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
    Unknown = 255  // another type or not known; as a filter: every type
};

// Events that callbacks can be registered for (GenTL EVENT_TYPE). Numbers from 1000 on are the
// producer's own.
enum EventType : uint32_t {
    EventType_Error = 0,              // an error in the producer
    EventType_NewBuffer = 1,          // consumed by Stream::GetBuffer
    EventType_FeatureInvalidate = 2,  // the value of a feature must be read anew
    EventType_FeatureChange = 3,      // a feature changed
    EventType_RemoteDevice = 4,       // a message of the camera
    EventType_Module = 5              // a message of the module
};

// Event callbacks, called on a thread of the library, one per (object, event type). `data` is valid
// during the call. `size` is the size of the library's event buffer, which is at least the size of
// the event's data; bytes behind the data are zero or left from an earlier event. An exception that
// leaves a callback is dropped, and the other callbacks are called all the same. A callback may
// register and unregister callbacks, but must not release or destroy the object (or an owner of it)
// on which it is registered.
using EventCallback = void (*)(const void* data, size_t size, void* priv);
using EventCallback2 = void (*)(uint32_t eventType, const void* data, size_t size, void* priv);

// An opened interface of a producer. It owns every DeviceInfo it hands out, also those whose camera
// is gone: their pointers stay valid until the System is released. It has no Release of its own.
//
// The list of cameras is read from the producer when it is first needed and again by
// ReEnumerateDevices; streams of other cameras go on meanwhile.
// Thread-bound (see ZelCam.h).
class Interface {
  public:
    // A new list of the cameras, in the order in which they were found. Null when the producer
    // fails. A list that is not empty is not refreshed here: see ReEnumerateDevices.
    virtual List<DeviceInfo>* GetDeviceInfoList() = 0;

    // The first camera, or null when there is none.
    virtual DeviceInfo* GetFirstDeviceInfo() = 0;

    // The camera with the identifier `id`. An identifier that the producer does not list also gives
    // a DeviceInfo (whether there is such a camera settles when it is opened), always the same one
    // for the same identifier. Null for a null `id` and when the producer fails.
    virtual DeviceInfo* GetDeviceInfoById(const char* id) = 0;

    // Lets the producer search for cameras for at most `timeout` milliseconds (GenTL
    // IFUpdateDeviceList), and reads its list again when it changed. Cameras that stay keep their
    // DeviceInfo; for cameras that return, a new one is made. `changed` may be null; it is written
    // only on success. Returns the producer's code.
    //
    // When reading the list fails after a successful search, the exception leaves this operation: a
    // std::system_error that carries the producer's code.
    virtual ZelCamErr ReEnumerateDevices(bool* changed, uint64_t timeout) = 0;

    // Display name; null when the producer does not tell. Valid while the interface lives.
    virtual const char* GetDescription() = 0;

    // Unknown also when the producer fails or reports a type without a number, such as "Custom".
    virtual InterfaceType GetType() = 0;

    // Identifier within the System. Valid while the interface lives.
    virtual const char* GetId() = 0;

    // Version text (a producer-specific info, GenTL INTERFACE_INFO_CUSTOM_ID); null when the
    // producer has none. Valid while the interface lives.
    virtual const char* GetVersion() = 0;

    // Subscribe a callback to a GenTL event (EventType) of this interface. The same callback may
    // be registered more than once and is then called as often. Returns the producer's code when
    // the event cannot be registered.
    virtual ZelCamErr RegisterEvent2(uint32_t eventType, EventCallback2 cb, void* priv) = 0;
    virtual ZelCamErr RegisterEvent(uint32_t eventType, EventCallback cb, void* priv) = 0;

    // Remove one subscription with the same callback and private pointer;
    // ZelCamErr_GenTL_NotInitialized when there is none. A call already under way on the event
    // thread is not waited for.
    virtual ZelCamErr UnRegisterEvent2(uint32_t eventType, EventCallback2 cb, void* priv) = 0;
    virtual ZelCamErr UnRegisterEvent(uint32_t eventType, EventCallback cb, void* priv) = 0;

    // The features of the interface; owned by the interface, the same on every call. Null on
    // failure, and the next call tries again, with in `*err`:
    //   ZelCamErr_NoNodeMap     the producer has no usable description of them
    //   ZelCamErr_RuntimeError  the description cannot be turned into features
    //   ZelCamErr_GenApiError   the module cannot be accessed, or another failure of GenApi
    // or the producer's code.
    virtual ZelGenParam::Array* GetParameters(ZelCamErr* err) = 0;

    // Opens, with exclusive access, the camera of this interface that a configuration file names
    // (see Device::SaveConfiguration), and loads the configuration into it; which interface the
    // file names does not matter. Null on failure, with in `*err`:
    //   0                      the file cannot be read or is no XML
    //   ZelCamErr_InvalidFile  the file lacks "Camera" or its "cameraId"
    //   ZelCamErr_NotFound     the interface cannot list its cameras
    // or the code of ZelCam_CreateDevice. The device is returned also when loading the
    // configuration into it failed; `*err` is then the code of Device::LoadConfiguration.
    virtual Device* CreateDeviceFromConfig(const char* fileName, ZelCamErr* err) = 0;

  protected:
    ~Interface() = default;
};

}  // namespace ZelCam

#endif  // ZELCAM_INTERFACE_H

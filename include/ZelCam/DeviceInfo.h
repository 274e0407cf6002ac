// A camera as it is found, before it is opened.
#ifndef ZELCAM_DEVICEINFO_H
#define ZELCAM_DEVICEINFO_H

#include <cstdint>

#include "ZelCam/Error.h"

namespace ZelCam {

class Interface;

// How a camera is opened.
enum class DeviceAccess : uint32_t {
    ReadOnly = 0,  // read registers; several applications at once
    Control = 1,   // read and write, others may read
    Exclusive = 2  // read and write, nobody else may open the camera
};

// Whether a camera can be opened (GenTL DEVICE_ACCESS_STATUS).
enum AccessStatus : int32_t {
    AccessStatus_Unknown = 0,
    AccessStatus_ReadWrite = 1,
    AccessStatus_ReadOnly = 2,
    AccessStatus_NoAccess = 3,
    AccessStatus_Busy = 4,           // somebody else has it open
    AccessStatus_OpenReadWrite = 5,  // open through this producer
    AccessStatus_OpenReadOnly = 6    // likewise
};

// The description of one camera behind one interface, the network configuration of a GigE Vision
// camera, and the source of Devices (see ZelCam_CreateDevice). Owned by its Interface; it lives as
// long as the System and is never released by the application.
//
// The texts are asked of the producer on every call. Each stays valid until the same operation is
// called again on the same object; null when the producer does not tell.
// Thread-bound (see ZelCam.h). The operations for IP settings also use the Interface and select the
// camera in its features: for all cameras of an interface, one thread at a time.
class DeviceInfo {
  public:
    virtual Interface* GetInterface() = 0;

    // Identifier within the interface; never null.
    virtual const char* GetID() = 0;
    virtual const char* GetVendor() = 0;
    virtual const char* GetModel() = 0;
    virtual const char* GetDisplayName() = 0;
    virtual const char* GetUserDefinedName() = 0;
    virtual const char* GetSerialNumber() = 0;
    virtual const char* GetVersion() = 0;

    // An AccessStatus; AccessStatus_Unknown also when it cannot be read.
    virtual int32_t GetAccessStatus() = 0;

    // The USB host the camera is connected to (producer-specific info 1100).
    virtual const char* GetUSB3HostInfo() = 0;

    // The current network configuration of a GigE Vision camera as dotted text. Null on failure,
    // with a code of GetIP in `*err`; on success `*err` is left as it was.
    virtual const char* GetIPAddress(ZelCamErr* err) = 0;
    virtual const char* GetIPMask(ZelCamErr* err) = 0;
    virtual const char* GetIPGateway(ZelCamErr* err) = 0;

    // The same as numbers, the first octet in the most significant byte (192.168.1.2 is
    // 0xC0A80102). The arguments are written on success only; none may be null.
    //   ZelCamErr_NotFound       the interface does not list the camera, has no features, or cannot
    //                            select it
    //   ZelCamErr_ParamNotFound  the interface is not one for GigE Vision cameras
    // and the other codes of access by name, see ZelGenParam::Array. Selects the camera in the
    // interface's "DeviceSelector": by its "DeviceID", or by the camera's place in the list of the
    // interface where there is no such feature.
    virtual ZelCamErr GetIP(uint32_t* address, uint32_t* mask, uint32_t* gateway) = 0;

    // Force a temporary network configuration on a GigE Vision camera (FORCEIP), for a camera that
    // does not fit into the network of its adapter. The camera is selected as GetIP does it, and
    // "DeviceSelector" of the interface gets its former value back.
    //   ZelCamErr_InvalidArgument  the address or the mask is no text of four numbers; a gateway
    //                              of another form counts as 0.0.0.0
    //   ZelCamErr_ParamNotFound    the interface is not one for GigE Vision cameras
    //   ZelCamErr_NotFound         the interface cannot list its cameras, or cannot select this one
    // and the other codes of access by name and of Interface::GetParameters. For a camera that the
    // interface does not list, the number of listed cameras is selected, which "DeviceSelector"
    // usually refuses (ZelCamErr_OutOfRange); without any camera the selector itself may be
    // unavailable (ZelCamErr_AccessDenied with the simulated cameras). Numbers of a text are
    // not checked for their range: only their lower eight bits count. A null text raises
    // std::logic_error.
    virtual ZelCamErr ForceIP(const char* address, const char* mask, const char* gateway) = 0;
    virtual ZelCamErr ForceIP(uint32_t address, uint32_t mask, uint32_t gateway) = 0;

    // Use the description file `fileName` (xml or zip) instead of the camera's own for Devices
    // whose parameters are asked for later, by any thread; null or empty goes back to the camera's
    // own. Not while another thread asks a Device of this camera for them for the first time.
    // ZelCamErr_FileOpenFailed when the file cannot be read; the path is kept all the same.
    virtual ZelCamErr SetExternalXml(const char* fileName) = 0;

    // The path given last, or null.
    virtual const char* GetExternalXml() = 0;

  protected:
    ~DeviceInfo() = default;
};

}  // namespace ZelCam

#endif  // ZELCAM_DEVICEINFO_H

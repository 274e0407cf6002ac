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
    Control = 1,   // read and write; other applications may read
    Exclusive = 2  // read and write; no other application may open the camera
};

// Whether a camera can be opened (GenTL DEVICE_ACCESS_STATUS).
enum AccessStatus : int32_t {
    AccessStatus_Unknown = 0,
    AccessStatus_ReadWrite = 1,
    AccessStatus_ReadOnly = 2,
    AccessStatus_NoAccess = 3,
    AccessStatus_Busy = 4,           // another application has it open
    AccessStatus_OpenReadWrite = 5,  // open through this producer
    AccessStatus_OpenReadOnly = 6    // likewise
};

// The description of one camera behind one interface, the network configuration of a GigE Vision
// camera, and the source of Devices (see ZelCam_CreateDevice). Its Interface owns it; it lives as
// long as the System, and the application never releases it.
//
// Every call asks the producer for the text. The text stays valid until the next call of the same
// operation on the same object; it is null if the producer does not report it. Thread-bound (see
// ZelCam.h). The operations for IP settings also use the Interface and select the camera in its
// features, so only one thread at a time may use them for all cameras of an interface.
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

    // An AccessStatus; AccessStatus_Unknown also if it cannot be read.
    virtual int32_t GetAccessStatus() = 0;

    // The USB host that the camera is connected to (producer-specific info 1100).
    virtual const char* GetUSB3HostInfo() = 0;

    // The current network configuration of a GigE Vision camera as dotted text. Null on failure,
    // with a code of GetIP in `*err`; success leaves `*err` unchanged.
    virtual const char* GetIPAddress(ZelCamErr* err) = 0;
    virtual const char* GetIPMask(ZelCamErr* err) = 0;
    virtual const char* GetIPGateway(ZelCamErr* err) = 0;

    // The same as numbers, with the first octet in the most significant byte (192.168.1.2 is
    // 0xC0A80102). Only success writes the arguments; none may be null.
    //   ZelCamErr_NotFound       the interface does not list the camera, has no features, or cannot
    //                            select the camera
    //   ZelCamErr_ParamNotFound  the interface is not for GigE Vision cameras
    // and the other codes of access by name, see ZelGenParam::Array. The call selects the camera in
    // the interface's "DeviceSelector": by its "DeviceID", or, if there is no such feature, by the
    // camera's place in the interface's list.
    virtual ZelCamErr GetIP(uint32_t* address, uint32_t* mask, uint32_t* gateway) = 0;

    // Force a temporary network configuration on a GigE Vision camera (FORCEIP) whose address does
    // not belong to the network of its adapter. They select the camera as GetIP does, and then
    // restore "DeviceSelector" of the interface.
    //   ZelCamErr_InvalidArgument  the address or the mask is not a text of four numbers; an
    //                              unparsable gateway counts as 0.0.0.0
    //   ZelCamErr_ParamNotFound    the interface is not for GigE Vision cameras
    //   ZelCamErr_NotFound         the interface cannot list its cameras, or cannot select this one
    // and the other codes of access by name and of Interface::GetParameters. For a camera that the
    // interface does not list, they select the number of listed cameras, which "DeviceSelector"
    // usually refuses (ZelCamErr_OutOfRange); without any camera the selector itself may be
    // unavailable (ZelCamErr_AccessDenied with the default producer). The numbers in a text are
    // not checked for their range; only their lower eight bits count. A null text raises
    // std::logic_error.
    virtual ZelCamErr ForceIP(const char* address, const char* mask, const char* gateway) = 0;
    virtual ZelCamErr ForceIP(uint32_t address, uint32_t mask, uint32_t gateway) = 0;

    // Replaces the camera's own description by the file `fileName` (xml or zip) for Devices whose
    // parameters any thread asks for later; null or empty returns to the camera's own description.
    // Do not call it while another thread asks a Device of this camera for its parameters for the
    // first time. ZelCamErr_FileOpenFailed if the file cannot be read; the path is kept anyway.
    virtual ZelCamErr SetExternalXml(const char* fileName) = 0;

    // The last path given, or null.
    virtual const char* GetExternalXml() = 0;

  protected:
    ~DeviceInfo() = default;
};

}  // namespace ZelCam

#endif  // ZELCAM_DEVICEINFO_H

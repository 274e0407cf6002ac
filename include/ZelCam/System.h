// The root of the object tree.
#ifndef ZELCAM_SYSTEM_H
#define ZELCAM_SYSTEM_H

#include "ZelCam/Error.h"
#include "ZelCam/Interface.h"
#include "ZelCam/List.h"

namespace ZelCam {

class Device;

// The transport layers of a process: one or more GenTL producers and their interfaces.
//
//   ZelCam_GetSystem() ──> Open ── RegisterGenTLProvider() ── GetInterfaceList() ──> Release()
//                                  before the first listing   enumerates once
//
// The System owns its Interfaces and the lists that it handed out. Release ends them and everything
// that was opened from them. Systems are independent of each other: each loads its own producers.
// Thread-bound (see ZelCam.h).
class System {
  public:
    // Closes everything that was opened through this System, unloads its producers and destroys it.
    // Do not call it from an event callback.
    virtual void Release() = 0;

    // A new list of the interfaces of all producers whose type is `type`, or of all interfaces for
    // InterfaceType::Unknown. The first call opens every interface and leaves out those that cannot
    // be opened. An interface keeps its place and its pointer until Release. Null if the
    // enumeration fails; the next call tries again.
    virtual List<Interface>* GetInterfaceList(InterfaceType type) = 0;

    // The interface whose GetId() equals `id` exactly, or null. A null `id` raises
    // std::logic_error.
    virtual Interface* GetInterfaceById(const char* id) = 0;

    // Name and version of the first registered producer; null if it does not report them. The texts
    // stay valid until Release.
    virtual const char* GetDisplayName() = 0;
    virtual const char* GetVersion() = 0;

    // Opens, with exclusive access, the camera that a configuration file names (see
    // Device::SaveConfiguration), and loads the configuration into it. Null on failure; `*err` is
    // then
    //   ZelCamErr_InvalidFile  the file cannot be read, is not XML, or lacks "Camera" or its
    //                          "ifaceId" or "cameraId"
    //   ZelCamErr_NotFound     no interface has the identifier, or it cannot list its cameras
    // or the code of ZelCam_CreateDevice. If only loading the configuration fails, the device is
    // returned, and `*err` is the code of Device::LoadConfiguration.
    virtual Device* CreateDeviceFromConfig(const char* fileName, ZelCamErr* err) = 0;

    // Loads the producer file `ctiPath`, initialises it and opens its transport layer. The dynamic
    // loader searches for a path without a slash. Register producers before the first list of
    // interfaces: interfaces of later producers are not enumerated. ZelCamErr_Error if the file
    // cannot be loaded or `ctiPath` is null; else the producer's code.
    virtual ZelCamErr RegisterGenTLProvider(const char* ctiPath) = 0;

  protected:
    ~System() = default;
};

}  // namespace ZelCam

// Creates a System with the default producer, the file "libZelCTI.cti". The dynamic loader searches
// for it in LD_LIBRARY_PATH first, then beside the library. Null if that producer cannot be loaded
// or initialised. Each call creates a new System. Thread-safe as far as the producer is.
extern "C" __attribute__((visibility("default"))) ZelCam::System* ZelCam_GetSystem();

#endif  // ZELCAM_SYSTEM_H

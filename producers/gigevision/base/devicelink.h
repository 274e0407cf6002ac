// Where a camera on a network is, and its control channel as its streams use it.
#pragma once

#include <cstdint>
#include <string>

#include "producers/sockets/endpoint.h"

namespace ZelGev {

// How this machine reaches a camera.
struct Route {
    ZelCti::Endpoint camera;   // commands go there
    uint32_t hostAddress = 0;  // ours, in the subnet of the camera
    std::string interface;     // the network adapter
    unsigned interfaceIndex = 0;
    uint32_t mtu = 1500;
    bool isLoopback = false;
    uint32_t speed = 0;  // of the adapter, in Mbit/s; 0: not known
};

// The control channel of an open camera. It outlives the streams of the camera. Thread-safe.
class DeviceLink {
  public:
    virtual const Route& Place() const = 0;

    // Whether registers may be written: false for a connection that only reads.
    virtual bool Controls() const = 0;

    // A register of 4 bytes. They throw ZelCti::Error: the code for the status that the camera
    // answered, GC_ERR_TIMEOUT without an answer, GC_ERR_IO when the camera is lost or closed.
    virtual uint32_t ReadRegister(uint32_t address) = 0;
    virtual void WriteRegister(uint32_t address, uint32_t value) = 0;

    // The GVCP capability register (Gev::GvcpCapability), as read when the camera was opened.
    virtual uint32_t Capabilities() const = 0;

    // Of its timestamps, in Hz; 0 when it is not known.
    virtual uint64_t TickFrequency() const = 0;

    virtual bool IsLost() const = 0;

  protected:
    ~DeviceLink() = default;
};

}  // namespace ZelGev

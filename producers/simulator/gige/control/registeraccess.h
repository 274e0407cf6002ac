// The registers of a camera as commands see them.
#pragma once

#include <cstdint>

#include "producers/server/registers/portregisters.h"
#include "producers/simulator/gige/control/bootstrapregisters.h"
#include "producers/wire/byteview.h"
#include "producers/wire/gevstatus.h"

namespace ZelSim {

// Reads and writes, with status codes for what is refused: alignment first, then the address, then
// the access, then the value. An address with no register is refused; so is a bootstrap register
// that the capabilities deny. Reads of memory may go over gaps between registers, which read as 0.
class RegisterAccess {
  public:
    using Status = ZelCti::Gev::Status;

    RegisterAccess(ZelCti::PortRegisters& port, const BootstrapRegisters& bootstrap,
                   const NetworkHardware& hardware)
        : port_(port), bootstrap_(bootstrap), hardware_(hardware) {}

    Status ReadWord(uint32_t address, uint32_t& value);
    Status WriteWord(uint32_t address, uint32_t value);
    Status ReadMemory(uint32_t address, ZelCti::ByteSpan out);
    Status WriteMemory(uint32_t address, ZelCti::ByteView data);

    // How long, in ms, the camera takes for a write.
    uint32_t Duration(uint32_t address, ZelCti::ByteView data);

  private:
    Status CheckPlace(uint32_t address, size_t size) const;
    const ZelCti::Register* Find(uint64_t word) const;
    bool IsRefusedMemory(const ZelCti::Register& reg) const;
    Status Read(uint32_t address, uint8_t* out, size_t size);
    Status Write(uint32_t address, ZelCti::ByteView data);

    ZelCti::PortRegisters& port_;
    const BootstrapRegisters& bootstrap_;
    const NetworkHardware& hardware_;
};

}  // namespace ZelSim

// The memory of a camera's firmware.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "producers/server/registers/registerspace.h"

namespace ZelSim {

// A flash with its registers in the space of a camera, 4 bytes each, accessed as a whole, and
// little endian whatever the order of the space. It is as strict as the strictest real one: an
// operation keeps it busy for a while, in which commands and data are refused with GC_ERR_BUSY; the
// status says what the last poll saw; sectors are erased and pages programmed from their first
// byte; programming clears bits and sets none; and what is not written into the page buffer stays
// there from before.
//
//   idle --erase or program--> busy --time passes--> idle
//
// Guarded by the lock of the register space.
class Flash {
  public:
    using Clock = std::function<uint64_t()>;  // nanoseconds

    using Sectors = std::map<uint32_t, std::vector<uint8_t>>;  // those that were used, by address

    // The sectors outlive the flash.
    Flash(ZelCti::RegisterSpace& space, Clock clock, uint64_t busyNs, Sectors& sectors);

    // The same memory as a file, which the camera's own processor erases and programs as needed.
    // The range lies in it. Throw GC_ERR_BUSY; writing keeps the flash busy.
    static constexpr size_t kSize = 0x400000;
    void ReadFile(size_t offset, uint8_t* out, size_t size) const;
    void WriteFile(size_t offset, const uint8_t* in, size_t size);
    bool IsBusy() const { return clock_() < idleNs_; }

  private:
    void AddControl();
    void AddStatus();
    void AddPageBuffer();
    void AddWindow();
    void Execute(uint32_t command);
    void Erase(uint32_t address);
    void ProgramPage(uint32_t address);
    void RequireIdle() const;  // throws GC_ERR_BUSY
    void BeBusy();
    std::vector<uint8_t>& SectorOf(uint32_t address);
    void Show(uint32_t address, size_t size);

    ZelCti::RegisterSpace& space_;
    const Clock clock_;
    const uint64_t busyNs_;
    Sectors& sectors_;
    uint64_t idleNs_ = 0;      // when the operation ends
    bool status_ = false;      // busy, as of the last poll
    bool mayProgram_ = false;  // the page program control was written
};

}  // namespace ZelSim

// READREG, WRITEREG, READMEM and WRITEMEM.
#pragma once

#include <functional>
#include <optional>

#include "producers/simulator/gige/control/answerstore.h"
#include "producers/simulator/gige/control/controlprivilege.h"
#include "producers/simulator/gige/control/registeraccess.h"
#include "producers/wire/gvcpcommands.h"

namespace ZelSim {

// Does what these commands say, in this order of checks: the form of the payload, the privilege of
// the application, alignment, address, access, value. Thread-bound.
class RegisterCommands {
  public:
    using Clock = std::chrono::steady_clock;
    using Command = ZelCti::Gvcp::Command;
    using Status = ZelCti::Gev::Status;

    // Hears of a write of CCP that succeeded, with the holder of before.
    using OnControl = std::function<void(const ControlPrivilege::Change& change,
                                         const std::optional<ZelCti::Endpoint>& before)>;

    RegisterCommands(RegisterAccess access, const BootstrapRegisters& bootstrap,
                     const NetworkHardware& hardware, ControlPrivilege& privilege,
                     OnControl onControl)
        : access_(access),
          bootstrap_(bootstrap),
          hardware_(hardware),
          privilege_(privilege),
          onControl_(std::move(onControl)) {}

    static bool IsRead(ZelCti::Gvcp::Code code) {
        return code == ZelCti::Gvcp::Code::ReadRegCmd || code == ZelCti::Gvcp::Code::ReadMemCmd;
    }
    static bool IsWrite(ZelCti::Gvcp::Code code) {
        return code == ZelCti::Gvcp::Code::WriteRegCmd || code == ZelCti::Gvcp::Code::WriteMemCmd;
    }
    static bool Knows(ZelCti::Gvcp::Code code) { return IsRead(code) || IsWrite(code); }

    // Makes the answer. Returns how long, in ms, the camera takes until then.
    uint32_t Run(const Command& command, const ZelCti::Endpoint& from, Clock::time_point now,
                 Answer& answer);

  private:
    Status CheckForm(const Command& command) const;
    Status CheckPrivilege(const Command& command, const ZelCti::Endpoint& from) const;
    void ReadReg(const Command& command, Answer& answer);
    uint32_t WriteReg(const Command& command, const ZelCti::Endpoint& from, Clock::time_point now,
                      Answer& answer);
    void ReadMem(const Command& command, Answer& answer);
    uint32_t WriteMem(const Command& command, const ZelCti::Endpoint& from, Clock::time_point now,
                      Answer& answer);
    Status WriteWord(ZelCti::Gvcp::RegisterWrite write, const ZelCti::Endpoint& from,
                     Clock::time_point now);
    Status WriteCcp(uint32_t ccp, const ZelCti::Endpoint& from, Clock::time_point now);
    void Refuse(Status status, const Command& command, Answer& answer) const;
    ZelCti::Result<ZelCti::Gvcp::ReadMem> DecodeReadMem(const Command& command) const;

    RegisterAccess access_;
    const BootstrapRegisters& bootstrap_;
    const NetworkHardware& hardware_;
    ControlPrivilege& privilege_;
    const OnControl onControl_;
};

}  // namespace ZelSim

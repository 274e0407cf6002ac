#include "producers/simulator/gige/control/registercommands.h"

#include <algorithm>

#include "producers/wire/bootstrap.h"
#include "producers/wire/gvcpanswers.h"

namespace ZelSim {

namespace Gev = ZelCti::Gev;
namespace Gvcp = ZelCti::Gvcp;
namespace Capability = ZelCti::Gev::GvcpCapability;
using ZelCti::ByteSpan;
using ZelCti::Endpoint;
using ZelCti::Fault;
using ZelCti::Result;

using ZelCti::Gev::Status;

namespace {

constexpr size_t kWordSize = sizeof(uint32_t);

Status StatusOf(Fault fault) {
    return fault == Fault::Misaligned ? Status::BadAlignment : Status::InvalidParameter;
}

}  // namespace

uint32_t RegisterCommands::Run(const Command& command, const Endpoint& from, Clock::time_point now,
                               Answer& answer) {
    Status status = CheckForm(command);
    if (status == Status::Success) status = CheckPrivilege(command, from);
    if (status != Status::Success) {
        Refuse(status, command, answer);
        return 0;
    }
    switch (command.code) {
        case Gvcp::Code::ReadRegCmd:
            ReadReg(command, answer);
            return 0;
        case Gvcp::Code::ReadMemCmd:
            ReadMem(command, answer);
            return 0;
        case Gvcp::Code::WriteRegCmd:
            return WriteReg(command, from, now, answer);
        default:
            return WriteMem(command, from, now, answer);
    }
}

Status RegisterCommands::CheckForm(const Command& command) const {
    const bool isWriteMem = command.code == Gvcp::Code::WriteMemCmd;
    if (isWriteMem && !bootstrap_.Can().Has(Capability::kWriteMem)) return Status::NotImplemented;
    return command.payload.size % kWordSize == 0 ? Status::Success : Status::InvalidParameter;
}

// A write of CCP asks for the privilege: WriteWord decides, for each register.
Status RegisterCommands::CheckPrivilege(const Command& command, const Endpoint& from) const {
    if (IsRead(command.code))
        return privilege_.MayRead(from) ? Status::Success : Status::AccessDenied;
    const bool beginsWithCcp =
        command.payload.size >= kWordSize && command.payload.U32(0) == Gev::kCcp.address;
    return beginsWithCcp || privilege_.MayWrite(from) ? Status::Success : Status::AccessDenied;
}

// Refused reads have a header only, refused writes the number of what was written: nothing.
void RegisterCommands::Refuse(Status status, const Command& command, Answer& answer) const {
    if (hardware_.Settings()->zeroLengthErrors || IsRead(command.code)) {
        answer.size = Gvcp::EncodeAck(answer.Space(), status, command.code, command.requestId);
        return;
    }
    const auto encode =
        command.code == Gvcp::Code::WriteMemCmd ? Gvcp::EncodeWriteMemAck : Gvcp::EncodeWriteRegAck;
    answer.size = encode(answer.Space(), status, command.requestId, 0);
}

void RegisterCommands::ReadReg(const Command& command, Answer& answer) {
    const auto addresses = Gvcp::DecodeReadReg(command);
    if (!addresses) return Refuse(StatusOf(addresses.GetFault()), command, answer);
    if (addresses->size() > 1 && !bootstrap_.Can().Has(Capability::kConcatenation))
        return Refuse(Status::InvalidParameter, command, answer);
    std::array<uint32_t, Gvcp::kMaxReadRegCount> values{};
    size_t count = 0;
    Status status = Status::Success;
    for (const uint32_t address : *addresses) {
        status = access_.ReadWord(address, values.at(count));
        if (status != Status::Success) break;
        ++count;
    }
    if (status != Status::Success && count == 0) return Refuse(status, command, answer);
    answer.size =
        Gvcp::EncodeReadRegAck(answer.Space(), status, command.requestId, values.data(), count);
}

uint32_t RegisterCommands::WriteReg(const Command& command, const Endpoint& from,
                                    Clock::time_point now, Answer& answer) {
    const auto writes = Gvcp::DecodeWriteReg(command);
    Status status = writes ? Status::Success : StatusOf(writes.GetFault());
    if (writes && writes->size() > 1 && !bootstrap_.Can().Has(Capability::kConcatenation))
        status = Status::InvalidParameter;
    if (status != Status::Success) return Refuse(status, command, answer), 0;
    uint16_t count = 0;
    uint32_t duration = 0;
    for (const Gvcp::RegisterWrite write : *writes) {
        uint8_t bytes[kWordSize];
        ByteSpan{bytes, sizeof bytes}.PutU32(0, write.value);
        status = WriteWord(write, from, now);
        if (status != Status::Success) break;
        duration += access_.Duration(write.address, {bytes, sizeof bytes});
        ++count;
    }
    if (status != Status::Success && count == 0) return Refuse(status, command, answer), 0;
    answer.size = Gvcp::EncodeWriteRegAck(answer.Space(), status, command.requestId, count);
    return duration;
}

Status RegisterCommands::WriteWord(Gvcp::RegisterWrite write, const Endpoint& from,
                                   Clock::time_point now) {
    if (write.address == Gev::kCcp.address) return WriteCcp(write.value, from, now);
    if (!privilege_.MayWrite(from)) return Status::AccessDenied;
    return access_.WriteWord(write.address, write.value);
}

Status RegisterCommands::WriteCcp(uint32_t ccp, const Endpoint& from, Clock::time_point now) {
    const std::optional<Endpoint> before = privilege_.Holder();
    std::optional<uint16_t> key;
    if (bootstrap_.Can().Has(Capability::kSwitchover)) key = bootstrap_.Settings().switchoverKey;
    const ControlPrivilege::Change change = privilege_.Write(from, ccp, key, now);
    if (change.status == Status::Success) onControl_(change, before);
    return change.status;
}

// Some cameras read any number of bytes.
Result<Gvcp::ReadMem> RegisterCommands::DecodeReadMem(const Command& command) const {
    const auto readMem = Gvcp::DecodeReadMem(command);
    if (readMem || readMem.GetFault() != Fault::Misaligned || hardware_.Settings()->refuseOddReads)
        return readMem;
    const Gvcp::ReadMem odd{command.payload.U32(0), command.payload.U16(6)};
    if (odd.count > Gvcp::kMaxMemorySize) return Fault::WrongCount;
    return odd;
}

void RegisterCommands::ReadMem(const Command& command, Answer& answer) {
    const auto readMem = DecodeReadMem(command);
    if (!readMem) return Refuse(StatusOf(readMem.GetFault()), command, answer);
    std::array<uint8_t, Gvcp::kMaxMemorySize> bytes{};
    const Status status = access_.ReadMemory(readMem->address, {bytes.data(), readMem->count});
    if (status != Status::Success) return Refuse(status, command, answer);
    answer.size = Gvcp::EncodeReadMemAck(answer.Space(), command.requestId,
                                         {readMem->address, {bytes.data(), readMem->count}});
}

uint32_t RegisterCommands::WriteMem(const Command& command, const Endpoint& from,
                                    Clock::time_point now, Answer& answer) {
    const auto memory = Gvcp::DecodeWriteMem(command);
    if (!memory) return Refuse(StatusOf(memory.GetFault()), command, answer), 0;
    const bool isWord = memory->data.size == kWordSize;
    const Status status =
        isWord && memory->address == Gev::kCcp.address ? WriteCcp(memory->data.U32(0), from, now)
        : privilege_.MayWrite(from) ? access_.WriteMemory(memory->address, memory->data)
                                    : Status::AccessDenied;
    if (status != Status::Success) return Refuse(status, command, answer), 0;
    answer.size = Gvcp::EncodeWriteMemAck(answer.Space(), status, command.requestId,
                                          static_cast<uint16_t>(memory->data.size));
    return access_.Duration(memory->address, memory->data);
}

}  // namespace ZelSim

#include "producers/simulator/gige/control/registeraccess.h"

#include <exception>

#include "producers/server/base/error.h"
#include "producers/wire/bootstrap.h"

namespace ZelSim {

namespace Gev = ZelCti::Gev;
using ZelCti::Access;
using ZelCti::ByteSpan;
using ZelCti::ByteView;
using ZelCti::Register;

using ZelCti::Gev::Status;

namespace {

constexpr size_t kWord = sizeof(uint32_t);

Status StatusOf(GenTL::GC_ERROR code) {
    switch (code) {
        case GenTL::GC_ERR_ACCESS_DENIED:
            return Status::AccessDenied;
        case GenTL::GC_ERR_BUSY:
            return Status::Busy;
        case GenTL::GC_ERR_INVALID_ADDRESS:
            return Status::InvalidAddress;
        case GenTL::GC_ERR_INVALID_PARAMETER:  // only a part of the register, or a wrong multiple
            return Status::BadAlignment;
        case GenTL::GC_ERR_INVALID_VALUE:
            return Status::InvalidParameter;
        default:
            return Status::Error;
    }
}

template <typename Operation>
Status Try(const Operation& operation) {
    try {
        operation();
        return Status::Success;
    } catch (const ZelCti::Error& error) {
        return StatusOf(error.Code());
    } catch (const std::exception&) {
        return Status::Error;
    }
}

}  // namespace

Status RegisterAccess::CheckPlace(uint32_t address, size_t size) const {
    if (address % kWord != 0) return Status::BadAlignment;
    const auto settings = hardware_.Settings();
    const uint64_t bad = settings->errorAddress;
    if (bad >= address && bad - address < size) return static_cast<Status>(settings->errorStatus);
    return Status::Success;
}

const Register* RegisterAccess::Find(uint64_t word) const {
    if (word < Gev::kBootstrapEnd) {
        const auto place = Gev::FindRegister(static_cast<uint32_t>(word));
        if (!place || !bootstrap_.Can().IsPresent(*place->reg)) return nullptr;
    }
    return port_.Find(word, kWord);
}

bool RegisterAccess::IsRefusedMemory(const Register& reg) const {
    return reg.size <= kWord && hardware_.Settings()->refuseReadMem;
}

Status RegisterAccess::Read(uint32_t address, uint8_t* out, size_t size) {
    return Try([&] { port_.Read(address, out, size); });
}

Status RegisterAccess::Write(uint32_t address, ByteView data) {
    return Try([&] { port_.Write(address, data.data, data.size); });
}

Status RegisterAccess::ReadWord(uint32_t address, uint32_t& value) {
    if (const Status status = CheckPlace(address, kWord); status != Status::Success) return status;
    if (Find(address) == nullptr) return Status::InvalidAddress;
    uint8_t bytes[kWord] = {};
    const Status status = Read(address, bytes, sizeof bytes);
    value = ByteView{bytes, sizeof bytes}.U32(0);
    return status;
}

Status RegisterAccess::WriteWord(uint32_t address, uint32_t value) {
    if (const Status status = CheckPlace(address, kWord); status != Status::Success) return status;
    const Register* const reg = Find(address);
    if (reg == nullptr) return Status::InvalidAddress;
    if (reg->access == Access::ReadOnly) return Status::WriteProtect;
    uint8_t bytes[kWord];
    ByteSpan{bytes, sizeof bytes}.PutU32(0, value);
    return Write(address, {bytes, sizeof bytes});
}

Status RegisterAccess::ReadMemory(uint32_t address, ByteSpan out) {
    if (const Status status = CheckPlace(address, out.size); status != Status::Success)
        return status;
    bool isKnown = false;
    for (size_t offset = 0; offset < out.size; offset += kWord) {
        const Register* const reg = Find(uint64_t{address} + offset);
        if (reg == nullptr) continue;
        if (IsRefusedMemory(*reg)) return Status::InvalidAddress;
        isKnown = true;
    }
    return isKnown ? Read(address, out.data, out.size) : Status::InvalidAddress;
}

Status RegisterAccess::WriteMemory(uint32_t address, ByteView data) {
    if (const Status status = CheckPlace(address, data.size); status != Status::Success)
        return status;
    bool isProtected = false;
    for (size_t offset = 0; offset < data.size; offset += kWord) {
        const Register* const reg = Find(uint64_t{address} + offset);
        if (reg == nullptr || IsRefusedMemory(*reg)) return Status::InvalidAddress;
        isProtected = isProtected || reg->access == Access::ReadOnly;
    }
    return isProtected ? Status::WriteProtect : Write(address, data);
}

uint32_t RegisterAccess::Duration(uint32_t address, ByteView data) {
    const Register* const reg = port_.Find(address, kWord);
    const bool isWhole = reg != nullptr && reg->duration != nullptr && reg->address == address &&
                         reg->size <= data.size;
    return isWhole ? reg->duration(data.data) : 0;
}

}  // namespace ZelSim

#include "producers/simulator/camera/flash.h"

#include <utility>
#include <vector>

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"

namespace ZelSim {

using ZelCti::Access;
using ZelCti::ByteOrder;
using ZelCti::Error;
using ZelCti::LoadInteger;
using ZelCti::Register;
using ZelCti::RegisterSpace;
using ZelCti::StoreInteger;

namespace {

constexpr uint64_t kCommand = 0x20006050;
constexpr uint64_t kStatus = 0x20006058;
constexpr uint64_t kPageControl = 0x20006100;
constexpr uint64_t kPageBuffer = 0x10000300;

// The contents can be read here, each byte at this address plus its own.
constexpr uint64_t kWindow = 0x30000000;

constexpr uint32_t kFirst = 0x400000;
constexpr uint32_t kEnd = 0x800000;
constexpr uint32_t kSectorSize = 0x10000;
constexpr uint32_t kPageSize = 0x100;

// A command: what to do in the upper byte, where in the others.
constexpr uint32_t kErase = 1;
constexpr uint32_t kProgram = 3;
constexpr uint32_t kPoll = 6;

constexpr uint32_t kMayProgram = 0x1000001;

Register LittleEndianRegister(uint64_t address, Access access) {
    Register reg;
    reg.address = address;
    reg.size = sizeof(uint32_t);
    reg.access = access;
    reg.whole = true;
    return reg;
}

uint32_t Word(const uint8_t* bytes) {
    return static_cast<uint32_t>(LoadInteger(bytes, sizeof(uint32_t), ByteOrder::Little));
}

}  // namespace

Flash::Flash(RegisterSpace& space, Clock clock, uint64_t busyNs)
    : space_(space), clock_(std::move(clock)), busyNs_(busyNs) {
    AddControl();
    AddStatus();
    AddPageBuffer();
    AddWindow();
}

void Flash::AddControl() {
    Register command = LittleEndianRegister(kCommand, Access::ReadWrite);
    command.action = [this](const uint8_t* bytes) { Execute(Word(bytes)); };
    space_.Add(std::move(command));

    Register control = LittleEndianRegister(kPageControl, Access::ReadWrite);
    control.check = [this](const uint8_t* /*bytes*/) { RequireIdle(); };
    control.action = [this](const uint8_t* bytes) { mayProgram_ = Word(bytes) == kMayProgram; };
    space_.Add(std::move(control));
}

void Flash::AddStatus() {
    Register status = LittleEndianRegister(kStatus, Access::ReadOnly);
    status.source = [this](uint8_t* bytes) {
        StoreInteger(bytes, sizeof(uint32_t), status_ ? 1 : 0, ByteOrder::Little);
    };
    space_.Add(std::move(status));
}

void Flash::AddPageBuffer() {
    Register buffer;
    buffer.address = kPageBuffer;
    buffer.size = kPageSize;
    buffer.check = [this](const uint8_t* /*bytes*/) { RequireIdle(); };
    space_.Add(std::move(buffer));
}

void Flash::AddWindow() {
    Register window;
    window.address = kWindow + kFirst;
    window.size = kEnd - kFirst;
    window.access = Access::ReadOnly;
    space_.Add(std::move(window));
}

void Flash::RequireIdle() const {
    if (IsBusy()) throw Error(GenTL::GC_ERR_BUSY, "the flash is busy");
}

void Flash::Execute(uint32_t command) {
    const uint32_t operation = command >> 24;
    const uint32_t address = command & 0xFFFFFFU;
    if (operation == kPoll) {
        status_ = IsBusy();
        return;
    }
    RequireIdle();
    if (operation != kErase && operation != kProgram) {
        throw Error(GenTL::GC_ERR_INVALID_VALUE, "no command of the flash");
    }
    if (address < kFirst || address >= kEnd) {
        throw Error(GenTL::GC_ERR_INVALID_VALUE, "the address is not in the flash");
    }
    if (address % (operation == kErase ? kSectorSize : kPageSize) != 0) {
        throw Error(GenTL::GC_ERR_INVALID_VALUE,
                    "the address is not the first of a sector or page");
    }
    if (operation == kErase) {
        Erase(address);
    } else {
        ProgramPage(address);
    }
    idleNs_ = clock_() + busyNs_;
    status_ = true;
}

void Flash::Erase(uint32_t address) {
    const std::vector<uint8_t> erased(kSectorSize, 0xFF);
    space_.Load(kWindow + address, erased.data(), erased.size());
}

// Bits can only be cleared, as long as the sector is not erased.
void Flash::ProgramPage(uint32_t address) {
    if (!mayProgram_) throw Error(GenTL::GC_ERR_ACCESS_DENIED, "no page program is expected");
    mayProgram_ = false;
    const uint64_t place = kWindow + address;
    std::vector<uint8_t> page(kPageSize);
    std::vector<uint8_t> data(kPageSize);
    space_.Read(place, page.data(), page.size());
    space_.Read(kPageBuffer, data.data(), data.size());
    for (size_t i = 0; i < page.size(); ++i)
        page[i] = static_cast<uint8_t>(page[i] & data[i]);
    space_.Load(place, page.data(), page.size());
}

}  // namespace ZelSim

#include "producers/simulator/camera/flash.h"

#include <algorithm>
#include <cstring>
#include <utility>

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
constexpr uint32_t kEnd = kFirst + Flash::kSize;
constexpr uint32_t kSectorSize = 0x10000;
constexpr uint32_t kPageSize = 0x100;

// A command: what to do in the upper byte, where in the others.
constexpr uint32_t kErase = 1;
constexpr uint32_t kProgram = 3;
constexpr uint32_t kPoll = 6;

constexpr uint64_t kNsPerMs = 1000000;

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

Flash::Flash(RegisterSpace& space, Clock clock, uint64_t busyNs, Sectors& sectors)
    : space_(space), clock_(std::move(clock)), busyNs_(busyNs), sectors_(sectors) {
    for (const auto& [address, sector] : sectors_)
        Show(address, sector.size());
    AddControl();
    AddStatus();
    AddPageBuffer();
    AddWindow();
}

void Flash::AddControl() {
    Register command = LittleEndianRegister(kCommand, Access::ReadWrite);
    command.action = [this](const uint8_t* bytes) { Execute(Word(bytes)); };
    command.duration = [this](const uint8_t* bytes) -> uint32_t {
        const bool isSlow = Word(bytes) >> 24 == kErase;
        return isSlow ? static_cast<uint32_t>(busyNs_ / kNsPerMs) : 0;
    };
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
    BeBusy();
}

void Flash::BeBusy() {
    idleNs_ = clock_() + busyNs_;
    status_ = true;
}

// The sector that holds an address.
std::vector<uint8_t>& Flash::SectorOf(uint32_t address) {
    std::vector<uint8_t>& sector = sectors_[address - address % kSectorSize];
    sector.resize(kSectorSize);
    return sector;
}

// Brings a range of a sector into the registers.
void Flash::Show(uint32_t address, size_t size) {
    space_.Load(kWindow + address, SectorOf(address).data() + address % kSectorSize, size);
}

void Flash::Erase(uint32_t address) {
    SectorOf(address).assign(kSectorSize, 0xFF);
    Show(address, kSectorSize);
}

// Bits can only be cleared, as long as the sector is not erased.
void Flash::ProgramPage(uint32_t address) {
    if (!mayProgram_) throw Error(GenTL::GC_ERR_ACCESS_DENIED, "no page program is expected");
    mayProgram_ = false;
    uint8_t* const page = SectorOf(address).data() + address % kSectorSize;
    std::vector<uint8_t> data(kPageSize);
    space_.Read(kPageBuffer, data.data(), data.size());
    for (size_t i = 0; i < data.size(); ++i)
        page[i] = static_cast<uint8_t>(page[i] & data[i]);
    Show(address, kPageSize);
}

void Flash::ReadFile(size_t offset, uint8_t* out, size_t size) const {
    RequireIdle();
    space_.Read(kWindow + kFirst + offset, out, size);
}

void Flash::WriteFile(size_t offset, const uint8_t* in, size_t size) {
    RequireIdle();
    while (size != 0) {
        const auto address = static_cast<uint32_t>(kFirst + offset);
        const size_t part = std::min<size_t>(size, kSectorSize - address % kSectorSize);
        std::memcpy(SectorOf(address).data() + address % kSectorSize, in, part);
        Show(address, part);
        in += part;
        offset += part;
        size -= part;
    }
    BeBusy();
}

}  // namespace ZelSim

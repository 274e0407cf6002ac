#include "fuzz/genapi/hostileport.h"

#include <Base/GCException.h>

using namespace GENAPI_NAMESPACE;

namespace Fuzz {

namespace {

constexpr std::size_t kRarities[] = {0, 64, 8, 2};

}  // namespace

HostilePort::HostilePort(Choices& choices)
    : choices_(choices), rarity_(kRarities[choices.Below(std::size(kRarities))]) {}

void HostilePort::MayFail() {
    if (!Misbehaves()) return;
    switch (choices_.Below(7)) {
        case 0:
            throw ACCESS_EXCEPTION("denied");
        case 1:
            throw TIMEOUT_EXCEPTION("late");
        case 2:
            throw INVALID_ARGUMENT_EXCEPTION("invalid");
        case 3:
            throw OUT_OF_RANGE_EXCEPTION("out of range");
        case 4:
            throw LOGICAL_ERROR_EXCEPTION("incomplete");
        case 5:
            throw GENERIC_EXCEPTION("anything");
        default:
            throw RUNTIME_EXCEPTION("failed");
    }
}

void HostilePort::Read(void* buffer, std::int64_t address, std::int64_t length) {
    MayFail();
    const auto first = static_cast<std::uint64_t>(address);
    auto* const bytes = static_cast<std::uint8_t*>(buffer);
    const std::uint8_t noise = Misbehaves() ? choices_.Byte() : std::uint8_t{0};
    for (std::uint64_t i = 0; i < static_cast<std::uint64_t>(length); ++i)
        bytes[i] = memory_[(first + i) % memory_.size()] ^ noise;
}

void HostilePort::Write(const void* buffer, std::int64_t address, std::int64_t length) {
    MayFail();
    const auto first = static_cast<std::uint64_t>(address);
    const auto* const bytes = static_cast<const std::uint8_t*>(buffer);
    for (std::uint64_t i = 0; i < static_cast<std::uint64_t>(length); ++i)
        memory_[(first + i) % memory_.size()] = bytes[i];
}

EAccessMode HostilePort::GetAccessMode() const {
    constexpr EAccessMode kModes[] = {NI, NA, WO, RO, RW};
    return Misbehaves() ? kModes[choices_.Below(std::size(kModes))] : RW;
}

}  // namespace Fuzz

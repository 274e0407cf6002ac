#include "producers/wire/bootstrap.h"

namespace ZelCti::Gev {

// The table cannot use itself.
static_assert(IfSupportedIp(0).address == kSupportedIpConfiguration.address);
static_assert(IfGvsp(0).address == kGvspCapability.address);
static_assert(IfMessageChannel(0).address == kMessageChannelCapability.address);
static_assert(IfGvcp(0).address == kGvcpCapability.address);
static_assert(IfIeee1588Extended(0).address == kIeee1588ExtendedCapabilities.address);
static_assert(IfScc(0).address == kScc.address);

namespace {

std::optional<RegisterPlace> PlaceIn(const Register& reg, uint32_t address) {
    if (address < reg.address) return std::nullopt;
    const uint32_t distance = address - reg.address;
    const uint32_t index = reg.series.stride != 0 ? distance / reg.series.stride : 0;
    const uint32_t offset = distance - index * reg.series.stride;
    if (index >= reg.series.limit || offset >= reg.size) return std::nullopt;
    return RegisterPlace{&reg, index, offset};
}

}  // namespace

std::optional<RegisterPlace> FindRegister(uint32_t address) {
    for (const Register& reg : kBootstrapRegisters)
        if (const auto place = PlaceIn(reg, address)) return place;
    return std::nullopt;
}

}  // namespace ZelCti::Gev

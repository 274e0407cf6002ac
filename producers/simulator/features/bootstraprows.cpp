#include "producers/simulator/features/bootstraprows.h"

#include <stdexcept>
#include <utility>

namespace ZelSim {

using ZelCti::Access;
using ZelCti::ByteOrder;
using ZelCti::Feature;
using ZelCti::HexOf;
namespace Gev = ZelCti::Gev;

namespace {

constexpr unsigned kBits = 32;

Access AccessOf(const Gev::Register& reg) {
    switch (reg.access) {
        case Gev::Access::Read:
            return Access::ReadOnly;
        case Gev::Access::Write:
            return Access::WriteOnly;
        default:
            return Access::ReadWrite;
    }
}

// What selects the register of a series; empty for registers of which there is one, and for those
// of interfaces, of which cameras have one.
std::string SelectorOf(const Gev::Register& reg) {
    if (reg.series.stride == Gev::kStreamChannels.stride) return "GevStreamChannelSelector";
    if (reg.series.stride == Gev::kActionSignals.stride) return "ActionSelector";
    return {};
}

unsigned LowestBit(uint32_t mask) {
    unsigned bit = 0;
    while ((mask >> bit & 1U) == 0)
        ++bit;
    return bit;
}

unsigned HighestBit(uint32_t mask) {
    unsigned bit = kBits - 1;
    while ((mask >> bit & 1U) == 0)
        --bit;
    return bit;
}

// The bootstrap register at an address that the table of them names.
const Gev::Register& RegisterAt(uint32_t address) {
    const auto place = Gev::FindRegister(address);
    if (!place) throw std::logic_error("no bootstrap register at 0x" + HexOf(address));
    return *place->reg;
}

}  // namespace

Feature& BootstrapRows::Integer(const std::string& name, std::string toolTip,
                                const Gev::Register& reg, uint32_t mask) {
    return Over(features_.Integer(name, std::move(toolTip)), reg, mask);
}

Feature& BootstrapRows::Boolean(const std::string& name, std::string toolTip,
                                const Gev::Register& reg, uint32_t mask) {
    return Over(features_.Boolean(name, std::move(toolTip)), reg, mask);
}

Feature& BootstrapRows::Enumeration(const std::string& name, std::string toolTip,
                                    const Gev::Register& reg, uint32_t mask) {
    return Over(features_.Enumeration(name, std::move(toolTip)), reg, mask);
}

Feature& BootstrapRows::Command(const std::string& name, std::string toolTip,
                                const Gev::Register& reg, uint32_t mask, uint32_t value) {
    return Over(features_.Command(name, std::move(toolTip)), reg, mask)
        .With("CommandValue", std::to_string(value));
}

Feature& BootstrapRows::Wide(const std::string& name, std::string toolTip,
                             const Gev::Register& high) {
    return Complete(features_.IntReg(name, std::move(toolTip)), high)
        .AtExisting(high.address, 2 * sizeof(uint32_t))
        .Order(ByteOrder::Big)
        .Volatile();
}

Feature& BootstrapRows::Text(const std::string& name, std::string toolTip,
                             const Gev::Register& reg) {
    return Complete(features_.StringReg(name, std::move(toolTip)), reg)
        .AtExisting(reg.address, reg.size)
        .Access(AccessOf(reg))
        .Volatile();
}

Feature& BootstrapRows::Over(Feature& feature, const Gev::Register& reg, uint32_t mask) {
    const std::string name = feature.Name() + "Reg";
    Bits(name, reg, mask).Access(AccessOf(reg)).Volatile();
    return Complete(feature, reg).Over(name);
}

// What the place of the register says of the feature.
Feature& BootstrapRows::Complete(Feature& feature, const Gev::Register& reg) {
    if (const std::string selector = SelectorOf(reg); !selector.empty())
        feature.SelectedBy(selector);
    if (reg.presence.mask != 0) {
        ImplementedIf(feature, RegisterAt(reg.presence.address), reg.presence.mask);
    }
    return feature;
}

void BootstrapRows::ImplementedIf(Feature& feature, const Gev::Register& capability,
                                  uint32_t mask) {
    const std::string name = "Capability" + HexOf(capability.address) + "_" + HexOf(mask);
    if (capabilities_.insert(name).second) Bits(name, capability, mask);
    feature.With("pIsImplemented", name);
}

// In descriptions the bits of a big-endian register count from the most significant one.
Feature& BootstrapRows::Bits(const std::string& name, const Gev::Register& reg, uint32_t mask) {
    Feature& bits = mask == kWhole ? features_.IntReg(name) : features_.MaskedIntReg(name);
    bits.AtExisting(reg.address).Order(ByteOrder::Big);
    if (mask != kWhole) bits.Bits(kBits - 1 - LowestBit(mask), kBits - 1 - HighestBit(mask));
    if (const std::string selector = SelectorOf(reg); !selector.empty()) {
        bits.IndexedBy(selector + "Value", reg.series.stride);
    }
    return bits;
}

}  // namespace ZelSim

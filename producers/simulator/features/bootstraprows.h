// Features over bootstrap registers.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "producers/server/registers/featuretable.h"
#include "producers/wire/bootstrap.h"

namespace ZelSim {

// Declares features that show the bootstrap registers of a camera on a network, or bits of them.
// Others put the registers into the space. They are big endian in every camera and are read anew
// each time; registers of channels and signals are those of the selected one, and a feature whose
// register depends on a capability is implemented if the camera has the capability.
class BootstrapRows {
  public:
    static constexpr uint32_t kWhole = 0xFFFFFFFF;

    // The table declares the selectors of channels and signals: GevStreamChannelSelector and
    // ActionSelector, both local.
    explicit BootstrapRows(ZelCti::FeatureTable& features) : features_(features) {}

    ZelCti::Feature& Integer(const std::string& name, std::string toolTip,
                             const ZelCti::Gev::Register& reg, uint32_t mask = kWhole);
    ZelCti::Feature& Boolean(const std::string& name, std::string toolTip,
                             const ZelCti::Gev::Register& reg, uint32_t mask);
    ZelCti::Feature& Enumeration(const std::string& name, std::string toolTip,
                                 const ZelCti::Gev::Register& reg, uint32_t mask);

    // Writes this value to the bits.
    ZelCti::Feature& Command(const std::string& name, std::string toolTip,
                             const ZelCti::Gev::Register& reg, uint32_t mask, uint32_t value);

    // A number in two registers, from the high one on.
    ZelCti::Feature& Wide(const std::string& name, std::string toolTip,
                          const ZelCti::Gev::Register& high);

    ZelCti::Feature& Text(const std::string& name, std::string toolTip,
                          const ZelCti::Gev::Register& reg);

    // An invisible node over a register that never changes.
    void Capability(const std::string& name, const ZelCti::Gev::Register& reg) {
        Bits(name, reg, kWhole);
    }

    // A feature is implemented if this bit of the camera's capabilities is set.
    void ImplementedIf(ZelCti::Feature& feature, const ZelCti::Gev::Register& capability,
                       uint32_t mask);

  private:
    ZelCti::Feature& Over(ZelCti::Feature& feature, const ZelCti::Gev::Register& reg,
                          uint32_t mask);
    ZelCti::Feature& Complete(ZelCti::Feature& feature, const ZelCti::Gev::Register& reg);
    ZelCti::Feature& Bits(const std::string& name, const ZelCti::Gev::Register& reg, uint32_t mask);

    ZelCti::FeatureTable& features_;
    std::set<std::string> capabilities_;  // nodes of them that are declared
};

}  // namespace ZelSim

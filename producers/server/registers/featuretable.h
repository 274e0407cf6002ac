// The features of a module, each declared once.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "producers/server/registers/feature.h"

namespace ZelCti {

// What the root element of a description says.
struct DescriptionHeader {
    std::string modelName;
    std::string vendorName;
    std::string toolTip;
    std::string standardNameSpace = "None";
    std::string productGuid;
    std::string versionGuid;
};

// Whether node maps may keep what they read of registers.
enum class Caching { On, Off };

// A list of features, from which the registers and the description of a module are made:
//
//   FeatureTable features(space, "Device");
//   features.Category("ImageFormatControl", "Region and format of the image.");
//   features.Integer("Width", "Width of the image.").At(0x2110).Limits(1, "WidthMax").Unit("px")
//       .Get([&] { return width; }).Set([&](uint64_t value) { width = value; });
//   features.Complete();
//
// Rows have the names and tool tips of their features; see Feature for rows without a tool tip.
class FeatureTable {
  public:
    // The space must outlive the table. `port` is the name of its port in the description. The
    // addresses of all rows count from `addressBase`.
    FeatureTable(RegisterSpace& space, const std::string& port, Caching caching = Caching::On,
                 uint64_t addressBase = 0);
    FeatureTable(const FeatureTable&) = delete;
    FeatureTable& operator=(const FeatureTable&) = delete;

    // The features that follow are in this category, in their order. The category itself is in the
    // root, or where In says.
    Feature& Category(std::string name, std::string toolTip);

    Feature& Integer(std::string name, std::string toolTip = {}) {
        return Add("Integer", std::move(name), std::move(toolTip));
    }
    Feature& Float(std::string name, std::string toolTip = {}) {
        return Add("Float", std::move(name), std::move(toolTip));
    }
    Feature& Boolean(std::string name, std::string toolTip = {}) {
        return Add("Boolean", std::move(name), std::move(toolTip));
    }
    Feature& Enumeration(std::string name, std::string toolTip = {}) {
        return Add("Enumeration", std::move(name), std::move(toolTip));
    }
    Feature& Command(std::string name, std::string toolTip = {}) {
        return Add("Command", std::move(name), std::move(toolTip));
    }
    Feature& IntReg(std::string name, std::string toolTip = {}) {
        return Add("IntReg", std::move(name), std::move(toolTip));
    }
    Feature& FloatReg(std::string name, std::string toolTip = {}) {
        return Add("FloatReg", std::move(name), std::move(toolTip));
    }
    Feature& StringReg(std::string name, std::string toolTip = {}) {
        return Add("StringReg", std::move(name), std::move(toolTip));
    }
    Feature& Register(std::string name, std::string toolTip = {}) {
        return Add("Register", std::move(name), std::move(toolTip));
    }
    Feature& Converter(std::string name, std::string toolTip = {}) {
        return Add("Converter", std::move(name), std::move(toolTip));
    }
    Feature& SwissKnife(std::string name, std::string toolTip = {}) {
        return Add("SwissKnife", std::move(name), std::move(toolTip));
    }
    Feature& IntSwissKnife(std::string name, std::string toolTip = {}) {
        return Add("IntSwissKnife", std::move(name), std::move(toolTip));
    }
    Feature& Port(std::string name) { return Add("Port", std::move(name), {}); }

    // Bits of memory, which several rows may show. Memory declares the memory itself, and returns
    // where it is in the space.
    Feature& MaskedIntReg(std::string name, std::string toolTip = {}) {
        return Add("MaskedIntReg", std::move(name), std::move(toolTip));
    }
    uint64_t Memory(uint64_t address, size_t size);

    // The entries follow their register.
    Feature& StructReg(std::string comment) { return Add("StructReg", std::move(comment), {}); }
    Feature& StructEntry(std::string name, std::string toolTip) {
        return Add("StructEntry", std::move(name), std::move(toolTip));
    }

    // Puts the registers of all rows into the space and makes their nodes. Afterwards, rows can
    // neither be declared nor changed. Throws std::logic_error with the name of a feature whose
    // registers overlap with others, or whose category or selector is not in the table.
    void Complete();

    // The description, as XML, of a complete table. Thread-safe.
    std::string Describe(const DescriptionHeader& header) const;

  private:
    Feature& Add(std::string_view kind, std::string name, std::string toolTip);
    void AddRegisters();
    void AddLinks();
    void MakeNodes();

    RegisterSpace& space_;
    const Feature::Defaults defaults_;
    std::deque<Feature> rows_;  // which stay where they are; empty when the table is complete
    std::string category_;      // of the next feature
    std::vector<DescriptionNode> nodes_;  // of a complete table
};

}  // namespace ZelCti

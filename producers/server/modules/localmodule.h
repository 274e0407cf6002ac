// Modules that exist on this side only.
#pragma once

#include <memory>
#include <vector>

#include "producers/server/modules/module.h"
#include "producers/server/registers/featuretable.h"
#include "producers/server/registers/portregisters.h"

namespace ZelCti {

// What a local module says of itself in its description.
struct LocalDescription {
    const char* modelName;
    const char* toolTip;
    char number;  // in the GUIDs
    Description::Form form = Description::Form::Xml;
};

// A module with registers of its own. All but buffers describe them. Thread-safe.
class LocalModule : public Module {
  public:
    std::vector<PortUrl> Urls() override { return registers_.Urls(); }

  protected:
    // Without a description, the module has no features. The description must outlive the module.
    LocalModule(Kind kind, PortIdentity port, const LocalDescription* description = nullptr);

  private:
    // Declares the features. Called when the port is first used, and again if that failed.
    virtual void AddFeatures(FeatureTable& /*features*/) {}

    void Read(uint64_t address, void* buffer, size_t size) override {
        registers_.Read(address, buffer, size);
    }
    void Write(uint64_t address, const void* buffer, size_t size) override {
        registers_.Write(address, buffer, size);
    }
    std::unique_ptr<const Description> MakeRegisters(RegisterSpace& space);

    const LocalDescription* const description_;
    PortRegisters registers_;
};

}  // namespace ZelCti

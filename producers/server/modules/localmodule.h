// Modules that exist on this side only.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "producers/server/modules/module.h"
#include "producers/server/registers/description.h"
#include "producers/server/registers/featuretable.h"

namespace ZelCti {

// A module with registers of its own. All but buffers describe them. Thread-safe.
class LocalModule : public Module {
  public:
    std::vector<PortUrl> Urls() const override;

  protected:
    LocalModule(Kind kind, PortIdentity port);

    RegisterSpace& Registers() { return registers_; }

    // Called once, when the description is first needed; null for a module without one.
    virtual std::unique_ptr<const Description> MakeDescription() const { return nullptr; }

    // The description of features, as a file named after the model; the vendor is the producer's.
    static std::unique_ptr<const Description> MakeDescriptionOf(const FeatureTable& features,
                                                                DescriptionHeader header,
                                                                Description::Form form);

  private:
    void Read(uint64_t address, void* buffer, size_t size) const override;
    void Write(uint64_t address, const void* buffer, size_t size) override;
    const Description* GetDescription() const;
    const Description* DescriptionAt(uint64_t address, size_t size) const;  // null: registers

    mutable RegisterSpace registers_;
    mutable std::mutex descriptionMutex_;
    // Made when first needed, null for a module without one; guarded by descriptionMutex_.
    mutable std::optional<std::unique_ptr<const Description>> description_;
};

}  // namespace ZelCti

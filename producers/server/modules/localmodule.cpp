#include "producers/server/modules/localmodule.h"

#include "producers/server/base/error.h"
#include "producers/transport.h"

namespace ZelCti {

namespace {

constexpr const char* kFilePrefix = "ZelSim_";  // of the files that clients may have kept
constexpr uint64_t kLastAddress = 0xFFFFF;      // 1 MiB: ample for the features of a local module

}  // namespace

LocalModule::LocalModule(Kind kind, PortIdentity port)
    : Module(kind, std::move(port)), registers_(kLastAddress) {}

std::unique_ptr<const Description> LocalModule::MakeDescriptionOf(const FeatureTable& features,
                                                                  DescriptionHeader header,
                                                                  Description::Form form) {
    header.vendorName = GetProducerInfo().vendor;
    return std::make_unique<Description>(kFilePrefix + header.modelName, features.Describe(header),
                                         form);
}

const Description* LocalModule::GetDescription() const {
    const std::lock_guard lock(descriptionMutex_);
    if (!description_) description_ = MakeDescription();
    return description_->get();
}

const Description* LocalModule::DescriptionAt(uint64_t address, size_t size) const {
    if (address < Description::kAddress) return nullptr;
    const Description* const description = GetDescription();
    return description != nullptr && description->Contains(address, size) ? description : nullptr;
}

std::vector<PortUrl> LocalModule::Urls() const {
    const Description* const description = GetDescription();
    if (description == nullptr) return {};
    return {PortUrl(*description)};
}

void LocalModule::Read(uint64_t address, void* buffer, size_t size) const {
    if (const Description* const description = DescriptionAt(address, size)) {
        return description->Read(address, buffer, size);
    }
    registers_.Read(address, buffer, size);
}

void LocalModule::Write(uint64_t address, const void* buffer, size_t size) {
    if (DescriptionAt(address, size) != nullptr) {
        throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the description is read-only");
    }
    registers_.Write(address, buffer, size);
}

}  // namespace ZelCti

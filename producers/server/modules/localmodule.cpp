#include "producers/server/modules/localmodule.h"

#include <string>

#include "producers/transport.h"

namespace ZelCti {

namespace {

constexpr const char* kFilePrefix = "ZelSim_";  // of the files that clients may have kept
constexpr const char* kGuidPrefix = "6D1C4B70-52A8-4E0F-9C31-0A7E5B2F9D";
constexpr uint64_t kLastAddress = 0xFFFFF;  // 1 MiB: ample for the features of a local module

}  // namespace

LocalModule::LocalModule(Kind kind, PortIdentity port, const LocalDescription* description)
    : Module(kind, std::move(port)),
      description_(description),
      registers_(kLastAddress, ByteOrder::Little,
                 [this](RegisterSpace& space) { return MakeRegisters(space); }) {}

std::unique_ptr<const Description> LocalModule::MakeRegisters(RegisterSpace& space) {
    if (description_ == nullptr) return nullptr;
    FeatureTable features(space, Port().portName, Caching::Off);
    AddFeatures(features);
    features.Complete();
    DescriptionHeader header;
    header.modelName = description_->modelName;
    header.vendorName = GetProducerInfo().vendor;
    header.toolTip = description_->toolTip;
    const std::string guid = std::string(kGuidPrefix) + description_->number;
    header.productGuid = guid + '0';
    header.versionGuid = guid + 'F';
    return std::make_unique<Description>(kFilePrefix + header.modelName, features.Describe(header),
                                         description_->form);
}

}  // namespace ZelCti

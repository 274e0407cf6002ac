#include "producers/simulator/simulatedconnection.h"

#include "producers/server/base/error.h"
#include "producers/simulator/gevfeatures.h"
#include "producers/simulator/simulatedstream.h"

namespace ZelSim {

using ZelCti::Description;
using ZelCti::Error;
using ZelCti::PortUrl;

SimulatedConnection::SimulatedConnection(std::shared_ptr<SimulatedCamera> camera,
                                         GenTL::DEVICE_ACCESS_FLAGS access,
                                         ZelCti::CameraSink& sink)
    : camera_(std::move(camera)),
      subscription_(camera_->Hardware().Events().Subscribe(sink)),
      connected_(camera_->Hardware().Connect(access != GenTL::DEVICE_ACCESS_READONLY)) {}

bool SimulatedConnection::IsDescription(uint64_t address, size_t size) const {
    return address >= Description::kAddress && camera_->GetDescription().Contains(address, size);
}

void SimulatedConnection::Read(uint64_t address, void* buffer, size_t size) {
    if (IsDescription(address, size)) return camera_->GetDescription().Read(address, buffer, size);
    camera_->Hardware().Registers()->Read(address, buffer, size);
}

void SimulatedConnection::Write(uint64_t address, const void* buffer, size_t size) {
    if (IsDescription(address, size)) {
        throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the description is read-only");
    }
    camera_->Hardware().Registers()->Write(address, buffer, size);
}

std::vector<PortUrl> SimulatedConnection::DescriptionUrls() {
    const CameraConfig& config = camera_->Hardware().Config();
    std::vector<PortUrl> urls;
    if (!config.descriptionUrl.empty()) urls.emplace_back(config.descriptionUrl);
    if (!config.descriptionFile.empty()) urls.push_back(PortUrl::OfFile(config.descriptionFile));
    urls.emplace_back(camera_->GetDescription());
    return urls;
}

std::unique_ptr<ZelCti::StreamEngine> SimulatedConnection::OpenStream(
    uint32_t /*index*/, ZelCti::BufferQueue& buffers) {
    return std::make_unique<SimulatedStream>(camera_, buffers);
}

void SimulatedConnection::AddFeatures(ZelCti::FeatureTable& features) {
    if (camera_->Info().tlType == TLTypeGEVName) {
        AddGevDeviceFeatures(features, camera_->Hardware());
    }
}

void SimulatedConnection::Close() noexcept {
    subscription_.reset();
    connected_.reset();
}

}  // namespace ZelSim

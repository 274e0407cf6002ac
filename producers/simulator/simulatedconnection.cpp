#include "producers/simulator/simulatedconnection.h"

#include "producers/gigefeatures/gigefeatures.h"
#include "producers/simulator/simulatedstream.h"

namespace ZelSim {

using ZelCti::PortUrl;

SimulatedConnection::SimulatedConnection(std::shared_ptr<SimulatedCamera> camera,
                                         GenTL::DEVICE_ACCESS_FLAGS access,
                                         ZelCti::CameraSink& sink)
    : camera_(std::move(camera)),
      subscription_(camera_->Hardware().Events().Subscribe(sink)),
      connected_(camera_->Hardware().Connect(access != GenTL::DEVICE_ACCESS_READONLY)) {}

void SimulatedConnection::Read(uint64_t address, void* buffer, size_t size) {
    camera_->Registers().Read(address, buffer, size);
}

void SimulatedConnection::Write(uint64_t address, const void* buffer, size_t size) {
    camera_->Registers().Write(address, buffer, size);
}

std::vector<PortUrl> SimulatedConnection::DescriptionUrls() {
    const CameraConfig& config = camera_->Hardware().Config();
    std::vector<PortUrl> urls;
    if (!config.descriptionUrl.empty()) urls.emplace_back(config.descriptionUrl);
    if (!config.descriptionFile.empty()) urls.push_back(PortUrl::OfFile(config.descriptionFile));
    for (PortUrl& own : camera_->Registers().Urls())
        urls.push_back(std::move(own));
    return urls;
}

std::unique_ptr<ZelCti::StreamEngine> SimulatedConnection::OpenStream(
    uint32_t /*index*/, ZelCti::BufferQueue& buffers) {
    return std::make_unique<SimulatedStream>(camera_, buffers);
}

void SimulatedConnection::AddFeatures(ZelCti::FeatureTable& features) {
    if (camera_->Info().tlType == TLTypeGEVName) {
        ZelCti::AddGigeCameraFeatures(features, *camera_);
    }
}

void SimulatedConnection::Close() noexcept {
    subscription_.reset();
    connected_.reset();
}

}  // namespace ZelSim

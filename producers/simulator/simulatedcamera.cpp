#include "producers/simulator/simulatedcamera.h"

#include <limits>

#include "producers/simulator/features/cameradescription.h"
#include "producers/simulator/simulatedconnection.h"

namespace ZelSim {

using ZelCti::Description;
using ZelCti::FeatureTable;
using ZelCti::RegisterSpace;

namespace {

ZelCti::CameraInfo CameraInfoOf(const CameraConfig& config, const std::string& tlType) {
    ZelCti::CameraInfo info;
    info.id = config.id;
    info.vendor = config.vendor;
    info.model = config.model;
    info.serialNumber = config.serial;
    info.version = config.version;
    info.tlType = tlType;
    info.timestampFrequency = config.timestampFrequency;
    info.bigEndian = config.bigEndian;
    if (tlType == TLTypeU3VName) info.usbHost = config.usbHostInfo;
    return info;
}

}  // namespace

SimulatedCamera::SimulatedCamera(CameraConfig config, const std::string& tlType)
    : info_(CameraInfoOf(config, tlType)),
      hardware_(std::move(config), tlType),
      registers_(std::numeric_limits<uint64_t>::max(), hardware_.Order(),
                 [this](RegisterSpace& space) { return MakeRegisters(space); }) {}

std::unique_ptr<const Description> SimulatedCamera::MakeRegisters(RegisterSpace& space) {
    FeatureTable table(space, "Device");
    features_ = std::make_unique<CameraFeatures>(hardware_, space, table);
    table.Complete();
    return DescribeCamera(hardware_, table);
}

GenTL::DEVICE_ACCESS_STATUS SimulatedCamera::AccessStatus() const {
    return hardware_.IsPlugged() ? GenTL::DEVICE_ACCESS_STATUS_READWRITE
                                 : GenTL::DEVICE_ACCESS_STATUS_NOACCESS;
}

std::unique_ptr<ZelCti::Connection> SimulatedCamera::Open(GenTL::DEVICE_ACCESS_FLAGS access,
                                                          ZelCti::CameraSink& sink) {
    return std::make_unique<SimulatedConnection>(shared_from_this(), access, sink);
}

}  // namespace ZelSim

#include "producers/simulator/simulatedcamera.h"

#include <limits>

#include "producers/simulator/config/network.h"
#include "producers/simulator/features/cameradescription.h"
#include "producers/simulator/simulatedconnection.h"

namespace ZelSim {

using ZelCti::Description;
using ZelCti::FeatureTable;
using ZelCti::RegisterSpace;

namespace {

// The bootstrap registers of GigE Vision are below.
constexpr uint64_t kNetworkAddressBase = 0x10000;

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

SimulatedCamera::SimulatedCamera(const CameraConfig& config, const std::string& tlType,
                                 Surroundings surroundings)
    : SimulatedCamera(config, tlType, std::move(surroundings), PermanentMemory(config)) {}

SimulatedCamera::SimulatedCamera(CameraConfig config, const std::string& tlType,
                                 Surroundings surroundings, PermanentMemory memory)
    : info_(CameraInfoOf(config, tlType)),
      surroundings_(std::move(surroundings)),
      hardware_(std::move(config), tlType, std::move(memory)),
      registers_(std::numeric_limits<uint64_t>::max(), hardware_.Order(),
                 [this](RegisterSpace& space) { return MakeRegisters(space); }) {}

std::unique_ptr<const Description> SimulatedCamera::MakeRegisters(RegisterSpace& space) {
    if (surroundings_.addRegisters != nullptr) surroundings_.addRegisters(space);
    const uint64_t base = hardware_.Config().network ? kNetworkAddressBase : 0;
    FeatureTable table(space, "Device", ZelCti::Caching::On, base);
    features_ = std::make_unique<CameraFeatures>(
        hardware_, [this] { CyclePower(); }, space, table);
    table.Complete();
    return DescribeCamera(hardware_, table);
}

PermanentMemory SimulatedCamera::Memory() {
    const auto lock = registers_.Lock();
    return hardware_.CopyMemory();
}

void SimulatedCamera::CyclePower() {
    if (surroundings_.powerCycle != nullptr) return surroundings_.powerCycle(*this);
    hardware_.Unplug();
}

std::optional<ZelCti::CameraNetwork> SimulatedCamera::Network() const {
    if (info_.tlType != TLTypeGEVName) return {};
    const auto ip = hardware_.Ip();
    return ZelCti::CameraNetwork{MacAddressOf(info_.id), ip.address, ip.mask, ip.gateway};
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

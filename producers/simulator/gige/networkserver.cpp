#include "producers/simulator/gige/networkserver.h"

#include <algorithm>

#include "producers/server/base/error.h"

namespace ZelSim {

using ZelCti::Error;
using ZelCti::HostAddress;
using ZelCti::IpAddressText;
using ZelCti::IpSettings;

NetworkServer::NetworkServer(const WorldConfig& config, AddressPool pool,
                             NetworkDevice::Report report)
    : report_(std::move(report)), pool_(std::move(pool)) {
    for (const InterfaceConfig& interface : config.interfaces) {
        for (const CameraConfig& camera : interface.cameras)
            Add(camera);
    }
}

std::vector<std::string> NetworkServer::CameraIds() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> ids;
    for (const Served& served : served_)
        ids.push_back(served.config.id);
    return ids;
}

std::shared_ptr<NetworkDevice> NetworkServer::Device(std::string_view cameraId) const {
    const std::lock_guard lock(mutex_);
    const Served& served = Find(cameraId);
    if (served.device == nullptr) {
        throw Error(GenTL::GC_ERR_IO, served.config.id + " is unplugged");
    }
    return served.device;
}

std::string NetworkServer::Describe(std::string_view cameraId) const {
    const std::lock_guard lock(mutex_);
    const Served& served = Find(cameraId);
    return served.device == nullptr ? "unplugged" : served.device->Describe();
}

void NetworkServer::Set(std::string_view cameraId, std::string_view name, std::string_view value) {
    const std::shared_ptr<NetworkDevice> device = Device(cameraId);
    NetworkSettings settings = *device->Switches().Settings();
    NetworkSwitches::Set(settings, name, value);
    const std::lock_guard lock(mutex_);
    HostAddress place = PlaceOf(cameraId, settings.ip);
    device->Switches().Set(name, value);
    if (place.address == device->Place().address) return;
    device->MoveTo(place);
    Find(cameraId).place = std::move(place);
}

void NetworkServer::Unplug(std::string_view cameraId) {
    std::unique_lock lock(mutex_);
    std::shared_ptr<NetworkDevice> device = std::move(Find(cameraId).device);
    lock.unlock();
    if (device != nullptr) report_(device->Id() + ": unplugged");
}

void NetworkServer::Plug(std::string_view cameraId) {
    const std::lock_guard lock(mutex_);
    Served& served = Find(cameraId);
    if (served.device == nullptr) served.device = Start(served.config, served.place);
}

void NetworkServer::Add(const CameraConfig& config) {
    const IpSettings ip = config.network ? config.network->ip : IpSettings();
    if (ip.address != 0) {
        const HostAddress place = PlaceOf(config.id, ip);
        served_.push_back({config, place, Start(config, place)});
        return;
    }
    while (const std::optional<HostAddress> place = pool_.Take()) {
        try {
            served_.push_back({config, *place, Start(config, *place)});
            return;
        } catch (const Error& error) {
            // Another program may serve cameras as well.
            if (error.Code() != GenTL::GC_ERR_RESOURCE_IN_USE) throw;
        }
    }
    throw Error(GenTL::GC_ERR_INVALID_PARAMETER,
                "there is no address left for " + config.id +
                    ": each camera needs one of its own, where it may be served");
}

std::shared_ptr<NetworkDevice> NetworkServer::Start(const CameraConfig& config,
                                                    const HostAddress& place) {
    const auto find = [this](uint32_t address) { return pool_.Find(address); };
    return std::make_shared<NetworkDevice>(config, place, find, report_);
}

HostAddress NetworkServer::PlaceOf(std::string_view cameraId, const IpSettings& ip) const {
    const std::optional<HostAddress> place = pool_.Find(ip.address);
    if (!place) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER,
                    std::string(cameraId) + ": " + IpAddressText(ip.address) +
                        " is not among the addresses where cameras may be served");
    }
    return *place;
}

const NetworkServer::Served& NetworkServer::Find(std::string_view cameraId) const {
    const auto found = std::find_if(served_.begin(), served_.end(), [&](const Served& served) {
        return served.config.id == cameraId;
    });
    if (found == served_.end()) {
        throw Error(GenTL::GC_ERR_INVALID_ID, "there is no camera " + std::string(cameraId));
    }
    return *found;
}

NetworkServer::Served& NetworkServer::Find(std::string_view cameraId) {
    return const_cast<Served&>(std::as_const(*this).Find(cameraId));
}

}  // namespace ZelSim

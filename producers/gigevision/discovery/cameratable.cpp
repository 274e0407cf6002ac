#include "producers/gigevision/discovery/cameratable.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ZelGev {

namespace {

constexpr unsigned kMissesOfLost = 2;

// A network where anyone may answer as many cameras as he likes must not fill the memory.
constexpr size_t kMaxCameras = 4096;

}  // namespace

size_t CameraTable::BeginRound(unsigned adapter) {
    size_t numKnown = 0;
    for (auto& [id, sightings] : cameras_) {
        const auto entry = sightings.find(adapter);
        if (entry == sightings.end()) continue;
        entry->second.isAwaited = true;
        // A camera that is perhaps gone delays nobody.
        if (entry->second.numMisses == 0) ++numKnown;
    }
    return numKnown;
}

bool CameraTable::OnAnswer(const NetworkAdapter& adapter, FoundCamera camera, bool isLate,
                           uint32_t routedFrom) {
    if (cameras_.size() >= kMaxCameras && cameras_.count(camera.id) == 0) return false;
    const auto [place, isNew] = cameras_[camera.id].try_emplace(adapter.index);
    Entry& entry = place->second;
    if (isLate && !isNew) return false;
    const Subnet* const subnet = adapter.SubnetOf(camera.ip.address);
    uint32_t hostAddress = subnet != nullptr ? subnet->address : routedFrom;
    // A camera that answers a broadcast as well as its own address is still reached.
    const bool isSame = camera.ip.address == entry.sighting.camera.ip.address;
    if (hostAddress == 0 && isSame && entry.sighting.hostAddress != 0 && !entry.isAwaited) {
        hostAddress = entry.sighting.hostAddress;
    }
    entry.sighting = {std::move(camera), hostAddress};
    const bool wasExpected = entry.isAwaited && entry.numMisses == 0;
    entry.numMisses = 0;
    entry.isAwaited = false;
    return wasExpected;
}

void CameraTable::EndRound(unsigned adapter) {
    for (auto camera = cameras_.begin(); camera != cameras_.end();) {
        Sightings& sightings = camera->second;
        const auto found = sightings.find(adapter);
        if (found != sightings.end() && std::exchange(found->second.isAwaited, false) &&
            ++found->second.numMisses >= kMissesOfLost) {
            sightings.erase(found);
        }
        camera = sightings.empty() ? cameras_.erase(camera) : std::next(camera);
    }
}

void CameraTable::KeepAdapters(const std::vector<NetworkAdapter>& adapters) {
    const auto isThere = [&](unsigned index) {
        return std::any_of(adapters.begin(), adapters.end(),
                           [&](const NetworkAdapter& adapter) { return adapter.index == index; });
    };
    for (auto camera = cameras_.begin(); camera != cameras_.end();) {
        Sightings& sightings = camera->second;
        for (auto entry = sightings.begin(); entry != sightings.end();)
            entry = isThere(entry->first) ? std::next(entry) : sightings.erase(entry);
        camera = sightings.empty() ? cameras_.erase(camera) : std::next(camera);
    }
}

unsigned CameraTable::OwnerOf(const Sightings& sightings) {
    for (const auto& [adapter, entry] : sightings)
        if (entry.sighting.hostAddress != 0) return adapter;
    return sightings.begin()->first;
}

std::vector<Sighting> CameraTable::CamerasOf(unsigned adapter) const {
    std::vector<Sighting> cameras;
    for (const auto& [id, sightings] : cameras_) {
        if (OwnerOf(sightings) == adapter) cameras.push_back(sightings.at(adapter).sighting);
    }
    return cameras;
}

bool CameraTable::HasAddress(uint32_t address) const {
    for (const auto& [id, sightings] : cameras_)
        for (const auto& [adapter, entry] : sightings)
            if (entry.sighting.camera.ip.address == address) return true;
    return false;
}

}  // namespace ZelGev

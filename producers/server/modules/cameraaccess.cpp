#include "producers/server/modules/cameraaccess.h"

#include <algorithm>

#include "producers/server/base/error.h"

namespace ZelCti {

namespace {

template <typename Opens>
bool Includes(const Opens& opens, GenTL::DEVICE_ACCESS_FLAGS access) {
    return std::any_of(opens.begin(), opens.end(),
                       [&](const auto& opened) { return opened.access == access; });
}

// Whether those who have a camera open keep another from opening it.
template <typename Opens>
bool Exclude(const Opens& opens, GenTL::DEVICE_ACCESS_FLAGS access) {
    if (opens.empty()) return false;
    return access == GenTL::DEVICE_ACCESS_EXCLUSIVE ||
           Includes(opens, GenTL::DEVICE_ACCESS_EXCLUSIVE) ||
           (access == GenTL::DEVICE_ACCESS_CONTROL &&
            Includes(opens, GenTL::DEVICE_ACCESS_CONTROL));
}

}  // namespace

Claim CameraAccess::Take(const Camera& camera, GenTL::DEVICE_ACCESS_FLAGS access, Handle client) {
    if (access < GenTL::DEVICE_ACCESS_READONLY || access > GenTL::DEVICE_ACCESS_EXCLUSIVE) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "no access to open a device with");
    }
    const uint64_t number = nextNumber_++;
    const auto take = [&] {
        const std::lock_guard lock(mutex_);
        const auto found = opens_.find(&camera);
        if (found == opens_.end()) {
            opens_.emplace(&camera, Opens{{number, access, client}});
            return;
        }
        if (Exclude(found->second, access)) {
            throw Error(GenTL::GC_ERR_RESOURCE_IN_USE, camera.Id() + " is open already");
        }
        found->second.push_back({number, access, client});
    };
    return MakeClaim(take, [this, &camera, number] { Release(camera, number); });
}

void CameraAccess::Release(const Camera& camera, uint64_t number) {
    const std::lock_guard lock(mutex_);
    const auto found = opens_.find(&camera);
    if (found == opens_.end()) return;
    Opens& opens = found->second;
    opens.erase(std::remove_if(opens.begin(), opens.end(),
                               [&](const Opened& opened) { return opened.number == number; }),
                opens.end());
    if (opens.empty()) opens_.erase(found);
}

void CameraAccess::Forget(const Camera& camera) {
    const std::lock_guard lock(mutex_);
    opens_.erase(&camera);
}

GenTL::DEVICE_ACCESS_STATUS CameraAccess::StatusFor(const Camera& camera, Handle client) const {
    const GenTL::DEVICE_ACCESS_STATUS others = camera.AccessStatus();
    if (others == GenTL::DEVICE_ACCESS_STATUS_NOACCESS) return others;
    const std::lock_guard lock(mutex_);
    const auto found = opens_.find(&camera);
    if (found == opens_.end()) return others;
    bool reads = false;
    for (const Opened& opened : found->second) {
        if (opened.client != client) continue;
        if (opened.access != GenTL::DEVICE_ACCESS_READONLY) {
            return GenTL::DEVICE_ACCESS_STATUS_OPEN_READWRITE;
        }
        reads = true;
    }
    if (reads) return GenTL::DEVICE_ACCESS_STATUS_OPEN_READONLY;
    if (Includes(found->second, GenTL::DEVICE_ACCESS_EXCLUSIVE)) {
        return GenTL::DEVICE_ACCESS_STATUS_BUSY;
    }
    if (Includes(found->second, GenTL::DEVICE_ACCESS_CONTROL)) {
        return GenTL::DEVICE_ACCESS_STATUS_READONLY;
    }
    return others;
}

}  // namespace ZelCti

// Who has which camera open.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <vector>

#include "gentl/GenTL.h"
#include "producers/server/base/claim.h"
#include "producers/server/base/object.h"
#include "producers/transport.h"

namespace ZelCti {

// Decides which clients (system modules) of this process may open a camera. Other processes are the
// transport's business. Thread-safe.
class CameraAccess {
  public:
    // The right to use the camera in this way. Throws GC_ERR_RESOURCE_IN_USE when another open
    // excludes it, GC_ERR_INVALID_PARAMETER for an unknown access. The object outlives the claim,
    // and the claim does not outlive the camera.
    Claim Take(const Camera& camera, GenTL::DEVICE_ACCESS_FLAGS access, Handle client);

    // As DEVICE_INFO_ACCESS_STATUS reports it to this client.
    GenTL::DEVICE_ACCESS_STATUS StatusFor(const Camera& camera, Handle client) const;

    // The camera is lost: nobody has it open any more.
    void Forget(const Camera& camera);

  private:
    struct Opened {
        uint64_t number;
        GenTL::DEVICE_ACCESS_FLAGS access;
        Handle client;
    };
    using Opens = std::vector<Opened>;

    void Release(const Camera& camera, uint64_t number);

    mutable std::mutex mutex_;
    std::map<const Camera*, Opens> opens_;  // guarded by mutex_; none of them empty
    std::atomic<uint64_t> nextNumber_{0};
};

}  // namespace ZelCti

// Exclusive use of things.
#ifndef ZELSIM_CLAIM_H
#define ZELSIM_CLAIM_H

#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace ZelSim {

// The right to use something; given back when the last copy goes.
using Claim = std::shared_ptr<void>;

// Identifiers that can be in use once: the interfaces of a system, the streams of a device.
// Thread-safe.
class ClaimedIds {
  public:
    // Throws GC_ERR_RESOURCE_IN_USE.
    Claim Take(const std::string& id);

  private:
    struct State {
        std::mutex mutex;
        std::set<std::string> used;  // guarded by mutex
    };
    std::shared_ptr<State> state_ = std::make_shared<State>();  // claims may outlive this object
};

}  // namespace ZelSim

#endif  // ZELSIM_CLAIM_H

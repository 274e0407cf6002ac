// Exclusive use of things.
#pragma once

#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>

namespace ZelCti {

// The right to use something; given back when the last copy goes.
using Claim = std::shared_ptr<void>;

// What a claim holds: calls `release` at its end, once it is `taken`.
template <typename Release>
class Claimed {
  public:
    explicit Claimed(Release release) : release_(std::move(release)) {}
    ~Claimed() {
        if (taken) release_();
    }
    Claimed(const Claimed&) = delete;
    Claimed& operator=(const Claimed&) = delete;

    bool taken = false;

  private:
    Release release_;
};

// Calls `take`, and `release` when the last copy goes. The claim itself is made before: where
// `take` fails, or there is no memory, nothing is taken and nothing released.
template <typename Take, typename Release>
Claim MakeClaim(const Take& take, Release release) {
    const auto claimed = std::make_shared<Claimed<Release>>(std::move(release));
    take();
    claimed->taken = true;
    return claimed;
}

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

}  // namespace ZelCti

#include "producers/server/base/claim.h"

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"

namespace ZelCti {

Claim ClaimedIds::Take(const std::string& id) {
    const auto take = [&] {
        const std::lock_guard lock(state_->mutex);
        if (!state_->used.insert(id).second) {
            throw Error(GenTL::GC_ERR_RESOURCE_IN_USE, id + " is open already");
        }
    };
    return MakeClaim(take, [state = state_, id] {
        const std::lock_guard lock(state->mutex);
        state->used.erase(id);
    });
}

}  // namespace ZelCti

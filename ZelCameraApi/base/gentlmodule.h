// A handle of a producer's module together with the producer.
#pragma once

#include <memory>

#include "ZelCameraApi/base/gentllib.h"

namespace ZelCameraApi::Internal {

// A value: copies refer to the same module and keep the producer loaded. The object that opened the
// handle closes it.
template <typename Handle>
struct GenTLModule {
    Handle handle{};
    std::shared_ptr<GenTLLib> lib;
};

}  // namespace ZelCameraApi::Internal

// A handle of a producer's module together with the producer.
#ifndef ZELCAMERAAPI_GENTLMODULE_H
#define ZELCAMERAAPI_GENTLMODULE_H

#include <memory>

#include "ZelCameraApi/gentllib.h"

namespace ZelCameraApi::Internal {

// A value: copies refer to the same module and keep the producer loaded. Closing the handle is the
// business of the object that opened it.
template <typename Handle>
struct GenTLModule {
    Handle handle{};
    std::shared_ptr<GenTLLib> lib;
};

}  // namespace ZelCameraApi::Internal

#endif  // ZELCAMERAAPI_GENTLMODULE_H

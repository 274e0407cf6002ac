// Options as this version of the library knows them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "ZelImage/ZelImage.h"
#include "imaging/error.h"

namespace ZelImage::Internal {

// The caller's options; members that an older program does not know have their defaults.
template <typename Options>
Options WithDefaults(const Options* given) {
    Options options;
    if (given == nullptr) return options;
    if (given->structSize < sizeof given->structSize) throw Error("the options have no structSize");
    std::memcpy(&options, given, std::min<size_t>(given->structSize, sizeof options));
    return options;
}

// Throws Error for values that are not defined.
inline ConvertOptions KnownOptions(const ConvertOptions* given) {
    const auto options = WithDefaults(given);
    if (options.demosaic > Demosaic::EdgeAware || options.matrix > YuvMatrix::Bt2020 ||
        options.range > YuvRange::Limited)
        throw Error("the options have a value that is not known");
    return options;
}

}  // namespace ZelImage::Internal

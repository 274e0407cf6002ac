// The access that persistence needs to a feature.
#pragma once

#include <GenApi/INode.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Whether a value can be read now and written back later.
inline bool IsReadableAndWritable(const IBase& node) {
    const EAccessMode mode = node.GetAccessMode();
    return IsReadable(mode) && IsWritable(mode);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

// What the public headers name of GenApi.
#ifndef ZELGENPARAM_GENAPI_H
#define ZELGENPARAM_GENAPI_H

// The node maps are those of GenApi 3.0, whose namespaces carry the version. A library that was
// built with a later implementation needs ZELCAM_GENAPI_NAMESPACE defined as its namespace,
// GenApi_3_4 for instance, in the programs that use it.
#ifdef ZELCAM_GENAPI_NAMESPACE
namespace ZELCAM_GENAPI_NAMESPACE {
struct INode;
struct INodeMap;
}  // namespace ZELCAM_GENAPI_NAMESPACE

namespace ZelGenParam {
namespace GenApi = ::ZELCAM_GENAPI_NAMESPACE;
}
#else
namespace GenApi_3_0 {
struct INode;
struct INodeMap;
}  // namespace GenApi_3_0

namespace ZelGenParam {
namespace GenApi = ::GenApi_3_0;
}
#endif

#endif  // ZELGENPARAM_GENAPI_H

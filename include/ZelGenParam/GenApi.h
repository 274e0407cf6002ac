// The names of GenApi that the public headers use.
#ifndef ZELGENPARAM_GENAPI_H
#define ZELGENPARAM_GENAPI_H

// Node maps come from GenApi 3.0, whose namespaces include the version. If the library was built
// with a later implementation, define ZELCAM_GENAPI_NAMESPACE as its namespace, such as GenApi_3_4,
// in the programs that use the library.
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

// Forward declarations of the public types.
#ifndef GENICAM_FWD_H
#define GENICAM_FWD_H

#include <Base/GCNamespace.h>
#include <GenApi/GenApiNamespace.h>

#ifndef GENICAM_INTERFACE
#define GENICAM_INTERFACE struct
#endif

namespace GENICAM_NAMESPACE {
class gcstring;
class gcstring_vector;
class CLock;
}  // namespace GENICAM_NAMESPACE

namespace GENAPI_NAMESPACE {
struct IBase;
struct IBoolean;
struct ICategory;
struct IChunkPort;
struct ICommand;
struct IDestroy;
struct IDeviceInfo;
struct IEnumEntry;
struct IEnumReference;
struct IEnumeration;
struct IFloat;
struct IInteger;
struct INode;
struct INodeMap;
struct INodeMapDyn;
struct IPort;
struct IPortConstruct;
struct IPortRecorder;
struct IPortReplay;
struct IPortStacked;
struct IPortStackedConstruct;
struct IPortWriteList;
struct IReference;
struct IRegister;
struct ISelector;
struct ISelectorDigit;
struct IString;
struct IUserData;
struct IValue;
class CLock;
}  // namespace GENAPI_NAMESPACE

#endif  // GENICAM_FWD_H

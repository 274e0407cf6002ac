// The free functions of the interface.
#include <GenApi/IDestroy.h>
#include <GenApi/NodeCallback.h>
#include <GenApi/NodeMapRef.h>
#include <GenApi/Pointer.h>

namespace GENAPI_NAMESPACE {

GENICAM_NAMESPACE::gcstring GetInterfaceName(IBase* pBase) {
    static const char* const kNames[] = {"IValue",    "IBase",        "IInteger",   "IBoolean",
                                         "ICommand",  "IFloat",       "IString",    "IRegister",
                                         "ICategory", "IEnumeration", "IEnumEntry", "IPort"};
    const INode* node = dynamic_cast<INode*>(pBase);
    return kNames[node != nullptr ? node->GetPrincipalInterfaceType() : intfIBase];
}

void Deregister(CallbackHandleType pCallbackInfo) {
    if (pCallbackInfo == 0) return;
    // The handle is the address of the callback, which knows its node.
    reinterpret_cast<CNodeCallback*>(pCallbackInfo)->GetNode()->DeregisterCallback(pCallbackInfo);
}

IDestroy* CastToIDestroy(INodeMap* pNodeMap) {
    return dynamic_cast<IDestroy*>(pNodeMap);
}

}  // namespace GENAPI_NAMESPACE

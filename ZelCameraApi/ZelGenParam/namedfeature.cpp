#include "ZelCameraApi/ZelGenParam/namedfeature.h"

namespace ZelCameraApi::Internal {

namespace {

template <typename Interface>
NodeValue As(GenApi::INode* node) {
    auto* const value = dynamic_cast<Interface*>(node);
    return value != nullptr ? NodeValue(value) : NodeValue();
}

}  // namespace

NodeValue ValueOf(GenApi::INode* node) {
    switch (node->GetPrincipalInterfaceType()) {
        case GenApi::intfIBoolean:
            return As<GenApi::IBoolean>(node);
        case GenApi::intfICommand:
            return As<GenApi::ICommand>(node);
        case GenApi::intfIEnumeration:
            return As<GenApi::IEnumeration>(node);
        case GenApi::intfIFloat:
            return As<GenApi::IFloat>(node);
        case GenApi::intfIInteger:
            return As<GenApi::IInteger>(node);
        case GenApi::intfIString:
            return As<GenApi::IString>(node);
        default:
            return {};
    }
}

}  // namespace ZelCameraApi::Internal

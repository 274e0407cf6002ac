#include "genapi/description/interfaces.h"

#include <Base/GCException.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// No default: the compiler warns of a kind that is missing.
EInterfaceType InterfaceOf(NodeKind kind) {
    switch (kind) {
        case NodeKind::Node:
            return intfIValue;
        case NodeKind::Category:
            return intfICategory;
        case NodeKind::Boolean:
            return intfIBoolean;
        case NodeKind::Command:
            return intfICommand;
        case NodeKind::Integer:
        case NodeKind::IntReg:
        case NodeKind::MaskedIntReg:
        case NodeKind::StructEntry:
        case NodeKind::IntSwissKnife:
        case NodeKind::IntConverter:
        case NodeKind::IntKey:
        case NodeKind::AdvFeatureLock:
        case NodeKind::SmartFeature:
            return intfIInteger;
        case NodeKind::Float:
        case NodeKind::FloatReg:
        case NodeKind::SwissKnife:
        case NodeKind::Converter:
            return intfIFloat;
        case NodeKind::Enumeration:
            return intfIEnumeration;
        case NodeKind::EnumEntry:
            return intfIEnumEntry;
        case NodeKind::String:
        case NodeKind::StringReg:
        case NodeKind::TextDesc:
            return intfIString;
        case NodeKind::Register:
        case NodeKind::ConfRom:
            return intfIRegister;
        case NodeKind::Port:
            return intfIPort;
    }
    throw LOGICAL_ERROR_EXCEPTION("Node is of no known kind");
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

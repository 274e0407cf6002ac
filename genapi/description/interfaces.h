// The principal interface of each kind of node, which also decides what references may point to it.
#pragma once

#include <GenApi/Types.h>

#include "genapi/description/elements.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

EInterfaceType InterfaceOf(NodeKind kind);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

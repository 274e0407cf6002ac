// The interface that the nodes of each kind have, and references to them go by.
#pragma once

#include <GenApi/Types.h>

#include "genapi/description/elements.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

EInterfaceType InterfaceOf(NodeKind kind);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

// Asks every node of a map everything that can be asked without changing it.
#pragma once

#include <GenApi/INodeMap.h>

// Bounded in time whatever the map: stops after a number of nodes. Exceptions of the engine are
// answers; anything else is a fault.
void walk(GENAPI_NAMESPACE::INodeMap& map);

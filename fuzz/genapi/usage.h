// What a program does with a camera.
#pragma once

#include <GenApi/INodeMap.h>

#include "fuzz/choices.h"

namespace Fuzz {

// Connects a hostile port everywhere, reads all nodes twice, and then does what the choices say:
// reads, writes, executes, invalidates, polls, saves and loads, with callbacks that do the same.
// Exceptions of the engine's own are the answer to what cannot be done.
void Use(GENAPI_NAMESPACE::INodeMap& map, Choices& choices);

}  // namespace Fuzz

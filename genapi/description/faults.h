// What reading a description may fail of. The reader adds the place.
#pragma once

#include <string>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Something is wrong with a tag or a text. It is reported for the place behind that or before it,
// or else behind the start tag of the root.
enum class FaultPlace { Behind, Before, BehindRoot };

struct Fault {
    const char* reason;
    FaultPlace place = FaultPlace::Behind;
};

// Something is wrong with a node; the text says what.
struct NodeFault {
    std::string text;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

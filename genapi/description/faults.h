// Faults found while a description is read. The reader adds the place.
#pragma once

#include <string>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// A wrong tag or text. Messages give the place after the tag or text, before it, or after the start
// tag of the root.
enum class FaultPlace { Behind, Before, BehindRoot };

struct Fault {
    const char* reason;
    FaultPlace place = FaultPlace::Behind;
};

// A fault of a node; the text describes it.
struct NodeFault {
    std::string text;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

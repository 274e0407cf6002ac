// What an operation on a camera throws, as a text.
#pragma once

#include <exception>

#include <Base/GCException.h>
#include <Base/GCString.h>
#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Ports belong to the consumer, which may throw anything. Empty if nothing was thrown.
template <typename Operation>
GENICAM_NAMESPACE::gcstring ProblemOf(Operation operation) {
    try {
        operation();
        return {};
    } catch (const GENICAM_NAMESPACE::GenericException& error) {
        return error.what();
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "unknown exception";
    }
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

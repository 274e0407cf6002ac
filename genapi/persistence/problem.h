// Turns an exception of an operation on a camera into a text.
#pragma once

#include <exception>

#include <Base/GCException.h>
#include <Base/GCString.h>
#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Catches everything, because ports belong to the consumer, which may throw any type. Empty if the
// operation did not throw.
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

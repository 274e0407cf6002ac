// Exceptions thrown inside a node map. They name the node, and the operation that the application
// called.
#pragma once

#include <cstdarg>
#include <cstdio>
#include <string>

#include <Base/GCException.h>
#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

class Node;

// An operation exceeded a bound on its depth or its work. Applications see a RuntimeException.
class LimitExceeded : public GENICAM_NAMESPACE::RuntimeException {
  public:
    using RuntimeException::RuntimeException;
};

// An operation that the application called; node is null for an operation of the map.
struct Call {
    const Node* node = nullptr;
    const char* operation = "";
};

// For the texts of exceptions: the name of a node; "Node.Operation()" for a call, or for the call
// in progress.
std::string ErrorNodeOf(const Node& node);
std::string EntryPointOf(const Call& call);
std::string EntryPointOf(const Node& node);

// Makes one exception: NodeError<E>(node, file, line, type)(format, ...).
template <typename E>
class NodeError {
  public:
    NodeError(const Node& node, const char* file, int line, const char* type)
        : node_(node), file_(file), line_(line), type_(type) {}

    E operator()(const char* format, ...) const __attribute__((format(printf, 2, 3))) {
        char text[1024];
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text, sizeof text, format, arguments);
        va_end(arguments);
        return E(text, file_, line_, EntryPointOf(node_).c_str(), ErrorNodeOf(node_).c_str(),
                 type_);
    }

  private:
    const Node& node_;
    const char* file_;
    int line_;
    const char* type_;
};

// throw LIMIT_ERROR(*this)("Nodes depend on one another too deeply");
#define LIMIT_ERROR(node)                                                             \
    ::GENAPI_NAMESPACE::Engine::NodeError<::GENAPI_NAMESPACE::Engine::LimitExceeded>( \
        node, __FILE__, __LINE__, "RuntimeException")

// throw NODE_ERROR(AccessException, *this)("Node is not readable.");
#define NODE_ERROR(Type, node) \
    ::GENAPI_NAMESPACE::Engine::NodeError<GENICAM_NAMESPACE::Type>(node, __FILE__, __LINE__, #Type)

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

// Operations on the ports of event and chunk adapters.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Turns the ports into a list of plain pointers that the caller owns.
template <typename Port>
std::vector<Port*> ReleasePorts(std::vector<std::unique_ptr<Port>>& made) {
    std::vector<Port*> ports;
    ports.reserve(made.size());
    for (auto& port : made) {
        ports.push_back(port.release());
    }
    return ports;
}

// Disconnects and deletes the ports. Callbacks find the list empty.
template <typename Port>
void DeletePorts(std::vector<Port*>& list) {
    std::vector<Port*> ports;
    ports.swap(list);
    for (Port* port : ports) {
        delete port;
    }
}

// Connects the ports by index, because callbacks may delete them. After an exception the list is
// empty.
template <typename Port>
void ConnectPorts(std::vector<Port*>& ports) {
    try {
        for (size_t i = 0; i < ports.size(); ++i) {
            ports[i]->Connect();
        }
    } catch (...) {
        DeletePorts(ports);
        throw;
    }
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

// Operations on the ports of event and chunk adapters.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

#include <GenApi/INode.h>
#include <GenApi/INodeMap.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Makes a port for each node that the predicate accepts; the caller owns the ports.
template <typename Port, typename Predicate>
std::vector<Port*> MakePorts(const INodeMap& nodeMap, Predicate predicate) {
    NodeList_t nodes;
    nodeMap.GetNodes(nodes);
    std::vector<std::unique_ptr<Port>> made;
    for (INode* node : nodes) {
        if (predicate(node)) made.push_back(std::make_unique<Port>(node));
    }
    std::vector<Port*> ports(made.size());
    std::transform(made.begin(), made.end(), ports.begin(),
                   [](auto& port) { return port.release(); });
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

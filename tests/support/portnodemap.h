// The node map of a module, as a consumer makes it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include <GenApi/GenApi.h>
#include <GenApi/PortImpl.h>

#include "tests/support/gentlclient.h"

namespace ZelTest {

// Takes the description that the module's port announces first and connects the nodes to the port.
// Refused accesses throw std::runtime_error with the code.
class PortNodeMap final : public GENAPI_NAMESPACE::CPortImpl {
  public:
    PortNodeMap(const GenTLFunctions& functions, GenTL::PORT_HANDLE port);

    GENAPI_NAMESPACE::INodeMap& Map() { return *map_._Ptr; }
    GENAPI_NAMESPACE::INode* Node(const char* name) { return map_._GetNode(name); }
    void Set(const char* name, const std::string& value);
    std::string Get(const char* name);
    int64_t Integer(const char* name);
    void SetInteger(const char* name, int64_t value);
    bool IsReadable(const char* name);  // false also when there is no such node
    void Execute(const char* name);
    // Waits for the end of the command.
    void Finish(const char* name);

    GENAPI_NAMESPACE::EAccessMode GetAccessMode() const override { return GENAPI_NAMESPACE::RW; }
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

  private:
    uint64_t UrlNumber(int32_t command);

    const GenTLFunctions& gentl_;
    const GenTL::PORT_HANDLE port_;
    GENAPI_NAMESPACE::CNodeMapRef map_;
};

}  // namespace ZelTest

// The register of a node: its place, and its bytes, read through the map's cache.
#pragma once

#include <cstdint>
#include <vector>

#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class PortNode;

// The longest register that holds a number.
constexpr size_t kMaxNumberLength = 8;

class RegisterCore {
  public:
    RegisterCore(Node& owner, const RegisterData& data) : owner_(owner), data_(data) {}

    const RegisterData& Data() const { return data_; }

    // The sum of all address parts, and the length. OutOfRangeException for a length that numbers
    // do not have.
    int64_t Address();
    int64_t Length();
    // The address, with a negative one resolved if the port can be read.
    int64_t ResolvedAddress();
    // RuntimeException for a length that no register has.
    size_t ByteCount();

    // Checks the ranges of the nodes that provide the address.
    void VerifyAddress();

    // The first bytes of the register, from the cache if allowed and possible.
    void Read(uint8_t* bytes, size_t count, ReadOptions options);
    std::vector<uint8_t> Read(ReadOptions options);
    // Writes the first bytes to the device and updates the cache.
    void Write(const uint8_t* bytes, size_t count);

    // Call it when a change elsewhere affects the register.
    void DropCaches();
    EAccessMode AccessMode() const;

  private:
    void Locate();
    int64_t FromEnd(int64_t address);
    bool MayKeepAddress() const;
    // The port, or null if pPort names a node of another kind.
    PortNode* Port() const;
    // AccessException if there is no port.
    PortNode& PortFor(const char* operation) const;
    int64_t Step(const AddressPart& part);

    Node& owner_;
    const RegisterData& data_;
    int64_t address_ = 0;
    int64_t length_ = 0;
    RegisterCache::Slot slot_ = RegisterCache::kNoSlot;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

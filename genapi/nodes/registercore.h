// The register part of a node: where it lies, and its bytes, read through the map's cache.
#pragma once

#include <cstdint>
#include <vector>

#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class PortNode;

// The longest register that holds a number.
constexpr std::size_t kMaxNumberLength = 8;

class RegisterCore {
  public:
    RegisterCore(Node& owner, const RegisterData& data) : owner_(owner), data_(data) {}

    const RegisterData& data() const { return data_; }

    // The sum of all address parts, and the length. OutOfRangeException for a number of a length
    // that numbers do not have.
    std::int64_t address();
    std::int64_t length();
    // The same, where a negative address is found as long as the port can be read.
    std::int64_t resolvedAddress();
    // RuntimeException for a length that no register has.
    std::size_t byteCount();

    // Checks the ranges of the nodes that the address comes from.
    void verifyAddress();

    // The first bytes of the register, from the cache where that is allowed and possible.
    void read(std::uint8_t* bytes, std::size_t count, ReadOptions options);
    std::vector<std::uint8_t> read(ReadOptions options);
    // Writes the first bytes to the device and brings the cache up to date.
    void write(const std::uint8_t* bytes, std::size_t count);

    // The register was touched by a change elsewhere.
    void dropCaches();
    EAccessMode accessMode() const;

  private:
    void locate();
    std::int64_t fromEnd(std::int64_t address);
    bool mayKeepAddress() const;
    // The port, or null where pPort names another kind of node.
    PortNode* port() const;
    // AccessException where there is no port.
    PortNode& portFor(const char* operation) const;
    std::int64_t step(const AddressPart& part);

    Node& owner_;
    const RegisterData& data_;
    std::int64_t address_ = 0;
    std::int64_t length_ = 0;
    RegisterCache::Slot slot_ = RegisterCache::kNoSlot;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

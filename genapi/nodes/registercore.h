// The register part of a node: where it lies, and its bytes, read through the map's cache.
#pragma once

#include <cstdint>
#include <vector>

#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class PortNode;

class RegisterCore {
  public:
    RegisterCore(Node& owner, const RegisterData& data) : owner_(owner), data_(data) {}

    const RegisterData& data() const { return data_; }

    // The sum of all address parts, and the length.
    std::int64_t address();
    std::int64_t length();
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
    EAccessMode accessMode();

  private:
    void locate();
    std::int64_t fromEnd(std::int64_t address);
    bool mayKeepAddress() const;
    PortNode* port();
    std::int64_t step(const AddressPart& part);

    Node& owner_;
    const RegisterData& data_;
    std::int64_t address_ = 0;
    std::int64_t length_ = 0;
    RegisterCache::Slot slot_ = RegisterCache::kNoSlot;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

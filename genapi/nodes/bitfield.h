// Integers in register bytes: byte order, masks and signs.
#pragma once

#include <cstdint>

#include "genapi/description/nodedata.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Where an integer lies in the value of a register of up to eight bytes.
class BitField {
  public:
    // length in bytes, 1 to 8
    BitField(const RegisterData& data, std::size_t length);

    std::int64_t min() const;
    std::int64_t max() const;
    // The bytes of the whole register as a number, and back.
    std::uint64_t load(const std::uint8_t* bytes) const;
    void store(std::uint64_t content, std::uint8_t* bytes) const;
    // The field in the register's number, and the number with another field in it. A value that is
    // too large is cut.
    std::int64_t extract(std::uint64_t content) const;
    std::uint64_t insert(std::int64_t value, std::uint64_t content) const;
    // Whether the field is the whole register, so that its old content does not matter.
    bool isWhole() const { return width_ == 8 * length_; }

  private:
    std::uint64_t mask() const { return ~std::uint64_t{0} >> (64 - width_); }

    std::size_t length_;
    unsigned shift_;  // of the least significant bit
    unsigned width_;  // in bits, 1 to 64
    bool bigEndian_;
    bool signed_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

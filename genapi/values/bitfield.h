// Integers in register bytes: byte order, masks and signs.
#pragma once

#include <cstdint>

#include "genapi/description/nodedata.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Where an integer lies in the value of a register of up to eight bytes.
class BitField {
  public:
    // The length is in bytes, 1 to 8.
    BitField(const RegisterData& data, size_t length);

    int64_t Min() const;
    int64_t Max() const;
    // Convert between the bytes of the whole register and its number.
    uint64_t Load(const uint8_t* bytes) const;
    void Store(uint64_t content, uint8_t* bytes) const;
    // Take the field out of the register's number, or return that number with a new field. A value
    // that is too large is cut.
    int64_t Extract(uint64_t content) const;
    uint64_t Insert(int64_t value, uint64_t content) const;
    // Whether the field fills the register, so that a write need not read the old content.
    bool IsWhole() const { return width_ == 8 * length_; }

  private:
    uint64_t Mask() const { return ~uint64_t{0} >> (64 - width_); }

    size_t length_;
    unsigned shift_;  // of the least significant bit
    unsigned width_;  // in bits, 1 to 64
    bool bigEndian_;
    bool signed_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

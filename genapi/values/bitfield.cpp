#include "genapi/values/bitfield.h"

#include <algorithm>

#include <Base/GCException.h>

#include "genapi/values/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

BitField::BitField(const RegisterData& data, size_t length)
    : length_(length),
      shift_(0),
      width_(static_cast<unsigned>(8 * length)),
      bigEndian_(data.bigEndian),
      signed_(data.isSigned) {
    if (!data.masked) return;
    // If the description gives the length as a number, the loader has checked the bits against it.
    if (std::max(data.lsb, data.msb) >= width_)
        throw OUT_OF_RANGE_EXCEPTION("Bits %u and %u are outside of a register of %u bits",
                                     unsigned{data.lsb}, unsigned{data.msb}, width_);
    // Bit 0 of a big-endian register is its most significant one.
    const unsigned highest = static_cast<unsigned>(8 * length - 1);
    const unsigned low = bigEndian_ ? highest - data.lsb : data.lsb;
    const unsigned high = bigEndian_ ? highest - data.msb : data.msb;
    shift_ = low;
    width_ = high - low + 1;
}

int64_t BitField::Min() const {
    if (!signed_) return 0;
    return width_ == 64 ? kInt64Min : -(int64_t{1} << (width_ - 1));
}

int64_t BitField::Max() const {
    const uint64_t highest = signed_ ? Mask() >> 1 : Mask();
    return highest > static_cast<uint64_t>(kInt64Max) ? kInt64Max : static_cast<int64_t>(highest);
}

uint64_t BitField::Load(const uint8_t* bytes) const {
    uint64_t content = 0;
    for (size_t i = 0; i < length_; ++i)
        content = content << 8 | bytes[bigEndian_ ? i : length_ - 1 - i];
    return content;
}

void BitField::Store(uint64_t content, uint8_t* bytes) const {
    for (size_t i = 0; i < length_; ++i) {
        bytes[bigEndian_ ? length_ - 1 - i : i] = static_cast<uint8_t>(content);
        content >>= 8;
    }
}

int64_t BitField::Extract(uint64_t content) const {
    uint64_t field = content >> shift_ & Mask();
    if (signed_ && (field >> (width_ - 1) & 1)) field |= ~Mask();
    return static_cast<int64_t>(field);
}

uint64_t BitField::Insert(int64_t value, uint64_t content) const {
    const uint64_t placed = Mask() << shift_;
    return (content & ~placed) | (static_cast<uint64_t>(value) << shift_ & placed);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

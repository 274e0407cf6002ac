#include "genapi/nodes/bitfield.h"

#include <algorithm>

#include <Base/GCException.h>

#include "genapi/nodes/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

BitField::BitField(const RegisterData& data, std::size_t length)
    : length_(length),
      shift_(0),
      width_(static_cast<unsigned>(8 * length)),
      bigEndian_(data.bigEndian),
      signed_(data.isSigned) {
    if (!data.masked) return;
    // A length that the description gives as a number was compared with the mask when it was
    // loaded.
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

std::int64_t BitField::min() const {
    if (!signed_) return 0;
    return width_ == 64 ? kInt64Min : -(std::int64_t{1} << (width_ - 1));
}

std::int64_t BitField::max() const {
    const std::uint64_t highest = signed_ ? mask() >> 1 : mask();
    return highest > static_cast<std::uint64_t>(kInt64Max) ? kInt64Max
                                                           : static_cast<std::int64_t>(highest);
}

std::uint64_t BitField::load(const std::uint8_t* bytes) const {
    std::uint64_t content = 0;
    for (std::size_t i = 0; i < length_; ++i)
        content = content << 8 | bytes[bigEndian_ ? i : length_ - 1 - i];
    return content;
}

void BitField::store(std::uint64_t content, std::uint8_t* bytes) const {
    for (std::size_t i = 0; i < length_; ++i) {
        bytes[bigEndian_ ? length_ - 1 - i : i] = static_cast<std::uint8_t>(content);
        content >>= 8;
    }
}

std::int64_t BitField::extract(std::uint64_t content) const {
    std::uint64_t field = content >> shift_ & mask();
    if (signed_ && (field >> (width_ - 1) & 1)) field |= ~mask();
    return static_cast<std::int64_t>(field);
}

std::uint64_t BitField::insert(std::int64_t value, std::uint64_t content) const {
    const std::uint64_t placed = mask() << shift_;
    return (content & ~placed) | (static_cast<std::uint64_t>(value) << shift_ & placed);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

// The bytes of a message, read and written at offsets. Numbers are big endian, as GigE Vision sends
// them.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ZelCti {

// Bytes that belong to somebody else, who keeps them for as long as the view is used. A message's
// size is checked once, before its fields are read: to read outside the view is an error of the
// program.
struct ByteView {
    const uint8_t* data = nullptr;
    size_t size = 0;

    ByteView Sub(size_t offset, size_t count) const {
        assert(offset <= size && count <= size - offset);
        return {data + offset, count};
    }
    // Everything from the offset on.
    ByteView From(size_t offset) const {
        assert(offset <= size);
        return {data + offset, size - offset};
    }

    uint8_t U8(size_t offset) const {
        assert(offset < size);
        return data[offset];
    }
    uint16_t U16(size_t offset) const {
        return static_cast<uint16_t>(U8(offset) << 8 | U8(offset + 1));
    }
    uint32_t U24(size_t offset) const {
        return static_cast<uint32_t>(U8(offset)) << 16 | U16(offset + 1);
    }
    uint32_t U32(size_t offset) const {
        return static_cast<uint32_t>(U16(offset)) << 16 | U16(offset + 2);
    }
    uint64_t U48(size_t offset) const {
        return static_cast<uint64_t>(U16(offset)) << 32 | U32(offset + 2);
    }
    uint64_t U64(size_t offset) const {
        return static_cast<uint64_t>(U32(offset)) << 32 | U32(offset + 4);
    }
};

// Memory of the caller in which a message is made. What does not fit a number's bytes is cut off.
struct ByteSpan {
    uint8_t* data = nullptr;
    size_t size = 0;

    ByteSpan From(size_t offset) const {
        assert(offset <= size);
        return {data + offset, size - offset};
    }

    void PutU8(size_t offset, uint64_t value) const {
        assert(offset < size);
        data[offset] = static_cast<uint8_t>(value);
    }
    void PutU16(size_t offset, uint64_t value) const {
        PutU8(offset, value >> 8);
        PutU8(offset + 1, value);
    }
    void PutU24(size_t offset, uint64_t value) const {
        PutU8(offset, value >> 16);
        PutU16(offset + 1, value);
    }
    void PutU32(size_t offset, uint64_t value) const {
        PutU16(offset, value >> 16);
        PutU16(offset + 2, value);
    }
    void PutU48(size_t offset, uint64_t value) const {
        PutU16(offset, value >> 32);
        PutU32(offset + 2, value);
    }
    void PutU64(size_t offset, uint64_t value) const {
        PutU32(offset, value >> 32);
        PutU32(offset + 4, value);
    }
    void PutZeros(size_t offset, size_t count) const {
        assert(offset <= size && count <= size - offset);
        memset(data + offset, 0, count);
    }
    // The bytes of the view may lie in the span's memory.
    void PutBytes(size_t offset, ByteView bytes) const {
        assert(offset <= size && bytes.size <= size - offset);
        if (bytes.size != 0) {
            memmove(data + offset, bytes.data, bytes.size);
        }
    }
};

}  // namespace ZelCti

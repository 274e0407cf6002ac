// An input as a message of a device: fields from its front, and the rest.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace Fuzz {

// What is asked for beyond the end is empty or 0.
struct Message {
    const uint8_t* data;
    size_t size;

    Message Take(size_t count) {
        const Message taken{data, std::min(count, size)};
        data += taken.size;
        size -= taken.size;
        return taken;
    }

    uint64_t Number(size_t bytes) {
        uint64_t value = 0;
        const Message taken = Take(bytes);
        for (size_t i = 0; i < taken.size; ++i)
            value = value << 8 | taken.data[i];
        return value;
    }
};

}  // namespace Fuzz

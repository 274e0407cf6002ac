// An input as a message of a device: fields from its front, and the rest.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace Fuzz {

// What is asked for beyond the end is empty or 0.
struct Message {
    const std::uint8_t* data;
    std::size_t size;

    Message Take(std::size_t count) {
        const Message taken{data, std::min(count, size)};
        data += taken.size;
        size -= taken.size;
        return taken;
    }

    std::uint64_t Number(std::size_t bytes) {
        std::uint64_t value = 0;
        const Message taken = Take(bytes);
        for (std::size_t i = 0; i < taken.size; ++i)
            value = value << 8 | taken.data[i];
        return value;
    }
};

}  // namespace Fuzz

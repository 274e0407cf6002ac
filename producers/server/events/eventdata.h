// The bytes of an event.
#pragma once

#include <cstddef>

namespace ZelCti {

// The data of one event, valid until it leaves the queue.
struct EventData {
    const void* bytes;
    size_t size;
};

}  // namespace ZelCti

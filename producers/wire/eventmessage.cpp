#include "producers/wire/eventmessage.h"

#include "producers/wire/gvcpevents.h"

namespace ZelCti {

namespace {

constexpr uint32_t kU3vEventPrefix = 0x45563355;
constexpr uint16_t kU3vEvent = 0x0C00;

}  // namespace

// The number of a frame follows as the data. The message names no block: the sensor takes a frame
// before any stream channel numbers it.
EventMessage EncodeGevEvent(const CameraEvent& event, Gvcp::Request request, bool extendedIds) {
    EventMessage message;
    const ByteSpan out{message.bytes.data(), message.bytes.size()};
    Gvcp::Event entry;
    entry.id = event.id;
    entry.timestamp = event.timestamp;
    uint8_t data[sizeof(uint64_t)];
    if (event.frameId) {
        StoreInteger(data, sizeof data, *event.frameId, kGevEventForm.order);
        entry.data = {data, sizeof data};
        message.size = Gvcp::EncodeEventDataCmd(out, request, extendedIds, &entry, 1);
    } else {
        message.size = Gvcp::EncodeEventCmd(out, request, extendedIds, &entry, 1);
    }
    return message;
}

EventMessage EncodeU3vEvent(const CameraEvent& event, uint16_t request) {
    EventMessage message;
    const auto put = [&message](uint64_t value, size_t size) {
        StoreInteger(message.bytes.data() + message.size, size, value, kU3vEventForm.order);
        message.size += size;
    };
    put(kU3vEventPrefix, 4);
    put(0, 2);
    put(kU3vEvent, 2);
    put(kU3vEventForm.frameIdAddress + (event.frameId ? sizeof(uint64_t) : 0), 2);
    put(request, 2);
    put(0, 2);
    put(event.id, 2);
    put(event.timestamp, 8);
    if (event.frameId) put(*event.frameId, 8);
    return message;
}

}  // namespace ZelCti

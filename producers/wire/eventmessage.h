// Events of a camera as the messages in which they travel.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "producers/wire/byteorder.h"
#include "producers/wire/gvcp.h"

namespace ZelCti {

// One thing that happened in a camera.
struct CameraEvent {
    uint16_t id = 0;
    uint64_t timestamp = 0;           // ticks of the camera's clock
    std::optional<uint64_t> frameId;  // when it belongs to a frame
};

// What the port of an event shows of a message: where its fields stand, counted from the first byte
// there.
struct EventForm {
    ByteOrder order;
    uint32_t timestampAddress;
    uint32_t frameIdAddress;
};
constexpr EventForm kGevEventForm{ByteOrder::Big, 8, 16};
constexpr EventForm kU3vEventForm{ByteOrder::Little, 4, 12};

// A message, made without allocating memory: frames must not depend on it.
struct EventMessage {
    std::array<uint8_t, 40> bytes{};  // none is longer
    size_t size = 0;
};

// Whole messages with their headers: the EVENT or EVENTDATA command of a GigE camera, and the event
// command of a USB3 camera. Request numbers count the messages of a camera. `extendedIds` is the
// form with block ids of 64 bits.
EventMessage EncodeGevEvent(const CameraEvent& event, Gvcp::Request request, bool extendedIds);
EventMessage EncodeU3vEvent(const CameraEvent& event, uint16_t request);

}  // namespace ZelCti

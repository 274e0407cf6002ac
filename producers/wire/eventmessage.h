// Events of a camera as the messages in which they travel.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "producers/wire/byteorder.h"

namespace ZelSim {

// One thing that happened in a camera.
struct CameraEvent {
    uint16_t id = 0;
    uint64_t timestamp = 0;           // ticks of the camera's clock
    std::optional<uint64_t> frameId;  // when it belongs to a frame
};

// How the messages of a transport type look to the port of an event: where its fields stand,
// counted from the first byte that the port shows.
struct EventForm {
    ByteOrder order;
    uint32_t timestampAddress;
    uint32_t frameIdAddress;
};

// GigE cameras send EVENT and EVENTDATA commands, all others the event commands of USB3 cameras.
EventForm EventFormOf(const std::string& tlType);

// The thread that makes frames sends messages also when there is no memory.
struct EventMessage {
    std::array<uint8_t, 32> bytes{};  // none is longer
    size_t size = 0;
};

// The whole message, with its header. Request numbers count the messages of a camera.
EventMessage EncodeEvent(const std::string& tlType, const CameraEvent& event, uint16_t request);

}  // namespace ZelSim

// The events in messages of cameras. Messages are what a device sent: nothing outside of the bytes
// given is read, and what is malformed is a RuntimeException.
#pragma once

#include <cstdint>
#include <vector>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// One event within a message.
struct EventItem {
    std::uint16_t id;
    const std::uint8_t* data;
    std::uint32_t size;
    bool
        statesSize;  // its first field is its size, not 0; always true where there is no such field
};

std::vector<EventItem> parseGevMessage(const std::uint8_t* message, std::uint32_t numBytes);
// What follows the header of an EVENT command: items.
std::vector<EventItem> parseGevEvents(const std::uint8_t* items, std::uint32_t length,
                                      bool extendedIds);
// What follows the header of an EVENTDATA command: one item and its data.
EventItem parseGevEventData(const std::uint8_t* item, std::uint32_t length, bool extendedIds);

EventItem parseU3vMessage(const std::uint8_t* message, std::uint32_t numBytes);
// What follows the header.
EventItem parseU3vEvent(const std::uint8_t* event, std::uint32_t length);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

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
    uint16_t id;
    const uint8_t* data;
    uint32_t size;
    bool
        statesSize;  // its first field is its size, not 0; always true where there is no such field
};

std::vector<EventItem> ParseGevMessage(const uint8_t* message, uint32_t numBytes);
// What follows the header of an EVENT command: items.
std::vector<EventItem> ParseGevEvents(const uint8_t* items, uint32_t length, bool extendedIds);
// What follows the header of an EVENTDATA command: one item and its data.
EventItem ParseGevEventData(const uint8_t* item, uint32_t length, bool extendedIds);

EventItem ParseU3vMessage(const uint8_t* message, uint32_t numBytes);
// What follows the header.
EventItem ParseU3vEvent(const uint8_t* event, uint32_t length);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE

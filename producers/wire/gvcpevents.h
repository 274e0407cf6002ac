// EVENT and EVENTDATA: commands that a device sends to the message channel of an application.
#pragma once

#include <cstddef>
#include <cstdint>

#include "producers/wire/gvcp.h"

namespace ZelCti::Gvcp {

// Those with a meaning for all devices and still in use. The device's own begin at 0x9000; 0x8001
// to 0x8FFF are errors, with the low 12 bits of a status code (from memory).
namespace EventId {
constexpr uint16_t kPrimaryApplicationSwitch = 0x0007;
constexpr uint16_t kLinkSpeedChange = 0x0008;
constexpr uint16_t kActionLate = 0x0009;
constexpr uint16_t kFirstError = 0x8001;
constexpr uint16_t kFirstOfDevice = 0x9000;
}  // namespace EventId

// Of an event that belongs to no stream (from memory).
constexpr uint16_t kNoStreamChannel = 0xFFFF;

struct Event {
    uint16_t id = 0;
    uint16_t streamChannel = kNoStreamChannel;
    uint64_t blockId = 0;  // 16 bits without extended ids; 0: no block (from memory)
    uint64_t timestamp = 0;
    ByteView data;  // of EVENTDATA
};

// How the entries of a command look.
struct EventLayout {
    bool extendedIds = false;
    bool withData = false;

    constexpr size_t FixedSize() const { return extendedIds ? 24 : 16; }
};

// The events of a command, decoded one by one when it is walked through.
class Events {
  public:
    class Iterator {
      public:
        Iterator(ByteView rest, EventLayout layout) : rest_(rest), layout_(layout) {}

        Event operator*() const;
        Iterator& operator++();
        bool operator!=(const Iterator& other) const { return rest_.data != other.rest_.data; }

      private:
        ByteView rest_;
        EventLayout layout_;
    };

    Events() = default;

    Iterator begin() const { return {entries_, layout_}; }
    Iterator end() const { return {entries_.From(entries_.size), layout_}; }

  private:
    friend Result<Events> DecodeEvents(const Command& command);
    Events(ByteView entries, EventLayout layout) : entries_(entries), layout_(layout) {}

    ByteView entries_;
    EventLayout layout_;
};

// Of an EVENT or EVENTDATA command. There is at least one event, and only EVENTDATA with extended
// ids holds several with data: an entry without a size, as devices before 2.1 send it, takes the
// rest.
Result<Events> DecodeEvents(const Command& command);

// Any number of events, without their data.
size_t EncodeEventCmd(ByteSpan out, Request request, bool extendedIds, const Event* events,
                      size_t count);
// Each event has its data, a multiple of 4 bytes. Without extended ids there is one event.
size_t EncodeEventDataCmd(ByteSpan out, Request request, bool extendedIds, const Event* events,
                          size_t count);

}  // namespace ZelCti::Gvcp

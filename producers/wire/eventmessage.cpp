#include "producers/wire/eventmessage.h"

namespace ZelCti {

namespace {

constexpr uint8_t kGvcpMagic = 0x42;
constexpr uint8_t kGvcpWithAcknowledge = 0x01;
constexpr uint16_t kGvcpEvent = 0x00C0;
constexpr uint16_t kGvcpEventData = 0x00C2;

constexpr uint32_t kU3vEventPrefix = 0x45563355;
constexpr uint16_t kU3vEvent = 0x0C00;

// Fields one after the other.
class Writer {
  public:
    explicit Writer(ByteOrder order) : order_(order) {}

    Writer& Put(uint64_t value, size_t size) {
        StoreInteger(message_.bytes.data() + message_.size, size, value, order_);
        message_.size += size;
        return *this;
    }
    const EventMessage& Message() const { return message_; }

  private:
    const ByteOrder order_;
    EventMessage message_;
};

size_t BodySize(const EventForm& form, const CameraEvent& event) {
    return form.frameIdAddress + (event.frameId ? sizeof(uint64_t) : 0);
}

}  // namespace

// An item states no size, as in the first version of the standard. Block numbers have 16 bits
// there; the whole number follows as the data.
EventMessage EncodeGevEvent(const CameraEvent& event, uint16_t request) {
    Writer writer(kGevEventForm.order);
    writer.Put(kGvcpMagic, 1).Put(kGvcpWithAcknowledge, 1);
    writer.Put(event.frameId ? kGvcpEventData : kGvcpEvent, 2);
    writer.Put(BodySize(kGevEventForm, event), 2).Put(request, 2);
    writer.Put(0, 2).Put(event.id, 2).Put(0, 2).Put(event.frameId.value_or(0), 2);
    writer.Put(event.timestamp, 8);
    if (event.frameId) writer.Put(*event.frameId, 8);
    return writer.Message();
}

EventMessage EncodeU3vEvent(const CameraEvent& event, uint16_t request) {
    Writer writer(kU3vEventForm.order);
    writer.Put(kU3vEventPrefix, 4).Put(0, 2).Put(kU3vEvent, 2);
    writer.Put(BodySize(kU3vEventForm, event), 2).Put(request, 2);
    writer.Put(0, 2).Put(event.id, 2).Put(event.timestamp, 8);
    if (event.frameId) writer.Put(*event.frameId, 8);
    return writer.Message();
}

}  // namespace ZelCti

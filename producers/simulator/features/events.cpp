// The events that the camera sends. Node maps read their messages through ports that an event
// adapter serves; where their fields stand depends on the transport.
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/categories.h"
#include "producers/wire/eventmessage.h"

namespace ZelSim {

using ZelCti::Entry;
using ZelCti::EventForm;
using ZelCti::FeatureTable;
using ZelCti::HexOf;
using ZelCti::IntegerValue;

namespace {

struct EventFeature {
    EventKind kind;
    const char* name;
    const char* when;
    const char* cause;
    bool hasFrame;
};
constexpr EventFeature kEvents[] = {
    {EventKind::AcquisitionStart, "AcquisitionStart", "At", "the start of an acquisition", false},
    {EventKind::AcquisitionEnd, "AcquisitionEnd", "At", "the end of an acquisition", false},
    {EventKind::FrameStart, "FrameStart", "At", "the start of a frame", true},
    {EventKind::FrameEnd, "FrameEnd", "At", "the end of a frame", true},
    {EventKind::ExposureEnd, "ExposureEnd", "At", "the end of an exposure", true},
    {EventKind::Test, "Test", "Upon", "the command TestEventGenerate", false},
};

std::vector<Entry> EventEntries() {
    std::vector<Entry> entries;
    for (const EventFeature& event : kEvents) {
        entries.push_back({event.name, static_cast<int64_t>(event.kind),
                           std::string(event.when) + " " + event.cause + "."});
    }
    return entries;
}

IntegerValue NotificationValue(EventChannel& channel, EventKind kind) {
    IntegerValue value;
    value.get = [&channel, kind] { return uint64_t{channel.IsOn(kind)}; };
    value.set = [&channel, kind](uint64_t on) { channel.SetOn(kind, on != 0); };
    return value;
}

void AddEventData(FeatureTable& features, const EventFeature& event, const EventForm& form) {
    const std::string name = std::string("Event") + event.name;
    const std::string port = name + "Port";
    const uint16_t id = EventIdOf(event.kind);
    features.Category(name + "Data", std::string("What the event of ") + event.cause + " says.")
        .Expert()
        .In("EventControl");
    features.Integer(name, "Identifier of the event; changes are reported when one comes.")
        .Expert()
        .With("EventID", HexOf(id))
        .Constant(id)
        .Representation("HexNumber");
    features.Integer(name + "Timestamp", "When it happened, in ticks of the camera.")
        .Expert()
        .At(form.timestampAddress, 8)
        .Order(form.order)
        .Port(port);
    if (event.hasFrame) {
        features.Integer(name + "FrameID", "Number of the frame.")
            .Expert()
            .At(form.frameIdAddress, 8)
            .Order(form.order)
            .Port(port);
    }
    features.Port(port).With("EventID", HexOf(id));
}

}  // namespace

void AddEventControl(FeatureTable& features, Camera& camera) {
    features.Category("EventControl", "Messages that the camera sends by itself.");
    features.Enumeration("EventSelector", "Selects the event that EventNotification switches.")
        .Expert()
        .Entries(EventEntries())
        .Streamable()
        .Local(0);
    features.Enumeration("EventNotification", "Whether the camera sends the selected event.")
        .Expert()
        .SelectedBy("EventSelector")
        .At(0x8000)
        .Entries({{"Off", 0, "The event is not sent."}, {"On", 1, "The event is sent."}})
        .Streamable()
        .InvalidatedBy({"DeviceReset"})
        .Indexed("EventSelectorValue", kNumEventKinds, [&camera](size_t i) {
            return NotificationValue(camera.Events(), static_cast<EventKind>(i));
        });
    for (const EventFeature& event : kEvents)
        AddEventData(features, event, EventFormOf(camera.TlType()));
}

void AddTestControl(FeatureTable& features, Camera& camera) {
    features.Category("TestControl", "Tests of the connection.").Expert();
    features.Command("TestEventGenerate", "Makes the camera send the event Test.")
        .Guru()
        .At(0x8100)
        .Does([&camera] {
            camera.Events().Send(EventKind::Test, camera.Ticks(camera.Nanoseconds()));
        });
}

}  // namespace ZelSim

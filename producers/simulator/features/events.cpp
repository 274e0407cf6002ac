// The events that the camera sends. Node maps read their messages through ports that an event
// adapter serves; where their fields stand depends on the transport.
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/categories.h"
#include "producers/wire/eventmessage.h"

namespace ZelSim {

using ZelCti::Entry;
using ZelCti::EventForm;
using ZelCti::Feature;
using ZelCti::FeatureTable;
using ZelCti::HexOf;
using ZelCti::IntegerValue;

namespace {

struct EventFeature {
    EventKind kind;
    bool hasFrame;
    const char* name;
    const char* when;
    const char* cause;
};
constexpr EventFeature kEvents[] = {
    {EventKind::AcquisitionStart, false, "AcquisitionStart", "At", "the start of an acquisition"},
    {EventKind::AcquisitionEnd, false, "AcquisitionEnd", "At", "the end of an acquisition"},
    {EventKind::FrameStart, true, "FrameStart", "At", "the start of a frame"},
    {EventKind::FrameEnd, true, "FrameEnd", "At", "the end of a frame"},
    {EventKind::ExposureEnd, true, "ExposureEnd", "At", "the end of an exposure"},
    {EventKind::Test, false, "Test", "Upon", "the command TestEventGenerate"},
    {EventKind::PrimaryApplicationSwitch, false, "PrimaryApplicationSwitch", "At",
     "another application's taking control"},
    {EventKind::ActionLate, false, "ActionLate", "At", "an action that comes after its time"},
};

// What a camera on a network sends with block ids of 64 bits is that much longer before the time.
constexpr const char* kExtension = "EventExtension";

// By kind.
std::vector<EventFeature> EventsOf(const Camera& camera) {
    const auto* const begin = std::begin(kEvents);
    const uint32_t count = camera.Config().network ? kNumEventKinds : kNumCommonEventKinds;
    return {begin, begin + count};
}

std::vector<Entry> EventEntries(const std::vector<EventFeature>& events) {
    std::vector<Entry> entries;
    entries.reserve(events.size());
    for (const EventFeature& event : events) {
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

// Consumers want whole bytes.
std::string DigitsOf(uint16_t id) {
    const std::string digits = HexOf(id);
    return std::string(2 * sizeof(id) - digits.size(), '0') + digits;
}

void AddEventData(FeatureTable& features, const EventFeature& event, const Camera& camera) {
    const EventForm& form = EventFormOf(camera.TlType());
    const auto in = [&](Feature& feature, uint32_t address, const std::string& port) {
        feature.Expert().At(address, sizeof(uint64_t)).Order(form.order).Port(port);
        if (camera.Config().network) feature.AtOffset(kExtension);
    };
    const std::string name = std::string("Event") + event.name;
    const std::string port = name + "Port";
    const uint16_t id = EventIdOf(event.kind);
    features.Category(name + "Data", std::string("What the event of ") + event.cause + " says.")
        .Expert()
        .In("EventControl");
    features.Integer(name, "Identifier of the event; changes are reported when one comes.")
        .Expert()
        .With("EventID", DigitsOf(id))
        .Constant(id)
        .Representation("HexNumber");
    in(features.Integer(name + "Timestamp", "When it happened, in ticks of the camera."),
       form.timestampAddress, port);
    if (event.hasFrame) {
        in(features.Integer(name + "FrameID", "Number of the frame."), form.frameIdAddress, port);
    }
    features.Port(port).With("EventID", DigitsOf(id));
}

}  // namespace

void AddEventControl(FeatureTable& features, Camera& camera) {
    const std::vector<EventFeature> events = EventsOf(camera);
    features.Category("EventControl", "Messages that the camera sends by itself.");
    features.Enumeration("EventSelector", "Selects the event that EventNotification switches.")
        .Expert()
        .Entries(EventEntries(events))
        .Streamable()
        .Local(0);
    features.Enumeration("EventNotification", "Whether the camera sends the selected event.")
        .Expert()
        .SelectedBy("EventSelector")
        .At(0x8000)
        .Entries({{"Off", 0, "The event is not sent."}, {"On", 1, "The event is sent."}})
        .Streamable()
        .InvalidatedBy({"DeviceReset"})
        .Indexed("EventSelectorValue", events.size(), [&camera](size_t i) {
            return NotificationValue(camera.Events(), static_cast<EventKind>(i));
        });
    for (const EventFeature& event : events)
        AddEventData(features, event, camera);
    if (!camera.Config().network) return;
    features.IntSwissKnife(kExtension)
        .Variables({{"EXTENDED", "GevGVSPExtendedIDModeReg"}})
        .Formula("EXTENDED * 8");
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

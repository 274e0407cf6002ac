// zelcam events: prints events of the camera as they arrive.

#include <algorithm>
#include <iostream>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/console/progress.h"
#include "tools/zelcam/console/suggestion.h"
#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/console/timetext.h"
#include "tools/zelcam/features/eventlistener.h"
#include "tools/zelcam/features/featurereading.h"
#include "tools/zelcam/frames/acquisition.h"

namespace ZelTool {

namespace {

// How often the command checks that the camera still answers: a lost camera sends no event.
constexpr uint64_t kBetweenLooksMs = 1000;

struct EventsOptions : CameraOptions {
    std::vector<std::string> names;
    uint64_t count = 0;
    uint64_t durationMs = 0;
    bool grab = false;
};

// Switches on the named events and listens to them; without names, listens to all events.
class Listening {
  public:
    Listening(ZelGenParam::Array& features, const std::vector<std::string>& names) {
        const std::vector<std::string> known = EventNames(features);
        for (const std::string& name : names) {
            if (std::find(known.begin(), known.end(), name) == known.end()) {
                throw Failure(ExitCode::FeatureFailed, "the camera has no event \"" + name + "\"" +
                                                           DidYouMean(name, known) + "\nIt has " +
                                                           Joined(known));
            }
            listeners_.push_back(std::make_unique<EventListener>(features, name, queue_));
            switches_.push_back(std::make_unique<EventSwitch>(features, name));
        }
        if (names.empty()) ListenToAll(features, known);
    }

    EventQueue& Queue() { return queue_; }

  private:
    // Some cameras list events for which they have no features.
    void ListenToAll(ZelGenParam::Array& features, const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            try {
                listeners_.push_back(std::make_unique<EventListener>(features, name, queue_));
            } catch (const Failure& failure) {
                std::cerr << "zelcam: note: " << PrintableLines(failure.what()) << '\n';
            }
        }
    }

    EventQueue queue_;
    std::vector<std::unique_ptr<EventListener>> listeners_;
    std::vector<std::unique_ptr<EventSwitch>> switches_;
};

void Print(const ArrivedEvent& event, bool json) {
    if (json) {
        Json line = {
            {"time", TimeStamp(event.time)}, {"event", event.name}, {"data", Json::object()}};
        for (const ArrivedEvent::Datum& datum : event.data)
            line["data"][datum.feature] = datum.value;
        PrintJsonLine(line);
        return;
    }
    std::cout << TimeOfDay(event.time) << "  " << event.name;
    for (const ArrivedEvent::Datum& datum : event.data)
        std::cout << "  " << datum.feature << '=' << Printable(datum.text);
    std::cout << std::endl;
}

// Waits for a frame, for a slice of time at most, and requeues its buffer, so that the camera goes
// on sending.
void PassFrame(Acquisition& acquisition) {
    ZelCamErr code = ZelCamErr_Success;
    ZelCam::Buffer* buffer = acquisition.WaitForFrame(kSliceMs, &code);
    if (buffer != nullptr) {
        acquisition.Requeue(*buffer);
    } else if (code != ZelCamErr_GenTL_Timeout && code != ZelCamErr_GenTL_Abort) {
        RequireSuccess(code, "waiting for a frame failed", ExitCode::AcquisitionFailed);
    }
}

void PrintWhatMayBeMissing(const EventsOptions& options) {
    std::cerr << "zelcam: note: no event came";
    if (options.names.empty())
        std::cerr << "; without NAME, only events that are already on arrive";
    if (!options.grab) std::cerr << "; many events come only with frames: give --grab";
    std::cerr << '\n';
}

ExitCode RunEvents(const EventsOptions& options) {
    FeatureSession session(options);
    Listening listening(session.Features(), options.names);
    std::optional<Acquisition> acquisition;
    constexpr size_t kBuffers = 8;
    if (options.grab) {
        acquisition.emplace(session.Camera(), kBuffers);
        acquisition->Start();
    }
    uint64_t arrived = 0;
    LiveLine line(Waiting("waiting for events"));
    const Deadline deadline(options.durationMs);
    Deadline look(kBetweenLooksMs);
    while ((options.count == 0 || arrived < options.count) && !Interrupted() &&
           !deadline.Passed()) {
        if (acquisition) PassFrame(*acquisition);
        const uint64_t wait = acquisition ? 0 : kSliceMs;
        for (auto event = listening.Queue().Get(wait); event; event = listening.Queue().Get(0)) {
            line.Print([&] { Print(*event, options.json); });
            if (++arrived == options.count) break;
        }
        if (!look.Passed()) continue;
        RequireAnswer(session.Features());
        look = Deadline(kBetweenLooksMs);
    }
    if (acquisition) acquisition->End();
    if (arrived == 0) PrintWhatMayBeMissing(options);
    if (arrived < options.count) return Interrupted() ? ExitCode::Interrupted : ExitCode::Timeout;
    return ExitCode::Ok;
}

}  // namespace

void AddEventsCommand(Command app, Invocation& invocation) {
    auto [command, options] =
        AddCommand(app, invocation, "events", "Print events of a camera as they arrive", RunEvents);
    AddModuleOptions(command, options);
    command.AddOption("names", "NAME", options.names,
                      "Events to switch on, as EventSelector names them. Default: the events that "
                      "are already on");
    AddEndOptions(command, options.count, options.durationMs, "events");
    command.AddFlag("--grab", options.grab,
                    "Grab frames meanwhile: many events come only with frames");
    command.Footer(
        "Examples:\n"
        "  zelcam events 1 ExposureEnd --grab -n 10\n"
        "  zelcam events 1 --json               one JSON object per line\n\n"
        "The command restores the notification of the events when it ends. The exit code is 8 "
        "when the camera is lost.");
}

}  // namespace ZelTool

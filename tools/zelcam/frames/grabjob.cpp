#include "tools/zelcam/frames/grabjob.h"

#include <utility>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/features/featuresetting.h"

namespace ZelTool {

GrabJob::GrabJob(const Camera& camera, const GrabSettings& settings, FrameNamer namer)
    : settings_(settings), namer_(std::move(namer)) {
    report_.camera = camera;
    opened_.emplace(report_.camera, settings.access);
    if (settings.features.empty() && !settings.triggersPerSecond) return;
    ZelGenParam::Array& features = opened_->Features(Module::Camera);
    for (const std::string& assignment : settings.features)
        report_.settings.push_back(SetAndRead(features, assignment));
    if (settings.triggersPerSecond) trigger_.emplace(features, *settings.triggersPerSecond);
}

void GrabJob::Run(GrabTargets& targets) {
    const auto take = [&](const Frame& frame, uint64_t number) {
        return Take(frame, number, targets);
    };
    report_.NoteFailure(FailureOf([&] {
        GrabFrames(*opened_, static_cast<size_t>(settings_.buffers), settings_.limits,
                   trigger_ ? &*trigger_ : nullptr, take, report_);
    }));
    if (trigger_) report_.triggers = trigger_->Sent();
}

bool GrabJob::Take(const Frame& frame, uint64_t number, GrabTargets& targets) {
    targets.progress.Add();
    Arrival arrival = {report_.camera.id, number, WallClock::now()};
    if (targets.files) {
        return targets.files->Put({StoredFrame(frame), std::move(arrival),
                                   namer_.NameOf(number, frame.frameId, frame.incomplete),
                                   &report_.files});
    }
    if (targets.log) targets.log->Add(targets.log->Reserve(), arrival, frame, "");
    return true;
}

}  // namespace ZelTool

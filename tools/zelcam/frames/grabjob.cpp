#include "tools/zelcam/frames/grabjob.h"

#include <utility>

#include <Base/GCBase.h>

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

void GrabJob::Run(const GrabTargets& targets) {
    try {
        Grab(targets);
    } catch (const Failure& failure) {
        report_.NoteFailure(failure);
    } catch (const GenICam::GenericException& error) {
        report_.NoteFailure(Failure(ExitCode::FeatureFailed, error.GetDescription()));
    } catch (const std::exception& error) {
        report_.NoteFailure(Failure(ExitCode::AcquisitionFailed, error.what()));
    }
}

void GrabJob::Grab(const GrabTargets& targets) {
    const auto take = [&](const Frame& frame, uint64_t number) {
        return Take(frame, number, targets);
    };
    GrabFrames(*opened_, static_cast<size_t>(settings_.buffers), settings_.limits,
               trigger_ ? &*trigger_ : nullptr, take, report_);
    if (trigger_) report_.triggers = trigger_->Sent();
}

bool GrabJob::Take(const Frame& frame, uint64_t number, const GrabTargets& targets) {
    targets.progress->Add();
    LoggedFrame entry = Logged(report_.camera.id, number, frame);
    if (targets.files != nullptr) {
        return targets.files->Put({StoredFrame(frame), std::move(entry),
                                   namer_.NameOf(number, frame.frameId, frame.incomplete),
                                   &report_.files});
    }
    if (targets.log != nullptr) targets.log->Add(targets.log->Reserve(), entry, "");
    return true;
}

}  // namespace ZelTool

#include "tools/zelcam/frames/grabloop.h"

#include <algorithm>

#include "tools/zelcam/camera/reachability.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/frames/acquisition.h"
#include "tools/zelcam/frames/timeoutreport.h"

namespace ZelTool {

namespace {

// Finds out why no frame arrives. The camera may also have sent all frames that its settings allow.
void ExplainSilence(const GrabLimits& limits, uint64_t triggersSent, Acquisition& acquisition,
                    GrabReport& report) {
    const uint64_t frames = report.statistics.Frames();
    const std::string why = WhyAllWereSent(acquisition.Camera(), frames);
    report.exitCode = ExitCode::Timeout;
    if (!why.empty()) {
        report.error = "the camera stopped by itself after " + std::to_string(frames) +
                       (frames == 1 ? " frame: " : " frames: ") + why;
        report.nextStep = "make the camera continue: --set AcquisitionMode=Continuous";
        return;
    }
    report.error = "no frame within " + std::to_string(limits.timeoutMs) + " ms";
    report.checks =
        CheckSilence(acquisition, report.camera, report.statistics, limits.timeoutMs, triggersSent);
    // These causes would have affected the first frame, too.
    if (frames == 0) report.otherCauses = OtherCauses(report.camera);
    report.nextStep = NextStep(report.checks, report.otherCauses);
}

// Notes why no frame arrived, and sets the exit code.
void EndWithoutFrame(ZelCamErr code, const GrabLimits& limits, uint64_t triggersSent,
                     Acquisition& acquisition, GrabReport& report) {
    if (code == ZelCamErr_GenTL_Abort && Interrupted()) {
        report.interrupted = true;
        if (limits.count != 0) report.exitCode = ExitCode::Interrupted;
    } else if (code == ZelCamErr_GenTL_Timeout) {
        ExplainSilence(limits, triggersSent, acquisition, report);
    } else {
        report.exitCode = ExitCode::AcquisitionFailed;
        report.error = "waiting for a frame failed: " + ErrorWords(code);
    }
}

ZelCam::Buffer* WaitForFrame(Acquisition& acquisition, uint64_t timeoutMs, SoftwareTrigger* trigger,
                             ZelCamErr* code) {
    if (trigger == nullptr) return acquisition.WaitForFrame(timeoutMs, code);
    const Deadline deadline(timeoutMs);
    for (;;) {
        trigger->FireWhenDue();
        const uint64_t waitMs = std::min(trigger->MsUntilDue(), timeoutMs);
        ZelCam::Buffer* const buffer = acquisition.WaitForFrame(waitMs, code);
        if (buffer != nullptr) trigger->FrameCame();
        if (buffer != nullptr || *code != ZelCamErr_GenTL_Timeout || deadline.Passed())
            return buffer;
    }
}

void Loop(Acquisition& acquisition, const GrabLimits& limits, SoftwareTrigger* trigger,
          const FrameTaker& take, GrabReport& report) {
    FrameStatistics& statistics = report.statistics;
    DescribedImage described(acquisition.Camera().Features());
    if (trigger != nullptr) trigger->Start();
    while (limits.count == 0 || statistics.Frames() < limits.count) {
        ZelCamErr code = ZelCamErr_Success;
        ZelCam::Buffer* buffer = WaitForFrame(acquisition, limits.timeoutMs, trigger, &code);
        if (buffer == nullptr) {
            EndWithoutFrame(code, limits, trigger != nullptr ? trigger->Sent() : 0, acquisition,
                            report);
            return;
        }
        const Frame frame = described.Complete(FrameIn(*buffer));
        statistics.Add(frame.frameId, frame.incomplete, FrameStatistics::Clock::now());
        report.NoteFrame(frame);
        if (!take(frame, statistics.Frames())) return;
        acquisition.Requeue(*buffer);
    }
}

// What the producer says of a camera that it has lost tells more than the failures that follow.
void NoteLoss(const std::string& reason, GrabReport& report) {
    report.exitCode = ExitCode::AcquisitionFailed;
    report.error = "the camera is lost: it " + reason;
}

}  // namespace

void GrabFrames(OpenedCamera& camera, size_t buffers, const GrabLimits& limits,
                SoftwareTrigger* trigger, const FrameTaker& take, GrabReport& report) {
    Acquisition acquisition(camera, buffers);
    // After a failure, the report still gets everything that was received.
    report.NoteFailure(FailureOf([&] {
        acquisition.Start();
        Loop(acquisition, limits, trigger, take, report);
    }));
    report.underruns = acquisition.Stream().GetNumUnderrun();
    const std::string loss = Printable(AccessReasonOf(camera.Info()));
    const auto failure = FailureOf([&] { acquisition.End(); });
    if (loss.empty()) {
        report.NoteFailure(failure);
    } else {
        NoteLoss(loss, report);
    }
}

}  // namespace ZelTool

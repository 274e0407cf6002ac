#include "tools/zelcam/grabloop.h"

#include "tools/zelcam/interrupt.h"
#include "tools/zelcam/progress.h"
#include "tools/zelcam/words.h"

namespace {

// Notes why no frame came, and how the program ends for it.
void EndWithoutFrame(ZelCamErr code, const GrabLimits& limits, ZelCam::Stream& stream,
                     GrabReport& report) {
    if (code == ZelCamErr_GenTL_Abort && Interrupted()) {
        report.interrupted = true;
        if (limits.count != 0) report.exitCode = ExitCode::Interrupted;
    } else if (code == ZelCamErr_GenTL_Timeout) {
        report.exitCode = ExitCode::Timeout;
        report.error = "no frame within " + std::to_string(limits.timeoutMs) + " ms";
        report.checks = CheckSilence(stream, report.camera, report.statistics);
        report.otherCauses = OtherCauses(report.camera);
    } else {
        report.exitCode = ExitCode::AcquisitionFailed;
        report.error = "waiting for a frame failed: " + ErrorWords(code);
    }
}

void Loop(Acquisition& acquisition, const GrabLimits& limits, const FrameWriter& writer,
          GrabReport& report) {
    Progress progress(limits.count);
    FrameStatistics& statistics = report.statistics;
    while (limits.count == 0 || statistics.Frames() < limits.count) {
        ZelCamErr code = ZelCamErr_Success;
        ZelCam::Buffer* buffer = acquisition.WaitForFrame(limits.timeoutMs, &code);
        if (buffer == nullptr) {
            EndWithoutFrame(code, limits, acquisition.Stream(), report);
            return;
        }
        const Frame frame(*buffer);
        statistics.Add(frame.frameId, frame.incomplete, FrameStatistics::Clock::now());
        report.NoteFrame(frame, writer.Write(frame, statistics.Frames()));
        acquisition.Requeue(*buffer);
        progress.Update(statistics);
    }
}

}  // namespace

void GrabFrames(ZelCam::Stream& stream, size_t buffers, const GrabLimits& limits,
                const FrameWriter& writer, GrabReport& report) {
    Acquisition acquisition(stream, buffers);
    try {
        Loop(acquisition, limits, writer, report);
    } catch (const Failure& failure) {
        // What was received until then is told all the same.
        report.exitCode = failure.Code();
        report.error = failure.what();
    }
    report.underruns = stream.GetNumUnderrun();
}

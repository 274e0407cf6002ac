#include "tools/zelcam/frames/timeoutreport.h"

#include <algorithm>

#include "tools/zelcam/camera/words.h"

namespace ZelTool {

namespace {

Check CheckCount(bool good, uint64_t count, const std::string& what, const std::string& advice) {
    return {good, std::to_string(count) + " " + what, advice};
}

// Asks for the status again: the camera may have been lost since it was listed.
Check CheckAccess(const Camera& camera) {
    const int32_t status = camera.info->GetAccessStatus();
    const bool good =
        status == ZelCam::AccessStatus_ReadWrite || status == ZelCam::AccessStatus_OpenReadWrite;
    return {good, "the camera's access status is \"" + AccessWords(status) + "\"",
            "check that the camera is still connected, and open it with --access control"};
}

}  // namespace

std::vector<Check> CheckSilence(Acquisition& acquisition, const Camera& camera,
                                const FrameStatistics& statistics, uint64_t timeoutMs,
                                uint64_t triggersSent) {
    ZelCam::Stream& stream = acquisition.Stream();
    const bool grabbing = stream.IsGrabbing();
    std::vector<Check> checks = {
        CheckAccess(camera),
        {grabbing, grabbing ? "the stream is grabbing" : "the stream is not grabbing",
         "the acquisition ended by itself: the camera stopped or was unplugged"}};
    for (Check& check : CheckCamera(acquisition.Camera(), camera.id, timeoutMs, triggersSent))
        checks.push_back(std::move(check));
    const uint64_t announced = stream.GetNumAnnounced();
    const uint64_t needed = std::max<uint64_t>(stream.GetMinNumBuffers(), 1);
    const uint64_t queued = stream.GetNumQueued();
    const uint64_t waiting = stream.GetNumAwaitDelivery();
    const uint64_t underruns = stream.GetNumUnderrun();
    const uint64_t incomplete = statistics.Incomplete();
    const uint64_t delivered = stream.GetNumDelivered();
    const std::initializer_list<Check> counts = {
        CheckCount(announced >= needed, announced,
                   "buffers are announced, at least " + std::to_string(needed) + " needed",
                   "use more buffers: --buffers"),
        CheckCount(queued > 0, queued, "buffers are queued and wait for a frame",
                   "without a queued buffer every frame is dropped: use more with --buffers"),
        CheckCount(waiting == 0, waiting, "filled buffers wait to be fetched",
                   "the producer has frames but does not deliver them: look for a newer producer"),
        CheckCount(underruns == 0, underruns, "frames were dropped because no buffer was queued",
                   "use more buffers (--buffers) or write less (--format none)"),
        CheckCount(incomplete == 0, incomplete, "frames arrived incomplete",
                   "data is lost on the way: check the cable, the switch, the packet size and the "
                   "receive buffers"),
        CheckCount(delivered > 0, delivered, "frames were delivered since the acquisition started",
                   "")};
    checks.insert(checks.end(), counts);
    return checks;
}

std::vector<std::string> OtherCauses(const Camera& camera) {
    if (camera.interfaceType == ZelCam::InterfaceType::GEV) {
        return {"let `zelcam doctor " + camera.id + "` try the network",
                "check that no firewall drops the frames, which are UDP packets from the camera",
                "check that adapter and switch allow packets of that size: enable jumbo frames, or "
                "set a smaller GevSCPSPacketSize in the camera",
                "check that the camera and the adapter are in the same network"};
    }
    if (camera.interfaceType == ZelCam::InterfaceType::U3V) {
        return {"check that the camera is on a USB 3 port, with a suitable cable and hub",
                "check that the system's USB memory is large enough for the frames "
                "(usbcore.usbfs_memory_mb)"};
    }
    return {};
}

std::string NextStep(const std::vector<Check>& checks,
                     const std::vector<std::string>& otherCauses) {
    for (const Check& check : checks)
        if (!check.good && !check.advice.empty()) return check.advice;
    return otherCauses.empty() ? "check everything else: zelcam check" : otherCauses.front();
}

}  // namespace ZelTool

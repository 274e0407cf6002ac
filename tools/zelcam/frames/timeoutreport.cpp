#include "tools/zelcam/frames/timeoutreport.h"

#include <algorithm>

#include "tools/zelcam/camera/words.h"

namespace ZelTool {

namespace {

Check CheckGrabbing(ZelCam::Stream& stream) {
    const bool grabbing = stream.IsGrabbing();
    return {grabbing, grabbing ? "the stream is grabbing" : "the stream is not grabbing",
            "the acquisition ended by itself: the camera stopped or was unplugged"};
}

Check CheckAnnounced(ZelCam::Stream& stream) {
    const uint64_t announced = stream.GetNumAnnounced();
    const uint64_t needed = std::max<uint64_t>(stream.GetMinNumBuffers(), 1);
    return {announced >= needed,
            std::to_string(announced) + " buffers are announced, at least " +
                std::to_string(needed) + " needed",
            "use more buffers: --buffers"};
}

Check CheckQueued(ZelCam::Stream& stream) {
    const uint64_t queued = stream.GetNumQueued();
    return {queued > 0, std::to_string(queued) + " buffers are queued and wait for a frame",
            "without a queued buffer every frame is dropped: use more with --buffers"};
}

Check CheckAwaiting(ZelCam::Stream& stream) {
    const uint64_t waiting = stream.GetNumAwaitDelivery();
    return {waiting == 0, std::to_string(waiting) + " filled buffers wait to be fetched",
            "the producer has frames but does not deliver them: look for a newer producer"};
}

Check CheckDelivered(ZelCam::Stream& stream) {
    const uint64_t delivered = stream.GetNumDelivered();
    return {delivered > 0,
            std::to_string(delivered) + " frames were delivered since the acquisition started", ""};
}

Check CheckUnderruns(ZelCam::Stream& stream) {
    const uint64_t underruns = stream.GetNumUnderrun();
    return {underruns == 0,
            std::to_string(underruns) + " frames were dropped because no buffer was queued",
            "use more buffers (--buffers) or write less (--format none)"};
}

Check CheckIncomplete(const FrameStatistics& statistics) {
    return {statistics.Incomplete() == 0,
            std::to_string(statistics.Incomplete()) + " frames arrived incomplete",
            "data is lost on the way: check the cable, the switch, the packet size and the receive "
            "buffers"};
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
    std::vector<Check> checks = {CheckAccess(camera), CheckGrabbing(stream)};
    for (Check& check : CheckCamera(acquisition.Camera(), camera.id, timeoutMs, triggersSent))
        checks.push_back(std::move(check));
    for (const Check& check :
         {CheckAnnounced(stream), CheckQueued(stream), CheckAwaiting(stream),
          CheckUnderruns(stream), CheckIncomplete(statistics), CheckDelivered(stream)})
        checks.push_back(check);
    return checks;
}

std::vector<std::string> OtherCauses(const Camera& camera) {
    if (camera.interfaceType == ZelCam::InterfaceType::GEV) {
        return {"check that no firewall drops the frames, which are UDP packets from the camera",
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

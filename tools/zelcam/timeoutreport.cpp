#include "tools/zelcam/timeoutreport.h"

#include <algorithm>

#include "tools/zelcam/words.h"

namespace {

Check CheckGrabbing(ZelCam::Stream& stream) {
    const bool grabbing = stream.IsGrabbing();
    return {grabbing, grabbing ? "the stream is grabbing" : "the stream is not grabbing",
            "the acquisition ended by itself: the camera stopped, or it was unplugged"};
}

Check CheckAnnounced(ZelCam::Stream& stream) {
    const uint64_t announced = stream.GetNumAnnounced();
    const uint64_t needed = std::max<uint64_t>(stream.GetMinNumBuffers(), 1);
    return {announced >= needed,
            std::to_string(announced) + " buffers are announced, at least " +
                std::to_string(needed) + " needed",
            "ask for more with --buffers"};
}

Check CheckQueued(ZelCam::Stream& stream) {
    const uint64_t queued = stream.GetNumQueued();
    return {queued > 0, std::to_string(queued) + " buffers are queued and wait for a frame",
            "without a queued buffer every frame is dropped: ask for more with --buffers"};
}

Check CheckAwaiting(ZelCam::Stream& stream) {
    const uint64_t waiting = stream.GetNumAwaitDelivery();
    return {waiting == 0, std::to_string(waiting) + " filled buffers wait to be fetched",
            "the producer has frames and does not hand them out: look for a newer producer"};
}

Check CheckDelivered(ZelCam::Stream& stream) {
    const uint64_t delivered = stream.GetNumDelivered();
    return {delivered > 0,
            std::to_string(delivered) + " frames were delivered since the acquisition started",
            "nothing has arrived yet: the causes below come first"};
}

Check CheckUnderruns(ZelCam::Stream& stream) {
    const uint64_t underruns = stream.GetNumUnderrun();
    return {underruns == 0,
            std::to_string(underruns) + " frames were dropped because no buffer was queued",
            "ask for more buffers with --buffers, or write less (--format none)"};
}

Check CheckIncomplete(const FrameStatistics& statistics) {
    return {statistics.Incomplete() == 0,
            std::to_string(statistics.Incomplete()) + " frames arrived incomplete",
            "data is lost on the way: check cable, switch, packet size and receive buffers"};
}

// The status is asked again: the camera may have been lost since it was listed.
Check CheckAccess(const Camera& camera) {
    const int32_t status = camera.info->GetAccessStatus();
    const bool good = status == 1 || status == 5;
    return {good, "the camera's access status is \"" + AccessWords(status) + "\"",
            "it should be \"open\": is the camera still connected, and opened with --access "
            "control?"};
}

}  // namespace

std::vector<Check> CheckSilence(ZelCam::Stream& stream, const Camera& camera,
                                const FrameStatistics& statistics) {
    return {CheckGrabbing(stream),       CheckAnnounced(stream), CheckQueued(stream),
            CheckAwaiting(stream),       CheckDelivered(stream), CheckUnderruns(stream),
            CheckIncomplete(statistics), CheckAccess(camera)};
}

std::vector<std::string> OtherCauses(const Camera& camera) {
    std::vector<std::string> causes = {
        "the camera waits for a trigger (feature TriggerMode is On): send one, or switch it off",
        "the exposure or the frame period is longer than the time-out: raise --timeout"};
    if (camera.interfaceType == ZelCam::InterfaceType::GEV) {
        causes.emplace_back("a firewall drops the frames: they come as UDP from the camera");
        causes.emplace_back(
            "packets are larger than the network lets through: adapter and switch need jumbo "
            "frames, or the camera a smaller GevSCPSPacketSize");
        causes.emplace_back("camera and adapter are in different networks");
    }
    if (camera.interfaceType == ZelCam::InterfaceType::U3V) {
        causes.emplace_back("the camera is on a USB 2 port, or cable and hub are too weak");
        causes.emplace_back(
            "the system's USB memory is too small for its frames (usbcore.usbfs_memory_mb)");
    }
    return causes;
}

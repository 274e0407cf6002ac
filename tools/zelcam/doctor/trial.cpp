#include "tools/zelcam/doctor/trial.h"

#include <algorithm>
#include <cmath>

#include "tools/zelcam/camera/openedcamera.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/features/featurereading.h"
#include "tools/zelcam/frames/acquisition.h"
#include "tools/zelcam/frames/frame.h"

namespace ZelTool {

namespace {

constexpr uint64_t kTrialMs = 2000;
constexpr uint64_t kEnoughFrames = 200;
constexpr size_t kBuffers = 16;
constexpr const char* kPacketSize = "GevSCPSPacketSize";
constexpr const char* kSearch = "StreamAutoNegotiatePacketSize";

// As the camera has it now: the producer changes some values beside the features.
std::optional<uint64_t> FreshNumber(ZelGenParam::Array& features, const char* name) {
    ZelGenParam::Param* const feature = features.GetParam(name, nullptr);
    if (feature == nullptr) return std::nullopt;
    std::optional<uint64_t> number;
    FailureOf([&] {
        const Json value = ReadFeatureAsJson(*feature, true);
        if (value.is_number() && value.get<double>() >= 0) {
            number = static_cast<uint64_t>(std::llround(value.get<double>()));
        }
    });
    return number;
}

std::string FirstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

std::optional<uint64_t> HeartbeatOf(ZelGenParam::Array& features) {
    const auto milliseconds = FreshNumber(features, "GevHeartbeatTimeout");
    if (milliseconds) return milliseconds;
    const auto microseconds = FreshNumber(features, "DeviceLinkHeartbeatTimeout");
    return microseconds ? std::optional(*microseconds / 1000) : std::nullopt;
}

std::optional<CommandCounts> CommandsOf(ZelGenParam::Array& features) {
    const auto sent = FreshNumber(features, "GevControlCommandCount");
    const auto repeated = FreshNumber(features, "GevControlRepeatedCommandCount");
    const auto unanswered = FreshNumber(features, "GevControlUnansweredCommandCount");
    if (!sent || !repeated || !unanswered) return std::nullopt;
    return CommandCounts{*sent, *repeated, *unanswered};
}

std::optional<PacketCounts> PacketsOf(ZelGenParam::Array& features) {
    const auto seen = FreshNumber(features, "GevStreamSeenPacketCount");
    const auto lost = FreshNumber(features, "GevStreamLostPacketCount");
    const auto asked = FreshNumber(features, "GevStreamResendPacketCount");
    const auto duplicate = FreshNumber(features, "GevStreamDuplicatePacketCount");
    const auto late = FreshNumber(features, "GevStreamLatePacketCount");
    const auto unavailable = FreshNumber(features, "GevStreamUnavailablePacketCount");
    const auto dropped = FreshNumber(features, "GevStreamSocketDropCount");
    if (!seen || !lost || !asked || !unavailable || !dropped) return std::nullopt;
    const uint64_t needless = duplicate.value_or(0) + late.value_or(0);
    return PacketCounts{*seen, *lost, *asked, needless, *unavailable, *dropped};
}

// One camera that is open with control.
class StreamTrial {
  public:
    StreamTrial(OpenedCamera& camera, TrialFacts& facts)
        : camera_(camera), features_(camera.Features(Module::Camera)), facts_(facts) {}

    void Run() {
        facts_.ownPacketSize = FreshNumber(features_, kPacketSize);
        ZelGenParam::Array& stream = camera_.Features(Module::Stream);  // opens it
        FindPacketSize(stream);
        Grab(stream);
    }

  private:
    // Asks for test packets, if the producer can.
    void FindPacketSize(ZelGenParam::Array& stream) {
        ZelGenParam::Int* const size = features_.GetInt(kPacketSize, nullptr);
        if (size == nullptr || stream.GetBoolean(kSearch, nullptr) == nullptr) return;
        ZelCamErr code = ZelCamErr_Success;
        const int64_t largest = size->GetMax(&code);
        if (code == ZelCamErr_Success) facts_.largestPacketSize = static_cast<uint64_t>(largest);
        const auto before = FreshNumber(features_, kPacketSize);
        if (stream.SetBooleanValue(kSearch, true) != ZelCamErr_Success) return;
        if (const auto found = FreshNumber(stream, "GevStreamFoundPacketSize")) {
            facts_.testPacketArrived = *found > 0;
            if (*found > 0) facts_.passingPacketSize = found;
        }
        stream.SetBooleanValue(kSearch, false);
        if (before) features_.SetIntegerValue(kPacketSize, static_cast<int64_t>(*before));
    }

    void Grab(ZelGenParam::Array& stream) {
        Acquisition acquisition(camera_, kBuffers);
        facts_.frameSize = acquisition.Stream().GetBufferSize();
        acquisition.Start();
        Count(acquisition);
        facts_.receiveBuffer = FreshNumber(stream, "GevStreamReceiveSocketSize");
        facts_.packets = PacketsOf(stream);
        facts_.underruns = acquisition.Stream().GetNumUnderrun();
        if (facts_.frames == 0) {
            facts_.silence = CheckCamera(acquisition.Camera(), camera_.Info().id, kTrialMs, 0);
        }
        acquisition.End();
    }

    void Count(Acquisition& acquisition) {
        const Deadline deadline(kTrialMs);
        while (facts_.frames < kEnoughFrames && !deadline.Passed()) {
            ZelCamErr code = ZelCamErr_Success;
            ZelCam::Buffer* const buffer = acquisition.WaitForFrame(kTrialMs, &code);
            if (buffer == nullptr) return;
            ++facts_.frames;
            if (FrameIn(*buffer).incomplete) ++facts_.incomplete;
            acquisition.Requeue(*buffer);
        }
    }

    OpenedCamera& camera_;
    ZelGenParam::Array& features_;
    TrialFacts& facts_;
};

// With control, or to read only. Nothing when that fails, too.
void Open(const Camera& camera, std::optional<OpenedCamera>& opened, TrialFacts& facts) {
    const auto refusal = FailureOf([&] { opened.emplace(camera, "control"); });
    if (refusal) {
        facts.controlFailure = FirstLine(refusal->what());
        FailureOf([&] { opened.emplace(camera, "readonly"); });
    }
    facts.isOpen = opened.has_value();
}

}  // namespace

TrialFacts TryCamera(const Camera& camera) {
    TrialFacts facts;
    std::optional<OpenedCamera> opened;
    Open(camera, opened, facts);
    if (!opened) return facts;
    FailureOf([&] { facts.heartbeatMs = HeartbeatOf(opened->Features(Module::Camera)); });
    if (facts.controlFailure.empty()) {
        const auto failure = FailureOf([&] { StreamTrial(*opened, facts).Run(); });
        if (failure) facts.streamFailure = FirstLine(failure->what());
    }
    FailureOf([&] { facts.commands = CommandsOf(opened->Features(Module::Local)); });
    return facts;
}

}  // namespace ZelTool

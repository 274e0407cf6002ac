#include "producers/gigevision/connectionfeatures.h"

#include "producers/wire/bootstrap.h"

namespace ZelGev {

namespace Gev = ZelCti::Gev;
using ZelCti::FeatureTable;

namespace {

constexpr double kShortestTimeout = 10'000;  // microseconds
constexpr double kLongestTimeout = 10'000'000;
constexpr int64_t kMostRetries = 20;
constexpr int64_t kShortestHeartbeat = 500;  // milliseconds; cameras need not take less
constexpr int64_t kLongestHeartbeat = 3'600'000;

void AddCount(FeatureTable& features, ControlEngine& engine, const char* name, const char* toolTip,
              uint64_t address, uint64_t RequestStatistics::*member) {
    features.IntReg(name, toolTip)
        .In("LinkStatistics")
        .Expert()
        .At(address, sizeof(uint64_t))
        .Get([&engine, member] { return engine.Statistics().*member; });
}

void AddCounts(FeatureTable& features, ControlEngine& engine) {
    const auto add = [&](const char* name, const char* toolTip, uint64_t address,
                         uint64_t RequestStatistics::*member) {
        AddCount(features, engine, name, toolTip, address, member);
    };
    add("GevControlCommandCount", "Commands sent, without repetitions.", 0x4310,
        &RequestStatistics::commands);
    add("GevControlRepeatedCommandCount", "Commands sent again because no answer came.", 0x4318,
        &RequestStatistics::repetitions);
    add("GevControlUnansweredCommandCount", "Commands given up without an answer.", 0x4320,
        &RequestStatistics::unanswered);
    add("GevControlRefusedCommandCount", "Commands sent anew because the camera was busy.", 0x4328,
        &RequestStatistics::refusals);
    add("GevControlPendingAckCount", "Answers that a command takes longer.", 0x4330,
        &RequestStatistics::pendings);
    add("GevControlStrayAckCount", "Late, doubled and malformed answers.", 0x4338,
        &RequestStatistics::strayAcks);
}

// The number that the camera has: it may be another one than was asked for.
void AddHeartbeat(FeatureTable& features, DeviceLink& link) {
    auto& heartbeat =
        features
            .Integer("GevDeviceHeartbeatTimeout",
                     "Time without a controller after which the camera is free again.")
            .At(0x4340)
            .Unit("ms")
            .Get([&link] { return link.ReadRegister(Gev::kHeartbeatTimeout.address); });
    if (!link.Controls()) return;
    heartbeat.Limits(kShortestHeartbeat, kLongestHeartbeat).Set([&link](uint64_t milliseconds) {
        link.WriteRegister(Gev::kHeartbeatTimeout.address, static_cast<uint32_t>(milliseconds));
    });
}

void AddDescription(FeatureTable& features, CachedDescription& description) {
    features
        .Boolean("GevDescriptionCacheEnable",
                 "Whether the description may come from the user's cache folder.")
        .Expert()
        .At(0x4348)
        .Get([&description] { return description.IsOn(); })
        .Set([&description](uint64_t on) { description.Switch(on != 0); });
}

}  // namespace

void AddConnectionFeatures(FeatureTable& features, DeviceLink& link, ControlEngine& engine,
                           CachedDescription& description) {
    features.Category("LinkControl", "The control channel of the camera.");
    features.Float("LinkCommandTimeout", "Time to wait for an answer before a command is repeated.")
        .At(0x4300)
        .Unit("us")
        .Limits(kShortestTimeout, kLongestTimeout)
        .Get([&engine] {
            return static_cast<double>(std::chrono::microseconds(engine.Limits().timeout).count());
        })
        .Set([&engine](double microseconds) {
            RequestLimits limits = engine.Limits();
            limits.timeout = Milliseconds(static_cast<int64_t>(microseconds / 1000));
            engine.SetLimits(limits);
        });
    features.Integer("LinkCommandRetryCount", "How often a command is repeated.")
        .At(0x4308)
        .Limits(0, kMostRetries)
        .Get([&engine] { return engine.Limits().maxTries - 1; })
        .Set([&engine](uint64_t retries) {
            RequestLimits limits = engine.Limits();
            limits.maxTries = static_cast<unsigned>(retries) + 1;
            engine.SetLimits(limits);
        });
    AddHeartbeat(features, link);
    AddDescription(features, description);
    AddCounts(features, engine);
}

}  // namespace ZelGev

// The features of streams: what can be set takes effect with the next start, unless it says
// otherwise.
#include <chrono>
#include <type_traits>

#include "producers/gigevision/gevstream.h"
#include "producers/server/base/error.h"

namespace ZelGev {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using ZelCti::Error;
using ZelCti::FeatureTable;

namespace {

constexpr const char* kIsGrabbing = "StreamIsGrabbing";

struct CounterRow {
    const char* name;
    const char* toolTip;
    Counter StreamStatistics::*counter;
};

constexpr CounterRow kCounters[] = {
    {"GevStreamSeenPacketCount", "Packets that came.", &StreamStatistics::seenPackets},
    {"GevStreamMalformedPacketCount", "Packets that say nothing valid.",
     &StreamStatistics::malformedPackets},
    {"GevStreamDeliveredPacketCount", "Packets of frames that were delivered whole.",
     &StreamStatistics::deliveredPackets},
    {"GevStreamLostPacketCount", "Packets that frames lack for good.",
     &StreamStatistics::lostPackets},
    {"GevStreamResendCommandCount", "Requests to send packets again.",
     &StreamStatistics::resendCommands},
    {"GevStreamResendPacketCount", "Packets that were asked for again.",
     &StreamStatistics::resendPackets},
    {"GevStreamResentPacketCount", "Packets that came because they were asked for.",
     &StreamStatistics::resentPackets},
    {"GevStreamUnavailablePacketCount", "Packets that the camera could not send again.",
     &StreamStatistics::unavailablePackets},
    {"GevStreamDuplicatePacketCount", "Packets that were there already.",
     &StreamStatistics::duplicatePackets},
    {"GevStreamLatePacketCount", "Packets of frames that are over or have no buffer.",
     &StreamStatistics::latePackets},
    {"GevStreamCompleteBlockCount", "Frames that were delivered whole.",
     &StreamStatistics::completeBlocks},
    {"GevStreamIncompleteBlockCount", "Frames that were given up, as packets are missing.",
     &StreamStatistics::incompleteBlocks},
    {"GevStreamDiscardedBlockCount", "Incomplete frames that were not delivered.",
     &StreamStatistics::discardedBlocks},
    {"GevStreamOversizedBlockCount", "Frames that are larger than their buffer.",
     &StreamStatistics::oversizedBlocks},
    {"GevStreamSkippedBlockCount", "Frames of which nothing came.",
     &StreamStatistics::skippedBlocks},
    {"GevStreamEngineUnderrunCount", "Frames for which no buffer was queued.",
     &StreamStatistics::engineUnderruns},
};

template <typename Unit>
uint64_t CountOf(Duration duration) {
    return static_cast<uint64_t>(std::chrono::duration_cast<Unit>(duration).count());
}

ZelCti::Feature& AddSetting(FeatureTable& features, const char* name, const char* toolTip,
                            bool ReceptionSettings::* /*member*/) {
    return features.Boolean(name, toolTip);
}

template <typename Value>
ZelCti::Feature& AddSetting(FeatureTable& features, const char* name, const char* toolTip,
                            Value ReceptionSettings::* /*member*/) {
    return features.Integer(name, toolTip);
}

}  // namespace

void GevStream::CheckStopped() const {
    if (isRunning_) throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the acquisition runs");
}

void GevStream::SetMulticastGroup(uint32_t group) {
    CheckStopped();
    Connect(group);
}

// Looks for the size at once: at the next start the camera's settings may be locked. It stays where
// no test packet arrives. That is no error, because programs switch this on whatever the camera is.
void GevStream::Negotiate(bool on) {
    CheckStopped();
    if (on) {
        const bool arrived = channel_.FindPacketSize(PacketSizeSearch::Aim::Largest, *socket_);
        foundPacketSize_ = arrived ? channel_.PacketSize() : 0;
    }
    negotiates_ = on;
}

void GevStream::SetBufferSize(size_t size) {
    bufferSize_ = size;
    if (socket_ != nullptr) socket_->SetBufferSize(size);
}

uint64_t GevStream::Bandwidth() const {
    const uint64_t bytes = reception_.Statistics().receivedBytes - bytesAtStart_;
    const uint64_t ms = CountOf<milliseconds>(Clock::now() - startTime_);
    constexpr uint64_t kMsPerSecond = 1000;
    return isRunning_ && ms != 0 ? bytes * kMsPerSecond / ms : 0;
}

void GevStream::AddFeatures(FeatureTable& features) {
    features.Category("GevStreamControl", "How the stream comes over the network.");
    if (link_.Controls()) AddDestination(features);
    AddSocket(features);
    AddPolicy(features);
    features.Category("GevStreamStatistics",
                      "What happened to packets and frames since the stream was opened.");
    AddStatistics(features);
}

void GevStream::AddDestination(FeatureTable& features) {
    features
        .Integer("GevStreamMulticastGroup",
                 "Address to which the camera sends, so that others receive the stream, too; "
                 "0.0.0.0: to this machine only. Takes effect at once.")
        .Expert()
        .LockedBy(kIsGrabbing)
        .At(0x4000)
        .Representation("IPV4Address")
        .Limits(0, UINT32_MAX)
        .Get([this] {
            const Lock lock(mutex_);
            return uint64_t{group_};
        })
        .Check([](uint64_t group) {
            if (group != 0 && !IsMulticast(static_cast<uint32_t>(group)))
                throw Error(GenTL::GC_ERR_INVALID_VALUE, "no multicast address");
        })
        .Set([this](uint64_t group) {
            const Lock lock(mutex_);
            SetMulticastGroup(static_cast<uint32_t>(group));
        });
    features
        .Boolean("StreamAutoNegotiatePacketSize",
                 "Whether the camera sends the largest packets that the network carries. They are "
                 "looked for at once; without test packets of the camera, its packet size stays.")
        .LockedBy(kIsGrabbing)
        .At(0x4004)
        .Get([this] {
            const Lock lock(mutex_);
            return uint64_t{negotiates_};
        })
        .Set([this](uint64_t on) {
            const Lock lock(mutex_);
            Negotiate(on != 0);
        });
    features
        .IntReg("GevStreamFoundPacketSize",
                "The largest packet size that arrived when it was looked for; 0: no test packet "
                "arrived, or it was not looked for.")
        .Expert()
        .Volatile()
        .At(0x4040)
        .Unit("B")
        .Get([this] {
            const Lock lock(mutex_);
            return uint64_t{foundPacketSize_};
        });
    features
        .Boolean(
            "GevStreamFairShare",
            "Whether the camera waits between packets so that the streams of this program that "
            "do so share the network adapter. It sets GevSCPD, whenever one of them starts or "
            "stops.")
        .Expert()
        .LockedBy(kIsGrabbing)
        .At(0x4014)
        .Get([this] {
            const Lock lock(mutex_);
            return uint64_t{sharesFairly_};
        })
        .Set([this](uint64_t on) {
            const Lock lock(mutex_);
            CheckStopped();
            sharesFairly_ = on != 0;
        });
}

void GevStream::AddSocket(FeatureTable& features) {
    features.Enumeration("GevStreamReceiveMethod", "How packets are received.")
        .Guru()
        .At(0x4008)
        .Entries({{"Automatic", 0, "The one that fits how packets come."},
                  {"Singly", 1, "From the socket, each packet by itself."},
                  {"Joined", 2, "From the socket, packets that the kernel has joined."},
                  {"Ring", 3, "From memory that the kernel fills, if there are rights to it."}})
        .Get([this] {
            const Lock lock(mutex_);
            return static_cast<uint64_t>(method_);
        })
        .Set([this](uint64_t method) {
            const Lock lock(mutex_);
            method_ = static_cast<ReceiveMethod>(method);
        });
    features.Enumeration("GevStreamReceiveMethodInUse", "How packets were received last.")
        .Guru()
        .Volatile()
        .At(0x400C)
        .Entries({{"InUseSingly", 1, "From the socket, each packet by itself."},
                  {"InUseJoined", 2, "From the socket, packets that the kernel has joined."},
                  {"InUseRing", 3, "From memory that the kernel fills."}})
        .Get([this] { return static_cast<uint64_t>(reception_.Method()); });
    features
        .Boolean("GevStreamRealTime", "Whether the thread that receives has real-time priority.")
        .Guru()
        .Volatile()
        .At(0x4010)
        .Get([this] { return uint64_t{reception_.HasRealTimePriority()}; });
    features
        .Integer("GevStreamReceiveSocketSize",
                 "Memory for packets that wait to be received, about twice their data. The system "
                 "may give less than was asked for. Takes effect at once.")
        .Expert()
        .Volatile()
        .At(0x4018, 8)
        .Unit("B")
        .Limits(0, StreamSocket::kMaxBuffer)
        .Get([this] {
            const Lock lock(mutex_);
            return uint64_t{socket_ != nullptr ? socket_->BufferSize() : bufferSize_};
        })
        .Set([this](uint64_t size) {
            const Lock lock(mutex_);
            SetBufferSize(size);
        });
    constexpr size_t kTextSize = 256;
    features
        .StringReg("GevStreamReceiveSocketAdvice",
                   "How to get more memory for packets that wait, if the system gives too little.")
        .Expert()
        .Volatile()
        .At(0x4100, kTextSize)
        .Get([this] {
            const Lock lock(mutex_);
            return socket_ != nullptr ? socket_->BufferAdvice() : std::string();
        });
}

void GevStream::AddPolicy(FeatureTable& features) {
    const auto add = [&](const char* name, const char* toolTip, uint64_t address, auto member) {
        return &AddSetting(features, name, toolTip, member)
                    .Expert()
                    .At(address)
                    .Get([this, member] {
                        const Lock lock(mutex_);
                        return static_cast<uint64_t>(settings_.*member);
                    })
                    .Set([this, member](uint64_t value) {
                        const Lock lock(mutex_);
                        using Value = std::decay_t<decltype(settings_.*member)>;
                        settings_.*member = static_cast<Value>(value);
                    });
    };
    const auto addTime = [&](const char* name, const char* toolTip, uint64_t address,
                             Duration ReceptionSettings::*member) {
        constexpr uint64_t kMost = 60000000;
        features.Integer(name, toolTip)
            .Expert()
            .At(address)
            .Unit("us")
            .Limits(0, kMost)
            .Get([this, member] {
                const Lock lock(mutex_);
                return CountOf<microseconds>(settings_.*member);
            })
            .Set([this, member](uint64_t us) {
                const Lock lock(mutex_);
                settings_.*member = microseconds(us);
            });
    };
    add("StreamPacketResendEnable", "Whether lost packets are asked for again.", 0x4200,
        &ReceptionSettings::resend);
    add("GevStreamDeliverIncompleteBlocks",
        "Whether frames that lack packets are delivered, flagged as incomplete.", 0x4204,
        &ReceptionSettings::deliverIncomplete);
    add("GevStreamMaxPacketGaps",
        "Frames with more runs of missing packets at a time are not repaired.", 0x4208,
        &ReceptionSettings::maxGaps)
        ->Limits(0, 1 << 16);
    add("GevStreamMaxResendsPerPacket", "How often a packet is asked for at most.", 0x420C,
        &ReceptionSettings::maxRequests)
        ->Limits(0, 1 << 10);
    add("GevStreamMaxResendPercent", "Packets of a frame that are asked for at most.", 0x4210,
        &ReceptionSettings::maxAskedPercent)
        ->Unit("%")
        .Limits(0, 1000);
    add("GevStreamMaxResendsPerSecond", "Packets that are asked for in a second at most.", 0x4214,
        &ReceptionSettings::maxAskedPerSecond)
        ->Limits(0, UINT32_MAX);
    addTime("GevStreamPacketOrderDelay",
            "How long a packet may come after its successor before it counts as lost.", 0x4218,
            &ReceptionSettings::orderDelay);
    addTime("GevStreamResendRepeatDelay", "The least time between two requests for a packet.",
            0x421C, &ReceptionSettings::repeatDelay);
    addTime("GevStreamMaxBlockDuration",
            "How long after its last packet an incomplete frame is given up.", 0x4220,
            &ReceptionSettings::retention);
}

void GevStream::AddStatistics(FeatureTable& features) {
    uint64_t address = 0x4400;
    const auto add = [&](const char* name, const char* toolTip, auto get) {
        features.IntReg(name, toolTip).Expert().Volatile().At(address, 8).Get(get);
        address += 8;
    };
    for (const CounterRow& row : kCounters) {
        const auto counter = row.counter;
        add(row.name, row.toolTip,
            [this, counter] { return uint64_t{reception_.Statistics().*counter}; });
    }
    add("GevStreamSocketDropCount",
        "Packets for which this machine had no room; they did not get lost on the network.",
        [this] { return reception_.NumDropped(); });
    add("GevStreamBandwidth", "Bytes of frames a second since the acquisition was started.",
        [this] {
            const Lock lock(mutex_);
            return Bandwidth();
        });
}

}  // namespace ZelGev

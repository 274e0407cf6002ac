// What `zelcam doctor` knows: plain facts about the machine, its adapters and cameras, and what
// happened while it looked. Nothing is judged here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/zelcam/frames/camerachecks.h"

namespace ZelTool {

struct Subnet {
    uint32_t address = 0;  // of this machine in it
    uint32_t mask = 0;
};

// Packets that an adapter or its driver threw away.
struct AdapterDrops {
    uint64_t dropped = 0;   // also those of protocols that nobody listens to
    uint64_t missed = 0;    // the ring was full
    uint64_t overruns = 0;  // the adapter's own memory was full
};

// Of an adapter, in packets.
struct Ring {
    uint32_t size = 0;
    uint32_t largest = 0;
};

struct AdapterFacts {
    std::string name;
    bool isUp = false;
    bool hasLink = false;  // a cable with something at its other end
    bool isLoopback = false;
    bool isWired = false;     // cameras may be on it, as far as its kind tells
    bool isSearched = false;  // a producer looks for cameras on it
    std::vector<Subnet> subnets;
    uint32_t mtu = 0;
    uint32_t reversePathFilter = 0;  // as it takes effect: 0 off, 1 strict, 2 loose
    std::optional<Ring> ring;
    AdapterDrops drops;           // since it exists
    AdapterDrops dropsMeanwhile;  // while the doctor looked
};

// Counts of the network code of this machine.
struct KernelCounts {
    uint64_t backlogDrops = 0;      // the queue of a processor was full
    uint64_t squeezes = 0;          // a processor had no time to empty its queue
    uint64_t reversePathDrops = 0;  // by the reverse-path filter
};

struct MachineFacts {
    std::optional<uint64_t> receiveLimit;  // net.core.rmem_max
    bool exceedsLimit = false;             // this user has the right to
    std::vector<std::string> governors;    // of the processors, each once
    double load = 0;                       // of the last minute, in processors
    unsigned processors = 1;
    KernelCounts meanwhile;
    bool usesUfw = false;            // ufw makes the rules of the firewall
    bool hasUsbRule = false;         // udev lets users at the machine open USB cameras
    std::string searchedInterfaces;  // ZELGEV_INTERFACES
    std::string producerProblem;     // why no producer looks for cameras; empty if one does
};

struct CameraFacts {
    std::string id;
    bool isSimulated = false;
    bool isGigE = false;
    bool isUsb = false;
    std::string adapter;              // empty: unknown
    std::optional<uint32_t> address;  // of a GigE camera
    std::string routedThrough;        // the adapter to which this machine sends for it
    bool isFree = false;              // can be opened with control
    bool cannotBeReached = false;     // not even to be read
    std::string accessReason;         // why it is not free, as its producer says it
    std::string forceCommand;         // gives it an address in its adapter's network
};

// Packets of the test stream, as the producer counts them.
struct PacketCounts {
    uint64_t seen = 0;
    uint64_t lost = 0;         // for good
    uint64_t askedAgain = 0;   // that did not come when they were expected
    uint64_t needless = 0;     // came twice or too late, as those that were only slow do
    uint64_t unavailable = 0;  // the camera did not have them any more
    uint64_t socketDrops = 0;  // this machine had no room for them
};

// Commands to the camera since it was opened.
struct CommandCounts {
    uint64_t sent = 0;
    uint64_t repeated = 0;
    uint64_t unanswered = 0;
};

// The camera opened, and a short stream. Numbers that producer and camera do not tell are missing.
struct TrialFacts {
    bool isOpen = false;         // with control, or else to be read only
    std::string controlFailure;  // why it has no control; empty if it has
    std::string streamFailure;   // why the stream could not be tried; empty if it was
    std::optional<uint64_t> heartbeatMs;
    std::optional<CommandCounts> commands;
    std::optional<uint64_t> ownPacketSize;      // of the camera, before the stream was opened
    std::optional<uint64_t> largestPacketSize;  // that the camera can send
    std::optional<uint64_t> passingPacketSize;  // the largest that arrived
    std::optional<bool> testPacketArrived;
    std::optional<uint64_t> receiveBuffer;  // that the stream got
    uint64_t frameSize = 0;
    std::optional<PacketCounts> packets;
    uint64_t frames = 0;
    uint64_t incomplete = 0;
    uint64_t underruns = 0;      // frames without a free buffer
    std::vector<Check> silence;  // what the camera's features say when no frame came
};

struct Snapshot {
    MachineFacts machine;
    std::vector<AdapterFacts> adapters;
    std::vector<CameraFacts> cameras;  // all that are listed
    bool asksForSimulated = false;     // simulated cameras are what the user wants
    std::string wanted;                // the camera that the user named
    std::optional<size_t> chosen;      // which of the cameras that is; nothing: none
    std::string choiceProblem;         // why no camera has that name
    std::optional<TrialFacts> trial;   // of that camera
};

}  // namespace ZelTool

// What a simulated camera on a network does otherwise than a well-behaved one.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "producers/sockets/ipaddress.h"

namespace ZelSim {

// How a camera writes the URL of its description; UrlForm::Plain is Local:name.xml;80000000;3e67.
enum class UrlForm : uint8_t {
    Plain,
    Slashes,        // Local:///name.xml
    Spaces,         // behind the semicolons
    HexPrefix,      // 0x80000000
    SchemaVersion,  // ?SchemaVersion=1.1.0 behind the length
    LowerCase,      // local:
    UpperCaseZip,   // an archive NAME.ZIP
    Http,           // http://..., which nobody serves
    File            // File:///..., which is not there
};

// The address of a camera, its quirks and its faults. The defaults are those of a well-behaved
// camera. Where a number says "every n-th" or "the first n", 0 means none. Each member is a switch
// of the same name with a capital letter; docs/simulator.md lists them with their help texts.
struct NetworkSettings {
    // ---- Who it is. What is 0 is chosen by the server, which puts its choice here. ----
    ZelCti::IpSettings ip;  // switches Address, Mask, Gateway
    uint64_t mac = 0;       // 48 bits
    uint32_t version = 0x00020001;

    // ---- What it does not have: bits that are cleared in the capability registers; the camera
    // behaves accordingly. ----
    uint32_t gvcpCapabilitiesOff = 0;
    uint32_t gvspCapabilitiesOff = 0;
    uint32_t messageCapabilitiesOff = 0;
    uint32_t streamCapabilitiesOff = 0;  // SCC

    // ---- Control: acknowledges ----
    uint32_t dropAckEvery = 0;    // every n-th acknowledge is lost; the command is done
    uint32_t delayAckMs = 0;      // every acknowledge comes later by this time
    uint32_t doubleAckEvery = 0;  // every n-th acknowledge comes twice
    uint32_t wrongAckIdEvery = 0;
    bool lateAckAfterSlow = false;  // a PENDING_ACK is followed by the acknowledge of an older id
    uint64_t errorAddress = UINT64_MAX;  // an access there is answered with errorStatus
    uint16_t errorStatus = 0x8FFF;
    uint32_t pendingAckMs = 0;      // each access to a register takes so long: PENDING_ACK first
    bool zeroLengthErrors = false;  // refused writes have no payload, as refused reads
    bool badAlignmentOnce = false;  // the first access of a controller gives BAD_ALIGNMENT
    bool refuseOddReads = true;     // READMEM whose count is no multiple of 4: BAD_ALIGNMENT
    bool refuseReadMem = false;     // READMEM and WRITEMEM of registers of 4 bytes

    // ---- Control: discovery and heartbeat ----
    bool ignoreLimitedBroadcast = false;
    bool ignoreDirectedBroadcast = false;
    uint32_t discoveryDelayMs = 0;    // at power-on
    bool heartbeatSilence = false;    // no command is answered or done, discovery is
    uint32_t longestHeartbeatMs = 0;  // longer time-outs become this; 0: none does

    // ---- Control: what registers say ----
    bool emptySerial = false;
    bool oddStrings = false;  // garbage behind the end, control characters, no UTF-8
    UrlForm urlForm = UrlForm::Plain;
    bool secondUrlOnly = false;  // the first one is empty
    bool zip = false;            // the description is an archive
    bool tickFrequencyZero = false;
    bool tickFrequencyLowOnly = false;   // the value stands in the low word, the high one is 0
    bool tickFrequencyHighOnly = false;  // the value stands in the high word, the low one is 0

    // ---- Stream: what is lost on the way. All of it holds for resent packets too, but those of
    // loseLeaders, loseTrailers, loseTails and loseBlocks. ----
    double lossRate = 0;        // of packets, at random: 0.01 is one in a hundred
    uint32_t lossEvery = 0;     // every n-th packet
    uint32_t lossBurst = 1;     // so many packets in a row, whenever one is lost
    uint32_t lossSeed = 1;      // of the random numbers
    bool loseResent = true;     // resent packets are lost in the same ways
    uint32_t loseLeaders = 0;   // of every n-th block
    uint32_t loseTrailers = 0;  // of every n-th block
    uint32_t loseTails = 0;     // of every n-th block its second half, with the trailer
    uint32_t loseBlocks = 0;    // every n-th block

    // ---- Stream: what comes otherwise ----
    uint32_t reorder = 0;         // a packet in 16 comes so many packets later
    uint32_t duplicateEvery = 0;  // every n-th packet comes twice
    uint32_t lateBlocks = 0;  // of every n-th block one packet comes after the trailer of the next
    uint32_t wrongStatusEvery = 0;   // every n-th packet has an error and no data
    uint32_t wrongBlockIdEvery = 0;  // every n-th packet
    uint32_t pathMtu = 0;            // larger IP datagrams are lost; 0: none is
    uint64_t firstBlockId = 1;       // when a channel is opened
    bool leaderAtStart = false;  // the first leader comes with AcquisitionStart, not with its frame
    bool payloadType4 = false;   // blocks with chunks are chunk data without dimensions
    bool payloadType5 = false;   // blocks with chunks are extended chunk data
    bool paddedLastPacket = false;
    bool variableHeight = false;       // every other block has half of its lines only
    bool bigEndianPixels = false;      // whatever SCPS says
    bool partRelativeOffsets = false;  // multi-part: offsets count from the begin of the part
    bool timestampsAbove63Bits = false;
    bool segmentation = false;  // UDP_SEGMENT: captures on this machine see uncut datagrams

    // ---- Stream: channels and packet size ----
    bool scspZero = false;                   // SCSP reads as 0
    uint32_t packetSizeRounding = 4;         // SCPS is rounded down to a multiple
    bool refuseUnalignedPacketSize = false;  // BAD_ALIGNMENT instead of rounding
    bool ignoreDontFragment = false;         // packets are fragmented, whatever SCPS says
    uint32_t firstTestPacketsLost = 0;       // of a channel since it was opened
    uint32_t testPacketDelayMs = 0;
    bool needsPortZero = false;     // a stream starts again only after SCP was written as 0
    bool extendedIdsOn = false;     // 64-bit block ids at power-on
    uint32_t ownPacketSize = 1500;  // SCPS at power-on

    // ---- Stream: resends ----
    uint32_t resendMemoryBlocks = 4;    // how many blocks can be asked for again
    uint32_t resendLimitPerSecond = 0;  // packets; more are not answered; 0: no limit
    bool resendTwice = false;           // the second time with wrong data
    bool resendWrongId = false;         // and with the id of the next packet
    bool resendStatusZero = false;      // instead of 0x0100
    bool noResend = false;              // requests are not answered, though the camera says it can

    // ---- Power ----
    uint32_t bootMs = 500;  // from a power cycle until the camera answers again
};

// The switches of one camera: a table of names over the members of NetworkSettings, which
// configurations, zelsim.h and the control socket of the program use alike. Thread-safe.
class NetworkSwitches {
  public:
    enum class Kind : uint8_t { Boolean, Number, Text };

    struct Switch {
        std::string_view name;
        Kind kind;
        std::string_view help;  // one line
    };

    explicit NetworkSwitches(NetworkSettings settings = {});

    // All of them, in the order of the members of NetworkSettings.
    static void ForEach(const std::function<void(const Switch&)>& visit);

    // Sets one of some settings. Throws GC_ERR_INVALID_PARAMETER with a text for users for an
    // unknown name or a text that is no value of it.
    static void Set(NetworkSettings& settings, std::string_view name, std::string_view text);

    // What Set takes.
    static std::string Get(const NetworkSettings& settings, std::string_view name);

    // The same for the camera at run time. The threads of the camera see the change with their next
    // Settings(); what they had before stays valid.
    void Set(std::string_view name, std::string_view text);
    std::string Get(std::string_view name) const;

    // Back to what the camera started with, except for its address.
    void Reset();

    std::shared_ptr<const NetworkSettings> Settings() const;

    // The camera got another address.
    void SetIp(const ZelCti::IpSettings& ip);

  private:
    void Change(const std::function<void(NetworkSettings&)>& change);

    const std::shared_ptr<const NetworkSettings> initial_;
    mutable std::mutex mutex_;
    std::shared_ptr<const NetworkSettings> settings_;  // guarded by mutex_
};

}  // namespace ZelSim

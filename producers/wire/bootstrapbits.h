// Bits and fields of the bootstrap registers, one namespace for each register. A field has the mask
// of its place; its lowest bit is bit 0 unless a shift says otherwise.
#pragma once

#include <cstdint>

namespace ZelCti::Gev {

namespace DeviceMode {
constexpr uint32_t kBigEndian = 0x80000000;  // registers outside the bootstrap area
constexpr uint32_t kClass = 0x70000000;      // transmitter, receiver, transceiver, peripheral
constexpr uint32_t kLink = 0x03000000;       // single, multiple, static LAG, dynamic LAG
constexpr uint32_t kCharacterSet = 0x000000FF;
constexpr uint32_t kUtf8 = 1;
constexpr uint32_t kAscii = 2;
}  // namespace DeviceMode

// Supported and current configuration.
namespace IpConfiguration {
constexpr uint32_t kHandlesPause = 0x80000000;
constexpr uint32_t kGeneratesPause = 0x40000000;
constexpr uint32_t kLla = 0x4;  // always on
constexpr uint32_t kDhcp = 0x2;
constexpr uint32_t kPersistentIp = 0x1;
}  // namespace IpConfiguration

namespace GvspCapability {
constexpr uint32_t kScsp = 0x80000000;
constexpr uint32_t kBlockIds16 = 0x40000000;
constexpr uint32_t kMaximumBlockSize = 0x20000000;          // 2.2
constexpr uint32_t kExtendedBootstrapAddress = 0x10000000;  // 2.2
}  // namespace GvspCapability

namespace MessageChannelCapability {
constexpr uint32_t kMcsp = 0x80000000;
constexpr uint32_t kMccfg = 0x40000000;  // 2.2
constexpr uint32_t kMcec = 0x20000000;   // 2.2
}  // namespace MessageChannelCapability

namespace GvcpCapability {
constexpr uint32_t kUserDefinedName = 0x80000000;
constexpr uint32_t kSerialNumber = 0x40000000;
constexpr uint32_t kHeartbeatDisable = 0x20000000;
constexpr uint32_t kLinkSpeed = 0x10000000;
constexpr uint32_t kPrimaryApplication = 0x08000000;  // its port and its address can be read
constexpr uint32_t kManifestTable = 0x04000000;
constexpr uint32_t kTestData = 0x02000000;  // in test packets
constexpr uint32_t kDiscoveryAckDelay = 0x01000000;
constexpr uint32_t kDiscoveryAckDelayWritable = 0x00800000;
constexpr uint32_t kStatusCodes11 = 0x00400000;
constexpr uint32_t kSwitchover = 0x00200000;
constexpr uint32_t kUnconditionalAction = 0x00100000;
constexpr uint32_t kIeee1588 = 0x00080000;
constexpr uint32_t kStatusCodes20 = 0x00040000;
constexpr uint32_t kScheduledAction = 0x00020000;
constexpr uint32_t kIeee1588Extended = 0x00010000;  // 2.1
constexpr uint32_t kAction = 0x00000040;
constexpr uint32_t kPendingAck = 0x00000020;
constexpr uint32_t kEventData = 0x00000010;
constexpr uint32_t kEvent = 0x00000008;
constexpr uint32_t kPacketResend = 0x00000004;
constexpr uint32_t kWriteMem = 0x00000002;
constexpr uint32_t kConcatenation = 0x00000001;  // several registers in one command
}  // namespace GvcpCapability

// Latch comes first when both are written. The bits clear themselves.
namespace TimestampControl {
constexpr uint32_t kLatch = 0x2;
constexpr uint32_t kReset = 0x1;
}  // namespace TimestampControl

namespace GvcpConfiguration {
constexpr uint32_t kIeee1588 = 0x00080000;
constexpr uint32_t kStatusCodes20 = 0x00040000;
constexpr uint32_t kUnconditionalAction = 0x8;
constexpr uint32_t kStatusCodes11 = 0x4;
constexpr uint32_t kPendingAck = 0x2;
constexpr uint32_t kHeartbeatDisable = 0x1;
}  // namespace GvcpConfiguration

namespace GvspConfiguration {
constexpr uint32_t kBlockIds64 = 0x40000000;
}  // namespace GvspConfiguration

// Capability and configuration (known from one source).
namespace PhysicalLink {
constexpr uint32_t kDynamicLag = 0x8;
constexpr uint32_t kStaticLag = 0x4;
constexpr uint32_t kMultiple = 0x2;
constexpr uint32_t kSingle = 0x1;
}  // namespace PhysicalLink

// Known from one source.
namespace Ieee1588Status {
constexpr uint32_t kClockState = 0xF;  // the numbers of IEEE 1588 (from memory)
}  // namespace Ieee1588Status

// Extended capabilities (2.1, known from one source).
namespace Ieee1588Extended {
constexpr uint32_t kProfiles = 0x80000000;
}  // namespace Ieee1588Extended

// Supported profiles (2.1, known from one source).
namespace Ieee1588Profile {
constexpr uint32_t kPtpDefault = 0x80000000;
constexpr uint32_t k8021As = 0x40000000;
}  // namespace Ieee1588Profile

namespace Ccp {
constexpr uint32_t kSwitchoverKey = 0xFFFF0000;  // write only
constexpr uint32_t kSwitchoverKeyShift = 16;
constexpr uint32_t kSwitchoverAllowed = 0x4;
constexpr uint32_t kControl = 0x2;
constexpr uint32_t kExclusive = 0x1;  // also together with control (from memory)
}  // namespace Ccp

namespace Mcp {
constexpr uint32_t kInterface = 0x000F0000;
constexpr uint32_t kInterfaceShift = 16;
constexpr uint32_t kPort = 0x0000FFFF;  // 0 closes the channel
}  // namespace Mcp

// 2.2, known from one source.
namespace Mccfg {
constexpr uint32_t kMcec = 0x80000000;
}  // namespace Mccfg

namespace Scp {
constexpr uint32_t kReceiver = 0x80000000;  // the direction, read only
constexpr uint32_t kInterface = 0x000F0000;
constexpr uint32_t kInterfaceShift = 16;
constexpr uint32_t kPort = 0x0000FFFF;  // 0 closes the channel
}  // namespace Scp

namespace Scps {
constexpr uint32_t kFireTestPacket = 0x80000000;  // reads as 0
constexpr uint32_t kDoNotFragment = 0x40000000;
constexpr uint32_t kBigEndianPixels = 0x20000000;
constexpr uint32_t kPacketSize = 0x0000FFFF;  // the IP datagram with its headers
}  // namespace Scps

// What a stream channel can, and in Sccfg what is on.
namespace Scc {
constexpr uint32_t kPixelEndianness = 0x80000000;
constexpr uint32_t kIpReassembly = 0x40000000;
constexpr uint32_t kScmpc = 0x100;  // 2.2
constexpr uint32_t kGenDc = 0x80;   // 2.2
constexpr uint32_t kMultiPart = 0x40;
constexpr uint32_t kLargeLeaderTrailer = 0x20;
constexpr uint32_t kMultiZone = 0x10;
constexpr uint32_t kResendDestination = 0x08;
constexpr uint32_t kAllIn = 0x04;
constexpr uint32_t kUnconditionalStreaming = 0x02;
constexpr uint32_t kExtendedChunkData = 0x01;
}  // namespace Scc

namespace Sccfg {
constexpr uint32_t kGenDc = Scc::kGenDc;
constexpr uint32_t kMultiPart = Scc::kMultiPart;
constexpr uint32_t kLargeLeaderTrailer = Scc::kLargeLeaderTrailer;
constexpr uint32_t kResendDestination = Scc::kResendDestination;  // meaning from memory
constexpr uint32_t kAllIn = Scc::kAllIn;
constexpr uint32_t kUnconditionalStreaming = Scc::kUnconditionalStreaming;
constexpr uint32_t kExtendedChunkData = Scc::kExtendedChunkData;
}  // namespace Sccfg

}  // namespace ZelCti::Gev

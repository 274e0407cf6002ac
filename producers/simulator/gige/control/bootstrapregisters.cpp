#include "producers/simulator/gige/control/bootstrapregisters.h"

#include <algorithm>
#include <utility>

#include "producers/simulator/gige/control/bigendianregister.h"
#include "producers/simulator/gige/control/descriptionurls.h"

namespace ZelSim {

namespace Gev = ZelCti::Gev;
namespace Capability = ZelCti::Gev::GvcpCapability;
namespace Configuration = ZelCti::Gev::GvcpConfiguration;
using ZelCti::Endpoint;
using ZelCti::Error;
using ZelCti::IpSettings;
using ZelCti::RegisterSpace;

namespace {

constexpr uint32_t kKeyMask = 0xFFFF;
constexpr uint32_t kMaxDiscoveryDelay = 1000;  // ms
constexpr uint64_t kBytesPerMegabit = 125000;
constexpr uint32_t kClockMaster = 6;
constexpr uint32_t kClockDisabled = 3;
constexpr unsigned kHighWord = 32;

}  // namespace

BootstrapRegisters::BootstrapRegisters(Camera& camera, ZelCti::PortRegisters& port,
                                       NetworkHardware& hardware, const ControlPrivilege& privilege)
    : camera_(camera),
      port_(port),
      hardware_(hardware),
      privilege_(privilege),
      channels_(camera, hardware) {
    settings_.discoveryDelay = std::min(hardware.Settings()->discoveryDelayMs, kMaxDiscoveryDelay);
    SetHeartbeatTimeout(settings_.heartbeatTimeout);
}

void BootstrapRegisters::AddTo(RegisterSpace& space) {
    AddIdentity(space);
    AddTexts(space);
    AddAddresses(space);
    AddPersistentIp(space);
    AddCapabilities(space);
    AddTime(space);
    AddControl(space);
    AddConfiguration(space);
    AddLink(space);
    AddActions(space);
    channels_.AddTo(space);
    extendedIds_ = hardware_.Settings()->extendedIdsOn || channels_.PowerOnConfiguration() != 0;
    hardware_.SetExtendedIds(extendedIds_);
}

ControlSettings BootstrapRegisters::Settings() const {
    const std::lock_guard lock(mutex_);
    return settings_;
}

Capabilities BootstrapRegisters::Can() const {
    return CapabilitiesOf(*hardware_.Settings(), hardware_.StreamCapability());
}

void BootstrapRegisters::Change(const std::function<void(ControlSettings&)>& change) {
    const std::lock_guard lock(mutex_);
    change(settings_);
}

void BootstrapRegisters::OnControlEnd() {
    const auto lock = port_.Lock();
    Configure(0);
    if (!channels_.IsUnconditional()) {
        camera_.GetAcquisition().Abort();
        camera_.Control().LockByClient(false);
    }
    channels_.Close();
}

void BootstrapRegisters::OnNewStreams() {
    const auto lock = port_.Lock();
    channels_.RenewStreams();
    hardware_.SetExtendedIds(extendedIds_);
    Configure(Settings().gvcpConfiguration);
}

void BootstrapRegisters::Configure(uint32_t bits) {
    Change([bits](ControlSettings& settings) { settings.gvcpConfiguration = bits; });
    hardware_.SetStatusCodes((bits & Configuration::kStatusCodes11) != 0);
}

void BootstrapRegisters::SetHeartbeatTimeout(uint32_t milliseconds) {
    const uint32_t longest = hardware_.Settings()->longestHeartbeatMs;
    if (longest != 0) milliseconds = std::min(milliseconds, longest);
    milliseconds = std::max(milliseconds, kMinHeartbeatTimeout);
    Change([milliseconds](ControlSettings& settings) { settings.heartbeatTimeout = milliseconds; });
}

std::vector<uint32_t> BootstrapRegisters::TakeTestPackets() {
    const auto lock = port_.Lock();
    return channels_.TakeTestPackets();
}

void BootstrapRegisters::AddIdentity(RegisterSpace& space) {
    AddNumber(space, Gev::kVersion, {[this] { return hardware_.Settings()->version; }, {}, {}});
    AddNumber(space, Gev::kDeviceMode,
              {[this] {
                   const bool big = camera_.Order() == ZelCti::ByteOrder::Big;
                   return (big ? Gev::DeviceMode::kBigEndian : 0U) | Gev::DeviceMode::kUtf8;
               },
               {},
               {}});
    AddNumber(
        space, Gev::kMacHigh,
        {[this] { return static_cast<uint32_t>(hardware_.Settings()->mac >> kHighWord); }, {}, {}});
    AddNumber(space, Gev::kMacLow,
              {[this] { return static_cast<uint32_t>(hardware_.Settings()->mac); }, {}, {}});
}

// Odd strings have a control character and a byte that is no UTF-8, and garbage behind their end.
std::string BootstrapRegisters::Text(std::string text, size_t size) const {
    if (!hardware_.Settings()->oddStrings) return text;
    constexpr char kOdd[] = "\x01\xFF";
    text.resize(std::min(text.size(), size - sizeof kOdd));
    text.append(kOdd, sizeof kOdd);
    text.resize(size, '?');
    return text;
}

void BootstrapRegisters::AddTexts(RegisterSpace& space) {
    const auto addText = [&](const Gev::Register& reg, std::string text) {
        AddBytes(space, reg, [this, &reg, text = std::move(text)] { return Text(text, reg.size); });
    };
    const CameraConfig& config = camera_.Config();
    addText(Gev::kManufacturerName, config.vendor);
    addText(Gev::kModelName, config.model);
    addText(Gev::kDeviceVersion, config.version);
    addText(Gev::kManufacturerInformation, "simulated");
    AddBytes(space, Gev::kSerialNumber, [this, &config]() -> std::string {
        if (hardware_.Settings()->emptySerial) return {};
        return Text(config.serial, Gev::kSerialNumber.size);
    });
    AddBytes(
        space, Gev::kUserDefinedName, [this] { return camera_.UserName(); },
        [this](const std::string& name) { camera_.SetUserName(name); });
    AddBytes(space, Gev::kFirstUrl, [this] { return Urls()[0]; });
    AddBytes(space, Gev::kSecondUrl, [this] { return Urls()[1]; });
    AddBytes(space, Gev::kManifestTable, [this] { return ManifestTable(); });
}

std::array<std::string, 2> BootstrapRegisters::Urls() const {
    return DescriptionUrls(camera_.Config(), *hardware_.Settings(), port_);
}

// One description of version 1.0.0 and schema 1.1, at the URL registers (layout from memory).
std::string BootstrapRegisters::ManifestTable() const {
    constexpr char kTable[] = {
        0x04, 0, 0,    0,    0, 0, 0,    0,  // one entry, in the upper 6 bits
        0x04, 0, 0x01, 0x04, 0, 0, 0x02, 0,  // 1.0.0, 1.1, address of the first URL
    };
    return {kTable, sizeof kTable};
}

void BootstrapRegisters::AddAddresses(RegisterSpace& space) {
    AddNumber(space, Gev::kSupportedIpConfiguration,
              {[this] { return Can().supportedIp; }, {}, {}});
    AddNumber(space, Gev::kCurrentIpConfiguration,
              {[this] { return hardware_.Memory().configuration | Gev::IpConfiguration::kLla; },
               [this](uint32_t bits) {
                   IpMemory memory = hardware_.Memory();
                   memory.configuration = bits;
                   hardware_.SetMemory(memory);
               },
               [this](uint32_t bits) {
                   if ((bits & ~Can().supportedIp) != 0) RefuseBits();
               }});
    const auto add = [&](const Gev::Register& reg, uint32_t IpSettings::*member) {
        AddNumber(space, reg,
                  {[this, member] { return hardware_.Settings()->ip.*member; }, {}, {}});
    };
    add(Gev::kCurrentIp, &IpSettings::address);
    add(Gev::kCurrentSubnetMask, &IpSettings::mask);
    add(Gev::kCurrentDefaultGateway, &IpSettings::gateway);
    AddNumber(space, Gev::kNumberOfInterfaces, {[] { return 1; }, {}, {}});
}

void BootstrapRegisters::AddPersistentIp(RegisterSpace& space) {
    const auto add = [&](const Gev::Register& reg, uint32_t IpSettings::*member) {
        AddNumber(space, reg,
                  {[this, member] { return hardware_.Memory().persistent.*member; },
                   [this, member](uint32_t address) {
                       IpMemory memory = hardware_.Memory();
                       memory.persistent.*member = address;
                       hardware_.SetMemory(memory);
                   },
                   {}});
    };
    add(Gev::kPersistentIp, &IpSettings::address);
    add(Gev::kPersistentSubnetMask, &IpSettings::mask);
    add(Gev::kPersistentDefaultGateway, &IpSettings::gateway);
}

void BootstrapRegisters::AddCapabilities(RegisterSpace& space) {
    AddNumber(space, Gev::kNumberOfMessageChannels, {[] { return 1; }, {}, {}});
    AddNumber(space, Gev::kNumberOfStreamChannels,
              {[this] { return hardware_.NumStreams(); }, {}, {}});
    AddNumber(space, Gev::kGvspCapability, {[this] { return Can().gvsp; }, {}, {}});
    AddNumber(space, Gev::kMessageChannelCapability, {[this] { return Can().messages; }, {}, {}});
    AddNumber(space, Gev::kGvcpCapability, {[this] { return Can().gvcp; }, {}, {}});
    AddNumber(space, Gev::kPendingTimeout, {[] { return kPendingTimeout; }, {}, {}});
    AddNumber(space, Gev::kScheduledActionQueueSize, {[] { return kScheduledActions; }, {}, {}});
}

uint32_t BootstrapRegisters::TickFrequency(bool high) const {
    const auto settings = hardware_.Settings();
    if (settings->tickFrequencyZero) return 0;
    const uint64_t frequency = camera_.Config().timestampFrequency;
    if (settings->tickFrequencyHighOnly) return high ? static_cast<uint32_t>(frequency) : 0;
    if (settings->tickFrequencyLowOnly) return high ? 0 : static_cast<uint32_t>(frequency);
    return static_cast<uint32_t>(high ? frequency >> kHighWord : frequency);
}

void BootstrapRegisters::ControlTimestamp(uint32_t bits) {
    if ((bits & Gev::TimestampControl::kLatch) != 0)
        latchedTicks_ = camera_.Ticks(camera_.Nanoseconds());
    if ((bits & Gev::TimestampControl::kReset) != 0) hardware_.SetTimestampToZero();
}

void BootstrapRegisters::AddTime(RegisterSpace& space) {
    AddNumber(space, Gev::kTimestampTickFrequencyHigh,
              {[this] { return TickFrequency(true); }, {}, {}});
    AddNumber(space, Gev::kTimestampTickFrequencyLow,
              {[this] { return TickFrequency(false); }, {}, {}});
    AddNumber(space, Gev::kTimestampControl,
              {{},
               [this](uint32_t bits) { ControlTimestamp(bits); },
               [this](uint32_t bits) {
                   constexpr uint32_t kReset = Gev::TimestampControl::kReset;
                   if ((bits & ~(Gev::TimestampControl::kLatch | kReset)) != 0) RefuseBits();
                   if ((bits & kReset) != 0 &&
                       (Settings().gvcpConfiguration & Configuration::kIeee1588) != 0)
                       throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the clock is synchronised");
               }});
    AddNumber(space, Gev::kLatchedTimestampHigh,
              {[this] { return static_cast<uint32_t>(latchedTicks_ >> kHighWord); }, {}, {}});
    AddNumber(space, Gev::kLatchedTimestampLow,
              {[this] { return static_cast<uint32_t>(latchedTicks_); }, {}, {}});
    AddNumber(space, Gev::kIeee1588Status,
              {[this] {
                   const bool on = (Settings().gvcpConfiguration & Configuration::kIeee1588) != 0;
                   return on ? kClockMaster : kClockDisabled;
               },
               {},
               {}});
}

void BootstrapRegisters::AddControl(RegisterSpace& space) {
    AddNumber(space, Gev::kCcp, {[this] { return privilege_.Value(); }, {}, {}});
    AddNumber(
        space, Gev::kPrimaryApplicationPort,
        {[this]() -> uint32_t { return privilege_.Holder().value_or(Endpoint{}).port; }, {}, {}});
    AddNumber(space, Gev::kPrimaryApplicationIp,
              {[this] { return privilege_.Holder().value_or(Endpoint{}).address; }, {}, {}});
    AddNumber(space, Gev::kSwitchoverKey,
              {{},
               [this](uint32_t key) {
                   Change([key](ControlSettings& settings) {
                       settings.switchoverKey = static_cast<uint16_t>(key);
                   });
               },
               [](uint32_t key) {
                   if (key > kKeyMask) RefuseBits();
               }});
    AddNumber(space, Gev::kHeartbeatTimeout,
              {[this] { return Settings().heartbeatTimeout; },
               [this](uint32_t milliseconds) { SetHeartbeatTimeout(milliseconds); },
               {}});
    AddNumber(space, Gev::kDiscoveryAckDelay,
              {[this] { return Settings().discoveryDelay; },
               [this](uint32_t milliseconds) {
                   Change([milliseconds](ControlSettings& settings) {
                       settings.discoveryDelay = milliseconds;
                   });
               },
               [this](uint32_t milliseconds) {
                   if (!Can().Has(Capability::kDiscoveryAckDelayWritable))
                       throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the delay is fixed");
                   if (milliseconds > kMaxDiscoveryDelay) RefuseBits();
               }});
}

void BootstrapRegisters::CheckConfiguration(uint32_t bits) const {
    const Capabilities can = Can();
    uint32_t known = 0;
    const auto allow = [&](uint32_t capability, uint32_t bit) {
        if (can.Has(capability)) known |= bit;
    };
    allow(Capability::kIeee1588, Configuration::kIeee1588);
    allow(Capability::kStatusCodes20, Configuration::kStatusCodes20);
    allow(Capability::kUnconditionalAction, Configuration::kUnconditionalAction);
    allow(Capability::kStatusCodes11, Configuration::kStatusCodes11);
    allow(Capability::kPendingAck, Configuration::kPendingAck);
    allow(Capability::kHeartbeatDisable, Configuration::kHeartbeatDisable);
    if ((bits & ~known) != 0) RefuseBits();
}

void BootstrapRegisters::AddConfiguration(RegisterSpace& space) {
    AddNumber(space, Gev::kGvcpConfiguration,
              {[this] { return Settings().gvcpConfiguration; },
               [this](uint32_t bits) {
                   const uint32_t rising = bits & ~Settings().gvcpConfiguration;
                   Configure(bits);
                   if ((rising & Configuration::kIeee1588) != 0)
                       camera_.SetClock(Camera::SystemNanoseconds());
               },
               [this](uint32_t bits) { CheckConfiguration(bits); }});
    AddNumber(space, Gev::kGvspConfiguration,
              {[this] { return extendedIds_ ? Gev::GvspConfiguration::kBlockIds64 : 0U; },
               [this](uint32_t bits) {
                   extendedIds_ = bits != 0;
                   hardware_.SetExtendedIds(extendedIds_);
               },
               [this](uint32_t bits) {
                   constexpr uint32_t kVersion20 = 0x00020000;
                   const bool known = hardware_.Settings()->version >= kVersion20;
                   if ((bits & ~(known ? Gev::GvspConfiguration::kBlockIds64 : 0U)) != 0)
                       RefuseBits();
                   camera_.Control().CheckUnlocked();
               }});
}

void BootstrapRegisters::AddLink(RegisterSpace& space) {
    AddNumber(
        space, Gev::kLinkSpeed,
        {[this] { return static_cast<uint32_t>(camera_.Config().linkSpeed / kBytesPerMegabit); },
         {},
         {}});
    AddNumber(space, Gev::kNumberOfActiveLinks, {[] { return 1; }, {}, {}});
    AddNumber(space, Gev::kPhysicalLinkCapability,
              {[] { return Gev::PhysicalLink::kSingle; }, {}, {}});
    AddNumber(space, Gev::kPhysicalLinkConfiguration,
              {[] { return Gev::PhysicalLink::kSingle; }, [](uint32_t /*bits*/) {},
               [](uint32_t bits) {
                   if (bits != Gev::PhysicalLink::kSingle) RefuseBits();
               }});
}

void BootstrapRegisters::AddActions(RegisterSpace& space) {
    const auto count = static_cast<uint32_t>(settings_.actions.size());
    AddNumber(space, Gev::kNumberOfActionSignals, {[count] { return count; }, {}, {}});
    AddNumber(space, Gev::kActionDeviceKey,
              {{},
               [this](uint32_t key) {
                   Change([key](ControlSettings& settings) { settings.actionDeviceKey = key; });
               },
               {}});
    const auto add = [&](const Gev::Register& reg, uint32_t i,
                         uint32_t ControlSettings::ActionSignal::*member) {
        AddNumber(
            space, reg,
            {[this, i, member] { return Settings().actions.at(i).*member; },
             [this, i, member](uint32_t value) {
                 Change([=](ControlSettings& settings) { settings.actions.at(i).*member = value; });
             },
             {}},
            i);
    };
    for (uint32_t i = 0; i < count; ++i) {
        add(Gev::kActionGroupKey, i, &ControlSettings::ActionSignal::groupKey);
        add(Gev::kActionGroupMask, i, &ControlSettings::ActionSignal::groupMask);
    }
}

}  // namespace ZelSim

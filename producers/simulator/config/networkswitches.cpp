#include "producers/simulator/config/networkswitches.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"

namespace ZelSim {

using ZelCti::Error;
using ZelCti::IpAddressText;
using ZelCti::IpSettings;
using ZelCti::MacAddressText;
using ZelCti::ParseIpAddress;
using ZelCti::ParseMacAddress;

namespace {

using Kind = NetworkSwitches::Kind;

// What a text was expected to be.
struct Refused {
    std::string expected;
};

struct Row {
    NetworkSwitches::Switch info;
    std::function<void(NetworkSettings&, std::string_view)> set;  // throws Refused
    std::function<std::string(const NetworkSettings&)> get;
};

constexpr std::pair<std::string_view, UrlForm> kUrlForms[] = {{"plain", UrlForm::Plain},
                                                              {"slashes", UrlForm::Slashes},
                                                              {"spaces", UrlForm::Spaces},
                                                              {"hex-prefix", UrlForm::HexPrefix},
                                                              {"schema", UrlForm::SchemaVersion},
                                                              {"lower-case", UrlForm::LowerCase},
                                                              {"ZIP", UrlForm::UpperCaseZip},
                                                              {"http", UrlForm::Http},
                                                              {"file", UrlForm::File}};

template <typename T>
std::string NumberText(T number, int base = 10) {
    std::array<char, 32> text{};
    char* const end = text.data() + text.size();
    if constexpr (std::is_floating_point_v<T>) {
        return {text.data(), std::to_chars(text.data(), end, number).ptr};
    } else {
        return {text.data(), std::to_chars(text.data(), end, number, base).ptr};
    }
}

// The whole text as a number, also with 0x if it is an integer.
template <typename T>
std::optional<T> ParseNumber(std::string_view text) {
    T number{};
    std::from_chars_result result{};
    const char* begin = text.data();
    const char* const end = begin + text.size();
    if constexpr (std::is_floating_point_v<T>) {
        result = std::from_chars(begin, end, number);
    } else {
        const bool isHex = text.substr(0, 2) == "0x";
        if (isHex) begin += 2;
        result = std::from_chars(begin, end, number, isHex ? 16 : 10);
    }
    if (result.ec != std::errc{} || result.ptr != end) return std::nullopt;
    return number;
}

template <typename T>
T ParseWithin(std::string_view text, T lowest, T highest) {
    const std::optional<T> number = ParseNumber<T>(text);
    // The negated form also refuses "nan".
    if (!number || !(*number >= lowest && *number <= highest)) {
        throw Refused{"a number from " + NumberText(lowest) + " to " + NumberText(highest)};
    }
    return *number;
}

Row Flag(std::string_view name, bool NetworkSettings::*member, std::string_view help) {
    return {{name, Kind::Boolean, help},
            [=](NetworkSettings& s, std::string_view text) {
                if (text != "true" && text != "false") throw Refused{"true or false"};
                s.*member = text == "true";
            },
            [=](const NetworkSettings& s) { return std::string(s.*member ? "true" : "false"); }};
}

template <typename T>
Row Number(std::string_view name, T NetworkSettings::*member, T lowest, T highest,
           std::string_view help) {
    return {{name, Kind::Number, help},
            [=](NetworkSettings& s, std::string_view text) {
                s.*member = ParseWithin(text, lowest, highest);
            },
            [=](const NetworkSettings& s) { return NumberText(s.*member); }};
}

// "Every n-th", and other numbers without a limit of their own.
Row Number(std::string_view name, uint32_t NetworkSettings::*member, std::string_view help) {
    return Number(name, member, 0U, UINT32_MAX, help);
}

Row Milliseconds(std::string_view name, uint32_t NetworkSettings::*member, std::string_view help) {
    return Number(name, member, 0U, 60000U, help);
}

// A number that is shown in hexadecimal digits.
template <typename T>
Row Bits(std::string_view name, T NetworkSettings::*member, std::string_view help) {
    Row row = Number<T>(name, member, 0, static_cast<T>(-1), help);
    row.get = [=](const NetworkSettings& s) { return "0x" + NumberText(s.*member, 16); };
    return row;
}

Row Address(std::string_view name, uint32_t IpSettings::*member, std::string_view help) {
    return {{name, Kind::Text, help},
            [=](NetworkSettings& s, std::string_view text) {
                const std::optional<uint32_t> address = ParseIpAddress(text);
                if (!address) throw Refused{"an address like 192.168.0.1"};
                s.ip.*member = *address;
            },
            [=](const NetworkSettings& s) { return IpAddressText(s.ip.*member); }};
}

Row Mac(std::string_view name, std::string_view help) {
    return {{name, Kind::Text, help},
            [=](NetworkSettings& s, std::string_view text) {
                const std::optional<uint64_t> address = ParseMacAddress(text);
                // The lowest bit of the first byte is that of groups.
                if (!address || (*address >> 40 & 1) != 0) {
                    throw Refused{"the address of one device, like 02:00:00:00:00:01"};
                }
                s.mac = *address;
            },
            [](const NetworkSettings& s) { return MacAddressText(s.mac); }};
}

Row Version(std::string_view name, std::string_view help) {
    return {{name, Kind::Text, help},
            [](NetworkSettings& s, std::string_view text) {
                const size_t point = std::min(text.find('.'), text.size());
                const auto major = ParseNumber<uint16_t>(text.substr(0, point));
                const auto minor =
                    ParseNumber<uint16_t>(text.substr(std::min(point + 1, text.size())));
                if (!major || !minor) throw Refused{"a version like 2.1"};
                s.version = uint32_t{*major} << 16 | *minor;
            },
            [](const NetworkSettings& s) {
                return NumberText(s.version >> 16) + '.' + NumberText(s.version & 0xFFFF);
            }};
}

Row Url(std::string_view name, std::string_view help) {
    return {{name, Kind::Text, help},
            [](NetworkSettings& s, std::string_view text) {
                std::string known;
                for (const auto& [word, form] : kUrlForms) {
                    if (text == word) {
                        s.urlForm = form;
                        return;
                    }
                    known += (known.empty() ? "" : ", ") + std::string(word);
                }
                throw Refused{"one of " + known};
            },
            [](const NetworkSettings& s) {
                const auto* const found =
                    std::find_if(std::begin(kUrlForms), std::end(kUrlForms),
                                 [&](const auto& entry) { return entry.second == s.urlForm; });
                return std::string(found->first);
            }};
}

std::vector<Row> MakeRows() {
    using S = NetworkSettings;
    return {
        Address("Address", &IpSettings::address, "IP address; 0.0.0.0: the server chooses"),
        Address("Mask", &IpSettings::mask, "mask of its subnet; 0.0.0.0: the server chooses"),
        Address("Gateway", &IpSettings::gateway, "default gateway"),
        Mac("Mac", "MAC address; 00:00:00:00:00:00: made from the identifier of the camera"),
        Version("Version", "version of GigE Vision that the camera announces"),
        Bits("GvcpCapabilitiesOff", &S::gvcpCapabilitiesOff,
             "bits of the GVCP capability that the camera has not"),
        Bits("GvspCapabilitiesOff", &S::gvspCapabilitiesOff,
             "bits of the GVSP capability that the camera has not"),
        Bits("MessageCapabilitiesOff", &S::messageCapabilitiesOff,
             "bits of the message channel capability that the camera has not"),
        Bits("StreamCapabilitiesOff", &S::streamCapabilitiesOff,
             "bits of the stream channel capability that the camera has not"),

        Number("DropAckEvery", &S::dropAckEvery,
               "loses every n-th acknowledge; the command is done"),
        Milliseconds("DelayAckMs", &S::delayAckMs, "delays every acknowledge"),
        Number("DoubleAckEvery", &S::doubleAckEvery, "sends every n-th acknowledge twice"),
        Number("WrongAckIdEvery", &S::wrongAckIdEvery,
               "gives every n-th acknowledge another identifier"),
        Flag("LateAckAfterSlow", &S::lateAckAfterSlow,
             "sends an acknowledge of an older command before that of a slow one"),
        Bits("ErrorAddress", &S::errorAddress,
             "answers accesses to this address with ErrorStatus; all bits set: to none"),
        Bits("ErrorStatus", &S::errorStatus, "status for ErrorAddress"),
        Milliseconds("PendingAckMs", &S::pendingAckMs,
                     "takes so long for each access to a register, with a PENDING_ACK"),
        Flag("ZeroLengthErrors", &S::zeroLengthErrors,
             "answers refused writes by a header only, as refused reads"),
        Flag("BadAlignmentOnce", &S::badAlignmentOnce,
             "answers the first access of a controller by BAD_ALIGNMENT"),
        Flag("RefuseOddReads", &S::refuseOddReads,
             "refuses to read memory whose size is no multiple of 4"),
        Flag("RefuseReadMem", &S::refuseReadMem,
             "refuses READMEM and WRITEMEM of registers of 4 bytes"),

        Flag("IgnoreLimitedBroadcast", &S::ignoreLimitedBroadcast,
             "does not hear commands to 255.255.255.255"),
        Flag("IgnoreDirectedBroadcast", &S::ignoreDirectedBroadcast,
             "does not hear commands to the broadcast address of its subnet"),
        Number("DiscoveryDelayMs", &S::discoveryDelayMs, 0U, 1000U,
               "longest delay of an answer to a broadcast, at power-on"),
        Flag("HeartbeatSilence", &S::heartbeatSilence,
             "does not answer and not do anything but discovery"),
        Milliseconds("LongestHeartbeatMs", &S::longestHeartbeatMs,
                     "longer heartbeat time-outs become this; 0: none does"),

        Flag("EmptySerial", &S::emptySerial, "has no serial number"),
        Flag("OddStrings", &S::oddStrings,
             "writes control characters, garbage and invalid UTF-8 into texts"),
        Url("UrlForm",
            "how the URL is written: plain, slashes, spaces, hex-prefix, schema, lower-case, ZIP, "
            "http or file"),
        Flag("SecondUrlOnly", &S::secondUrlOnly, "has no first URL"),
        Flag("Zip", &S::zip, "has its description as a zip archive, if set at the start"),
        Flag("TickFrequencyZero", &S::tickFrequencyZero, "does not say its tick frequency"),
        Flag("TickFrequencyLowOnly", &S::tickFrequencyLowOnly,
             "has its tick frequency in the low word, whatever it is"),
        Flag("TickFrequencyHighOnly", &S::tickFrequencyHighOnly,
             "has its tick frequency in the high word"),

        Number("LossRate", &S::lossRate, 0.0, 1.0,
               "loses stream packets at random; 0.01 is one in a hundred"),
        Number("LossEvery", &S::lossEvery, "loses every n-th stream packet"),
        Number("LossBurst", &S::lossBurst, 1U, 65536U,
               "loses so many packets in a row whenever it loses one"),
        Number("LossSeed", &S::lossSeed, "seed of the random losses"),
        Flag("LoseResent", &S::loseResent, "loses resent packets like others"),
        Number("LoseLeaders", &S::loseLeaders, "loses the leader of every n-th block"),
        Number("LoseTrailers", &S::loseTrailers, "loses the trailer of every n-th block"),
        Number("LoseTails", &S::loseTails, "loses the second half of every n-th block"),
        Number("LoseBlocks", &S::loseBlocks, "loses every n-th block"),

        Number("Reorder", &S::reorder, 0U, 1024U,
               "sends one packet in 16 later, by so many packets"),
        Number("DuplicateEvery", &S::duplicateEvery, "sends every n-th packet twice"),
        Number("LateBlocks", &S::lateBlocks,
               "sends a packet of every n-th block after the trailer of the next one"),
        Number("WrongStatusEvery", &S::wrongStatusEvery,
               "gives every n-th packet an error and no data"),
        Number("WrongBlockIdEvery", &S::wrongBlockIdEvery,
               "gives every n-th packet another block identifier"),
        Number("PathMtu", &S::pathMtu, 0U, 65535U,
               "loses stream and test packets whose datagram is larger; 0: none"),
        Number("FirstBlockId", &S::firstBlockId, uint64_t{1}, UINT64_MAX,
               "identifier of the first block after a channel is opened"),
        Flag("LeaderAtStart", &S::leaderAtStart,
             "sends the first leader when the acquisition starts"),
        Flag("PayloadType4", &S::payloadType4,
             "sends blocks with chunks as chunk data, without dimensions"),
        Flag("PayloadType5", &S::payloadType5, "sends blocks with chunks as extended chunk data"),
        Flag("PaddedLastPacket", &S::paddedLastPacket,
             "fills the last packet of a block to full size"),
        Flag("VariableHeight", &S::variableHeight,
             "sends only half the lines of every other image"),
        Flag("BigEndianPixels", &S::bigEndianPixels, "sends big-endian pixels in any case"),
        Flag("PartRelativeOffsets", &S::partRelativeOffsets,
             "counts the offsets of a part from its own begin"),
        Flag("TimestampsAbove63Bits", &S::timestampsAbove63Bits,
             "sets the highest bit of the time stamps of blocks"),
        Flag("Segmentation", &S::segmentation,
             "sends with less work for the processor (UDP_SEGMENT); packet sockets and captures on "
             "this "
             "machine see datagrams that no camera sends"),

        Flag("ScspZero", &S::scspZero, "does not say the source port of its streams"),
        Number("PacketSizeRounding", &S::packetSizeRounding, 1U, 1024U,
               "rounds the packet size down to a multiple of this"),
        Flag("RefuseUnalignedPacketSize", &S::refuseUnalignedPacketSize,
             "refuses such a packet size instead of rounding it"),
        Flag("IgnoreDontFragment", &S::ignoreDontFragment, "fragments packets in any case"),
        Number("FirstTestPacketsLost", &S::firstTestPacketsLost,
               "loses so many test packets after a channel is opened"),
        Milliseconds("TestPacketDelayMs", &S::testPacketDelayMs, "delays test packets"),
        Flag("NeedsPortZero", &S::needsPortZero,
             "streams again only after the port of the channel was set to 0"),
        Flag("ExtendedIdsOn", &S::extendedIdsOn, "has 64-bit block identifiers at power-on"),
        Number("OwnPacketSize", &S::ownPacketSize, 46U, 16384U, "packet size at power-on"),

        Number("ResendMemoryBlocks", &S::resendMemoryBlocks, 1U, 64U,
               "can resend packets of so many blocks"),
        Number("ResendLimitPerSecond", &S::resendLimitPerSecond,
               "resends no more packets in a second; 0: any number"),
        Flag("ResendTwice", &S::resendTwice, "resends packets twice, at last with wrong data"),
        Flag("ResendWrongId", &S::resendWrongId,
             "resends packets with the identifier of the next one"),
        Flag("ResendStatusZero", &S::resendStatusZero,
             "resends packets with the status of all others"),
        Flag("NoResend", &S::noResend, "does not answer requests for packets"),

        Milliseconds("BootMs", &S::bootMs, "time from a power cycle until the camera answers"),
    };
}

const std::vector<Row>& Rows() {
    static const std::vector<Row> kRows = MakeRows();
    return kRows;
}

const Row& RowOf(std::string_view name) {
    const auto found = std::find_if(Rows().begin(), Rows().end(),
                                    [&](const Row& row) { return row.info.name == name; });
    if (found == Rows().end()) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER,
                    "there is no switch \"" + std::string(name) + "\"");
    }
    return *found;
}

}  // namespace

NetworkSwitches::NetworkSwitches(NetworkSettings settings)
    : initial_(std::make_shared<const NetworkSettings>(settings)), settings_(initial_) {}

void NetworkSwitches::ForEach(const std::function<void(const Switch&)>& visit) {
    for (const Row& row : Rows())
        visit(row.info);
}

void NetworkSwitches::Set(NetworkSettings& settings, std::string_view name, std::string_view text) {
    try {
        RowOf(name).set(settings, text);
    } catch (const Refused& refused) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER, std::string(name) + "=\"" + std::string(text) +
                                                         "\": " + refused.expected + " expected");
    }
}

std::string NetworkSwitches::Get(const NetworkSettings& settings, std::string_view name) {
    return RowOf(name).get(settings);
}

void NetworkSwitches::Set(std::string_view name, std::string_view text) {
    Change([&](NetworkSettings& settings) { Set(settings, name, text); });
}

std::string NetworkSwitches::Get(std::string_view name) const {
    return Get(*Settings(), name);
}

void NetworkSwitches::Reset() {
    Change([this](NetworkSettings& settings) {
        const IpSettings ip = settings.ip;
        settings = *initial_;
        settings.ip = ip;
    });
}

std::shared_ptr<const NetworkSettings> NetworkSwitches::Settings() const {
    const std::lock_guard lock(mutex_);
    return settings_;
}

void NetworkSwitches::SetIp(const IpSettings& ip) {
    Change([&](NetworkSettings& settings) { settings.ip = ip; });
}

void NetworkSwitches::Change(const std::function<void(NetworkSettings&)>& change) {
    const std::lock_guard lock(mutex_);
    auto settings = std::make_shared<NetworkSettings>(*settings_);
    change(*settings);
    settings_ = std::move(settings);
}

}  // namespace ZelSim

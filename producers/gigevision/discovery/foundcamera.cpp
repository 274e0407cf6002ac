#include "producers/gigevision/discovery/foundcamera.h"

#include <algorithm>
#include <string_view>

#include "producers/wire/bootstrapbits.h"
#include "producers/wire/gvcpanswers.h"

namespace ZelGev {

namespace {

using ZelCti::ByteView;
namespace Gvcp = ZelCti::Gvcp;

bool IsContinuation(char c) {
    return (static_cast<uint8_t>(c) & 0xC0) == 0x80;
}

// The bytes of the character of UTF-8 at the begin of the text; 0 when there is none.
size_t CharacterSize(std::string_view text) {
    const auto first = static_cast<uint8_t>(text.front());
    const size_t size = first < 0x80   ? 1
                        : first < 0xC2 ? 0
                        : first < 0xE0 ? 2
                        : first < 0xF0 ? 3
                        : first < 0xF5 ? 4
                                       : 0;
    if (size > text.size()) return 0;
    if (!std::all_of(text.begin() + 1, text.begin() + size, IsContinuation)) return 0;
    if (size < 3) return size;
    // Forms that are too long, surrogates, and what is beyond Unicode.
    const auto second = static_cast<uint8_t>(text[1]);
    const bool isWrong = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                         (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
    return isWrong ? 0 : size;
}

void AppendLatin1(std::string& clean, uint8_t byte) {
    clean += static_cast<char>(0xC0 | byte >> 6);
    clean += static_cast<char>(0x80 | (byte & 0x3F));
}

std::string Trim(const std::string& text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The identifier, and the serial number of a camera that has none. Cameras without a MAC address,
// which some simulated ones are, differ by their names.
void Identify(FoundCamera& camera) {
    if (camera.mac == 0) {
        camera.id = "GEV-" + camera.manufacturer + "-" + camera.model + "-" + camera.serialNumber;
        return;
    }
    std::string digits = ZelCti::MacAddressText(camera.mac);
    digits.erase(std::remove(digits.begin(), digits.end(), ':'), digits.end());
    camera.id = "GEV-" + digits;
    if (camera.serialNumber.empty()) camera.serialNumber = digits;
}

}  // namespace

std::string CleanText(std::string_view text) {
    std::string clean;
    while (!text.empty()) {
        const size_t size = CharacterSize(text);
        const auto byte = static_cast<uint8_t>(text.front());
        if (byte < 0x20 || byte == 0x7F) {
            clean += ' ';
        } else if (size != 0) {
            clean += text.substr(0, size);
        } else if (byte >= 0xA0) {
            AppendLatin1(clean, byte);
        }
        text.remove_prefix(std::max<size_t>(size, 1));
    }
    return Trim(clean);
}

std::optional<DiscoveryAnswer> ReadDiscoveryAnswer(ByteView datagram) {
    const auto ack = Gvcp::DecodeAcknowledge(datagram);
    if (!ack || ack->code != Gvcp::Code::DiscoveryAck) return std::nullopt;
    if (ack->status != ZelCti::Gev::Status::Success) return std::nullopt;
    const auto found = Gvcp::DecodeDiscoveryAck(*ack);
    if (!found) return std::nullopt;
    FoundCamera camera;
    camera.mac = found->mac;
    camera.ip = {found->currentIp, found->currentSubnetMask, found->currentDefaultGateway};
    camera.versionMajor = found->versionMajor;
    camera.versionMinor = found->versionMinor;
    camera.bigEndian = (found->deviceMode & ZelCti::Gev::DeviceMode::kBigEndian) != 0;
    camera.manufacturer = CleanText(found->manufacturerName);
    camera.model = CleanText(found->modelName);
    camera.version = CleanText(found->deviceVersion);
    camera.serialNumber = CleanText(found->serialNumber);
    camera.userName = CleanText(found->userDefinedName);
    Identify(camera);
    return DiscoveryAnswer{ack->ackId, std::move(camera)};
}

}  // namespace ZelGev

#include "producers/gigevision/gevconnection.h"

#include <algorithm>
#include <cstdlib>
#include <thread>
#include <utility>

#include "gentl/portdescriptionurl.h"
#include "producers/gigefeatures/gigefeatures.h"
#include "producers/gigevision/connectionfeatures.h"
#include "producers/gigevision/gevstream.h"
#include "producers/server/base/error.h"
#include "producers/sockets/ipaddress.h"
#include "producers/wire/bootstrap.h"
#include "producers/wire/byteorder.h"
#include "producers/wire/gvcpevents.h"

namespace ZelGev {

namespace Gev = ZelCti::Gev;
namespace Gvcp = ZelCti::Gvcp;
namespace Capability = ZelCti::Gev::GvcpCapability;
using ZelCti::ByteView;
using ZelCti::Endpoint;
using ZelCti::Error;
using ZelCti::PortUrl;

namespace {

// Between two looks at a camera that another controls.
constexpr Milliseconds kPause{100};

// For all that is done with a camera to open it, however often it says that it takes longer.
constexpr std::chrono::seconds kLongestOpening{10};

// How often a camera repeats an event, and after how many milliseconds.
constexpr uint32_t kMessageRepetitions = 3;
constexpr uint32_t kMessageTimeout = 300;

std::string TextOf(const Endpoint& endpoint) {
    return ZelCti::IpAddressText(endpoint.address) + ":" + std::to_string(endpoint.port);
}

uint32_t CcpOf(GenTL::DEVICE_ACCESS_FLAGS access, const std::optional<uint16_t>& key) {
    const uint32_t privilege =
        access == GenTL::DEVICE_ACCESS_EXCLUSIVE ? Gev::Ccp::kExclusive : Gev::Ccp::kControl;
    if (!key) return privilege;
    return privilege | Gev::Ccp::kSwitchoverAllowed |
           uint32_t{*key} << Gev::Ccp::kSwitchoverKeyShift;
}

bool Covers(uint64_t address, size_t size, const Gev::Register& reg) {
    return address < reg.address + reg.size && reg.address < address + size;
}

// Cameras put more behind the end of a text, and control characters into it.
std::string CleanText(const std::vector<uint8_t>& bytes) {
    std::string text(ZelCti::LoadString(bytes.data(), bytes.size()));
    text.erase(std::remove_if(text.begin(), text.end(),
                              [](char c) { return static_cast<unsigned char>(c) < ' '; }),
               text.end());
    return text;
}

DescriptionIdentity IdentityOf(const ZelCti::CameraInfo& info) {
    return {info.vendor, info.model, info.version, {}};
}

}  // namespace

ConnectionSettings SettingsOfEnvironment() {
    ConnectionSettings settings;
    if (const char* const wait = std::getenv("ZELGEV_WAIT")) {
        constexpr Milliseconds kLongest{600000};
        settings.patience =
            std::clamp(Milliseconds(std::strtoll(wait, nullptr, 10)), Milliseconds(0), kLongest);
    }
    if (const char* const text = std::getenv("ZELGEV_SWITCHOVER_KEY")) {
        char* end = nullptr;
        const unsigned long key = std::strtoul(text, &end, 0);
        if (end != text && *end == '\0' && key <= UINT16_MAX)
            settings.switchoverKey = static_cast<uint16_t>(key);
    }
    settings.cacheFolder = CacheFolderOfEnvironment();
    return settings;
}

std::unique_ptr<ZelCti::Connection> OpenGevConnection(ConnectionTarget target,
                                                      GenTL::DEVICE_ACCESS_FLAGS access,
                                                      ZelCti::CameraSink& sink,
                                                      std::shared_ptr<const void> use) {
    return std::make_unique<GevConnection>(std::move(target), access, sink, SettingsOfEnvironment(),
                                           std::move(use));
}

GevConnection::GevConnection(ConnectionTarget target, GenTL::DEVICE_ACCESS_FLAGS access,
                             ZelCti::CameraSink& sink, const ConnectionSettings& settings,
                             std::shared_ptr<const void> use)
    : target_(std::move(target)),
      use_(std::move(use)),
      settings_(settings),
      controls_(access != GenTL::DEVICE_ACCESS_READONLY),
      sink_(sink),
      description_(DescriptionCache(settings.cacheFolder), IdentityOf(target_.camera->Info()),
                   [this](uint64_t address, void* buffer, size_t size) {
                       channel_->port.Read(address, buffer, size);
                   }) {
    Connect(0);
    if (controls_) TakeControl(CcpOf(access, settings.switchoverKey));
    try {
        SetUp();
    } catch (...) {
        Close();  // or else it stays ours until its heartbeat ends
        throw;
    }
}

GevConnection::~GevConnection() {
    Close();
}

void GevConnection::SetUp() {
    facts_ = ReadFacts(channel_->port);
    channel_->port.SetCapabilities(facts_.gvcpCapabilities);
    StartHeartbeat();
    if (controls_) {
        Prepare(channel_->port, facts_);
        if (settings_.switchoverKey && facts_.Has(Capability::kSwitchover))
            TryWrite(channel_->port, Gev::kSwitchoverKey.address, *settings_.switchoverKey);
        OpenMessageChannel();
    }
    channel_->engine.SetDeadline(std::nullopt);
    isOpen_ = true;
    if (channel_->engine.IsLost()) throw Error(GenTL::GC_ERR_IO, "the camera was lost at once");
}

void GevConnection::Connect(uint16_t localPort) {
    channel_ = std::make_unique<Channel>(target_.place, localPort, settings_.limits,
                                         [this](const std::string& reason) { ReportLoss(reason); });
    channel_->engine.SetDeadline(std::chrono::steady_clock::now() + kLongestOpening);
}

void GevConnection::TakeControl(uint32_t ccp) {
    const Time end = std::chrono::steady_clock::now() + settings_.patience;
    while (!ZelGev::TakeControl(channel_->port, ccp)) {
        const auto holder = ReadHolder(channel_->port);
        if (holder && TakePortOfPredecessor(*holder) && ZelGev::TakeControl(channel_->port, ccp))
            return;
        if (std::chrono::steady_clock::now() + kPause > end) {
            throw Error(
                GenTL::GC_ERR_ACCESS_DENIED,
                "controlled by " + (holder ? TextOf(*holder) : std::string("another application")));
        }
        std::this_thread::sleep_for(kPause);
        channel_->engine.SetDeadline(std::chrono::steady_clock::now() + kLongestOpening);
    }
}

// A port that another process uses cannot be had. Giving the control back ends what the predecessor
// has begun: while the camera acquires, the settings of its streams are locked.
bool GevConnection::TakePortOfPredecessor(const Endpoint& holder) {
    if (holder.address != target_.place.hostAddress) return false;
    try {
        Connect(holder.port);
        return TryWrite(channel_->port, Gev::kCcp.address, 0);
    } catch (const Error&) {
        return false;
    }
}

void GevConnection::StartHeartbeat() {
    HeartbeatSettings heartbeat;
    heartbeat.timeout = settings_.heartbeat;
    heartbeat.controls = controls_;
    if (controls_) {
        heartbeatBefore_ = channel_->port.ReadRegister(Gev::kHeartbeatTimeout.address);
        heartbeat.timeout = SetHeartbeatTimeout(channel_->port, settings_.heartbeat);
        if (facts_.Has(Capability::kConcatenation)) heartbeat.holder = ReadHolder(channel_->port);
    }
    channel_->engine.StartHeartbeat(heartbeat);
}

// A camera that refuses the channel works without events.
void GevConnection::OpenMessageChannel() {
    if (facts_.numMessageChannels == 0) return;
    RegisterPort& port = channel_->port;
    Endpoint source{target_.place.camera.address, 0};
    if ((facts_.messageCapabilities & Gev::MessageChannelCapability::kMcsp) != 0)
        source.port = static_cast<uint16_t>(TryRead(port, Gev::kMcsp.address).value_or(0));
    auto messages = std::make_unique<MessageReceiver>(
        target_.place.hostAddress, source,
        [this](uint16_t id, ByteView message) { ReportEvent(id, message); });
    const uint16_t messagePort = messages->Port();
    channel_->engine.Listen(std::move(messages));
    TryWrite(port, Gev::kMctt.address, kMessageTimeout);
    TryWrite(port, Gev::kMcrc.address, kMessageRepetitions);
    TryWrite(port, Gev::kMcda.address, target_.place.hostAddress);
    TryWrite(port, Gev::kMcp.address, messagePort);
}

void GevConnection::ReportLoss(const std::string& reason) {
    if (isOpen_) sink_.OnLost(reason);
}

void GevConnection::ReportEvent(uint16_t id, ByteView message) {
    if (id == Gvcp::EventId::kPrimaryApplicationSwitch) channel_->engine.Doubt();
    if (!isOpen_ || IsLost()) return;
    sink_.OnEvent(GenTL::EVENT_REMOTE_DEVICE, id, {message.data, message.size});
}

void GevConnection::Read(uint64_t address, void* buffer, size_t size) {
    description_.Read(address, buffer, size);
}

void GevConnection::Write(uint64_t address, const void* buffer, size_t size) {
    channel_->port.Write(address, buffer, size);
    if (Covers(address, size, Gev::kHeartbeatTimeout)) FollowHeartbeatTimeout();
}

uint32_t GevConnection::ReadRegister(uint32_t address) {
    return channel_->port.ReadRegister(address);
}

void GevConnection::WriteRegister(uint32_t address, uint32_t value) {
    channel_->port.WriteRegister(address, value);
    if (address == Gev::kHeartbeatTimeout.address) FollowHeartbeatTimeout();
}

// The client chose another one, and the camera may have changed that.
void GevConnection::FollowHeartbeatTimeout() {
    const Milliseconds timeout{ReadRegister(Gev::kHeartbeatTimeout.address)};
    if (timeout.count() != 0) channel_->engine.SetHeartbeatTimeout(timeout);
}

std::vector<PortUrl> GevConnection::DescriptionUrls() {
    std::vector<PortUrl> urls;
    for (const Gev::Register* const reg : {&Gev::kFirstUrl, &Gev::kSecondUrl}) {
        std::vector<uint8_t> bytes(reg->size);
        Read(reg->address, bytes.data(), bytes.size());
        if (auto url = UrlOf(CleanText(bytes))) urls.push_back(std::move(*url));
    }
    return urls;
}

// In the form that all consumers understand, whatever form the camera uses.
std::optional<PortUrl> GevConnection::UrlOf(const std::string& text) {
    const auto parts = ZelUrl::SplitUrl(text);
    if (!parts) return std::nullopt;
    if (parts->scheme != "LOCAL") return PortUrl(text);
    const auto file = ZelUrl::ParseLocalFile(parts->body);
    if (!file) return std::nullopt;
    description_.AddFile(text, file->address, file->length);
    return PortUrl("Local:" + file->name + ";" + ZelCti::HexOf(file->address) + ";" +
                       ZelCti::HexOf(file->length) + file->query,
                   {file->name, file->address, static_cast<size_t>(file->length)});
}

std::unique_ptr<ZelCti::StreamEngine> GevConnection::OpenStream(uint32_t index,
                                                                ZelCti::BufferQueue& buffers) {
    if (index >= NumStreams()) {
        throw Error(GenTL::GC_ERR_INVALID_INDEX,
                    "the camera has " + std::to_string(NumStreams()) + " streams");
    }
    {
        const std::lock_guard lock(mutex_);
        openedStreams_.insert(index);
    }
    return std::make_unique<GevStream>(Link(), index, buffers);
}

void GevConnection::AddFeatures(ZelCti::FeatureTable& features) {
    ZelCti::AddGigeCameraFeatures(features, *target_.camera);
    AddConnectionFeatures(features, *this, channel_->engine, description_);
}

// Some cameras keep streaming to nobody unless their channels are closed.
std::vector<Gvcp::RegisterWrite> GevConnection::LastWrites() const {
    std::vector<Gvcp::RegisterWrite> writes;
    if (!controls_) return writes;
    {
        const std::lock_guard lock(mutex_);
        for (const uint32_t index : openedStreams_)
            writes.push_back({Gev::kScp.At(index), 0});
    }
    if (facts_.numMessageChannels != 0) writes.push_back({Gev::kMcp.address, 0});
    if (heartbeatBefore_ != 0) writes.push_back({Gev::kHeartbeatTimeout.address, heartbeatBefore_});
    writes.push_back({Gev::kCcp.address, 0});
    return writes;
}

void GevConnection::Close() noexcept {
    if (channel_ != nullptr) channel_->engine.Close(LastWrites());
}

}  // namespace ZelGev

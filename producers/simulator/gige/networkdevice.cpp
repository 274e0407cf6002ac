#include "producers/simulator/gige/networkdevice.h"

#include <algorithm>
#include <array>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "producers/server/base/error.h"
#include "producers/simulator/config/linkspeed.h"
#include "producers/simulator/config/network.h"
#include "producers/sockets/ipaddress.h"
#include "producers/wire/gvcp.h"

namespace ZelSim {

using ZelCti::ByteView;
using ZelCti::Endpoint;
using ZelCti::Error;
using ZelCti::HostAddress;
using ZelCti::IpAddressText;
using ZelCti::IpSettings;
using ZelCti::MacAddressText;
using ZelCti::UdpSocket;
namespace Gev = ZelCti::Gev;
namespace Gvcp = ZelCti::Gvcp;

namespace {

using Clock = std::chrono::steady_clock;

// In every network namespace. Programs of this machine reach all of its addresses through it.
constexpr unsigned kLoopbackIndex = 1;

// Datagrams of a socket that are dealt with before the others are looked at.
constexpr int kMaxDatagrams = 64;

// More than any message has: what is longer is refused for its length.
constexpr size_t kDatagramSize = 2048;

// Sockets on loopback can reach nothing else, whatever a datagram or a register says.
std::string DeviceOf(const HostAddress& place) {
    return place.isLoopback ? place.interface : std::string();
}

NetworkSettings SettingsOf(const CameraConfig& config, const HostAddress& place) {
    NetworkSettings settings = config.network.value_or(NetworkSettings());
    settings.ip.address = place.address;
    if (settings.ip.mask == 0) settings.ip.mask = place.mask;
    if (settings.mac == 0) settings.mac = MacAddressOf(config.id);
    return settings;
}

CameraConfig OnNetwork(CameraConfig config, const NetworkSettings& settings) {
    config.network = settings;
    config.bigEndian = true;
    if (config.linkSpeed == 0) config.linkSpeed = UsualLinkSpeed(TLTypeGEVName);
    return config;
}

std::string TextOf(const Endpoint& endpoint) {
    return IpAddressText(endpoint.address) + ':' + std::to_string(endpoint.port);
}

// For poll, which must not wake too early: rounded up.
int MillisecondsUntil(Clock::time_point time) {
    if (time == Clock::time_point::max()) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - Clock::now());
    return static_cast<int>(std::clamp<int64_t>(left.count(), 0, INT32_MAX));
}

int MakeEvent() {
    const int event = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (event < 0) throw Error(GenTL::GC_ERR_IO, "no further file can be opened");
    return event;
}

}  // namespace

NetworkDevice::Sockets::Sockets(const HostAddress& at, uint16_t messagePort)
    : place(at),
      control({at.address, Gvcp::kPort}, DeviceOf(at), false),
      messages({at.address, messagePort}, DeviceOf(at), false),
      limited({UINT32_MAX, Gvcp::kPort}, at.interface, true) {
    if (at.Broadcast() == at.address) return;  // alone in its subnet
    directed.emplace(Endpoint{at.Broadcast(), Gvcp::kPort}, at.interface, true);
}

NetworkDevice::NetworkDevice(const CameraConfig& config, const HostAddress& place, FindPlace find,
                             Report report)
    : config_(OnNetwork(config, SettingsOf(config, place))),
      find_(std::move(find)),
      report_(std::move(report)),
      switches_(*config_.network),
      wake_(MakeEvent()),
      sockets_(std::make_unique<Sockets>(place, 0)),
      messagePort_(sockets_->messages.Port()),
      permanent_(config_),
      place_(place),
      home_(config_.network->ip) {
    ipMemory_.configuration = Gev::IpConfiguration::kLla | Gev::IpConfiguration::kDhcp;
    SwitchOn();
    thread_ = std::thread([this] { Run(); });
    report_(Id() + ": " + Describe());
}

NetworkDevice::~NetworkDevice() {
    {
        const std::lock_guard lock(mutex_);
        isQuitting_ = true;
    }
    Wake();
    thread_.join();
    close(wake_);
}

void NetworkDevice::MoveTo(const HostAddress& place) {
    auto sockets = std::make_unique<Sockets>(place, messagePort_);
    const IpSettings ip{place.address, place.mask, 0};
    switches_.SetIp(ip);
    std::unique_lock lock(mutex_);
    home_ = ip;
    next_ = std::move(sockets);
    const uint64_t before = numFollowed_;
    Wake();
    followed_.wait(lock, [&] { return numFollowed_ != before; });
}

HostAddress NetworkDevice::Place() const {
    const std::lock_guard lock(mutex_);
    return place_;
}

void NetworkDevice::PowerCycle() {
    {
        const std::lock_guard lock(mutex_);
        wantsPowerCycle_ = true;
    }
    Wake();
}

void NetworkDevice::FireTestEvent() {
    if (const auto camera = Power()) camera->FireTestEvent();
}

NetworkStatistics NetworkDevice::Statistics() const {
    const std::lock_guard lock(mutex_);
    NetworkStatistics statistics = received_;
    if (powered_ != nullptr) powered_->AddTo(statistics);
    return statistics;
}

std::string NetworkDevice::Describe() const {
    const auto settings = switches_.Settings();
    const std::lock_guard lock(mutex_);
    std::string text = config_.vendor + ' ' + config_.model + " (" + config_.serial + ") at " +
                       IpAddressText(place_.address) + ", MAC " + MacAddressText(settings->mac) +
                       ", on " + place_.interface;
    if (settings->ip.address != place_.address) {
        text += ", shows " + IpAddressText(settings->ip.address);
    }
    if (controller_) text += ", controlled by " + TextOf(*controller_);
    return text;
}

void NetworkDevice::Run() {
    while (WaitForWork()) {
        FollowOrders();
        if (powered_ == nullptr && Clock::now() >= onAgain_) {
            RestartIp();
            SwitchOn();
        }
        ReceiveAll();
        if (powered_ != nullptr) powered_->OnTimer(Clock::now());
        ReportChanges();
    }
}

// False when the object is to end.
bool NetworkDevice::WaitForWork() {
    {
        const std::lock_guard lock(mutex_);
        if (isQuitting_) return false;
    }
    std::array<pollfd, 5> wanted{};
    size_t count = 0;
    const auto add = [&](int descriptor) { wanted[count++] = {descriptor, POLLIN, 0}; };
    add(wake_);
    add(sockets_->control.Descriptor());
    add(sockets_->messages.Descriptor());
    add(sockets_->limited.Descriptor());
    if (sockets_->directed) add(sockets_->directed->Descriptor());
    poll(wanted.data(), count, MillisecondsUntil(NextDeadline()));
    uint64_t numWakes = 0;
    (void)!read(wake_, &numWakes, sizeof numWakes);
    return true;
}

NetworkDevice::Time NetworkDevice::NextDeadline() const {
    return powered_ == nullptr ? onAgain_ : powered_->NextDeadline(Clock::now());
}

void NetworkDevice::Wake() const {
    const uint64_t one = 1;
    (void)!write(wake_, &one, sizeof one);
}

// What other threads asked for.
void NetworkDevice::FollowOrders() {
    std::unique_lock lock(mutex_);
    std::unique_ptr<Sockets> next = std::move(next_);
    const bool cyclesPower = std::exchange(wantsPowerCycle_, false);
    lock.unlock();
    if (next != nullptr) {
        Use(std::move(next));
        lock.lock();
        ++numFollowed_;
        lock.unlock();
        followed_.notify_all();
    }
    if (cyclesPower) SwitchOff();
}

void NetworkDevice::ReceiveAll() {
    // A command may give the camera other sockets.
    const std::shared_ptr<Sockets> sockets = sockets_;
    const auto settings = switches_.Settings();
    ReceiveCommands(*sockets, sockets->control, false, false);
    ReceiveCommands(*sockets, sockets->limited, true, settings->ignoreLimitedBroadcast);
    if (sockets->directed) {
        ReceiveCommands(*sockets, *sockets->directed, true, settings->ignoreDirectedBroadcast);
    }
    ReceiveAcks();
}

void NetworkDevice::ReceiveCommands(const Sockets& from, UdpSocket& socket, bool broadcast,
                                    bool ignored) {
    std::array<uint8_t, kDatagramSize> memory;
    for (int i = 0; i < kMaxDatagrams && sockets_.get() == &from; ++i) {
        const auto datagram = socket.Receive({memory.data(), memory.size()});
        if (!datagram) return;
        if (!IsServed(*datagram) || ignored || powered_ == nullptr) continue;
        powered_->OnCommand({memory.data(), std::min(datagram->size, memory.size())},
                            datagram->from, broadcast, Clock::now());
    }
}

void NetworkDevice::ReceiveAcks() {
    std::array<uint8_t, kDatagramSize> memory;
    for (int i = 0; i < kMaxDatagrams; ++i) {
        const auto datagram = sockets_->messages.Receive({memory.data(), memory.size()});
        if (!datagram) return;
        if (!IsServed(*datagram) || powered_ == nullptr) continue;
        powered_->OnMessageAck({memory.data(), std::min(datagram->size, memory.size())},
                               Clock::now());
    }
}

// A camera on one interface hears nothing of another one, even where this machine has both.
bool NetworkDevice::IsServed(const UdpSocket::Datagram& datagram) {
    const bool isHere =
        datagram.interface == sockets_->place.index || datagram.interface == kLoopbackIndex;
    const std::lock_guard lock(mutex_);
    ++(isHere ? received_.datagrams : received_.ignored);
    return isHere;
}

// What the camera keeps without power stays.
void NetworkDevice::SwitchOff() {
    report_(Id() + ": power cycle");
    onAgain_ = Clock::now() + std::chrono::milliseconds(switches_.Settings()->bootMs);
    if (powered_ == nullptr) return;
    permanent_ = powered_->CopyMemory();
    std::shared_ptr<PoweredCamera> powered;
    const std::lock_guard lock(mutex_);
    powered.swap(powered_);
}

void NetworkDevice::SwitchOn() {
    PoweredCamera::Links links;
    links.sendAnswer = [this](const Endpoint& to, ByteView answer) {
        sockets_->control.Send(to, answer);
    };
    links.sendMessage = [this](const Endpoint& to, ByteView message) {
        sockets_->messages.Send(to, message);
    };
    links.wake = [this] { Wake(); };
    links.powerCycle = [this] { PowerCycle(); };
    NetworkBody& body = *this;
    auto powered = std::make_shared<PoweredCamera>(config_, permanent_, body,
                                                   sockets_->place.address, std::move(links));
    const std::lock_guard lock(mutex_);
    powered_ = std::move(powered);
}

// Applications notice that the camera is gone from its old address: nothing is sent from there.
void NetworkDevice::Use(std::unique_ptr<Sockets> sockets) {
    sockets_ = std::move(sockets);
    hasMoved_ = true;
    {
        const std::lock_guard lock(mutex_);
        place_ = sockets_->place;
    }
    if (powered_ != nullptr) powered_->MoveTo(sockets_->place.address);
}

std::shared_ptr<PoweredCamera> NetworkDevice::Power() const {
    const std::lock_guard lock(mutex_);
    return powered_;
}

// The order in which a camera looks for an address. What DHCP would give it is the server's choice.
void NetworkDevice::RestartIp() {
    std::unique_lock lock(mutex_);
    const IpMemory memory = ipMemory_;
    const IpSettings home = home_;
    lock.unlock();
    const bool isPersistent = (memory.configuration & Gev::IpConfiguration::kPersistentIp) != 0;
    ForceIp(isPersistent && memory.persistent.address != 0 ? memory.persistent : home);
}

// When the sockets of the address before are closed.
void NetworkDevice::ReportChanges() {
    if (std::exchange(hasMoved_, false)) report_(Id() + ": " + Describe());
    const auto now = powered_ == nullptr ? std::nullopt : powered_->Controller();
    std::unique_lock lock(mutex_);
    const auto before = std::exchange(controller_, now);
    lock.unlock();
    if (before == now) return;
    report_(Id() + (now ? ": controlled by " + TextOf(*now) : ": free again"));
}

std::shared_ptr<const NetworkSettings> NetworkDevice::Settings() const {
    return switches_.Settings();
}

uint16_t NetworkDevice::MessageSourcePort() const {
    return messagePort_;
}

IpMemory NetworkDevice::Memory() const {
    const std::lock_guard lock(mutex_);
    return ipMemory_;
}

void NetworkDevice::SetMemory(const IpMemory& memory) {
    const std::lock_guard lock(mutex_);
    ipMemory_ = memory;
}

// Where the address cannot be served, the camera shows it only, as one that is in another subnet.
void NetworkDevice::ForceIp(const IpSettings& ip) {
    if (ip.address == 0) return RestartIp();
    switches_.SetIp(ip);
    if (ip.address == sockets_->place.address) return;
    hasMoved_ = true;
    const std::optional<HostAddress> place = find_(ip.address);
    if (!place) return;
    try {
        Use(std::make_unique<Sockets>(*place, messagePort_));
    } catch (const Error& error) {
        report_(Id() + ": " + error.what());
    }
}

}  // namespace ZelSim

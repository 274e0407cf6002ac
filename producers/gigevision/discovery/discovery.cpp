#include "producers/gigevision/discovery/discovery.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <poll.h>
#include <utility>

#include "producers/gigevision/discovery/route.h"

namespace ZelGev {

namespace Gvcp = ZelCti::Gvcp;
using ZelCti::ByteView;
using ZelCti::Endpoint;

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;
using Message = std::array<uint8_t, Gvcp::kMaxMessageSize>;

// How old a search on all adapters may be when somebody asks what it found on one of them.
constexpr std::chrono::seconds kFreshness{2};

constexpr Time kDone = Time::min();

// Puts an object into a list of those that the workers serve, for as long as somebody waits.
template <typename T>
class Listed {
  public:
    Listed(std::vector<T*>& list, T& item) : list_(list), item_(&item) { list_.push_back(item_); }
    ~Listed() { list_.erase(std::find(list_.begin(), list_.end(), item_)); }
    Listed(const Listed&) = delete;
    Listed& operator=(const Listed&) = delete;

  private:
    std::vector<T*>& list_;
    T* const item_;
};

int MillisecondsUntil(Time time, Time now) {
    if (time <= now) return 0;
    const auto left = std::chrono::ceil<milliseconds>(time - now).count();
    return static_cast<int>(std::min<int64_t>(left, 60000));
}

Route RouteTo(const FoundCamera& camera, uint32_t hostAddress, const NetworkAdapter& adapter) {
    Route route;
    route.camera = {camera.ip.address, Gvcp::kPort};
    route.hostAddress = hostAddress;
    route.interface = adapter.name;
    route.interfaceIndex = adapter.index;
    route.mtu = adapter.mtu;
    route.isLoopback = adapter.isLoopback;
    route.speed = adapter.speed;
    return route;
}

}  // namespace

Discovery::Discovery(DiscoverySettings settings)
    : settings_(std::move(settings)), filter_(settings_.adapters) {}

void Discovery::Refresh() {
    if (!watch_.HasChanged()) return;
    const std::vector<NetworkAdapter> all = ListNetworkAdapters();
    unknownNames_ = filter_.Unknown(all);
    adapters_.clear();
    std::copy_if(all.begin(), all.end(), std::back_inserter(adapters_),
                 [&](const NetworkAdapter& adapter) { return filter_.Admits(adapter); });
    std::map<unsigned, std::shared_ptr<Place>> places;
    for (const NetworkAdapter& adapter : adapters_) {
        std::shared_ptr<Place>& place = places[adapter.index];
        const auto before = places_.find(adapter.index);
        if (before != places_.end() && before->second->sockets.Adapter() == adapter) {
            place = before->second;
            continue;
        }
        place = std::make_shared<Place>(adapter);
        if (before != places_.end()) place->alsoAsked = before->second->alsoAsked;
    }
    places_ = std::move(places);
    cameras_.KeepAdapters(adapters_);
}

std::vector<NetworkAdapter> Discovery::ListAdapters() {
    const std::lock_guard lock(mutex_);
    Refresh();
    return adapters_;
}

std::vector<std::string> Discovery::UnknownNames() const {
    const std::lock_guard lock(mutex_);
    return unknownNames_;
}

std::optional<NetworkAdapter> Discovery::Adapter(unsigned index) const {
    const std::lock_guard lock(mutex_);
    const auto place = Find(index);
    if (place == nullptr) return std::nullopt;
    return place->sockets.Adapter();
}

std::shared_ptr<Discovery::Place> Discovery::Find(unsigned adapter) const {
    const auto found = places_.find(adapter);
    return found == places_.end() ? nullptr : found->second;
}

uint16_t Discovery::NextRequest() {
    return lastRequest_ = Gvcp::NextRequestId(lastRequest_);
}

void Discovery::StartRounds(Time now) {
    for (const auto& [index, place] : places_) {
        if (!place->isRunning) StartRound(*place, now);
        place->isFresh = true;
    }
}

void Discovery::StartRound(Place& place, Time now) {
    const NetworkAdapter& adapter = place.sockets.Adapter();
    const size_t numKnown = cameras_.BeginRound(adapter.index);
    const bool canAnswer = adapter.hasCarrier && !place.sockets.IsEmpty();
    place.round =
        Round(now, numKnown, canAnswer, adapter.isLoopback ? Round::kLongestHere : Round::kLongest);
    place.requests.clear();
    place.isRunning = true;
}

void Discovery::EndRound(Place& place) {
    place.isRunning = false;
    cameras_.EndRound(place.sockets.Adapter().index);
}

std::vector<uint32_t> Discovery::AddressesAskedOn(const Place& place) const {
    std::vector<uint32_t> addresses = settings_.cameras;
    if (place.alsoAsked != 0) addresses.push_back(place.alsoAsked);
    return addresses;
}

void Discovery::AskOn(Place& place) {
    const uint16_t request = NextRequest();
    place.requests.push_back(request);
    Message plain;
    Message toAll;
    const size_t size = Gvcp::EncodeDiscoveryCmd({plain.data(), plain.size()}, {request});
    Gvcp::EncodeDiscoveryCmd({toAll.data(), toAll.size()},
                             {request, Gvcp::Flag::kAckRequired | Gvcp::Flag::kBroadcastAck});
    place.sockets.Broadcast({plain.data(), size}, {toAll.data(), size});
    for (const uint32_t camera : AddressesAskedOn(place)) {
        if (const uint32_t host = HostAddressOn(place, camera))
            place.sockets.Send(camera, {plain.data(), size}, host);
    }
}

uint32_t Discovery::HostAddressOn(const Place& place, uint32_t camera) const {
    const auto holds = [&](const NetworkAdapter& adapter) {
        return adapter.SubnetOf(camera) != nullptr;
    };
    const NetworkAdapter& adapter = place.sockets.Adapter();
    if (const Subnet* const subnet = adapter.SubnetOf(camera)) return subnet->address;
    if (std::any_of(adapters_.begin(), adapters_.end(), holds)) return 0;
    const uint32_t host = HostAddressTo(camera);
    const bool isHere = std::any_of(adapter.subnets.begin(), adapter.subnets.end(),
                                    [&](const Subnet& subnet) { return subnet.address == host; });
    return isHere ? host : 0;
}

void Discovery::Work(Time now) {
    for (const auto& [index, place] : places_) {
        place->sockets.ReceiveAll([&, here = place](const Endpoint& from, ByteView datagram) {
            OnDatagram(*here, from, datagram, now);
        });
        if (!place->isRunning) continue;
        if (place->round.TakeAsk(now)) AskOn(*place);
        if (place->round.IsOver(now)) EndRound(*place);
    }
    for (CameraQuery* const query : queries_)
        query->OnTimer(now);
}

void Discovery::OnDatagram(Place& place, const Endpoint& from, ByteView datagram, Time now) {
    for (CameraQuery* const query : queries_)
        query->OnDatagram(from, datagram, now);
    const auto ack = Gvcp::DecodeAcknowledge(datagram);
    if (!ack || from.port != Gvcp::kPort) return;
    for (Awaited* const awaited : awaited_) {
        if (ack->code == awaited->ack && ack->ackId == awaited->request) awaited->hasCome = true;
    }
    auto answer = ReadDiscoveryAnswer(datagram);
    if (!answer) return;
    const std::vector<uint32_t> asked = AddressesAskedOn(place);
    const bool isAsked = from.address == answer->camera.ip.address &&
                         std::find(asked.begin(), asked.end(), from.address) != asked.end();
    const uint32_t routedFrom = isAsked ? HostAddressOn(place, from.address) : 0;
    const auto& requests = place.requests;
    const bool isLate = !place.isRunning || std::find(requests.begin(), requests.end(),
                                                      answer->ackId) == requests.end();
    const bool wasExpected =
        cameras_.OnAnswer(place.sockets.Adapter(), std::move(answer->camera), isLate, routedFrom);
    if (!isLate) place.round.OnAnswer(now, wasExpected);
}

void Discovery::WaitUntil(std::unique_lock<std::mutex>& lock, Time deadline, const Progress& next) {
    for (;;) {
        const Time now = Clock::now();
        Work(now);
        Time wake = next();
        if (wake == kDone || now >= deadline) return;
        wake = std::min(wake, deadline);
        // The sockets stay open while they are polled, also those of an adapter that goes.
        const auto places = places_;
        std::vector<pollfd> sockets;
        for (const auto& [index, place] : places) {
            if (place->isRunning) wake = std::min(wake, place->round.NextDeadline());
            for (const int descriptor : place->sockets.Descriptors())
                sockets.push_back({descriptor, POLLIN, 0});
        }
        lock.unlock();
        poll(sockets.data(), sockets.size(), MillisecondsUntil(wake, now));
        lock.lock();
    }
}

std::vector<ListedCamera> Discovery::Search(unsigned adapter, Time deadline) {
    std::unique_lock lock(mutex_);
    Refresh();
    const std::shared_ptr<Place> place = Find(adapter);
    if (place == nullptr) return {};
    const Time begin = Clock::now();
    Work(begin);  // ends what is over
    const bool isFresh = place->isFresh && begin < place->round.Start() + kFreshness;
    if (!isFresh && !place->isRunning) StartRounds(begin);
    place->isFresh = false;
    // Some of the time is for what is read of the cameras that are found.
    const auto reserve = std::min<Clock::duration>(
        CameraQuery::kLongest, std::max(deadline - begin, Clock::duration::zero()) / 4);
    WaitUntil(lock, deadline - reserve,
              [&] { return place->isRunning ? place->round.NextDeadline() : kDone; });
    // A search that had time for several questions is over, even if the caller is in a hurry.
    if (place->isRunning && Clock::now() > place->round.Start() + 2 * Round::kInterval) {
        EndRound(*place);
    }
    return Read(lock, *place, deadline);
}

std::vector<ListedCamera> Discovery::Read(std::unique_lock<std::mutex>& lock, Place& place,
                                          Time deadline) {
    std::vector<ListedCamera> listed = ListCameras(place);
    std::map<uint32_t, uint32_t> hosts;  // by the addresses of the cameras
    for (const ListedCamera& camera : listed)
        if (camera.route) hosts[camera.route->camera.address] = camera.route->hostAddress;
    std::vector<uint32_t> addresses;
    addresses.reserve(hosts.size());
    for (const auto& [camera, host] : hosts)
        addresses.push_back(camera);
    CameraQuery query(
        addresses, Clock::now(), [this] { return NextRequest(); },
        [&](uint32_t camera, ByteView command) {
            place.sockets.Send(camera, command, hosts[camera]);
        });
    const Listed<CameraQuery> served(queries_, query);
    WaitUntil(lock, deadline, [&] { return query.IsDone() ? kDone : query.NextDeadline(); });
    for (ListedCamera& camera : listed)
        if (camera.route) camera.reading = query.ReadingOf(camera.route->camera.address);
    return listed;
}

std::vector<ListedCamera> Discovery::ListCameras(const Place& place) const {
    std::vector<ListedCamera> listed;
    const NetworkAdapter& adapter = place.sockets.Adapter();
    for (Sighting& sighting : cameras_.CamerasOf(adapter.index)) {
        std::optional<Route> route;
        if (sighting.hostAddress != 0) {
            route = RouteTo(sighting.camera, sighting.hostAddress, adapter);
        }
        listed.push_back(
            {std::move(sighting.camera), AdapterText(adapter), std::move(route), std::nullopt});
    }
    return listed;
}

void Discovery::AskAlso(unsigned adapter, uint32_t camera) {
    const std::lock_guard lock(mutex_);
    if (const auto place = Find(adapter)) place->alsoAsked = camera;
}

uint32_t Discovery::AskedAlso(unsigned adapter) const {
    const std::lock_guard lock(mutex_);
    const auto place = Find(adapter);
    return place == nullptr ? 0 : place->alsoAsked;
}

bool Discovery::ForceIp(unsigned adapter, const Gvcp::ForceIp& forced, Time deadline) {
    std::unique_lock lock(mutex_);
    const std::shared_ptr<Place> place = Find(adapter);
    if (place == nullptr) return false;
    Awaited awaited{Gvcp::Code::ForceIpAck, NextRequest(), false};
    const Listed<Awaited> served(awaited_, awaited);
    Message plain;
    Message toAll;
    const size_t size =
        Gvcp::EncodeForceIpCmd({plain.data(), plain.size()}, {awaited.request}, forced);
    Gvcp::EncodeForceIpCmd({toAll.data(), toAll.size()},
                           {awaited.request, Gvcp::Flag::kAckRequired | Gvcp::Flag::kBroadcastAck},
                           forced);
    Time nextAsk = Clock::now();
    WaitUntil(lock, deadline, [&] {
        if (awaited.hasCome) return kDone;
        if (const Time now = Clock::now(); now >= nextAsk) {
            place->sockets.Broadcast({plain.data(), size}, {toAll.data(), size});
            nextAsk = now + Round::kInterval;
            if (forced.ip == 0) return kDone;
        }
        return nextAsk;
    });
    return awaited.hasCome;
}

void Discovery::SendAction(unsigned adapter, const Gvcp::Action& action, uint32_t to) {
    const std::lock_guard lock(mutex_);
    const std::shared_ptr<Place> place = Find(adapter);
    if (place == nullptr) return;
    Message message;
    // Without an acknowledge: the cameras are many, and an action that comes twice may run twice.
    const size_t size =
        Gvcp::EncodeActionCmd({message.data(), message.size()}, {NextRequest(), 0}, action);
    place->sockets.Send(to, {message.data(), size});
}

bool Discovery::IsTaken(uint32_t address) const {
    const std::lock_guard lock(mutex_);
    const bool isOurs =
        std::any_of(adapters_.begin(), adapters_.end(), [&](const NetworkAdapter& adapter) {
            return std::any_of(adapter.subnets.begin(), adapter.subnets.end(),
                               [&](const Subnet& subnet) { return subnet.address == address; });
        });
    return isOurs || cameras_.HasAddress(address);
}

}  // namespace ZelGev

// Looks for cameras on the network adapters of this machine.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "producers/gigevision/base/devicelink.h"
#include "producers/gigevision/discovery/adapterfilter.h"
#include "producers/gigevision/discovery/adaptersockets.h"
#include "producers/gigevision/discovery/adapterwatch.h"
#include "producers/gigevision/discovery/cameraquery.h"
#include "producers/gigevision/discovery/cameratable.h"
#include "producers/gigevision/discovery/round.h"
#include "producers/wire/gvcpcommands.h"

namespace ZelGev {

struct DiscoverySettings {
    std::string adapters;           // AdapterFilter
    std::vector<uint32_t> cameras;  // addresses that are asked as well, wherever they are
};

// A camera that is listed.
struct ListedCamera {
    FoundCamera camera;
    std::string adapter;                   // AdapterText
    std::optional<Route> route;            // none to a camera that cannot be reached
    std::optional<CameraReading> reading;  // none when there was no time to read
};

// Has no thread: who waits for answers works for all who do. It keeps its sockets, so that an
// answer that comes late counts for the next search. Thread-safe.
class Discovery {
  public:
    explicit Discovery(DiscoverySettings settings);

    // The adapters on which cameras are looked for, as they are now. Throws GC_ERR_IO.
    std::vector<NetworkAdapter> ListAdapters();

    // What the user names that was none of the adapters when they were last listed.
    std::vector<std::string> UnknownNames() const;

    // An adapter as it was last listed.
    std::optional<NetworkAdapter> Adapter(unsigned index) const;

    // The cameras on an adapter. Asks on all adapters at once: whoever looks at one of them next
    // finds the answers there. Returns when no further answer is to be expected, at the deadline
    // at the latest. Throws GC_ERR_IO.
    std::vector<ListedCamera> Search(unsigned adapter, Time deadline);

    // Asks this address as well when cameras are looked for on the adapter; 0: none.
    void AskAlso(unsigned adapter, uint32_t camera);
    uint32_t AskedAlso(unsigned adapter) const;

    // Gives a camera on the adapter another address. Returns whether the camera said so in time; it
    // is silent when it is in use. Address 0 lets the camera choose, which it never confirms.
    bool ForceIp(unsigned adapter, const ZelCti::Gvcp::ForceIp& forced, Time deadline);

    // Sends an action command once, to one address or to all on the adapter (0xFFFFFFFF).
    void SendAction(unsigned adapter, const ZelCti::Gvcp::Action& action, uint32_t to);

    // Whether a camera that was found has this address, or an adapter of this machine.
    bool IsTaken(uint32_t address) const;

  private:
    // What is done on an adapter.
    struct Place {
        explicit Place(const NetworkAdapter& adapter) : sockets(adapter) {}

        AdapterSockets sockets;
        Round round;
        bool isFresh = false;    // the round is for all adapters, and nobody has looked here yet
        bool isRunning = false;  // the round is not over
        std::vector<uint16_t> requests;  // of the round
        uint32_t alsoAsked = 0;
    };

    // An answer that somebody waits for.
    struct Awaited {
        ZelCti::Gvcp::Code ack;
        uint16_t request;
        bool hasCome;
    };

    void Refresh();
    void StartRounds(Time now);
    void StartRound(Place& place, Time now);
    void EndRound(Place& place);
    void AskOn(Place& place);
    std::vector<uint32_t> AddressesAskedOn(const Place& place) const;
    // Ours from which a camera is asked at its own address on the adapter; 0: not there.
    uint32_t HostAddressOn(const Place& place, uint32_t camera) const;
    void Work(Time now);
    void OnDatagram(Place& place, const ZelCti::Endpoint& from, ZelCti::ByteView datagram,
                    Time now);
    // Works until the function says that the wait is over (Time::min()); before, it says when it
    // is to be asked again at the latest.
    using Progress = std::function<Time()>;
    void WaitUntil(std::unique_lock<std::mutex>& lock, Time deadline, const Progress& next);
    std::vector<ListedCamera> Read(std::unique_lock<std::mutex>& lock, Place& place, Time deadline);
    std::vector<ListedCamera> ListCameras(const Place& place) const;
    std::shared_ptr<Place> Find(unsigned adapter) const;
    uint16_t NextRequest();

    const DiscoverySettings settings_;
    const AdapterFilter filter_;
    mutable std::mutex mutex_;  // guards all that follows
    AdapterWatch watch_;
    std::vector<NetworkAdapter> adapters_;
    std::vector<std::string> unknownNames_;
    std::map<unsigned, std::shared_ptr<Place>> places_;  // by adapter
    CameraTable cameras_;
    std::vector<CameraQuery*> queries_;  // of those who wait
    std::vector<Awaited*> awaited_;      // of those who wait
    uint16_t lastRequest_ = 0;
};

}  // namespace ZelGev

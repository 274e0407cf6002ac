// A simulated camera on a network.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "producers/simulator/gige/control/networkhardware.h"
#include "producers/simulator/gige/poweredcamera.h"
#include "producers/simulator/gige/sockets/addresspool.h"
#include "producers/sockets/udpsocket.h"

namespace ZelSim {

// A camera of its own, with sockets at its address and a thread that serves them: commands, events
// and what has to be done at a time. Streams have threads of their own. It answers and sends on one
// network interface only. Thread-safe.
class NetworkDevice final : private NetworkBody {
  public:
    // Gets a line for users: who is served, who connects. Called by any thread.
    using Report = std::function<void(const std::string& line)>;

    // Where an address can be served; none where it must not. Thread-safe.
    using FindPlace = std::function<std::optional<ZelCti::HostAddress>(uint32_t address)>;

    // Throws GC_ERR_RESOURCE_IN_USE when another program serves a camera at that place, GC_ERR_IO
    // when there cannot be sockets.
    NetworkDevice(const CameraConfig& config, const ZelCti::HostAddress& place, FindPlace find,
                  Report report);
    ~NetworkDevice() override;

    const std::string& Id() const { return config_.id; }

    // The camera shows these at once; the switches of its address take it there with MoveTo only.
    NetworkSwitches& Switches() { return switches_; }

    // Gives the camera another address, without a word to its applications. Throws as the
    // constructor does, and leaves the camera where it is then.
    void MoveTo(const ZelCti::HostAddress& place);
    ZelCti::HostAddress Place() const;

    // Off, silent for a while, and on again with the settings of power-on. Returns at once.
    void PowerCycle();

    // Lets the camera send its test event, if an application wants events.
    void FireTestEvent();

    NetworkStatistics Statistics() const;

    // Where the camera is and who controls it, in words for users.
    std::string Describe() const;

  private:
    using Time = std::chrono::steady_clock::time_point;

    // Those at an address. Events come from the same port everywhere; 0 is any free one.
    struct Sockets {
        Sockets(const ZelCti::HostAddress& place, uint16_t messagePort);

        const ZelCti::HostAddress place;
        ZelCti::UdpSocket control;
        ZelCti::UdpSocket messages;
        ZelCti::UdpSocket limited;                  // for broadcasts to 255.255.255.255
        std::optional<ZelCti::UdpSocket> directed;  // and to the subnet
    };

    std::shared_ptr<const NetworkSettings> Settings() const override;
    uint16_t MessageSourcePort() const override;
    IpMemory Memory() const override;
    void SetMemory(const IpMemory& memory) override;
    void ForceIp(const ZelCti::IpSettings& ip) override;

    void Run();
    bool WaitForWork();
    Time NextDeadline() const;
    void Wake() const;
    void FollowOrders();
    void ReceiveAll();
    void ReceiveCommands(const Sockets& from, ZelCti::UdpSocket& socket, bool broadcast,
                         bool ignored);
    void ReceiveAcks();
    bool IsServed(const ZelCti::UdpSocket::Datagram& datagram);
    void SwitchOff();
    void SwitchOn();
    void Use(std::unique_ptr<Sockets> sockets);
    void RestartIp();
    void ReportChanges();
    std::shared_ptr<PoweredCamera> Power() const;

    const CameraConfig config_;
    const FindPlace find_;
    const Report report_;
    NetworkSwitches switches_;
    const int wake_;  // an eventfd

    // Belong to the thread once it runs.
    std::shared_ptr<Sockets> sockets_;  // of the present address
    bool hasMoved_ = false;             // which is to be reported
    const uint16_t messagePort_;
    PermanentMemory permanent_;  // of the camera while it has no power
    Time onAgain_{};             // when there is power again

    mutable std::mutex mutex_;                // guards what follows
    std::shared_ptr<PoweredCamera> powered_;  // changed by the thread
    ZelCti::HostAddress place_;
    ZelCti::IpSettings home_;        // what it gets at power-on without a persistent address
    std::unique_ptr<Sockets> next_;  // of the address that was asked for
    uint64_t numFollowed_ = 0;
    std::condition_variable followed_;  // numFollowed_ has changed
    bool wantsPowerCycle_ = false;
    bool isQuitting_ = false;
    IpMemory ipMemory_;
    NetworkStatistics received_;
    std::optional<ZelCti::Endpoint> controller_;

    std::thread thread_;
};

}  // namespace ZelSim

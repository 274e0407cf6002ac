// The control channel of an open camera: its socket, and the thread that serves it.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "producers/gigevision/control/gvcprequests.h"
#include "producers/gigevision/control/heartbeat.h"
#include "producers/gigevision/control/messagereceiver.h"
#include "producers/gigevision/control/registerport.h"
#include "producers/sockets/udpsocket.h"

namespace ZelGev {

// Sends the commands of all threads, and keeps the control of the camera beside them.
//
//   open ──(control is lost)──> lost: commands fail with GC_ERR_IO, nothing is written any more
//   open, lost ──Close──> closed: the same
//
// Commands are sent by the threads that call Run; the thread of the engine receives, repeats, and
// sends heartbeats, so that they wait for nobody. Thread-safe.
class ControlEngine final : public CommandChannel {
  public:
    // Called on the engine's thread, once at most, with the reason.
    using OnLost = std::function<void(const std::string& reason)>;

    // Binds `local`, with port 0 to any free one. Throws GC_ERR_RESOURCE_IN_USE when another socket
    // has the port, GC_ERR_IO when there cannot be a socket.
    ControlEngine(const ZelCti::Endpoint& local, const ZelCti::Endpoint& camera,
                  RequestLimits limits, OnLost onLost);
    ~ControlEngine() { Close({}); }
    ControlEngine(const ControlEngine&) = delete;
    ControlEngine& operator=(const ControlEngine&) = delete;

    void Run(Exchange* exchanges, size_t count) override;

    // Keeps the control from now on.
    void StartHeartbeat(const HeartbeatSettings& settings);

    // The client changed the heartbeat time-out of the camera.
    void SetHeartbeatTimeout(Milliseconds timeout);

    // Serves this socket, too. To be called once at most.
    void Listen(std::unique_ptr<MessageReceiver> messages);

    // An event of the camera makes it doubtful that we have control.
    void Doubt();

    // Commands that are under way fail, these are written as the last ones, as long as the camera
    // answers, but for a second at most, and the thread ends: nothing is reported any more. Another
    // call does nothing.
    void Close(const std::vector<ZelCti::Gvcp::RegisterWrite>& lastWrites) noexcept;

    bool IsLost() const { return state_ == State::Lost; }
    uint16_t Port() const { return socket_.Port(); }

    RequestLimits Limits() const;
    void SetLimits(RequestLimits limits);
    void SetDeadline(std::optional<Time> deadline);  // see GvcpRequests
    RequestStatistics Statistics() const;

  private:
    enum class State : uint8_t { Open, Lost, Closed };

    void Perform(std::unique_lock<std::mutex>& lock, Exchange* exchanges, size_t count);
    void Serve();
    void Wait(std::optional<Time> deadline, const MessageReceiver* messages) const;
    std::optional<Time> NextDeadline() const;
    void Receive(Time now);
    void Send(Time now);
    std::string Beat(Time now);
    void Wake() const;

    const ZelCti::Endpoint camera_;
    const OnLost onLost_;
    ZelCti::UdpSocket socket_;  // thread-safe as far as it is used here
    const int wake_;            // an eventfd

    mutable std::mutex mutex_;
    std::condition_variable done_;  // an exchange may be done
    std::atomic<State> state_{State::Open};
    GvcpRequests requests_;               // guarded by mutex_
    std::optional<Heartbeat> heartbeat_;  // guarded by mutex_
    Milliseconds timeoutOfCamera_{0};     // guarded by mutex_; without a debugger
    bool isQuitting_ = false;             // guarded by mutex_
    std::string lossReason_;              // guarded by mutex_
    // Made before the thread uses it, and set under mutex_.
    std::unique_ptr<MessageReceiver> messages_;

    std::thread thread_;
};

}  // namespace ZelGev

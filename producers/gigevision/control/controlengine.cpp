#include "producers/gigevision/control/controlengine.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <random>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

#include "producers/gigevision/control/debugger.h"
#include "producers/server/base/error.h"

namespace ZelGev {

namespace Gvcp = ZelCti::Gvcp;
using ZelCti::Endpoint;
using ZelCti::Error;
using ZelCti::Gev::Status;

namespace {

// Larger ones cannot be acknowledges; a camera that sends them is understood all the same.
constexpr size_t kMaxDatagram = 1500;

// Between two datagrams, others have their turn.
constexpr int kMaxReceived = 64;

// What the camera waits for a process that a debugger may stop.
constexpr std::chrono::minutes kTimeoutWhileDebugging{5};

// Cameras that take longer to be closed free themselves in the end.
constexpr std::chrono::seconds kLongestFarewell{1};

Time Now() {
    return std::chrono::steady_clock::now();
}

int MakeWake() {
    const int descriptor = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (descriptor < 0) throw Error(GenTL::GC_ERR_IO, std::strerror(errno));
    return descriptor;
}

uint16_t FirstId() {
    return static_cast<uint16_t>(std::random_device()());
}

bool IsDeniedWrite(const Exchange& exchange) {
    return exchange.IsAcknowledged() && exchange.status == Status::AccessDenied &&
           (exchange.code == Gvcp::Code::WriteRegCmd || exchange.code == Gvcp::Code::WriteMemCmd);
}

}  // namespace

ControlEngine::ControlEngine(const Endpoint& local, const Endpoint& camera, RequestLimits limits,
                             OnLost onLost)
    : camera_(camera),
      onLost_(std::move(onLost)),
      socket_(local, "", false),
      wake_(MakeWake()),
      requests_(FirstId(), limits) {
    try {
        thread_ = std::thread([this] { Serve(); });
    } catch (...) {
        close(wake_);
        throw;
    }
}

void ControlEngine::Run(Exchange* exchanges, size_t count) {
    std::unique_lock lock(mutex_);
    if (state_ == State::Open) Perform(lock, exchanges, count);
    if (state_ == State::Lost) throw Error(GenTL::GC_ERR_IO, "the camera is lost: " + lossReason_);
    if (state_ == State::Closed) throw Error(GenTL::GC_ERR_IO, "the camera is closed");
    if (!heartbeat_ || !std::any_of(exchanges, exchanges + count, IsDeniedWrite)) return;
    heartbeat_->Doubt(Now());
    Wake();
}

void ControlEngine::Perform(std::unique_lock<std::mutex>& lock, Exchange* exchanges, size_t count) {
    const auto plannedWake = NextDeadline();
    for (size_t i = 0; i < count; ++i)
        requests_.Add(exchanges[i]);
    Send(Now());
    if (!plannedWake || NextDeadline() < plannedWake) Wake();
    done_.wait(lock, [&] {
        return std::all_of(exchanges, exchanges + count,
                           [](const Exchange& exchange) { return exchange.IsDone(); });
    });
}

void ControlEngine::StartHeartbeat(const HeartbeatSettings& settings) {
    const std::lock_guard lock(mutex_);
    heartbeat_.emplace(settings, Now());
    timeoutOfCamera_ = settings.timeout;
    Wake();
}

void ControlEngine::SetHeartbeatTimeout(Milliseconds timeout) {
    const std::lock_guard lock(mutex_);
    if (heartbeat_) heartbeat_->FollowTimeout(timeout, Now());
    timeoutOfCamera_ = timeout;
    Wake();
}

void ControlEngine::Listen(std::unique_ptr<MessageReceiver> messages) {
    const std::lock_guard lock(mutex_);
    messages_ = std::move(messages);
    Wake();
}

void ControlEngine::Doubt() {
    const std::lock_guard lock(mutex_);
    if (heartbeat_) heartbeat_->Doubt(Now());
    Wake();
}

void ControlEngine::Close(const std::vector<Gvcp::RegisterWrite>& lastWrites) noexcept {
    {
        std::unique_lock lock(mutex_);
        if (isQuitting_) return;
        const bool wasOpen = state_.exchange(State::Closed) == State::Open;
        requests_.CancelAll();  // the heartbeat's, too
        heartbeat_.reset();
        requests_.SetDeadline(Now() + kLongestFarewell);
        done_.notify_all();
        for (const Gvcp::RegisterWrite& write : lastWrites) {
            if (!wasOpen) break;
            Exchange exchange = Exchange::WriteReg(write.address, write.value);
            exchange.maxTries = 2;
            Perform(lock, &exchange, 1);
            if (!exchange.IsAcknowledged()) break;
        }
        isQuitting_ = true;
        Wake();
    }
    thread_.join();
    close(wake_);
}

RequestLimits ControlEngine::Limits() const {
    const std::lock_guard lock(mutex_);
    return requests_.Limits();
}

void ControlEngine::SetLimits(RequestLimits limits) {
    const std::lock_guard lock(mutex_);
    requests_.SetLimits(limits);
}

void ControlEngine::SetDeadline(std::optional<Time> deadline) {
    const std::lock_guard lock(mutex_);
    requests_.SetDeadline(deadline);
}

RequestStatistics ControlEngine::Statistics() const {
    const std::lock_guard lock(mutex_);
    return requests_.Statistics();
}

void ControlEngine::Serve() {
    std::unique_lock lock(mutex_);
    while (!isQuitting_) {
        const auto deadline = NextDeadline();
        MessageReceiver* const messages = messages_.get();
        lock.unlock();
        Wait(deadline, messages);
        if (messages != nullptr) {
            messages->Receive();
            messages->KeepFirewallOpen(Now());
        }
        lock.lock();
        // What has come is heard before anything is overdue: the process may have been stopped.
        Receive(Now());
        requests_.OnTimer(Now());
        const std::string reason = Beat(Now());
        Send(Now());
        done_.notify_all();
        if (reason.empty()) continue;
        lock.unlock();
        onLost_(reason);
        lock.lock();
    }
}

void ControlEngine::Wait(std::optional<Time> deadline, const MessageReceiver* messages) const {
    if (messages != nullptr && (!deadline || messages->NextDeadline() < *deadline))
        deadline = messages->NextDeadline();
    timespec patience{};
    if (deadline) {
        const auto rest = std::max(*deadline - Now(), Time::duration::zero());
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(rest);
        patience.tv_sec = seconds.count();
        patience.tv_nsec = std::chrono::nanoseconds(rest - seconds).count();
    }
    // A descriptor of -1 is ignored.
    std::array<pollfd, 3> sources{
        pollfd{socket_.Descriptor(), POLLIN, 0}, pollfd{wake_, POLLIN, 0},
        pollfd{messages != nullptr ? messages->Descriptor() : -1, POLLIN, 0}};
    ppoll(sources.data(), sources.size(), deadline ? &patience : nullptr, nullptr);
    uint64_t count = 0;
    while (read(wake_, &count, sizeof count) > 0) {
    }
}

std::optional<Time> ControlEngine::NextDeadline() const {
    std::optional<Time> next = requests_.NextDeadline();
    if (!heartbeat_) return next;
    const auto beat = heartbeat_->NextDeadline();
    if (beat && (!next || *beat < *next)) next = beat;
    return next;
}

void ControlEngine::Receive(Time now) {
    std::array<uint8_t, kMaxDatagram> memory;
    for (int i = 0; i < kMaxReceived; ++i) {
        const auto datagram = socket_.Receive({memory.data(), memory.size()});
        if (!datagram) return;
        if (datagram->from != camera_ || datagram->size > memory.size()) continue;
        requests_.OnDatagram({memory.data(), datagram->size}, now);
    }
}

// A datagram that cannot be sent is one that got lost: it is repeated.
void ControlEngine::Send(Time now) {
    while (const auto datagram = requests_.NextDatagram(now))
        socket_.Send(camera_, *datagram);
}

// Returns why the camera is lost, when that was found out just now.
std::string ControlEngine::Beat(Time now) {
    if (!heartbeat_) return {};
    if (heartbeat_->IsDone()) {
        lossReason_ = heartbeat_->End(requests_, now);
        if (!lossReason_.empty()) {
            state_ = State::Lost;
            heartbeat_.reset();
            requests_.CancelAll();
            return lossReason_;
        }
    }
    if (heartbeat_->IsUnderWay() || now < *heartbeat_->NextDeadline()) return {};
    heartbeat_->SetTimeoutOfCamera(
        IsDebuggerAttached() ? Milliseconds(kTimeoutWhileDebugging) : timeoutOfCamera_, now);
    requests_.Add(*heartbeat_->Begin(now));
    return {};
}

void ControlEngine::Wake() const {
    const uint64_t one = 1;
    // Nothing is to be done when it fails: the thread is awake then.
    [[maybe_unused]] const ssize_t written = write(wake_, &one, sizeof one);
}

}  // namespace ZelGev

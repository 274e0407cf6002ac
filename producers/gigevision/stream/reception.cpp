#include "producers/gigevision/stream/reception.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "producers/gigevision/stream/threadpriority.h"
#include "producers/server/base/error.h"
#include "producers/wire/gvcpcommands.h"

namespace ZelGev {

namespace Gvcp = ZelCti::Gvcp;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;
using ZelCti::ByteView;
using ZelCti::Error;

namespace {

// Firewalls forget after 30 s whom they let in.
constexpr seconds kFirewallPeriod{10};
constexpr milliseconds kLookPeriod{200};
// How long a Stop waits for the rest of a frame: while packets come, and at most.
constexpr milliseconds kStopSilence{100};
constexpr milliseconds kMaxStop{800};
// What comes so shortly before the end of a frame may come together with it, as a burst.
constexpr Duration kTail = milliseconds(1);
// To sleep less saves nothing. Longer, and lost packets would be asked for late.
constexpr Duration kShortestNap = microseconds(150);
constexpr Duration kLongestNap = milliseconds(4);
// The kernel passes packets of a ring on every millisecond.
constexpr Duration kShortestRingNap = milliseconds(1);
constexpr Duration kLongestRingNap = milliseconds(16);
// Of what the receive buffer holds, so much may come during a nap that takes as long as was meant.
constexpr size_t kNapShare = 4;

// Calls of the reader between two looks at the time.
constexpr int kReadsAtOnce = 8;

int MakeEventDescriptor() {
    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (descriptor < 0)
        throw Error(GenTL::GC_ERR_IO, std::string("eventfd: ") + std::strerror(errno));
    return descriptor;
}

// How many packets fit. The kernel counts the memory that it keeps for each.
size_t NumPackets(size_t bufferSize, size_t packetSize) {
    constexpr size_t kOverhead = 768;
    return bufferSize / (2 * packetSize + kOverhead);
}

uint64_t NumEnded(const StreamStatistics& statistics) {
    return statistics.completeBlocks + statistics.incompleteBlocks;
}

}  // namespace

Reception::Reception(DeviceLink& link, ZelCti::BufferQueue& buffers)
    : link_(link),
      wake_(MakeEventDescriptor()),
      receiver_(buffers, {}, [this](const auto& packets) { Ask(packets); }) {}

Reception::~Reception() {
    Stop(true);
    close(wake_);
}

void Reception::Start(uint64_t numFrames, const ReceptionSettings& settings, Source source) {
    Stop(true);
    if (link_.IsLost()) throw Error(GenTL::GC_ERR_IO, "the camera is lost");
    source_ = std::move(source);
    receiver_.SetSettings(settings);
    receiver_.SetPacketSize(source_.packetSize);
    receiver_.SetTickFrequency(link_.TickFrequency());
    receiver_.Start(numFrames);
    numDroppedHere_ = 0;
    order_ = Order::Run;
    stopTime_.reset();
    nextOpening_ = {};
    nextLook_ = {};
    isGrabbing_ = true;
    try {
        thread_ = std::thread([this] { Run(); });
    } catch (...) {
        isGrabbing_ = false;
        receiver_.Stop(true);
        throw;
    }
}

void Reception::Stop(bool kill) {
    if (!thread_.joinable()) return;
    Order running = Order::Run;
    order_.compare_exchange_strong(running, kill ? Order::Kill : Order::Stop);
    if (kill) order_ = Order::Kill;
    Wake();
    thread_.join();
    thread_ = {};
    source_.reader.reset();
}

void Reception::Kill() noexcept {
    order_ = Order::Kill;
    Wake();
}

void Reception::Wake() const noexcept {
    const uint64_t one = 1;
    (void)!write(wake_, &one, sizeof one);
}

// ---- The thread --------------------------------------------------------------------------------

void Reception::Run() {
    hasRealTimePriority_ = HurryThread();
    prctl(PR_SET_TIMERSLACK, 1);  // naps end when they should
    try {
        ReceiveFrames();
    } catch (const std::exception&) {
        // There is no memory for larger frames: no further ones come.
    }
    Report();
    receiver_.Stop(order_ == Order::Kill);
    isGrabbing_ = false;
}

void Reception::ReceiveFrames() {
    bool isMore = true;  // packets may be waiting
    for (;;) {
        now_ = Clock::now();
        if (receiver_.NextDeadline() <= now_) receiver_.OnTimer(now_);
        if (receiver_.IsFinished() || IsOver(isMore)) return;
        if (now_ >= nextLook_) LookAround();
        if (!isMore) WaitForWork();
        isMore = Receive();
    }
}

// Whether the reception is to end now. What has arrived belongs to frames that are on their way.
bool Reception::IsOver(bool isMore) {
    const Order order = order_;
    if (order == Order::Kill || isLost_) return true;
    if (order == Order::Run) return false;
    if (!stopTime_) {
        stopTime_ = now_ + kMaxStop;
        numEndedAtStop_ = NumEnded(receiver_.Statistics());
    }
    if (isMore) return now_ >= *stopTime_;
    return !receiver_.HasOpenFrames() || NumEnded(receiver_.Statistics()) != numEndedAtStop_ ||
           now_ >= *stopTime_ || now_ - lastPacket_ >= kStopSilence;
}

// What is to be done now and then.
void Reception::LookAround() {
    nextLook_ = now_ + kLookPeriod;
    Report();
    mostInNap_ = NumPackets(source_.reader->BufferSize(), source_.packetSize) / kNapShare;
    isLost_ = link_.IsLost();
    if (now_ < nextOpening_) return;
    nextOpening_ = now_ + kFirewallPeriod;
    source_.socket->OpenFirewall({link_.Place().camera.address, source_.port});
}

void Reception::Report() {
    method_ = source_.reader->Method();
    const uint64_t numDropped = source_.reader->NumDropped();
    numDropped_.Add(numDropped - numDroppedHere_);
    numDroppedHere_ = numDropped;
}

// While packets of a frame come, the thread sleeps until many are there, because to be woken up for
// a few costs more than all else. The end of a frame is not slept through, unless it would come
// late anyway, and only a part of the receive buffer gets full meanwhile. 0: whatever comes next is
// waited for. So many packets came in the time that passed since the last wait, which may have
// begun between frames: so the pace of the last frame counts, too.
Duration Reception::Nap(Duration passed, size_t numNew) const {
    const bool fromRing = source_.reader->Method() == ReceiveMethod::Ring;
    const Duration interval =
        std::min(passed / static_cast<int64_t>(numNew), receiver_.PacketInterval());
    const auto most = static_cast<int64_t>(mostInNap_);
    const Duration rest = interval * static_cast<int64_t>(receiver_.NumAhead());
    const Duration nap = fromRing
                             ? std::min({interval * most, rest, kLongestRingNap})
                             : std::min({interval * most, rest / 2, rest - kTail, kLongestNap});
    return nap < (fromRing ? kShortestRingNap : kShortestNap) ? Duration{} : nap;
}

// Within a frame, the reader itself waits for the next packet: one system call instead of two.
void Reception::WaitForWork() {
    const Duration passed = now_ - std::exchange(lastWait_, now_);
    const size_t numNew = std::exchange(numNew_, 0);
    if (numNew == 0) return Poll();
    if (const Duration nap = Nap(passed, numNew); nap != Duration{}) {
        std::this_thread::sleep_for(nap);
    } else if (source_.reader->Method() != ReceiveMethod::Ring && receiver_.HasOpenFrames() &&
               receiver_.NextDeadline() - now_ >= StreamSocket::kLongestWait) {
        mayWait_ = true;
    } else {
        Poll();
    }
}

void Reception::Poll() {
    Time until = std::min(nextLook_, receiver_.NextDeadline());
    if (stopTime_) until = std::min({until, *stopTime_, lastPacket_ + kStopSilence});
    const auto left = std::max(until - now_, Duration::zero());
    const auto whole = std::chrono::duration_cast<seconds>(left);
    const timespec patience{whole.count(), std::chrono::nanoseconds(left - whole).count()};
    std::array<pollfd, 2> descriptors{
        {{source_.reader->Descriptor(), POLLIN, 0}, {wake_, POLLIN, 0}}};
    ppoll(descriptors.data(), descriptors.size(), &patience, nullptr);
    if (descriptors[1].revents == 0) return;
    uint64_t count = 0;
    (void)!read(wake_, &count, sizeof count);
}

bool Reception::Receive() {
    if (source_.port == 0 && source_.reader->Method() != ReceiveMethod::Ring) LearnSourcePort();
    now_ = Clock::now();
    bool isMore = true;
    isLate_ = mayWait_;
    for (int i = 0; i < kReadsAtOnce && isMore; ++i)
        isMore = source_.reader->Read(*this, std::exchange(mayWait_, false));
    if (lastPacket_ == now_) nextOpening_ = now_ + kFirewallPeriod;
    return isMore;
}

// Some cameras do not say from which port they send: then the first packet does.
void Reception::LearnSourcePort() {
    sockaddr_in from{};
    socklen_t length = sizeof from;
    if (recvfrom(source_.socket->Descriptor(), nullptr, 0, MSG_PEEK | MSG_DONTWAIT,
                 reinterpret_cast<sockaddr*>(&from), &length) >= 0)
        source_.port = ntohs(from.sin_port);
}

void Reception::Predict(Prediction& next, size_t atMost) const {
    receiver_.Predict(next, atMost);
}

void Reception::OnPacket(ByteView header, ByteView data) {
    if (std::exchange(isLate_, false)) now_ = Clock::now();
    lastPacket_ = now_;
    ++numNew_;
    receiver_.OnPacket(header, data, now_);
}

void Reception::Ask(const Gvcp::PacketResend& packets) {
    std::array<uint8_t, Gvcp::kHeaderSize + Gvcp::kPacketResendExtendedSize> command;
    requestId_ = Gvcp::NextRequestId(requestId_);
    const size_t size =
        Gvcp::EncodePacketResendCmd({command.data(), command.size()}, {requestId_, 0}, packets);
    source_.socket->Send(link_.Place().camera, {command.data(), size});
}

}  // namespace ZelGev

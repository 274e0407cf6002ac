#include "producers/gigevision/stream/streamchannel.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <poll.h>
#include <sys/socket.h>

#include "producers/gigevision/stream/receptionsettings.h"
#include "producers/server/base/error.h"
#include "producers/wire/bootstrap.h"
#include "producers/wire/gvsp.h"

namespace ZelGev {

namespace Gev = ZelCti::Gev;
namespace Gvsp = ZelCti::Gvsp;
namespace Scps = ZelCti::Gev::Scps;
using std::chrono::milliseconds;
using ZelCti::ByteOrder;
using ZelCti::Endpoint;
using ZelCti::Error;

namespace {

// How long each try of a test packet is waited for. Some cameras lose the first one, and some take
// a third of a second; patience is for the first size only, so that the whole search takes about a
// second at most.
constexpr std::array<milliseconds, 3> kPatientTries{milliseconds(20), milliseconds(50),
                                                    milliseconds(300)};
constexpr std::array<milliseconds, 3> kQuickTries{milliseconds(20), milliseconds(20),
                                                  milliseconds(20)};

// Whether the camera did not answer, and not refuse.
bool IsNoAnswer(const Error& error) {
    return error.Code() == GenTL::GC_ERR_IO || error.Code() == GenTL::GC_ERR_TIMEOUT;
}

// Waits for a datagram of that length. What else comes is thrown away: no stream is being received.
bool AwaitDatagram(const StreamSocket& socket, size_t size, milliseconds patience) {
    const Time end = Clock::now() + patience;
    for (;;) {
        ssize_t received = 0;
        while ((received = recv(socket.Descriptor(), nullptr, 0, MSG_DONTWAIT | MSG_TRUNC)) >= 0)
            if (static_cast<size_t>(received) == size) return true;
        const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
        if (left <= milliseconds::zero()) return false;
        pollfd descriptor{socket.Descriptor(), POLLIN, 0};
        poll(&descriptor, 1, static_cast<int>(left.count()));
    }
}

}  // namespace

uint32_t StreamChannel::Read(const Gev::Register& reg) const {
    return link_.ReadRegister(reg.At(index_));
}

void StreamChannel::Write(const Gev::Register& reg, uint32_t value) {
    link_.WriteRegister(reg.At(index_), value);
}

void StreamChannel::Open(const Endpoint& destination) {
    Write(Gev::kScp, 0);
    Write(Gev::kScda, destination.address);
    Write(Gev::kScp, destination.port);
    destination_ = destination;
}

void StreamChannel::Renew(const StreamSocket& socket) {
    const bool isLocked = IsLocked();
    if (!isLocked) Write(Gev::kScp, 0);
    socket.Drain();
    if (!isLocked) Write(Gev::kScp, destination_.port);
}

// A camera whose settings are locked would take the port 0, but no other one after it. The
// destination is locked as well, and writing the same again changes nothing.
bool StreamChannel::IsLocked() {
    try {
        Write(Gev::kScda, destination_.address);
        return false;
    } catch (const Error& error) {
        if (IsNoAnswer(error)) throw;
        return true;
    }
}

void StreamChannel::Close() noexcept {
    if (destination_.port == 0) return;
    destination_ = {};
    try {
        if (!link_.IsLost()) Write(Gev::kScp, 0);
    } catch (const std::exception&) {
        // The camera is gone, or closes the channel when it notices that nobody controls it.
    }
}

Endpoint StreamChannel::Destination() const {
    return {Read(Gev::kScda), static_cast<uint16_t>(Read(Gev::kScp) & Gev::Scp::kPort)};
}

uint16_t StreamChannel::SourcePort() const {
    try {
        return static_cast<uint16_t>(Read(Gev::kScsp));
    } catch (const Error&) {
        return 0;  // not every camera has the register
    }
}

uint32_t StreamChannel::PacketSize() const {
    return Read(Gev::kScps) & Scps::kPacketSize;
}

ByteOrder StreamChannel::PixelOrder() const {
    return (Read(Gev::kScps) & Scps::kBigEndianPixels) != 0 ? ByteOrder::Big : ByteOrder::Little;
}

StreamChannel::Test StreamChannel::TestSize(uint32_t size, uint32_t flags,
                                            const StreamSocket& socket, bool isPatient) {
    Test test;
    for (const milliseconds patience : isPatient ? kPatientTries : kQuickTries) {
        try {
            Write(Gev::kScps, Scps::kFireTestPacket | Scps::kDoNotFragment | flags | size);
        } catch (const Error& error) {
            if (IsNoAnswer(error)) throw;
            test.isRefused = true;
            return test;
        }
        test.size = PacketSize();
        test.arrived = AwaitDatagram(socket, Gvsp::TestPacketSize(test.size), patience);
        if (test.arrived) break;
    }
    return test;
}

bool StreamChannel::FindPacketSize(PacketSizeSearch::Aim aim, const StreamSocket& socket) {
    const uint32_t present = Read(Gev::kScps) & ~Scps::kFireTestPacket;
    const uint32_t flags = present & ~Scps::kPacketSize;
    const uint32_t largest = std::min(link_.Place().mtu, Scps::kPacketSize);
    PacketSizeSearch search(aim, present & Scps::kPacketSize, largest);
    bool isPatient = true;
    while (const auto size = search.Next()) {
        const Test test = TestSize(*size, flags, socket, isPatient);
        isPatient = isPatient && test.isRefused;
        if (test.isRefused) {
            search.OnRefused();
        } else {
            search.OnTested(test.size, test.arrived);
        }
    }
    const uint32_t size = search.Result().value_or(present & Scps::kPacketSize);
    if (PacketSize() != size || (flags & Scps::kDoNotFragment) == 0)
        Write(Gev::kScps, flags | size);
    return search.Result().has_value();
}

}  // namespace ZelGev

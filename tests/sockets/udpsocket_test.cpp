// Sockets on loopback.

#include "producers/sockets/udpsocket.h"

#include <array>
#include <poll.h>
#include <string>

#include <gmock/gmock.h>
#include <net/if.h>

#include "producers/server/base/error.h"

using ZelCti::ByteSpan;
using ZelCti::ByteView;
using ZelCti::UdpSocket;

namespace {

constexpr uint32_t kSenderAddress = 0x7F00006F;    // 127.0.0.111
constexpr uint32_t kReceiverAddress = 0x7F000070;  // 127.0.0.112

ByteView BytesOf(const std::string& text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

// Waits for a datagram on its way, which nothing loses on loopback.
std::optional<UdpSocket::Datagram> Await(UdpSocket& socket, ByteSpan memory) {
    pollfd wait{socket.Descriptor(), POLLIN, 0};
    EXPECT_EQ(poll(&wait, 1, 10000), 1);
    return socket.Receive(memory);
}

}  // namespace

TEST(UdpSocketTest, DatagramsComeWithSenderAndInterface) {
    UdpSocket sender({kSenderAddress, 0}, "lo", false);
    UdpSocket receiver({kReceiverAddress, 0}, "lo", false);
    std::array<uint8_t, 4> memory{};
    EXPECT_FALSE(receiver.Receive({memory.data(), memory.size()})) << "it does not wait";
    ASSERT_TRUE(sender.Send({kReceiverAddress, receiver.Port()}, BytesOf("seven b")));
    const auto datagram = Await(receiver, {memory.data(), memory.size()});
    ASSERT_TRUE(datagram);
    EXPECT_EQ(datagram->size, 7U) << "its own size, though it was cut";
    EXPECT_EQ(datagram->from, (ZelCti::Endpoint{kSenderAddress, sender.Port()}));
    EXPECT_EQ(datagram->interface, if_nametoindex("lo"));
    EXPECT_EQ(std::string(memory.begin(), memory.end()), "seve");
}

TEST(UdpSocketTest, BroadcastsReachAllWhoShareThem) {
    const UdpSocket port({kSenderAddress, 0}, "lo", false);  // a free number
    UdpSocket one({UINT32_MAX, port.Port()}, "lo", true);
    UdpSocket other({UINT32_MAX, port.Port()}, "lo", true);
    UdpSocket sender({kSenderAddress, 0}, "lo", false);
    ASSERT_TRUE(sender.Send({UINT32_MAX, port.Port()}, BytesOf("x")));
    std::array<uint8_t, 4> memory{};
    for (UdpSocket* socket : {&one, &other}) {
        EXPECT_TRUE(Await(*socket, {memory.data(), memory.size()}));
    }
}

TEST(UdpSocketTest, AnAddressInUseIsRefused) {
    const UdpSocket first({kSenderAddress, 0}, "lo", false);
    try {
        const UdpSocket second({kSenderAddress, first.Port()}, "lo", false);
        ADD_FAILURE() << "two cameras at one address";
    } catch (const ZelCti::Error& error) {
        EXPECT_EQ(error.Code(), GenTL::GC_ERR_RESOURCE_IN_USE);
    }
}

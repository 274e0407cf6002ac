// An application's end of a stream, on loopback.
#pragma once

#include <arpa/inet.h>
#include <cstdint>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "producers/sockets/udpsocket.h"
#include "tests/wire/bytes.h"

namespace GigeTest {

constexpr uint32_t kLoopback = 0x7F000001;

// A socket at 127.0.0.1. It waits long enough for a busy machine, so that only a packet that never
// comes fails a test.
class StreamReceiver {
  public:
    StreamReceiver() {
        const int size = 4 << 20;
        setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &size, sizeof size);
        const timeval patience{20, 0};
        setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        sockaddr_in address = Address(0);
        EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        socklen_t length = sizeof address;
        getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
        port_ = ntohs(address.sin_port);
    }
    ~StreamReceiver() { close(socket_); }
    StreamReceiver(const StreamReceiver&) = delete;
    StreamReceiver& operator=(const StreamReceiver&) = delete;

    uint16_t Port() const { return port_; }

    // The next packet; empty if none comes.
    WireTest::Bytes Next() { return Receive(0); }

    // Whether nothing has arrived: on loopback, what was sent is there.
    bool IsEmpty() { return Receive(MSG_DONTWAIT | MSG_PEEK).empty(); }
    void Drain() {
        while (!Receive(MSG_DONTWAIT).empty()) {
        }
    }

    ZelCti::Endpoint Sender() const { return sender_; }  // of the last packet

  private:
    static sockaddr_in Address(uint16_t port) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(kLoopback);
        address.sin_port = htons(port);
        return address;
    }

    WireTest::Bytes Receive(int flags) {
        WireTest::Bytes bytes(65536);
        sockaddr_in from{};
        socklen_t length = sizeof from;
        const ssize_t size = recvfrom(socket_, bytes.data(), bytes.size(), flags,
                                      reinterpret_cast<sockaddr*>(&from), &length);
        bytes.resize(size < 0 ? 0 : static_cast<size_t>(size));
        sender_ = {ntohl(from.sin_addr.s_addr), ntohs(from.sin_port)};
        return bytes;
    }

    const int socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    uint16_t port_ = 0;
    ZelCti::Endpoint sender_;
};

}  // namespace GigeTest

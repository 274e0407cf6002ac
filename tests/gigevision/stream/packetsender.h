// Sends datagrams on loopback, as a camera sends the packets of a stream.
#pragma once

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cstring>
#include <netinet/in.h>
#include <netinet/ip.h>
#include <netinet/udp.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "tests/wire/bytes.h"

namespace GevTest {

constexpr uint32_t kLoopback = 0x7F000001;

class PacketSender {
  public:
    explicit PacketSender(uint16_t port, uint32_t from = kLoopback) {
        sockaddr_in local = Address(from, 0);
        EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&local), sizeof local), 0);
        sockaddr_in remote = Address(kLoopback, port);
        EXPECT_EQ(connect(socket_, reinterpret_cast<sockaddr*>(&remote), sizeof remote), 0);
    }
    ~PacketSender() { close(socket_); }
    PacketSender(const PacketSender&) = delete;
    PacketSender& operator=(const PacketSender&) = delete;

    void Send(const WireTest::Bytes& packet) const {
        EXPECT_EQ(send(socket_, packet.data(), packet.size(), 0),
                  static_cast<ssize_t>(packet.size()));
    }

    uint16_t Port() const {
        sockaddr_in local{};
        socklen_t length = sizeof local;
        EXPECT_EQ(getsockname(socket_, reinterpret_cast<sockaddr*>(&local), &length), 0);
        return ntohs(local.sin_port);
    }

    // What the receiver sends back; it is waited for.
    WireTest::Bytes Receive() const {
        WireTest::Bytes datagram(2048);
        const ssize_t size = recv(socket_, datagram.data(), datagram.size(), 0);
        datagram.resize(size < 0 ? 0 : static_cast<size_t>(size));
        return datagram;
    }

    // As one datagram that the kernel cuts; all have the length of the first one, but the last one
    // may be shorter.
    void SendJoined(const std::vector<WireTest::Bytes>& packets) const {
        WireTest::Bytes all;
        for (const auto& packet : packets)
            all.insert(all.end(), packet.begin(), packet.end());
        iovec piece{all.data(), all.size()};
        alignas(cmsghdr) std::array<uint8_t, CMSG_SPACE(sizeof(uint16_t))> control{};
        msghdr message{};
        message.msg_iov = &piece;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        cmsghdr* const segment = CMSG_FIRSTHDR(&message);
        segment->cmsg_level = IPPROTO_UDP;
        segment->cmsg_type = UDP_SEGMENT;
        segment->cmsg_len = CMSG_LEN(sizeof(uint16_t));
        const auto size = static_cast<uint16_t>(packets.front().size());
        std::memcpy(CMSG_DATA(segment), &size, sizeof size);
        EXPECT_EQ(sendmsg(socket_, &message, 0), static_cast<ssize_t>(all.size()));
    }

    // As fragments of IP with so many bytes each, which takes rights.
    void SendInFragments(const WireTest::Bytes& packet, size_t size) const {
        constexpr size_t kUnit = 8;  // of a fragment's place
        sockaddr_in local{};
        sockaddr_in remote{};
        socklen_t length = sizeof local;
        EXPECT_EQ(getsockname(socket_, reinterpret_cast<sockaddr*>(&local), &length), 0);
        EXPECT_EQ(getpeername(socket_, reinterpret_cast<sockaddr*>(&remote), &length), 0);
        WireTest::Bytes datagram(sizeof(udphdr));
        datagram.insert(datagram.end(), packet.begin(), packet.end());
        const udphdr udp{
            {{local.sin_port, remote.sin_port, htons(static_cast<uint16_t>(datagram.size())), 0}}};
        std::memcpy(datagram.data(), &udp, sizeof udp);
        const int raw = socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_RAW);
        for (size_t offset = 0; offset < datagram.size(); offset += size) {
            const size_t count = std::min(size, datagram.size() - offset);
            const bool isLast = offset + count == datagram.size();
            iphdr ip{};
            ip.version = 4;
            ip.ihl = sizeof ip / 4;
            ip.id = 77;
            ip.frag_off = htons(static_cast<uint16_t>(offset / kUnit | (isLast ? 0 : IP_MF)));
            ip.ttl = 64;
            ip.protocol = IPPROTO_UDP;
            ip.saddr = local.sin_addr.s_addr;
            ip.daddr = remote.sin_addr.s_addr;
            WireTest::Bytes fragment(sizeof ip + count);
            std::memcpy(fragment.data(), &ip, sizeof ip);
            std::memcpy(&fragment[sizeof ip], &datagram[offset], count);
            EXPECT_EQ(sendto(raw, fragment.data(), fragment.size(), 0,
                             reinterpret_cast<const sockaddr*>(&remote), sizeof remote),
                      static_cast<ssize_t>(fragment.size()));
        }
        close(raw);
    }

  private:
    static sockaddr_in Address(uint32_t address, uint16_t port) {
        sockaddr_in native{};
        native.sin_family = AF_INET;
        native.sin_addr.s_addr = htonl(address);
        native.sin_port = htons(port);
        return native;
    }

    const int socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

}  // namespace GevTest

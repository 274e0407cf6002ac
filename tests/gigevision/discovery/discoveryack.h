// Answers to searches for cameras, byte by byte.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ZelTest {

using Bytes = std::vector<uint8_t>;

class DiscoveryAck {
  public:
    DiscoveryAck() {
        bytes_[3] = 0x03;  // DISCOVERY_ACK
        bytes_[4] = 0x00;
        bytes_[5] = 0xF8;  // 248 bytes follow
        Id(1);
        Put(0, {0, 2, 0, 1, 0x80, 0, 0, 1});
        Mac({0x02, 0x11, 0x22, 0x33, 0x44, 0x55});
        Ip({10, 77, 0, 5}, {255, 255, 255, 0}, {10, 77, 0, 1});
        Text(72, "Acme");
        Text(104, "Line 4");
        Text(136, "1.2.3");
        Text(216, "0815");
        Text(232, "left");
    }

    DiscoveryAck& Id(uint16_t id) {
        bytes_[6] = static_cast<uint8_t>(id >> 8);
        bytes_[7] = static_cast<uint8_t>(id);
        return *this;
    }
    DiscoveryAck& Mac(const Bytes& mac) { return Put(10, mac); }
    DiscoveryAck& Ip(const Bytes& address, const Bytes& mask, const Bytes& gateway) {
        return Put(36, address).Put(52, mask).Put(68, gateway);
    }
    // At an offset of the payload.
    DiscoveryAck& Text(size_t offset, const std::string& text) {
        return Put(offset, Bytes(text.begin(), text.end()));
    }
    DiscoveryAck& Put(size_t offset, const Bytes& bytes) {
        for (size_t i = 0; i < bytes.size(); ++i)
            bytes_.at(8 + offset + i) = bytes[i];
        return *this;
    }

    const Bytes& Get() const { return bytes_; }

  private:
    Bytes bytes_ = Bytes(256);
};

}  // namespace ZelTest

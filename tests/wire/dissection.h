// What tshark, which knows the protocols from elsewhere, sees in our messages. They are written
// into a file as if a network had carried them; none is ever sent.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/wire/bytes.h"

namespace WireTest {

class Dissection {
  public:
    // The fields of a packet as "name=value", with the values as tshark shows them.
    using Fields = std::vector<std::string>;

    // Whether tshark is installed.
    static bool IsPossible();

    // The payload of a UDP datagram, from the first of two machines to the second one, or back.
    void AddToDevice(uint16_t applicationPort, uint16_t devicePort, const Bytes& payload);
    void AddFromDevice(uint16_t applicationPort, uint16_t devicePort, const Bytes& payload);

    // For each packet the fields of a protocol, and what tshark objects to. `options` are arguments
    // for tshark as a shell takes them.
    std::vector<Fields> Run(std::string_view protocol, const std::string& options = {}) const;

  private:
    struct Endpoint {
        uint8_t host;
        uint16_t port;
    };
    void Add(Endpoint source, Endpoint destination, const Bytes& payload);

    std::vector<Bytes> frames_;
};

}  // namespace WireTest

#include "tests/support/networkapplication.h"

#include <arpa/inet.h>
#include <cerrno>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace ZelTest {

namespace {

constexpr int kGenerousMs = 60000;

sockaddr_in Native(const std::string& address, uint16_t port) {
    sockaddr_in native{};
    native.sin_family = AF_INET;
    native.sin_port = htons(port);
    if (inet_pton(AF_INET, address.c_str(), &native.sin_addr) != 1) {
        throw std::runtime_error("no address: " + address);
    }
    return native;
}

int MakeSocket() {
    const int made = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const sockaddr_in native = Native("127.0.0.1", 0);
    if (bind(made, reinterpret_cast<const sockaddr*>(&native), sizeof native) != 0) {
        throw std::runtime_error("bind");
    }
    return made;
}

// Empty when nobody is at the other end.
Bytes Receive(int socket, sockaddr_in& from) {
    pollfd readable{socket, POLLIN, 0};
    if (poll(&readable, 1, kGenerousMs) != 1) throw std::runtime_error("nothing came");
    Bytes datagram(65536);
    socklen_t fromSize = sizeof from;
    const ssize_t size = recvfrom(socket, datagram.data(), datagram.size(), 0,
                                  reinterpret_cast<sockaddr*>(&from), &fromSize);
    if (size < 0 && errno != ECONNREFUSED) throw std::runtime_error("recv");
    datagram.resize(size < 0 ? 0 : static_cast<size_t>(size));
    return datagram;
}

void Put(Bytes& bytes, uint32_t value, int size) {
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<uint8_t>(value >> shift));
}

uint32_t NumberAt(const Bytes& bytes, size_t offset) {
    return static_cast<uint32_t>(bytes.at(offset)) << 24 |
           static_cast<uint32_t>(bytes.at(offset + 1)) << 16 |
           static_cast<uint32_t>(bytes.at(offset + 2)) << 8 | bytes.at(offset + 3);
}

}  // namespace

NetworkApplication::NetworkApplication(const std::string& camera) : socket_(MakeSocket()) {
    SpeakTo(camera);
}

NetworkApplication::~NetworkApplication() {
    close(socket_);
}

void NetworkApplication::SpeakTo(const std::string& camera) {
    constexpr uint16_t kControlPort = 3956;
    const sockaddr_in native = Native(camera, kControlPort);
    if (connect(socket_, reinterpret_cast<const sockaddr*>(&native), sizeof native) != 0) {
        throw std::runtime_error("connect");
    }
}

Bytes NetworkApplication::Ask(const Bytes& command) const {
    if (send(socket_, command.data(), command.size(), 0) < 0) return {};
    sockaddr_in from{};
    return Receive(socket_, from);
}

void NetworkApplication::Tell(const Bytes& command) const {
    (void)!send(socket_, command.data(), command.size(), 0);
}

uint32_t NetworkApplication::Read(uint16_t address) {
    Bytes command{0x42, 1, 0, 0x80, 0, 4};
    Put(command, ++lastId_, 2);
    Put(command, address, 4);
    const Bytes answer = Ask(command);
    if (answer.size() != 12 || answer[0] != 0) throw std::runtime_error("not read");
    return NumberAt(answer, 8);
}

int NetworkApplication::Write(uint16_t address, uint32_t value) {
    Bytes command{0x42, 1, 0, 0x82, 0, 8};
    Put(command, ++lastId_, 2);
    Put(command, address, 4);
    Put(command, value, 4);
    return static_cast<int>(NumberAt(Ask(command), 0) >> 16);
}

NetworkListener::NetworkListener() : socket_(MakeSocket()) {}

NetworkListener::~NetworkListener() {
    close(socket_);
}

uint16_t NetworkListener::Port() const {
    sockaddr_in native{};
    socklen_t size = sizeof native;
    getsockname(socket_, reinterpret_cast<sockaddr*>(&native), &size);
    return ntohs(native.sin_port);
}

Bytes NetworkListener::Next() {
    sockaddr_in from{};
    Bytes datagram = Receive(socket_, from);
    lastSender_ = inet_ntoa(from.sin_addr);
    return datagram;
}

std::string TextAt(const Bytes& bytes, size_t offset) {
    return bytes.size() <= offset ? "" : reinterpret_cast<const char*>(&bytes[offset]);
}

}  // namespace ZelTest

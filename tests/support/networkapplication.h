// An application at the other end of the network, for tests: it sends literal datagrams.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ZelTest {

using Bytes = std::vector<uint8_t>;

// Has a socket of 127.0.0.1 that speaks to the control port of one camera. Operations throw
// std::runtime_error where a camera that works would not let them wait so long.
class NetworkApplication {
  public:
    explicit NetworkApplication(const std::string& camera);
    ~NetworkApplication();
    NetworkApplication(const NetworkApplication&) = delete;
    NetworkApplication& operator=(const NetworkApplication&) = delete;

    // The answer to a command; empty when the address has no camera.
    Bytes Ask(const Bytes& command) const;
    void Tell(const Bytes& command) const;  // without waiting for an answer
    Bytes Discover() const { return Ask({0x42, 1, 0, 2, 0, 0, 0, 1}); }

    // One register; a new command each time.
    uint32_t Read(uint16_t address);
    int Write(uint16_t address, uint32_t value);  // returns the status

    // Another camera, or the same one elsewhere.
    void SpeakTo(const std::string& camera);

  private:
    const int socket_;
    uint16_t lastId_ = 0;
};

// A socket of 127.0.0.1 that waits for what cameras send by themselves.
class NetworkListener {
  public:
    NetworkListener();
    ~NetworkListener();
    NetworkListener(const NetworkListener&) = delete;
    NetworkListener& operator=(const NetworkListener&) = delete;

    uint16_t Port() const;
    Bytes Next();
    std::string LastSender() const { return lastSender_; }  // the address

  private:
    const int socket_;
    std::string lastSender_;
};

// The text that begins there.
std::string TextAt(const Bytes& bytes, size_t offset);

}  // namespace ZelTest

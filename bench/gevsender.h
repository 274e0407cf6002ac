// Simulated cameras at the other end of the network, in the program zelsim.
#pragma once

#include <csignal>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bench/network.h"
#include "bench/process.h"

namespace Bench {

// Cameras that are alike, with pictures of Mono8.
struct GevCameras {
    uint32_t width = 2048;
    uint32_t height = 2048;
    double rate = 25;                // frames a second
    uint64_t linkSpeed = 125000000;  // bytes a second
    uint32_t packetSize = 1500;
    std::string switches{};  // more attributes of Network
    size_t count = 1;

    double FrameBytes() const { return static_cast<double>(width) * height; }
};

// What cameras sent until now.
struct GevSent {
    uint64_t frames = 0;
    uint64_t packets = 0;
};

// Serves cameras while it lives, from one processor. Operations throw when the program fails.
class GevSender {
  public:
    GevSender(const BenchNetwork& network, const GevCameras& cameras);
    ~GevSender();
    GevSender(const GevSender&) = delete;
    GevSender& operator=(const GevSender&) = delete;

    const GevCameras& Cameras() const { return cameras_; }
    uint32_t Address(size_t camera) const { return addresses_.at(camera); }
    GevSent Sent() const;  // by all of them

    // The program does not run any more, and says nothing.
    void Freeze() { process_->Signal(SIGSTOP); }

  private:
    void WriteConfiguration() const;
    std::string Tell(const std::string& command) const;

    const GevCameras cameras_;
    const std::string folder_;
    std::vector<uint32_t> addresses_;
    std::optional<Process> process_;
};

}  // namespace Bench

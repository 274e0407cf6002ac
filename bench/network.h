// The network of the benchmarks, as scripts/bench-network makes it; without it, loopback.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <netinet/in.h>
#include <string>

#include "producers/sockets/endpoint.h"

namespace Bench {

constexpr size_t kSenderProcessor = 0;
constexpr size_t kReceiverProcessor = 1;

struct NetworkEnd {
    std::string space;  // the name of its network namespace; empty: that of this program
    uint32_t address;
};

struct BenchNetwork {
    NetworkEnd camera{"", 0x7F000001};  // the only one that the other fake camera takes
    NetworkEnd host{"", 0x7F000001};

    BenchNetwork();

    bool IsLoopback() const { return camera.space.empty(); }
    const char* Name() const { return IsLoopback() ? "loopback" : "veth"; }
};

// For the calling thread; where there is only one processor, all share it.
void RunOnProcessor(size_t processor);

// Runs `work` at an end of the network. Sockets, threads and processes that it makes stay there.
// Throws what it throws, as a std::runtime_error.
void RunAt(const NetworkEnd& end, size_t processor, const std::function<void()>& work);

sockaddr_in NativeAddress(const ZelCti::Endpoint& endpoint);

// Control of a camera without a program for cameras: registers are written, and that is all.
// Operations throw when the camera does not acknowledge.
class CameraControl {
  public:
    explicit CameraControl(uint32_t camera);
    ~CameraControl();
    CameraControl(const CameraControl&) = delete;
    CameraControl& operator=(const CameraControl&) = delete;

    void Take();  // waits for a camera that is being started
    void OpenStream(const ZelCti::Endpoint& to, uint32_t packetSize);
    void Write(uint32_t address, uint32_t value);
    void Release();

    // Keeps the camera ours; its answer is not waited for.
    void SendHeartbeat();

  private:
    bool TryWrite(uint32_t address, uint32_t value);

    const int socket_;
    uint16_t requestId_ = 0;
};

}  // namespace Bench

#include "bench/network.h"

#include <arpa/inet.h>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <sched.h>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "producers/wire/bootstrap.h"
#include "producers/wire/gvcpanswers.h"
#include "producers/wire/gvcpcommands.h"

namespace Bench {

namespace Gev = ZelCti::Gev;
namespace Gvcp = ZelCti::Gvcp;

namespace {

void EnterNamespace(const std::string& name) {
    if (name.empty()) return;
    const int file = open(("/run/netns/" + name).c_str(), O_RDONLY | O_CLOEXEC);
    const bool entered = file >= 0 && setns(file, CLONE_NEWNET) == 0;
    if (file >= 0) close(file);
    if (!entered) throw std::runtime_error("the network namespace " + name + " cannot be used");
}

}  // namespace

BenchNetwork::BenchNetwork() {
    const char* const cameraSpace = std::getenv("ZELCAM_BENCH_CAMERA");
    const char* const hostSpace = std::getenv("ZELCAM_BENCH_HOST");
    if (cameraSpace == nullptr || hostSpace == nullptr) return;
    camera = {cameraSpace, 0x0A4D0002};
    host = {hostSpace, 0x0A4D0001};
}

void RunOnProcessor(size_t processor) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(processor, &set);
    sched_setaffinity(0, sizeof set, &set);
}

void RunAt(const NetworkEnd& end, size_t processor, const std::function<void()>& work) {
    std::string error;
    std::thread([&] {
        try {
            EnterNamespace(end.space);
            RunOnProcessor(processor);
            work();
        } catch (const std::exception& e) {
            error = e.what();
        }
    }).join();
    if (!error.empty()) throw std::runtime_error(error);
}

sockaddr_in NativeAddress(const ZelCti::Endpoint& endpoint) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_addr.s_addr = htonl(endpoint.address);
    result.sin_port = htons(endpoint.port);
    return result;
}

CameraControl::CameraControl(uint32_t camera)
    : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    const timeval patience{0, 100000};
    setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    const sockaddr_in address = NativeAddress({camera, Gvcp::kPort});
    if (connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("there is no way to the camera");
}

CameraControl::~CameraControl() {
    close(socket_);
}

void CameraControl::Take() {
    constexpr int kTries = 50;
    for (int i = 0; i < kTries; ++i) {
        if (TryWrite(Gev::kCcp.address, 2)) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    throw std::runtime_error("the camera does not answer");
}

void CameraControl::OpenStream(const ZelCti::Endpoint& to, uint32_t packetSize) {
    Write(Gev::kScda.address, to.address);
    Write(Gev::kScps.address, packetSize);
    Write(Gev::kScp.address, to.port);
}

void CameraControl::Write(uint32_t address, uint32_t value) {
    if (!TryWrite(address, value)) throw std::runtime_error("the camera does not acknowledge");
}

void CameraControl::Release() {
    Write(Gev::kCcp.address, 0);
}

void CameraControl::SendHeartbeat() {
    uint8_t bytes[Gvcp::kMaxMessageSize];
    const uint32_t address = Gev::kCcp.address;
    const size_t size =
        Gvcp::EncodeReadRegCmd({bytes, sizeof bytes}, {++requestId_, 1}, &address, 1);
    send(socket_, bytes, size, 0);
}

bool CameraControl::TryWrite(uint32_t address, uint32_t value) {
    uint8_t bytes[Gvcp::kMaxMessageSize];
    const Gvcp::RegisterWrite write{address, value};
    const size_t size =
        Gvcp::EncodeWriteRegCmd({bytes, sizeof bytes}, {++requestId_, 1}, &write, 1);
    send(socket_, bytes, size, 0);
    while (true) {
        const ssize_t received = recv(socket_, bytes, sizeof bytes, 0);
        if (received <= 0) return false;
        const auto ack = Gvcp::DecodeAcknowledge({bytes, static_cast<size_t>(received)});
        if (ack && ack->ackId == requestId_) return ack->status == Gev::Status::Success;
    }
}

}  // namespace Bench

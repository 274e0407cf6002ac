// A camera with a control server, without a network: what is sent and what its device is told
// stands in lists.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "producers/simulator/gige/control/controlserver.h"
#include "producers/simulator/simulatedcamera.h"
#include "tests/wire/bytes.h"

namespace GigeTest {

using WireTest::Bytes;

// Notes what it is told as "stream 0 port 1234".
class NotingHardware : public ZelSim::NetworkHardware {
  public:
    ZelSim::NetworkSettings settings;
    ZelSim::IpMemory memory;
    std::vector<std::string> notes;
    uint32_t streamCapability = 0x80000066;

    std::shared_ptr<const ZelSim::NetworkSettings> Settings() const override {
        return std::make_shared<ZelSim::NetworkSettings>(settings);
    }
    uint32_t NumStreams() const override { return 2; }
    uint32_t StreamCapability() const override { return streamCapability; }
    uint16_t StreamSourcePort(uint32_t channel) const override {
        return static_cast<uint16_t>(0xC000 + channel);
    }
    void SetStreamPort(uint32_t channel, uint16_t port) override { Note("port", channel, port); }
    void SetStreamDestination(uint32_t channel, uint32_t address) override {
        Note("destination", channel, address);
    }
    uint32_t SetStreamPacketSize(uint32_t /*channel*/, uint32_t scps) override {
        return scps & ~3U;
    }
    void SetStreamDelay(uint32_t channel, uint32_t ticks) override {
        Note("delay", channel, ticks);
    }
    void SetStreamConfiguration(uint32_t channel, uint32_t sccfg) override {
        Note("sccfg", channel, sccfg);
    }
    void SetExtendedIds(bool on) override { Note("extended ids", on); }
    void SetStatusCodes(bool on) override { Note("status codes", on); }
    void FireTestPacket(uint32_t channel) override { Note("test packet", channel); }
    void Resend(const ZelCti::Gvcp::PacketResend& request, const ZelCti::Endpoint& from) override {
        Note("resend", request.streamChannel, static_cast<uint32_t>(request.blockId), from.port);
    }
    uint16_t MessageSourcePort() const override { return 0xBEEF; }
    void SetMessagePort(uint16_t port) override { Note("message port", port); }
    void SetMessageDestination(uint32_t address) override { Note("message to", address); }
    void SetMessageTimeout(uint32_t milliseconds) override { Note("mctt", milliseconds); }
    void SetMessageRetries(uint32_t count) override { Note("mcrc", count); }
    void SendEvent(uint16_t id) override { Note("event", id); }
    ZelSim::IpMemory Memory() const override { return memory; }
    void SetMemory(const ZelSim::IpMemory& kept) override { memory = kept; }
    void SetTimestampToZero() override { Note("timestamp 0"); }
    void ForceIp(const ZelCti::IpSettings& ip) override {
        Note("force ip", ip.address);
        settings.ip = ip;
    }
    void Act(uint32_t signal) override { Note("act", signal); }

    // What was noted since the last call.
    std::vector<std::string> TakeNotes() { return std::exchange(notes, {}); }

  private:
    template <typename... Numbers>
    void Note(std::string text, Numbers... numbers) {
        ((text += ' ' + std::to_string(numbers)), ...);
        notes.push_back(std::move(text));
    }
};

// Of 127.0.0.2 with MAC 02:00:00:00:00:02, whose registers are big endian.
class ControlledCamera {
  public:
    using Clock = ZelSim::ControlServer::Clock;
    using Milliseconds = std::chrono::milliseconds;

    static constexpr ZelCti::Endpoint kHost{0x7F000001, 50000};
    static constexpr ZelCti::Endpoint kOther{0x7F000001, 50001};

    ControlledCamera() : ControlledCamera([](ZelSim::CameraConfig&) {}) {}

    template <typename Configure>
    explicit ControlledCamera(const Configure& configure) {
        hardware.settings.ip = {0x7F000002, 0xFF000000, 0};
        hardware.settings.mac = 0x020000000002;
        ZelSim::CameraConfig config;
        config.id = "camera";
        config.vendor = "Verify";
        config.model = "Device";
        config.serial = "0815";
        config.userName = "left";
        config.bigEndian = true;
        config.linkSpeed = 125000000;
        config.network.emplace();
        configure(config);
        ZelSim::SimulatedCamera::Surroundings surroundings;
        surroundings.addRegisters = [this](ZelCti::RegisterSpace& space) {
            bootstrap->AddTo(space);
        };
        camera = std::make_shared<ZelSim::SimulatedCamera>(std::move(config), "GEV", surroundings);
        bootstrap.emplace(camera->Hardware(), camera->Registers(), hardware, privilege);
        server.emplace(
            camera->Hardware(), camera->Registers(), *bootstrap, privilege, hardware,
            [this](const ZelCti::Endpoint& to, ZelCti::ByteView datagram) {
                sent.push_back({to, Bytes(datagram.data, datagram.data + datagram.size)});
            });
        now = Clock::now();
    }

    struct Sent {
        ZelCti::Endpoint to;
        Bytes bytes;
    };

    void Handle(std::string_view digits, const ZelCti::Endpoint& from = kHost,
                bool broadcast = false) {
        const Bytes bytes = WireTest::Hex(digits);
        server->Handle(WireTest::ViewOf(bytes), from, broadcast, now);
    }

    // The one answer to a command, in hexadecimal digits; several, or one to somebody else, are no
    // answer that a test expects.
    std::string Ask(std::string_view digits, const ZelCti::Endpoint& from = kHost) {
        Handle(digits, from);
        return TakeSent(from);
    }

    std::string TakeSent(const ZelCti::Endpoint& to = kHost) {
        std::string text;
        for (const Sent& one : std::exchange(sent, {}))
            text += (text.empty() ? "" : ", ") + std::string(one.to == to ? "" : "elsewhere ") +
                    Digits(one.bytes);
        return text;
    }

    // Takes control as the host.
    void TakeControl() {
        Handle("4201008200080f01 00000a00 00000002");
        sent.clear();
        hardware.notes.clear();
    }

    void Pass(int64_t milliseconds) {
        now += Milliseconds(milliseconds);
        server->OnTimer(now);
    }

    static std::string Digits(const Bytes& bytes) {
        static const char* const kDigits = "0123456789abcdef";
        std::string text;
        for (const uint8_t byte : bytes) {
            text += kDigits[byte >> 4];
            text += kDigits[byte & 15];
        }
        return text;
    }

    NotingHardware hardware;
    ZelSim::ControlPrivilege privilege;
    std::shared_ptr<ZelSim::SimulatedCamera> camera;
    std::optional<ZelSim::BootstrapRegisters> bootstrap;
    std::vector<Sent> sent;
    std::optional<ZelSim::ControlServer> server;
    Clock::time_point now;
};

}  // namespace GigeTest

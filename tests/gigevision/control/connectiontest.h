// What tests of open cameras share: a simulated camera on loopback, and who listens to it.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "producers/gigevision/gevconnection.h"
#include "producers/server/base/error.h"
#include "producers/server/registers/featuretable.h"
#include "producers/server/registers/portregisters.h"
#include "producers/server/registers/registerspace.h"
#include "producers/simulator/config/configparser.h"
#include "producers/simulator/gige/networkserver.h"
#include "producers/wire/bootstrap.h"
#include "tests/support/networkapplication.h"

namespace GevTest {

constexpr uint32_t kLoopback = 0x7F000001;
constexpr std::chrono::minutes kPatience{1};

// Addresses that no other process uses for its cameras, which would take those that are given up.
inline std::string FirstAddress() {
    const auto pid = static_cast<uint32_t>(getpid());
    return ZelCti::IpAddressText(0x7F800001 | (pid & 0x7FFF) << 8U);
}

// A camera as its interface lists it.
class ListedCamera final : public ZelCti::Camera {
  public:
    const ZelCti::CameraInfo& Info() const override { return info_; }
    std::string UserName() const override { return {}; }
    std::optional<ZelCti::CameraNetwork> Network() const override {
        return ZelCti::CameraNetwork{0x020000000001, 0x7F006301, 0xFFFFFF00, 0};
    }
    GenTL::DEVICE_ACCESS_STATUS AccessStatus() const override {
        return GenTL::DEVICE_ACCESS_STATUS_READWRITE;
    }
    std::unique_ptr<ZelCti::Connection> Open(GenTL::DEVICE_ACCESS_FLAGS /*access*/,
                                             ZelCti::CameraSink& /*sink*/) override {
        return nullptr;
    }

  private:
    const ZelCti::CameraInfo info_{};
};

// Buffers of a client that announced none.
class NoBuffers final : public ZelCti::BufferQueue {
  public:
    bool HasInput() const override { return false; }
    ZelCti::FrameBuffer* Take(bool /*mustBeOne*/) override { return nullptr; }
    void PutBack(ZelCti::FrameBuffer& /*buffer*/) override {}
    void Deliver(ZelCti::FrameBuffer& /*buffer*/, const ZelCti::FrameInfo& /*frame*/) override {}
    void Lose(ZelCti::FrameBuffer& /*buffer*/) override {}
};

// The rows that a connection adds to the module of its device.
class DeviceRows {
  public:
    explicit DeviceRows(ZelCti::Connection& connection) {
        table_.Category("DeviceInformation", "The server's.");
        table_.Category("LinkStatistics", "The server's.");
        connection.AddFeatures(table_);
        table_.Complete();
    }

    uint64_t Read(uint64_t address) const {
        uint64_t value = 0;
        space_.Read(address, &value, sizeof value);
        return value;
    }

    template <typename Value>
    void Write(uint64_t address, Value value) const {
        space_.Write(address, &value, sizeof value);
    }

  private:
    mutable ZelCti::RegisterSpace space_{UINT32_MAX};
    ZelCti::FeatureTable table_{space_, "Device"};
};

// Where the rows are.
constexpr uint64_t kCommandCount = 0x4310;
constexpr uint64_t kRepeatedCount = 0x4318;
constexpr uint64_t kUnansweredCount = 0x4320;
constexpr uint64_t kPendingAckCount = 0x4330;
constexpr uint64_t kCommandTimeout = 0x4300;
constexpr uint64_t kCommandRetries = 0x4308;
constexpr uint64_t kHeartbeatTimeout = 0x4340;
constexpr uint64_t kCacheEnable = 0x4348;

// What a camera reports.
class NotingSink final : public ZelCti::CameraSink {
  public:
    void OnEvent(GenTL::EVENT_TYPE /*type*/, uint64_t id, ZelCti::EventData /*data*/) override {
        Note("event " + std::to_string(id));
    }
    void OnLost(const std::string& reason) override { Note("lost: " + reason); }

    // The next report.
    std::string Await() {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, kPatience, [this] { return !reports_.empty(); });
        if (reports_.empty()) return "nothing";
        std::string first = reports_.front();
        reports_.erase(reports_.begin());
        return first;
    }

  private:
    void Note(const std::string& report) {
        const std::lock_guard lock(mutex_);
        reports_.push_back(report);
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> reports_;  // guarded by mutex_
};

class GevConnectionTest : public ::testing::Test {
  protected:
    void Serve(const std::string& switches = "") {
        config_ = ZelSim::ParseConfig(
            "<ZelSim><Interface id='I' type='GEV'><Camera id='C' userName='left'><Network "
            "BootMs='0' " +
                switches + "/></Camera></Interface></ZelSim>",
            "test");
        server_.emplace(config_, ZelSim::AddressPool({FirstAddress()}, ZelCti::ListHostAddresses()),
                        [](const std::string&) {});
        route_.camera = {server_->Device("C")->Place().address, 3956};
        route_.hostAddress = kLoopback;
        route_.isLoopback = true;
    }

    ZelGev::ConnectionTarget Target() const {
        return {route_, std::make_shared<const ListedCamera>()};
    }

    std::unique_ptr<ZelGev::GevConnection> Open(
        GenTL::DEVICE_ACCESS_FLAGS access = GenTL::DEVICE_ACCESS_CONTROL,
        const ZelGev::ConnectionSettings& settings = {}) {
        return std::make_unique<ZelGev::GevConnection>(Target(), access, sink_, settings);
    }

    GenTL::GC_ERROR CodeOfOpen(GenTL::DEVICE_ACCESS_FLAGS access, std::string& text) {
        try {
            Open(access);
        } catch (const ZelCti::Error& error) {
            text = error.what();
            return error.Code();
        }
        return GenTL::GC_ERR_SUCCESS;
    }

    // Reads and writes of all kinds come to what they should, and the description is as long as it
    // says.
    void ExpectWorks(ZelGev::GevConnection& connection) {
        uint8_t text[16];
        connection.Write(ZelCti::Gev::kUserDefinedName.address, "right\0\0\0\0\0\0\0\0\0\0", 16);
        connection.Read(ZelCti::Gev::kUserDefinedName.address, text, sizeof text);
        EXPECT_STREQ(reinterpret_cast<const char*>(text), "right");
        connection.Link().WriteRegister(ZelCti::Gev::kMcrc.address, 5);
        EXPECT_EQ(connection.Link().ReadRegister(ZelCti::Gev::kMcrc.address), 5U);
        EXPECT_THAT(Description(connection),
                    testing::AnyOf(testing::HasSubstr("</RegisterDescription>"),
                                   testing::StartsWith("PK")));
    }

    std::string Description(ZelGev::GevConnection& connection) {
        const auto urls = connection.DescriptionUrls();
        EXPECT_FALSE(urls.empty());
        const auto get = [&](int32_t command) {
            uint64_t value = 0;
            size_t size = sizeof value;
            int32_t type = 0;
            urls.at(0).GetInfo(ZelCti::Answer(command, &type, &value, &size));
            return value;
        };
        std::string text(get(GenTL::URL_INFO_FILE_SIZE), '\0');
        connection.Read(get(GenTL::URL_INFO_FILE_REGISTER_ADDRESS), text.data(), text.size());
        return text;
    }

    // Another application: what it reads was there after what was acknowledged to us before.
    ZelTest::NetworkApplication Outside() const {
        return ZelTest::NetworkApplication(ZelCti::IpAddressText(route_.camera.address));
    }

    ZelSim::WorldConfig config_;
    std::optional<ZelSim::NetworkServer> server_;
    ZelGev::Route route_;
    NotingSink sink_;
};

}  // namespace GevTest

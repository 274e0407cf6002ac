// The transport against simulated cameras on loopback.
#include "producers/gigevision/gevtransport.h"

#include <functional>
#include <future>
#include <optional>
#include <unistd.h>

#include <gmock/gmock.h>

#include "producers/server/base/error.h"
#include "producers/simulator/config/configparser.h"
#include "producers/simulator/gige/networkserver.h"
#include "producers/sockets/ipaddress.h"
#include "tests/support/networkapplication.h"

using testing::HasSubstr;
using testing::StartsWith;
using ZelCti::Camera;
using ZelCti::Error;
using ZelGev::GevTransport;
using ZelTest::NetworkApplication;

namespace {

constexpr uint16_t kHeartbeatTimeout = 0x0938;
constexpr uint16_t kCcp = 0x0A00;

ZelCti::Deadline Soon() {
    return std::chrono::steady_clock::now() + std::chrono::seconds(2);
}

// Addresses and MAC addresses that no other process uses.
uint32_t FirstAddress() {
    return 0x7F400001 | (static_cast<uint32_t>(getpid()) & 0x3FFF) << 8U;
}

class LossSink final : public ZelCti::CameraSink {
  public:
    void OnEvent(GenTL::EVENT_TYPE, uint64_t, ZelCti::EventData) override {}
    void OnLost(const std::string& reason) override { reason_.set_value(reason); }

    std::string AwaitLoss() {
        auto reason = reason_.get_future();
        const bool isLost = reason.wait_for(std::chrono::minutes(1)) == std::future_status::ready;
        return isLost ? reason.get() : "nothing";
    }

  private:
    std::promise<std::string> reason_;
};

class GevTransportTest : public ::testing::Test {
  protected:
    void Serve(const std::string& version = "1.0") {
        server_.reset();
        config_ = ZelSim::ParseConfig(
            "<ZelSim><Interface id='I' type='GEV'><Camera id='C' vendor='Acme' model='Line' "
            "serial='7' userName='left' version='" +
                version + "'><Network BootMs='0' Mac='" + ZelCti::MacAddressText(Mac()) +
                "'/></Camera></Interface></ZelSim>",
            "test");
        server_.emplace(config_,
                        ZelSim::AddressPool({ZelCti::IpAddressText(FirstAddress()),
                                             ZelCti::IpAddressText(FirstAddress() + 1)},
                                            ZelCti::ListHostAddresses()),
                        [](const std::string&) {});
    }

    static uint64_t Mac() { return 0x02CAFE000000 + static_cast<uint64_t>(getpid()); }

    // The camera as one search lists it; null when it does not.
    std::shared_ptr<Camera> Search() {
        transport_.UpdateInterfaces(Soon());
        for (const auto& interface : *transport_.Interfaces()) {
            interface->UpdateCameras(Soon());
            for (const auto& camera : *interface->Cameras())
                if (camera->Network()->macAddress == Mac()) return camera;
        }
        return nullptr;
    }

    // Whether it is so after one of many searches: on a busy machine, or beside the cameras of
    // other tests, answers may be too late for a single one.
    bool Becomes(const std::function<bool(const std::shared_ptr<Camera>&)>& isSo) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        do {
            if (isSo(Search())) return true;
        } while (std::chrono::steady_clock::now() < end);
        return false;
    }

    // The camera as soon as it is listed as wanted; null when it never is.
    std::shared_ptr<Camera> Find(const std::function<bool(Camera&)>& isWanted) {
        std::shared_ptr<Camera> found;
        const bool isFound = Becomes([&](const std::shared_ptr<Camera>& camera) {
            found = camera;
            return camera != nullptr && isWanted(*camera);
        });
        return isFound ? found : nullptr;
    }
    std::shared_ptr<Camera> Find() {
        return Find([](Camera&) { return true; });
    }
    std::shared_ptr<Camera> FindWith(GenTL::DEVICE_ACCESS_STATUS status) {
        return Find([status](Camera& camera) { return camera.AccessStatus() == status; });
    }

    std::string CameraAddress() {
        return ZelCti::IpAddressText(server_->Device("C")->Place().address);
    }

    GevTransport transport_{{"lo,nosuch0", {}}};
    ZelSim::WorldConfig config_;
    std::optional<ZelSim::NetworkServer> server_;
    LossSink sink_;
};

}  // namespace

TEST_F(GevTransportTest, ListsAdaptersAndCameras) {
    Serve();
    const auto camera = Find([](Camera& found) { return found.TimestampFrequency() != 0; });
    ASSERT_NE(camera, nullptr);
    const auto interfaces = transport_.Interfaces();
    ASSERT_EQ(interfaces->size(), 2U);
    EXPECT_EQ(interfaces->at(0)->Id(), "GEV-lo");
    EXPECT_EQ(interfaces->at(0)->Info().displayName, "lo (127.0.0.1/8)");
    EXPECT_EQ(interfaces->at(1)->Info().displayName, "nosuch0 (no such adapter is up)");
    const ZelCti::CameraInfo& info = camera->Info();
    EXPECT_THAT(info.id, StartsWith("GEV-02cafe"));
    EXPECT_EQ(info.vendor, "Acme");
    EXPECT_EQ(info.model, "Line");
    EXPECT_EQ(info.serialNumber, "7");
    EXPECT_EQ(info.version, "1.0");
    EXPECT_EQ(info.tlType, TLTypeGEVName);
    EXPECT_EQ(camera->UserName(), "left");
    EXPECT_EQ(camera->TimestampFrequency(), 1'000'000'000U);
    EXPECT_EQ(camera->AccessStatus(), GenTL::DEVICE_ACCESS_STATUS_READWRITE);
    EXPECT_EQ(camera->AccessReason(), "");
    EXPECT_EQ(camera->Network()->mask, 0xFF000000U);
    EXPECT_EQ(Find(), camera) << "the same camera is the same object";
    EXPECT_EQ(transport_.Interfaces(), interfaces);
}

TEST_F(GevTransportTest, SaysWhoControlsACamera) {
    Serve();
    NetworkApplication other(CameraAddress());
    ASSERT_EQ(other.Write(kCcp, 2), 0);
    ASSERT_EQ(other.Write(kHeartbeatTimeout, 600000), 0);
    EXPECT_NE(Find([](Camera& camera) {
                  return camera.AccessStatus() == GenTL::DEVICE_ACCESS_STATUS_READONLY &&
                         camera.AccessReason().rfind("controlled by 127.0.0.1:", 0) == 0;
              }),
              nullptr);
    ASSERT_EQ(other.Write(kCcp, 1), 0);
    EXPECT_NE(FindWith(GenTL::DEVICE_ACCESS_STATUS_BUSY), nullptr);
    ASSERT_EQ(other.Write(kCcp, 0), 0);
    EXPECT_NE(FindWith(GenTL::DEVICE_ACCESS_STATUS_READWRITE), nullptr);
}

TEST_F(GevTransportTest, OurOwnControlKeepsNobodyAway) {
    Serve();
    const auto camera = Find();
    ASSERT_NE(camera, nullptr);
    const auto connection = camera->Open(GenTL::DEVICE_ACCESS_CONTROL, sink_);
    EXPECT_EQ(NetworkApplication(CameraAddress()).Read(kCcp), 2U);
    EXPECT_EQ(Find(), camera);
    EXPECT_EQ(camera->AccessStatus(), GenTL::DEVICE_ACCESS_STATUS_READWRITE);
    connection->Close();
    EXPECT_EQ(camera->AccessStatus(), GenTL::DEVICE_ACCESS_STATUS_READWRITE);
}

TEST_F(GevTransportTest, ALostCameraIsAnotherOneWhenItIsBack) {
    Serve();
    const auto camera = Find();
    ASSERT_NE(camera, nullptr);
    const auto connection = camera->Open(GenTL::DEVICE_ACCESS_CONTROL, sink_);
    server_->Unplug("C");
    EXPECT_THAT(sink_.AwaitLoss(), HasSubstr("has not answered"));
    EXPECT_EQ(camera->AccessStatus(), GenTL::DEVICE_ACCESS_STATUS_NOACCESS);
    EXPECT_THAT(camera->AccessReason(), HasSubstr("has not answered"));
    EXPECT_THROW(camera->Open(GenTL::DEVICE_ACCESS_READONLY, sink_), Error);
    server_->Plug("C");
    const auto again = FindWith(GenTL::DEVICE_ACCESS_STATUS_READWRITE);
    ASSERT_NE(again, nullptr);
    EXPECT_NE(again, camera);
    EXPECT_EQ(again->Id(), camera->Id());
}

TEST_F(GevTransportTest, ACameraThatIsSilentIsGone) {
    Serve();
    const auto camera = Find();
    ASSERT_NE(camera, nullptr);
    server_->Unplug("C");
    EXPECT_TRUE(Becomes([](const auto& found) { return found == nullptr; }));
    server_->Plug("C");
    EXPECT_EQ(Find(), camera) << "somebody has it still";
}

TEST_F(GevTransportTest, AnotherFirmwareMakesAnotherCamera) {
    Serve();
    const auto camera = Find();
    ASSERT_NE(camera, nullptr);
    Serve("2.0");
    const auto updated = Find([](Camera& found) { return found.Info().version == "2.0"; });
    ASSERT_NE(updated, nullptr);
    EXPECT_NE(updated, camera);
}

TEST_F(GevTransportTest, FollowsTheAddressOfACamera) {
    Serve();
    const auto camera = Find();
    ASSERT_NE(camera, nullptr);
    const uint32_t first = camera->Network()->address;
    const uint32_t second = first == FirstAddress() ? first + 1 : FirstAddress();
    server_->Set("C", "Address", ZelCti::IpAddressText(second));
    EXPECT_EQ(Find([&](Camera& found) { return found.Network()->address == second; }), camera);
    EXPECT_NO_THROW(camera->Open(GenTL::DEVICE_ACCESS_READONLY, sink_));
}

TEST_F(GevTransportTest, EnvironmentChoosesAdapters) {
    setenv("ZELGEV_INTERFACES", "none", 1);
    EXPECT_EQ(GevTransport::OfEnvironment(), nullptr);
    setenv("ZELGEV_INTERFACES", "nosuch0", 1);
    const auto transport = GevTransport::OfEnvironment();
    ASSERT_NE(transport, nullptr);
    transport->UpdateInterfaces(Soon());
    ASSERT_EQ(transport->Interfaces()->size(), 1U);
    EXPECT_EQ(transport->Interfaces()->at(0)->Id(), "GEV-nosuch0");
    setenv("ZELGEV_INTERFACES", "lo", 1);
}

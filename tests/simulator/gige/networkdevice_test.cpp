// A served camera with its sockets, on loopback: what joins its parts.

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "producers/server/base/error.h"
#include "producers/simulator/config/configparser.h"
#include "producers/simulator/gige/networkserver.h"
#include "producers/sockets/ipaddress.h"
#include "tests/support/networkapplication.h"

using ZelCti::IpAddressText;
using ZelSim::AddressPool;
using ZelSim::NetworkServer;
using ZelTest::Bytes;
using ZelTest::NetworkApplication;
using ZelTest::NetworkListener;

namespace {

constexpr uint16_t kCurrentIp = 0x24;
constexpr uint16_t kCcp = 0x0A00;

Bytes ForceIp(const Bytes& mac, const Bytes& address, uint8_t id) {
    Bytes command{0x42, 1, 0, 4, 0, 56, 0, id, 0, 0};
    command.insert(command.end(), mac.begin(), mac.end());
    command.resize(8 + 20);
    command.insert(command.end(), address.begin(), address.end());
    command.resize(8 + 36);
    command.insert(command.end(), {255, 0, 0, 0});
    command.resize(8 + 56);
    return command;
}

class NetworkDeviceTest : public ::testing::Test {
  protected:
    void Serve(const std::string& keys = "") {
        config_ = ZelSim::ParseConfig(
            "<ZelSim><Interface id='I' type='GEV'><Camera id='C' frameRate='100' width='64' "
            "height='32' acquisition='free-running'><Network Mac='02:00:00:00:00:07' BootMs='0' " +
                keys + "/></Camera></Interface></ZelSim>",
            "test");
        server_.emplace(config_, AddressPool({}, ZelCti::ListHostAddresses()),
                        [this](const std::string& line) { Note(line); });
        address_ = IpAddressText(server_->Device("C")->Place().address);
        AwaitLine(" at " + address_);
    }

    // Waits until a line for users came that has this text.
    void AwaitLine(const std::string& text) {
        std::unique_lock lock(mutex_);
        const auto came = [&] {
            for (; numSeen_ < lines_.size(); ++numSeen_)
                if (lines_[numSeen_].find(text) != std::string::npos) return true;
            return false;
        };
        EXPECT_TRUE(changed_.wait_for(lock, std::chrono::minutes(1), came)) << text;
        ++numSeen_;
    }

  private:
    void Note(const std::string& line) {
        const std::lock_guard lock(mutex_);
        lines_.push_back(line);
        changed_.notify_all();
    }

    ZelSim::WorldConfig config_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> lines_;  // guarded by mutex_
    size_t numSeen_ = 0;              // guarded by mutex_

  protected:
    std::optional<NetworkServer> server_;  // ends before what its reports need
    std::string address_;
};

}  // namespace

TEST_F(NetworkDeviceTest, FramesComeToTheApplicationThatAsksForThem) {
    Serve("FirstBlockId='65535'");
    NetworkApplication application(address_);
    NetworkListener stream;
    ASSERT_EQ(application.Write(kCcp, 2), 0);
    AwaitLine("controlled by 127.0.0.1:");
    ASSERT_EQ(application.Write(0x0D18, 0x7F000001), 0);
    ASSERT_EQ(application.Write(0x0D00, stream.Port()), 0);
    const Bytes leader = stream.Next();
    ASSERT_EQ(leader.size(), 44U);
    EXPECT_EQ(Bytes(leader.begin(), leader.begin() + 8), (Bytes{0, 0, 255, 255, 1, 0, 0, 0}));
    EXPECT_EQ(Bytes(leader.begin() + 24, leader.begin() + 32), (Bytes{0, 0, 0, 64, 0, 0, 0, 32}));
    EXPECT_EQ(stream.Next().size(), 1472U);
    EXPECT_EQ(stream.Next().size(), 8U + 2048 - 1464);
    EXPECT_EQ(stream.Next().size(), 16U) << "the trailer";
    EXPECT_EQ(application.Write(kCcp, 0), 0);
    AwaitLine("free again");
    EXPECT_GE(server_->Device("C")->Statistics().blocks, 1U);
}

TEST_F(NetworkDeviceTest, EventsComeToTheApplicationThatAsksForThem) {
    Serve();
    NetworkApplication application(address_);
    NetworkListener events;
    ASSERT_EQ(application.Write(kCcp, 2), 0);
    ASSERT_EQ(application.Write(0x0B10, 0x7F000001), 0);
    ASSERT_EQ(application.Write(0x0B00, events.Port()), 0);
    server_->Device("C")->FireTestEvent();
    const Bytes event = events.Next();
    ASSERT_GE(event.size(), 24U);
    EXPECT_EQ(Bytes(event.begin() + 10, event.begin() + 12), (Bytes{0x9F, 0xFF}));
}

TEST_F(NetworkDeviceTest, APowerCycleKeepsTheNameAndFreesTheCamera) {
    Serve();
    NetworkApplication application(address_);
    ASSERT_EQ(application.Write(kCcp, 2), 0);
    AwaitLine("controlled by");
    EXPECT_EQ(application.Write(0x0938, 9000), 0);  // the heartbeat
    const Bytes named{0x42, 1, 0, 0x86, 0, 8, 0x7F, 1, 0, 0, 0, 0xE8, 'N', 'o', '1', 0};
    ASSERT_EQ(application.Ask(named).size(), 12U);
    server_->Device("C")->PowerCycle();
    AwaitLine("power cycle");
    AwaitLine("free again");
    // What it did not hear while it was off is asked for again.
    EXPECT_EQ(application.Read(kCcp), 0U);
    EXPECT_EQ(application.Read(0x0938), 3000U);
    EXPECT_EQ(ZelTest::TextAt(application.Discover(), 240), "No1");
}

TEST_F(NetworkDeviceTest, ForcedAddressesAreServedWhereTheyMayBe) {
    // The first free address would be another process's as soon as the camera leaves it.
    const uint32_t process = static_cast<uint32_t>(getpid()) & 0x3FFF;
    Serve("Address='" + IpAddressText(0x7FC00001 | process << 8U) + "'");
    NetworkApplication application(address_);
    NetworkApplication forcing(address_);  // which does not wait for answers
    forcing.Tell(ForceIp({2, 0, 0, 0, 0, 8}, {127, 0, 99, 8}, 1));  // another camera
    EXPECT_EQ(IpAddressText(application.Read(kCurrentIp)), address_);
    forcing.Tell(ForceIp({2, 0, 0, 0, 0, 7}, {127, 0, 99, 9}, 2));
    AwaitLine(" at 127.0.99.9");
    EXPECT_EQ(application.Discover().size(), 0U) << "nobody is at the old address";
    application.SpeakTo("127.0.99.9");
    forcing.SpeakTo("127.0.99.9");
    EXPECT_EQ(application.Read(kCurrentIp), 0x7F006309U);

    forcing.Tell(ForceIp({2, 0, 0, 0, 0, 7}, {192, 0, 2, 1}, 3));
    AwaitLine(" at 127.0.99.9, MAC 02:00:00:00:00:07, on lo, shows 192.0.2.1");
    EXPECT_EQ(application.Read(kCurrentIp), 0xC0000201U) << "shown, and served nowhere else";

    server_->Device("C")->PowerCycle();
    AwaitLine(" at " + address_);
    application.SpeakTo(address_);
    EXPECT_EQ(IpAddressText(application.Read(kCurrentIp)), address_);
}

TEST_F(NetworkDeviceTest, AStreamFollowsTheCameraToAnotherAddress) {
    Serve();
    NetworkApplication application(address_);
    NetworkListener stream;
    ASSERT_EQ(application.Write(kCcp, 2), 0);
    ASSERT_EQ(application.Write(0x0D18, 0x7F000001), 0);
    ASSERT_EQ(application.Write(0x0D04, 1000), 0);
    ASSERT_EQ(application.Write(0x0D00, 9), 0);
    server_->Set("C", "Address", "127.0.99.10");
    AwaitLine(" at 127.0.99.10");
    application.SpeakTo("127.0.99.10");
    EXPECT_EQ(application.Read(0x0D00), 0U) << "nothing is sent until the port is written again";
    ASSERT_EQ(application.Write(0x0D00, stream.Port()), 0);
    EXPECT_EQ(stream.Next().size(), 44U);
    EXPECT_EQ(stream.Next().size(), 1000U - 28);
    EXPECT_EQ(stream.LastSender(), "127.0.99.10");
}

TEST_F(NetworkDeviceTest, EachCameraHasAnAddressOfItsOwn) {
    Serve();
    const auto serveAt = [](const char* address) {
        const auto config = ZelSim::ParseConfig(
            std::string("<ZelSim><Interface id='I' type='GEV'><Camera id='D'><Network Address='") +
                address + "'/></Camera></Interface></ZelSim>",
            "test");
        const NetworkServer server(config, AddressPool({}, ZelCti::ListHostAddresses()),
                                   [](const std::string&) {});
        return IpAddressText(server.Device("D")->Place().address);
    };
    EXPECT_THROW(serveAt(address_.c_str()), ZelCti::Error);
    EXPECT_THROW(serveAt("192.0.2.2"), ZelCti::Error);
    EXPECT_NE(serveAt("0.0.0.0"), address_) << "addresses in use are left out";
}

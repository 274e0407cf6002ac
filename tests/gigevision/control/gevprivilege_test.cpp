// Who controls a camera, how control is kept and lost, and what a camera reports.
#include <chrono>
#include <memory>
#include <optional>
#include <poll.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "producers/sockets/udpsocket.h"
#include "tests/gigevision/control/connectiontest.h"
#include "tests/gigevision/control/tracer.h"
#include "tests/wire/bytes.h"

using testing::HasSubstr;
using ZelCti::Error;
using ZelGev::ConnectionSettings;
using ZelGev::GevConnection;
using ZelGev::Milliseconds;
using ZelSim::NetworkServer;
using ZelTest::NetworkApplication;
using namespace GevTest;
namespace Gev = ZelCti::Gev;

TEST_F(GevConnectionTest, TakesOverFromAProcessThatIsGone) {
    Serve();
    {
        NetworkApplication crashed = Outside();
        ASSERT_EQ(crashed.Write(0x0A00, 2), 0);
        ASSERT_EQ(crashed.Write(0x0D00, 9), 0) << "a stream";
        std::string text;
        EXPECT_EQ(CodeOfOpen(GenTL::DEVICE_ACCESS_CONTROL, text), GenTL::GC_ERR_ACCESS_DENIED)
            << "it is there";
    }
    const auto connection = Open();
    EXPECT_EQ(connection->Link().ReadRegister(Gev::kScp.address) & Gev::Scp::kPort, 0U);
    ExpectWorks(*connection);
}

TEST_F(GevConnectionTest, WaitsForAControllerToEndWhenAsked) {
    Serve("GvcpCapabilitiesOff='0x08000000'");  // it does not say who controls it
    std::optional<NetworkApplication> crashed(ZelCti::IpAddressText(route_.camera.address));
    ASSERT_EQ(crashed->Write(0x0938, 500), 0x8006);
    ASSERT_EQ(crashed->Write(0x0A00, 2), 0);
    ASSERT_EQ(crashed->Write(0x0938, 500), 0);
    crashed.reset();
    std::string text;
    EXPECT_EQ(CodeOfOpen(GenTL::DEVICE_ACCESS_CONTROL, text), GenTL::GC_ERR_ACCESS_DENIED);
    ConnectionSettings patient;
    patient.patience = kPatience;
    ExpectWorks(*Open(GenTL::DEVICE_ACCESS_CONTROL, patient));
}

TEST_F(GevConnectionTest, ASwitchoverIsALossForTheOneWhoHadControl) {
    Serve();
    ConnectionSettings settings;
    settings.switchoverKey = 0x1234;
    const auto first = Open(GenTL::DEVICE_ACCESS_CONTROL, settings);
    NotingSink second;
    ConnectionSettings wrong;
    wrong.switchoverKey = 0x4321;
    EXPECT_THROW(GevConnection(Target(), GenTL::DEVICE_ACCESS_CONTROL, second, wrong), Error);
    EXPECT_FALSE(first->Link().IsLost());
    const GevConnection taking(Target(), GenTL::DEVICE_ACCESS_CONTROL, second, settings);
    std::string report = sink_.Await();
    if (report == "event 7") report = sink_.Await();
    EXPECT_THAT(report, HasSubstr("lost: is controlled by another application"));
    EXPECT_TRUE(first->Link().IsLost());
}

TEST_F(GevConnectionTest, EventsComeToTheSink) {
    Serve();
    const auto connection = Open();
    server_->Device("C")->FireTestEvent();
    EXPECT_EQ(sink_.Await(), "event " + std::to_string(0x9FFF));
}

TEST_F(GevConnectionTest, EveryEventOfAMessageComesOnceAndIsAcknowledged) {
    Serve();
    const auto connection = Open();
    ZelCti::UdpSocket camera({route_.camera.address, 0}, "", false);
    const ZelCti::Endpoint application{
        kLoopback,
        static_cast<uint16_t>(connection->Link().ReadRegister(Gev::kMcp.address) & 0xFFFF)};
    const std::vector<std::vector<uint8_t>> messages{
        WireTest::Hex("420100c00020000a 00000007000000000102030405060708"
                      "000080010001004d0102030405060708"),
        WireTest::Hex("421100c2001c0008 001c90020001000011223344556677880102030405060708deadbeef")};
    for (const auto& message : messages) {
        for (int i = 0; i < 2; ++i) {
            camera.Send(application, WireTest::ViewOf(message));
            pollfd descriptor{camera.Descriptor(), POLLIN, 0};
            ASSERT_EQ(poll(&descriptor, 1, 60'000), 1);
            uint8_t answer[16];
            const auto datagram = camera.Receive({answer, sizeof answer});
            ASSERT_TRUE(datagram);
            EXPECT_EQ(datagram->size, 8U);
            EXPECT_EQ(answer[3], message[3] + 1) << "the acknowledge of this command";
            EXPECT_EQ(answer[7], message[7]) << "with its number";
        }
    }
    server_->Device("C")->FireTestEvent();
    EXPECT_EQ(sink_.Await(), "event 7");
    EXPECT_EQ(sink_.Await(), "event " + std::to_string(0x8001));
    EXPECT_EQ(sink_.Await(), "event " + std::to_string(0x9002));
    EXPECT_EQ(sink_.Await(), "event " + std::to_string(0x9FFF));
    EXPECT_FALSE(connection->Link().IsLost()) << "event 7 says that another one has control";
}

TEST_F(GevConnectionTest, EveryWayToLoseACameraIsReportedOnceAndEndsAccess) {
    ConnectionSettings fast;
    fast.heartbeat = Milliseconds(500);
    const std::vector<std::pair<const char*, void (*)(NetworkServer&)>> ways{
        {"has not answered", [](NetworkServer& s) { s.Set("C", "HeartbeatSilence", "true"); }},
        {"has not answered", [](NetworkServer& s) { s.Set("C", "Address", "127.0.98.9"); }},
        {"has not answered", [](NetworkServer& s) { s.Unplug("C"); }},
        {"has taken the control back", [](NetworkServer& s) { s.Device("C")->PowerCycle(); }}};
    for (const auto& [reason, lose] : ways) {
        SCOPED_TRACE(reason);
        Serve();
        const auto connection = Open(GenTL::DEVICE_ACCESS_CONTROL, fast);
        lose(*server_);
        EXPECT_THAT(sink_.Await(), HasSubstr(reason));
        try {
            connection->Link().ReadRegister(0);
            ADD_FAILURE() << "the camera can still be read";
        } catch (const Error& error) {
            EXPECT_EQ(error.Code(), GenTL::GC_ERR_IO);
            EXPECT_THAT(error.what(), HasSubstr(reason));
        }
    }
}

TEST_F(GevConnectionTest, AMonitorMindsNoChangeOfControlButTheLossOfTheCamera) {
    Serve();
    ConnectionSettings fast;
    fast.heartbeat = Milliseconds(500);
    const auto monitor = Open(GenTL::DEVICE_ACCESS_READONLY, fast);
    const DeviceRows rows(*monitor);
    // Until it has asked again.
    const auto pass = [&rows] {
        for (const uint64_t begin = rows.Read(kCommandCount); rows.Read(kCommandCount) < begin + 2;)
            std::this_thread::yield();
    };
    Open(GenTL::DEVICE_ACCESS_EXCLUSIVE);
    pass();
    server_->Device("C")->PowerCycle();
    pass();
    EXPECT_EQ(monitor->Link().ReadRegister(Gev::kCcp.address), 0U);
    server_->Unplug("C");
    EXPECT_EQ(sink_.Await(), "lost: has not answered for 500 ms");
}

TEST_F(GevConnectionTest, ClosingEndsAccessesOfOtherThreadsAndWaitsForNoCameraThatTakesLong) {
    Serve();
    const auto connection = Open();
    const DeviceRows rows(*connection);
    server_->Set("C", "PendingAckMs", "60000");
    std::thread reader([&] {
        try {
            connection->Link().ReadRegister(Gev::kMcrc.address);
            ADD_FAILURE() << "the camera answered";
        } catch (const Error& error) {
            EXPECT_EQ(error.Code(), GenTL::GC_ERR_IO);
        }
    });
    while (rows.Read(kPendingAckCount) == 0)
        std::this_thread::yield();
    connection->Close();
    reader.join();
    server_->Set("C", "PendingAckMs", "0");
    EXPECT_EQ(Outside().Read(Gev::kCcp.address), 2U) << "the camera was waited for";
}

TEST_F(GevConnectionTest, ADebuggerMayStopTheProcess) {
    Serve();
    ConnectionSettings fast;
    fast.heartbeat = Milliseconds(500);
    const auto connection = Open(GenTL::DEVICE_ACCESS_CONTROL, fast);
    const auto await = [&](uint32_t timeout) {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        uint32_t found = 0;
        while (found != timeout && std::chrono::steady_clock::now() < end)
            found = connection->Link().ReadRegister(Gev::kHeartbeatTimeout.address);
        EXPECT_EQ(found, timeout);
    };
    {
        Tracer tracer;
        if (!tracer.IsAttached()) GTEST_SKIP() << "processes must not be traced here";
        await(300'000);
    }
    await(500);
}

TEST_F(GevConnectionTest, HeartbeatsFollowTheTimeOutThatAClientChooses) {
    Serve();
    const auto connection = Open();
    connection->Link().WriteRegister(Gev::kHeartbeatTimeout.address, 3000);
    const uint8_t shortest[] = {0, 0, 0x01, 0xF4};
    connection->Write(Gev::kHeartbeatTimeout.address, shortest, sizeof shortest);
    server_->Set("C", "HeartbeatSilence", "true");
    EXPECT_EQ(sink_.Await(), "lost: has not answered for 500 ms");
}

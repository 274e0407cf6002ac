// An open camera against a simulated one, on loopback: registers, description, features.
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "tests/gigevision/control/connectiontest.h"
#include "tests/support/temporaryfolder.h"

using testing::HasSubstr;
using ZelCti::Error;
using ZelGev::ConnectionSettings;
using ZelGev::Milliseconds;
using namespace GevTest;
namespace Gev = ZelCti::Gev;

TEST_F(GevConnectionTest, ControlsACameraUntilItIsClosed) {
    Serve();
    const auto connection = Open();
    EXPECT_EQ(Outside().Read(Gev::kCcp.address), Gev::Ccp::kControl);
    EXPECT_EQ(Outside().Read(Gev::kPrimaryApplicationIp.address), 0x7F000001U);
    EXPECT_EQ(connection->NumStreams(), 1U);
    EXPECT_TRUE(connection->Link().Controls());
    EXPECT_EQ(connection->Link().TickFrequency(), 1'000'000'000U);
    ExpectWorks(*connection);
    connection->Close();
    EXPECT_EQ(Outside().Read(Gev::kCcp.address), 0U);
    uint8_t byte = 0;
    EXPECT_THROW(connection->Read(0, &byte, 1), Error);
}

TEST_F(GevConnectionTest, ClosesTheChannelsOfItsStreams) {
    Serve();
    NoBuffers buffers;
    const auto use = std::make_shared<int>();
    auto connection = ZelGev::OpenGevConnection(Target(), GenTL::DEVICE_ACCESS_CONTROL, sink_, use);
    EXPECT_EQ(use.use_count(), 2);
    auto stream = connection->OpenStream(0, buffers);
    EXPECT_NE(Outside().Read(Gev::kScp.address), 0U);
    try {
        connection->OpenStream(1, buffers);
        ADD_FAILURE() << "there is one stream only";
    } catch (const Error& error) {
        EXPECT_EQ(error.Code(), GenTL::GC_ERR_INVALID_INDEX);
    }
    connection->Close();
    EXPECT_EQ(Outside().Read(Gev::kScp.address), 0U);
    stream.reset();
    connection.reset();
    EXPECT_EQ(use.use_count(), 1);
}

TEST_F(GevConnectionTest, WorksWithEveryQuirkOfControl) {
    for (const char* const quirk :
         {"DropAckEvery='3' Zip='true'", "DoubleAckEvery='2'", "WrongAckIdEvery='3' Zip='true'",
          "DelayAckMs='2' Zip='true'", "Zip='true' PendingAckMs='3' LateAckAfterSlow='true'",
          "ZeroLengthErrors='true'", "BadAlignmentOnce='true'", "RefuseOddReads='false'",
          "RefuseReadMem='true'", "GvcpCapabilitiesOff='0x7FFFFFFD'", "GvcpCapabilitiesOff='0x2'",
          "MessageCapabilitiesOff='0xFFFFFFFF'", "OddStrings='true'", "SecondUrlOnly='true'"}) {
        SCOPED_TRACE(quirk);
        Serve(quirk);
        ConnectionSettings quick;
        quick.limits = {Milliseconds(20), 100};
        ExpectWorks(*Open(GenTL::DEVICE_ACCESS_CONTROL, quick));
    }
}

TEST_F(GevConnectionTest, FindsTheTickFrequencyWhereverItIs) {
    const auto frequency = [this](const char* quirk) {
        Serve(quirk);
        return Open(GenTL::DEVICE_ACCESS_READONLY)->Link().TickFrequency();
    };
    EXPECT_EQ(frequency("TickFrequencyLowOnly='true'"), 1'000'000'000U);
    EXPECT_EQ(frequency("TickFrequencyHighOnly='true'"), 1'000'000'000U);
    EXPECT_EQ(frequency("TickFrequencyZero='true'"), 0U);
}

TEST_F(GevConnectionTest, EveryStatusBecomesAnErrorWithItsNumber) {
    Serve("ErrorAddress='0xb14'");  // MCTT
    const auto connection = Open();
    const std::vector<std::pair<const char*, GenTL::GC_ERROR>> statuses{
        {"0x8001", GenTL::GC_ERR_NOT_IMPLEMENTED},
        {"0x8002", GenTL::GC_ERR_INVALID_VALUE},
        {"0x8003", GenTL::GC_ERR_INVALID_ADDRESS},
        {"0x8004", GenTL::GC_ERR_ACCESS_DENIED},
        {"0x8005", GenTL::GC_ERR_INVALID_ADDRESS},
        {"0x8006", GenTL::GC_ERR_ACCESS_DENIED},
        {"0x8007", GenTL::GC_ERR_BUSY},
        {"0x8FFF", GenTL::GC_ERR_ERROR},
        {"0x8abc", GenTL::GC_ERR_ERROR}};
    for (const auto& [status, code] : statuses) {
        SCOPED_TRACE(status);
        server_->Set("C", "ErrorStatus", status);
        try {
            connection->Link().WriteRegister(Gev::kMctt.address, 1);
            ADD_FAILURE() << "the camera took it";
        } catch (const Error& error) {
            EXPECT_EQ(error.Code(), code);
            std::string digits(status + 2);
            std::transform(digits.begin(), digits.end(), digits.begin(), ::toupper);
            EXPECT_THAT(error.what(), HasSubstr("0x" + digits));
        }
    }
    EXPECT_FALSE(connection->Link().IsLost()) << "other registers can be had";
    ExpectWorks(*connection);
}

TEST_F(GevConnectionTest, UnderstandsEveryFormOfUrl) {
    for (const char* const form : {"plain", "slashes", "spaces", "hex-prefix", "schema",
                                   "lower-case", "ZIP", "http", "file"}) {
        SCOPED_TRACE(form);
        Serve("UrlForm='" + std::string(form) + "'");
        const auto connection = Open(GenTL::DEVICE_ACCESS_READONLY);
        const auto urls = connection->DescriptionUrls();
        ASSERT_FALSE(urls.empty());
        if (std::string(form) == "http") {
            EXPECT_THAT(urls.at(0).Text(), testing::StartsWith("http:"));
        } else if (std::string(form) != "file") {
            EXPECT_THAT(
                urls.at(0).Text(),
                testing::MatchesRegex("Local:[A-Za-z0-9_.]+;[0-9A-F]+;[0-9A-F]+(.Schema.*)?"));
            Description(*connection);
        }
    }
}

TEST_F(GevConnectionTest, TheDescriptionIsReadFromTheCameraOnce) {
    Serve();
    const ZelTest::TemporaryFolder folder;
    ConnectionSettings settings;
    settings.cacheFolder = folder.Path().string();
    const auto connection = Open(GenTL::DEVICE_ACCESS_CONTROL, settings);
    const DeviceRows rows(*connection);
    const auto read = [&](std::string& text) {
        const uint64_t before = rows.Read(kCommandCount);
        text = Description(*connection);
        return rows.Read(kCommandCount) - before;
    };
    std::string fromCamera;
    std::string fromCache;
    const uint64_t numCommands = read(fromCamera);
    EXPECT_GT(numCommands, fromCamera.size() / 512);
    EXPECT_LT(read(fromCache), 20U);
    EXPECT_EQ(fromCache, fromCamera);
    rows.Write(kCacheEnable, uint32_t{0});
    EXPECT_GE(read(fromCache), numCommands);
}

TEST_F(GevConnectionTest, RefusedControlNamesTheHolder) {
    Serve();
    const auto first = Open();
    std::string text;
    EXPECT_EQ(CodeOfOpen(GenTL::DEVICE_ACCESS_CONTROL, text), GenTL::GC_ERR_ACCESS_DENIED);
    EXPECT_THAT(text, HasSubstr("controlled by 127.0.0.1:"));
    const auto monitor = Open(GenTL::DEVICE_ACCESS_READONLY);
    EXPECT_FALSE(monitor->Link().Controls());
    EXPECT_EQ(monitor->Link().ReadRegister(Gev::kCcp.address), 2U);
    EXPECT_THROW(monitor->Link().WriteRegister(Gev::kMcrc.address, 1), Error);
    first->Close();

    const auto exclusive = Open(GenTL::DEVICE_ACCESS_EXCLUSIVE);
    EXPECT_EQ(CodeOfOpen(GenTL::DEVICE_ACCESS_READONLY, text), GenTL::GC_ERR_ACCESS_DENIED);
}

// As a camera sends them that puts several events into a message, and gets no acknowledge at first.

TEST_F(GevConnectionTest, TheDeviceModuleHasTheSettingsOfTheControlChannel) {
    Serve();
    const auto connection = Open();
    const DeviceRows rows(*connection);
    EXPECT_EQ(rows.Read(kHeartbeatTimeout) & UINT32_MAX, 3000U);
    rows.Write(kHeartbeatTimeout, uint32_t{700});
    EXPECT_EQ(connection->Link().ReadRegister(Gev::kHeartbeatTimeout.address), 700U);
    rows.Write(kCommandRetries, uint32_t{2});
    rows.Write(kCommandTimeout, 15'000.0);
    const uint64_t before = rows.Read(kUnansweredCount);
    server_->Set("C", "HeartbeatSilence", "true");
    EXPECT_THROW(connection->Link().ReadRegister(Gev::kMcrc.address), Error);
    EXPECT_EQ(rows.Read(kUnansweredCount), before + 1);
    EXPECT_GE(rows.Read(kRepeatedCount), 2U);
    EXPECT_EQ(sink_.Await(), "lost: has not answered for 700 ms");

    server_->Set("C", "HeartbeatSilence", "false");
    const auto monitor = Open(GenTL::DEVICE_ACCESS_READONLY);
    EXPECT_THROW(DeviceRows(*monitor).Write(kHeartbeatTimeout, uint32_t{700}), Error);
}

TEST(ConnectionSettingsTest, ComeFromTheEnvironment) {
    const auto patience = [](const char* wait) {
        setenv("ZELGEV_WAIT", wait, 1);
        return ZelGev::SettingsOfEnvironment().patience.count();
    };
    EXPECT_EQ(patience("4000"), 4000);
    EXPECT_EQ(patience("-5"), 0);
    EXPECT_EQ(patience("99999999999999999999"), 600'000);
    EXPECT_EQ(patience("soon"), 0);
    unsetenv("ZELGEV_WAIT");
    EXPECT_EQ(ZelGev::SettingsOfEnvironment().patience.count(), 0);
    const auto key = [](const char* text) {
        setenv("ZELGEV_SWITCHOVER_KEY", text, 1);
        return ZelGev::SettingsOfEnvironment().switchoverKey;
    };
    EXPECT_EQ(key("0x1234"), 0x1234);
    EXPECT_EQ(key("70000"), std::nullopt);
    EXPECT_EQ(key("12 a"), std::nullopt);
    EXPECT_EQ(key(""), std::nullopt);
    setenv("ZELGEV_CACHE", "0", 1);
    EXPECT_EQ(ZelGev::SettingsOfEnvironment().cacheFolder, "");
}

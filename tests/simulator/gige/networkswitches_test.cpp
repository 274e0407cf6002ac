// The switches of cameras on a network: their table, and the configuration that sets them.

#include "producers/simulator/config/networkswitches.h"

#include <functional>
#include <map>
#include <string>

#include <gmock/gmock.h>

#include "producers/server/base/error.h"
#include "producers/simulator/config/configparser.h"

using ::testing::HasSubstr;
using ZelSim::CameraConfig;
using ZelSim::NetworkSettings;
using ZelSim::NetworkSwitches;
using ZelSim::ParseCamera;

namespace {

std::map<std::string, std::string> ValuesOf(const NetworkSettings& settings) {
    std::map<std::string, std::string> values;
    NetworkSwitches::ForEach([&](const NetworkSwitches::Switch& known) {
        values[std::string(known.name)] = NetworkSwitches::Get(settings, known.name);
    });
    return values;
}

// A value that a switch does not have by default.
std::string OtherValue(const NetworkSwitches::Switch& known, const std::string& value) {
    if (known.kind == NetworkSwitches::Kind::Boolean) return value == "true" ? "false" : "true";
    if (known.name == "OwnPacketSize") return "9000";
    if (known.kind == NetworkSwitches::Kind::Number) return value == "1" ? "2" : "1";
    if (known.name == "Mac") return "02:00:00:ab:cd:ef";
    if (known.name == "Version") return "1.2";
    if (known.name == "UrlForm") return "hex-prefix";
    return "10.77.0.2";
}

std::string RefusalOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const ZelCti::Error& error) {
        EXPECT_EQ(error.Code(), GenTL::GC_ERR_INVALID_PARAMETER);
        return error.what();
    }
    return {};
}

std::string RefusalOf(std::string_view name, std::string_view text) {
    NetworkSettings settings;
    std::string refusal = RefusalOf([&] { NetworkSwitches::Set(settings, name, text); });
    EXPECT_EQ(ValuesOf(settings), ValuesOf({})) << "a refused value changes nothing";
    return refusal;
}

std::string RefusalOfNetwork(const std::string& inside) {
    return RefusalOf([&] { ParseCamera("<Camera id=\"C\">" + inside + "</Camera>", "text"); });
}

}  // namespace

// No two names stand for the same member, and what is shown can be set again.
TEST(NetworkSwitchesTest, EachSwitchIsAValueOfItsOwn) {
    NetworkSwitches::ForEach([](const NetworkSwitches::Switch& known) {
        SCOPED_TRACE(known.name);
        NetworkSettings settings;
        auto expected = ValuesOf(settings);
        std::string& value = expected[std::string(known.name)];
        NetworkSwitches::Set(settings, known.name, value);
        EXPECT_EQ(ValuesOf(settings), expected);
        const std::string other = OtherValue(known, value);
        value = value.substr(0, 2) == "0x" ? "0x" + other : other;
        NetworkSwitches::Set(settings, known.name, other);
        EXPECT_EQ(ValuesOf(settings), expected);
    });
}

TEST(NetworkSwitchesTest, TextsBecomeMembers) {
    NetworkSettings settings;
    for (const auto& [name, text] :
         std::map<std::string_view, std::string_view>{{"Address", "10.77.0.2"},
                                                      {"Mask", "255.255.0.0"},
                                                      {"Gateway", "10.77.0.1"},
                                                      {"Mac", "0A:00:00:00:00:fe"},
                                                      {"Version", "1.2"},
                                                      {"GvcpCapabilitiesOff", "0x24"},
                                                      {"ErrorAddress", "40960"},
                                                      {"LossRate", "0.01"},
                                                      {"UrlForm", "ZIP"},
                                                      {"ZeroLengthErrors", "false"}})
        NetworkSwitches::Set(settings, name, text);
    EXPECT_EQ(settings.ip.address, 0x0A4D0002U);
    EXPECT_EQ(settings.ip.mask, 0xFFFF0000U);
    EXPECT_EQ(settings.ip.gateway, 0x0A4D0001U);
    EXPECT_EQ(settings.mac, 0x0A00000000FEU);
    EXPECT_EQ(settings.version, 0x00010002U);
    EXPECT_EQ(settings.gvcpCapabilitiesOff, 0x24U);
    EXPECT_EQ(settings.errorAddress, 0xA000U);
    EXPECT_EQ(settings.lossRate, 0.01);
    EXPECT_EQ(settings.urlForm, ZelSim::UrlForm::UpperCaseZip);
    EXPECT_FALSE(settings.zeroLengthErrors);
    EXPECT_EQ(ValuesOf(settings)["Mac"], "0a:00:00:00:00:fe");
    EXPECT_EQ(ValuesOf(settings)["LossRate"], "0.01");
}

TEST(NetworkSwitchesTest, WrongTextsAreRefused) {
    EXPECT_EQ(RefusalOf("LossRat", "1"), "there is no switch \"LossRat\"");
    EXPECT_EQ(RefusalOf("LossRate", "1.5"), "LossRate=\"1.5\": a number from 0 to 1 expected");
    for (const auto& [name, text] :
         std::multimap<std::string_view, std::string_view>{{"LossRate", "nan"},
                                                           {"LossRate", "-0.1"},
                                                           {"LossEvery", "-1"},
                                                           {"LossEvery", "1 "},
                                                           {"LossEvery", ""},
                                                           {"LossEvery", "4294967296"},
                                                           {"LossBurst", "0"},
                                                           {"DelayAckMs", "60001"},
                                                           {"ErrorStatus", "0x"},
                                                           {"ErrorStatus", "0x-1"},
                                                           {"Zip", "1"},
                                                           {"Zip", "True"},
                                                           {"Version", "2"},
                                                           {"Version", "2.1.0"},
                                                           {"Version", ".1"},
                                                           {"UrlForm", "Plain"},
                                                           {"Address", "10.77.0"},
                                                           {"Address", "10.77.0.256"},
                                                           {"Mac", "02-00"},
                                                           {"Mac", "02:00:00:00:00:00:00"},
                                                           {"Mac", "01:00:00:00:00:01"}})
        EXPECT_THAT(RefusalOf(name, text), HasSubstr("expected")) << name << '=' << text;
}

TEST(NetworkSwitchesTest, SnapshotsStayWhileSwitchesChange) {
    NetworkSettings settings;
    settings.lossEvery = 7;
    NetworkSwitches switches(settings);
    const auto before = switches.Settings();
    switches.Set("LossEvery", "9");
    EXPECT_EQ(before->lossEvery, 7U);
    EXPECT_EQ(switches.Settings()->lossEvery, 9U);
    switches.SetIp({0x7F000002, 0xFF000000, 0});
    switches.Reset();
    EXPECT_EQ(switches.Get("LossEvery"), "7");
    EXPECT_EQ(switches.Get("Address"), "127.0.0.2") << "an address is not a fault";
}

TEST(NetworkConfigTest, TheElementSetsSwitches) {
    EXPECT_FALSE(ParseCamera("<Camera id=\"C\"/>", "text").network);
    const CameraConfig camera = ParseCamera(
        "<Camera id=\"C\"><!-- far away --><Network Address=\"10.77.0.2\" "
        "LossRate=\"0.5\"/></Camera>",
        "text");
    ASSERT_TRUE(camera.network);
    EXPECT_EQ(camera.network->ip.address, 0x0A4D0002U);
    EXPECT_EQ(camera.network->lossRate, 0.5);
    EXPECT_TRUE(ParseCamera("<Camera id=\"C\"><Network/></Camera>", "text").network);
}

TEST(NetworkConfigTest, RefusalsSayTheLine) {
    EXPECT_EQ(RefusalOfNetwork("\n<Network LossRat=\"1\"/>"),
              "text:2: there is no switch \"LossRat\"");
    EXPECT_EQ(RefusalOfNetwork("<Network\nLossRate=\"2\"/>"),
              "text:2: LossRate=\"2\": a number from 0 to 1 expected");
    EXPECT_THAT(RefusalOfNetwork("<Network/><Network/>"), HasSubstr("one Network element only"));
    EXPECT_THAT(RefusalOfNetwork("<Network>text</Network>"), HasSubstr("Network holds nothing"));
    EXPECT_THAT(RefusalOfNetwork("<Net/>"), HasSubstr("Camera holds only Network elements"));
}

// The program zelcam with cameras on a network, which this program serves on loopback.

#include <array>
#include <chrono>
#include <cstdio>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/support/networkapplication.h"
#include "tests/support/simulator.h"
#include "tests/tools/toolrun.h"

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using ZelTest::NetworkApplication;

namespace {

class ToolNetwork : public ToolTest {
  protected:
    // Addresses and MAC addresses that no other process uses.
    ToolNetwork() {
        std::array<char, 32> text{};
        const auto process = static_cast<unsigned>(getpid()) & 0x3FFFFF;
        std::snprintf(text.data(), text.size(), "127.%u.%u.", 0x80 | process >> 16,
                      process >> 8 & 0xFF);
        first_ = text.data() + std::to_string(1 + (process & 0x7F));
        second_ = text.data() + std::to_string(129 + (process & 0x7D));
        std::snprintf(text.data(), text.size(), "02:be:ef:%02x:%02x:%02x", process >> 16,
                      process >> 8 & 0xFF, process & 0xFF);
        mac_ = text.data();
    }

    void SetUp() override {
        ToolTest::SetUp();
        SetVariable("ZELGEV_INTERFACES", "lo");
        const std::string cameras =
            "<ZelSim><Interface id='I' type='GEV'><Camera id='C' vendor='Acme' model='Line' "
            "serial='7' userName='left' width='64' height='48'><Network BootMs='0' Mac='" +
            mac_ + "' Address='" + first_ + "'/></Camera></Interface></ZelSim>";
        ASSERT_EQ(simulator_.configure(cameras.c_str()), 0);
        ASSERT_EQ(simulator_.serve((first_ + " " + second_).c_str()), 0);
    }
    void TearDown() override {
        simulator_.serve(nullptr);
        ToolTest::TearDown();
    }

    std::string Id() const {
        std::string id = "GEV-";
        for (const char c : mac_)
            if (c != ':') id += c;
        return id;
    }

    // The camera as soon as it is listed as wanted: on a busy machine, its answers may be too late
    // for one search. Other processes may serve cameras there as well.
    template <typename IsWanted>
    json Find(IsWanted isWanted) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        do {
            listing_ = Run({"list", "--json"}).Json();
            for (const json& camera : listing_.at("cameras"))
                if (camera.at("id") == Id() && isWanted(camera)) return camera;
        } while (std::chrono::steady_clock::now() < end);
        return nullptr;
    }

    // Uses the camera, which may take as long to answer.
    ToolResult Use(std::vector<std::string> words) {
        words.insert(words.begin() + 1, Id());
        words.insert(words.end(), {"--search", "10000"});
        return Run(words);
    }

    json listing_;  // the last one
    ZelTest::Simulator simulator_;
    std::string first_;
    std::string second_;
    std::string mac_;
};

}  // namespace

TEST_F(ToolNetwork, CamerasAreListedAndUsed) {
    const json camera = Find([](const json& found) { return found.at("access") == "free"; });
    ASSERT_FALSE(camera.is_null());
    EXPECT_EQ(camera.at("vendor"), "Acme");
    EXPECT_EQ(camera.at("serial"), "7");
    EXPECT_EQ(camera.at("userName"), "left");
    EXPECT_EQ(camera.at("interface"), "GEV-lo");
    EXPECT_EQ(camera.at("address"), first_);
    EXPECT_EQ(camera.at("simulated"), false) << "as far as anybody can see";
    const ToolResult read = Use({"get", "Width"});
    EXPECT_EQ(read.out, "Width=64\n") << read.err;
    const ToolResult grabbed = Use({"grab", "-n", "3", "-f", "none"});
    EXPECT_EQ(grabbed.exitCode, 0) << grabbed.err;
    EXPECT_THAT(grabbed.out, HasSubstr("Incomplete  0"));
}

TEST_F(ToolNetwork, WhoControlsACameraIsSaid) {
    NetworkApplication other(first_);
    ASSERT_EQ(other.Write(0x0A00, 2), 0);
    ASSERT_EQ(other.Write(0x0938, 600000), 0);  // the heartbeat
    const json camera = Find([](const json& found) { return found.at("access") == "read-only"; });
    ASSERT_FALSE(camera.is_null());
    EXPECT_THAT(camera.at("accessReason").get<std::string>(),
                StartsWith("controlled by 127.0.0.1:"));
    EXPECT_EQ(Use({"get", "Width", "--access", "readonly"}).out, "Width=64\n");
    EXPECT_EQ(other.Write(0x0A00, 0), 0);
}

TEST_F(ToolNetwork, AddressesAreForced) {
    const ToolResult forced =
        Run({"ip", "force", Id(), second_, "255.0.0.0", "--force", "--search", "10000"});
    EXPECT_EQ(forced.exitCode, 0) << forced.err;
    const auto isMoved = [&](const json& camera) { return camera.at("address") == second_; };
    EXPECT_FALSE(Find(isMoved).is_null());
}

TEST_F(ToolNetwork, AdaptersShowThemselves) {
    const auto interface = [&](std::vector<std::string> words) {
        words.insert(words.end(), {"--module", "interface"});
        return Use(words);
    };
    const ToolResult shown =
        interface({"get", "GevInterfaceSubnetIPAddress", "HostClockTaiOffset", "ActionGroupKey"});
    EXPECT_EQ(shown.exitCode, 0) << shown.err;
    EXPECT_THAT(shown.out, HasSubstr("GevInterfaceSubnetIPAddress=127.0.0.1\n"));
    EXPECT_EQ(interface({"exec", "ActionCommand"}).exitCode, 0);
    EXPECT_NE(interface({"get", "GevInterfaceClockOffset"}).exitCode, 0) << "loopback has no clock";
    EXPECT_EQ(interface({"set", "GevDiscoveryIPAddress=" + second_}).out,
              "GevDiscoveryIPAddress=" + second_ + "\n");
}

// Simulated cameras of the process come last, even if all are asked for.
TEST_F(ToolNetwork, RealInterfacesComeBeforeSimulatedOnes) {
    SetVariable("ZELSIM", "1");
    ASSERT_FALSE(Find([](const json&) { return true; }).is_null());
    EXPECT_EQ(listing_.at("interfaces").at(0).at("id"), "GEV-lo");
    EXPECT_EQ(listing_.at("cameras").at(0).at("simulated"), false);
    EXPECT_EQ(listing_.at("cameras").back().at("id"), "U3V0-CAM0");
    const json simulated = Run({"list", "--json", "--simulated"}).Json();
    EXPECT_EQ(simulated.at("cameras").size(), 3U);
}

// zelcam doctor, run as a program: each condition that it finds is made in namespaces.

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

#include "tests/tools/doctor/doctornetwork.h"

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

constexpr int kFound = 10;

using ToolDoctor = DoctorTest;

TEST_F(ToolDoctor, FindsNothingWhereAllIsWell) {
    PlugCamera();
    const DoctorResult machine = Doctor();
    EXPECT_THAT(machine.Findings(), IsEmpty());
    EXPECT_EQ(machine.exitCode, 0) << machine.err;
    const DoctorResult camera = Doctor({kCamera});
    EXPECT_THAT(camera.Findings(), IsEmpty());
    EXPECT_EQ(camera.exitCode, 0) << camera.err;
    const nlohmann::json all = camera.Json();
    for (const auto& check : all.at("checks"))
        EXPECT_EQ(check.at("state"), "ok") << check;
    const ToolResult text = Run({"doctor", kCamera});
    EXPECT_THAT(text.out, AllOf(HasSubstr("ok         adapter eth1, link: is up\n"),
                                HasSubstr("ok         stream, firewall: packets"),
                                HasSubstr("\nNothing is wrong")));
}

TEST_F(ToolDoctor, FindsAdaptersWithoutLinkOrAddress) {
    Here("ip address flush dev eth1");
    DoctorResult result = Doctor();
    EXPECT_EQ(result.DoFirst(), "sudo ip address add 169.254.0.1/16 dev eth1");
    EXPECT_THAT(result.Findings(), Contains(StartsWith("adapter eth1, address -> ")));

    Far("ip link set cam down");
    result = Doctor();
    EXPECT_THAT(result.DoFirst(), StartsWith("plug the cable in"));
    EXPECT_THAT(result.Detail("adapter eth1, link"), StartsWith("nothing is at the other end"));

    Here("ip link set eth1 down");
    const ToolResult text = Run({"doctor"});
    EXPECT_EQ(text.exitCode, kFound);
    EXPECT_THAT(text.out,
                AllOf(HasSubstr("FOUND      adapter eth1, link: is down\n"
                                "             -> sudo ip link set eth1 up\n"),
                      HasSubstr("Do this first, against \"no camera\": sudo ip link set eth1")));
}

TEST_F(ToolDoctor, FindsThatNoCameraAnswers) {
    const DoctorResult result = Doctor();
    EXPECT_THAT(result.Findings(),
                ElementsAre(AllOf(
                    StartsWith("cameras, answer -> check the camera's power"),
                    HasSubstr("nft insert rule inet filter input iifname eth1 udp sport 3956"))));
    EXPECT_EQ(result.Detail("cameras, answer"), "no camera answers on eth1");
}

TEST_F(ToolDoctor, FindsAdaptersThatAreNotSearched) {
    PlugCamera();
    SetVariable("ZELGEV_INTERFACES", "none");
    EXPECT_EQ(Doctor().DoFirst(), "unset ZELGEV_INTERFACES");
    SetVariable("ZELGEV_INTERFACES", "lo");
    const DoctorResult result = Doctor();
    EXPECT_EQ(result.DoFirst(), "unset ZELGEV_INTERFACES, or add eth1");
    EXPECT_EQ(result.Detail("adapter eth1, search"), "ZELGEV_INTERFACES=lo leaves it out");
}

TEST_F(ToolDoctor, FindsCamerasInForeignSubnets) {
    PlugCamera("192.168.5.5/24");
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{}, {kCamera}}) {
        const DoctorResult result = Doctor(arguments);
        EXPECT_THAT(result.Findings(),
                    ElementsAre(std::string("camera ") + kCamera + ", access -> zelcam ip force " +
                                kCamera + " auto"));
    }
}

// The camera's answers are not let in, as this machine would answer another way, or none.
TEST_F(ToolDoctor, FindsReversePathFilters) {
    PlugCamera("192.168.5.5/24");
    Here("echo 1 >/proc/sys/net/ipv4/conf/eth1/rp_filter");
    const DoctorResult result = Doctor();
    EXPECT_EQ(result.DoFirst(),
              "sudo sysctl -w net.ipv4.conf.all.rp_filter=0 "
              "net.ipv4.conf.eth1.rp_filter=0");
    EXPECT_THAT(result.Detail("machine, reverse-path filter"), HasSubstr(" packets dropped"));
}

TEST_F(ToolDoctor, FindsAdaptersInTheSameNetwork) {
    PlugCamera();
    Here("ip address flush dev eth1");
    Here("ip link add eth0 type veth peer name idle");
    Here("ip link set idle up");
    Here("ip address add 10.77.0.2/24 dev eth0");
    Here("ip link set eth0 up");
    Here("ip address add 10.77.0.1/24 dev eth1");
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(),
                Contains("adapter eth1, network -> give eth1 and its cameras addresses of another "
                         "network"));
    EXPECT_THAT(result.Detail(std::string("camera ") + kCamera + ", route"),
                HasSubstr("through eth0"));
}

TEST_F(ToolDoctor, FindsFirewalls) {
    PlugCamera();
    Here("nft add table inet filter");
    Here("nft 'add chain inet filter input { type filter hook input priority 0; }'");
    Here("nft add rule inet filter input iifname eth1 udp sport != 3956 drop");
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(),
                ElementsAre("stream, firewall -> sudo nft insert rule inet filter input iifname "
                            "eth1 ip saddr 10.77.0.11 meta l4proto udp accept"));
    // The advice helps.
    Here(result.DoFirst().substr(std::string("sudo ").size()));
    EXPECT_THAT(Doctor({kCamera}).Findings(), IsEmpty());
}

TEST_F(ToolDoctor, FindsPacketsThatAreTooLargeForTheAdapter) {
    PlugCamera("10.77.0.11/24", R"(OwnPacketSize="9000")");
    Here("ip link set eth1 mtu 1500");
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(), ElementsAre("adapter eth1, MTU -> sudo ip link set eth1 mtu "
                                               "9000"));
    Here(result.DoFirst().substr(std::string("sudo ").size()));
    EXPECT_THAT(Doctor({kCamera}).Findings(), IsEmpty());
}

TEST_F(ToolDoctor, FindsNarrowPaths) {
    PlugCamera();
    Here("nft add table netdev path");
    Here("nft 'add chain netdev path in { type filter hook ingress device eth1 priority 0; }'");
    Here("nft add rule netdev path in ip length '>' 4000 drop");
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(), ElementsAre(StartsWith("stream, path MTU -> switch jumbo")));
    EXPECT_THAT(result.Detail("stream, path MTU"),
                AllOf(HasSubstr("packets of 4000 bytes pass"), HasSubstr("none of 9000")));
}

// A camera without test packets goes on sending packets that the adapter drops. Whether
// processors are a cause counts only then.
TEST_F(ToolDoctor, FindsDropsOfAdaptersAndSlowProcessors) {
    PlugCamera("10.77.0.11/24", R"(OwnPacketSize="9000" FirstTestPacketsLost="1000000")");
    Here("ip link set eth1 mtu 1500");
    Here("mount -t tmpfs none /sys/devices/system/cpu");
    std::filesystem::create_directories("/sys/devices/system/cpu/cpu0/cpufreq");
    std::ofstream("/sys/devices/system/cpu/cpu0/cpufreq/scaling_governor") << "powersave\n";
    Replace("/proc/loadavg", "0.00 0.00 0.00 1/100 4711\n");
    DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Detail("adapter eth1, drops"), HasSubstr("others"));
    EXPECT_THAT(result.Findings(),
                AllOf(Contains(StartsWith("adapter eth1, MTU -> ")),
                      Contains("machine, processors -> sudo cpupower frequency-set -g performance"),
                      Not(Contains(HasSubstr("firewall")))));

    Replace("/proc/loadavg", "4000.00 0.00 0.00 1/100 4711\n");
    result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(),
                Contains(StartsWith("machine, processors -> stop other programs")));
}

TEST_F(ToolDoctor, FindsSmallLimitsOfReceiveBuffers) {
    constexpr const char* kAdvice = " -> sudo sysctl -w net.core.rmem_max=33554432; for good, copy";
    // A limit of the whole machine, too low for two of these frames.
    std::ifstream limit("/proc/sys/net/core/rmem_max");
    uint64_t bytes = 0;
    if (limit >> bytes && bytes <= 8U << 20) {
        PlugCamera("10.77.0.11/24", "", R"(width="2048" height="2048" frameRate="5")");
        const DoctorResult camera = DoctorOfUser({kCamera});
        EXPECT_THAT(camera.Findings(),
                    Contains(StartsWith(std::string("stream, receive buffer") + kAdvice)));
    } else {
        PlugCamera();
    }
    Replace("/proc/sys/net/core/rmem_max", "212992\n");
    EXPECT_THAT(DoctorOfUser().Findings(),
                ElementsAre(StartsWith(std::string("machine, receive buffers") + kAdvice)));
    EXPECT_THAT(Doctor().Findings(), IsEmpty()) << "with the right to exceed it";
}

TEST_F(ToolDoctor, FindsRepeatedCommands) {
    PlugCamera("10.77.0.11/24", R"(DropAckEvery="10")");
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(), ElementsAre(StartsWith(std::string("camera ") + kCamera +
                                                          ", commands -> try another cable")));
}

TEST_F(ToolDoctor, FindsCamerasThatAreListedButDoNotAnswer) {
    PlugCamera("10.77.0.11/24", R"(HeartbeatSilence="true")");
    EXPECT_THAT(Doctor({kCamera}).Findings(),
                ElementsAre(std::string("camera ") + kCamera +
                            ", access -> switch the camera off and on again"));
    const DoctorResult result = Doctor({"nobody"});
    EXPECT_EQ(result.exitCode, kFound);
    EXPECT_THAT(result.Detail("cameras, answer"), HasSubstr("there is no camera \"nobody\""));
}

TEST_F(ToolDoctor, FindsOtherControllers) {
    PlugCamera();
    const FileWatch watch(folder_);
    const int other = Start({"grab", kCamera, "-n", "1000000", "-o", "held-{n}.raw", "-f", "raw",
                             "--timeout", "60000"});
    ASSERT_TRUE(watch.Await("held-0001.raw")) << Read("stderr");
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(), ElementsAre(StartsWith(std::string("camera ") + kCamera +
                                                          ", access -> close that program")));
    EXPECT_THAT(result.Detail(std::string("camera ") + kCamera + ", access"),
                HasSubstr("controlled by 10.77.0.1:"));
    kill(other, SIGINT);
    Wait(other);
}

TEST_F(ToolDoctor, FindsCamerasThatWaitForATrigger) {
    PlugCamera();
    ASSERT_EQ(Run({"set", kCamera, "TriggerMode=On"}).exitCode, 0);
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(),
                ElementsAre(AllOf(StartsWith("stream, settings -> send the camera a trigger"),
                                  HasSubstr(std::string("zelcam set ") + kCamera))));
}

TEST_F(ToolDoctor, FindsLossesOnTheNetwork) {
    PlugCamera();
    Here("nft add table netdev path");
    Here("nft 'add chain netdev path in { type filter hook ingress device eth1 priority 0; }'");
    Here("nft add rule netdev path in udp sport '!=' 3956 numgen random mod 100 '<' 2 drop");
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(), Contains(StartsWith("stream, packets -> try another cable")));
    EXPECT_THAT(result.Detail("stream, packets"),
                AllOf(HasSubstr(" 0 were dropped by this machine: the network loses")));
}

}  // namespace

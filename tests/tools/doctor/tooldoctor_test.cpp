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

// Two of them take more than the usual limits of receive buffers.
constexpr const char* kLargeFrames = R"(width="2048" height="2048" frameRate="10")";

using ToolDoctor = DoctorTest;

// "camera GEV-020000000001, heartbeat -> ...".
std::string Camera(const std::string& rest) {
    return std::string("camera ") + kCamera + ", " + rest;
}

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

TEST_F(ToolDoctor, FindsThatNothingCanSearch) {
    Here("ip link delete eth1");
    EXPECT_THAT(Doctor().Findings(),
                Contains(StartsWith("adapters, adapters -> check that the adapter is plugged in")));
    Replace(DEFAULT_PRODUCER, "not a library");
    EXPECT_THAT(Doctor().DoFirst(), StartsWith("put a working libZelCTI.cti"));
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
        EXPECT_THAT(
            result.Findings(),
            ElementsAre(Camera(std::string("access -> zelcam ip force ") + kCamera + " auto")));
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
    EXPECT_THAT(result.Detail(Camera("route")), HasSubstr("through eth0"));
}

TEST_F(ToolDoctor, FindsFirewalls) {
    PlugCamera();
    CoverEtc();
    std::filesystem::create_directory("/etc/ufw");
    std::ofstream("/etc/ufw/ufw.conf") << "# comment\nENABLED=no\n";
    Here("nft add table inet filter");
    Here("nft 'add chain inet filter input { type filter hook input priority 0; }'");
    Here("nft add rule inet filter input iifname eth1 udp sport != 3956 drop");
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(),
                ElementsAre("stream, firewall -> sudo nft insert rule inet filter input iifname "
                            "eth1 ip saddr 10.77.0.11 meta l4proto udp accept"));
    std::ofstream("/etc/ufw/ufw.conf") << "# comment\nENABLED=yes\n";
    EXPECT_THAT(Doctor({kCamera}).Findings(),
                ElementsAre("stream, firewall -> sudo ufw prepend allow in on eth1 proto udp from "
                            "10.77.0.11"));
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
    Cover("/sys/devices/system/cpu");
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
        PlugCamera("10.77.0.11/24", "", kLargeFrames);
        const DoctorResult camera = DoctorOfUser({kCamera});
        EXPECT_THAT(camera.Findings(),
                    Contains(StartsWith(std::string("stream, receive buffer") + kAdvice)));
    } else {
        PlugCamera();
    }
    Replace("/proc/sys/net/core/rmem_max", "212992\n");
    EXPECT_THAT(DoctorOfUser().Findings(),
                ElementsAre(StartsWith(std::string("machine, receive buffers") + kAdvice)));
    if (MayExceedLimits()) {
        EXPECT_THAT(Doctor().Findings(), IsEmpty());
    }

    // What hides cameras comes first, also behind a loss.
    Here("ip link set eth1 down");
    const DoctorResult down = DoctorOfUser();
    EXPECT_THAT(down.Findings(),
                ElementsAre(StartsWith("machine, receive buffers"), StartsWith("adapter eth1"),
                            StartsWith("cameras, answer")));
    EXPECT_EQ(down.DoFirst(), "sudo ip link set eth1 up");
}

TEST_F(ToolDoctor, FindsRepeatedCommands) {
    PlugCamera("10.77.0.11/24", R"(DropAckEvery="10")");
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(),
                ElementsAre(StartsWith(Camera("commands -> try another cable"))));
}

TEST_F(ToolDoctor, FindsCamerasThatAreListedButDoNotAnswer) {
    PlugCamera("10.77.0.11/24", R"(HeartbeatSilence="true")");
    EXPECT_THAT(Doctor({kCamera}).Findings(),
                ElementsAre(Camera("access -> switch the camera off and on again")));
    const DoctorResult result = Doctor({"nobody"});
    EXPECT_EQ(result.exitCode, kFound);
    EXPECT_THAT(result.Detail("cameras, answer"), HasSubstr("there is no camera \"nobody\""));
}

// Registers that cannot be used: the heartbeat time-out and the port of the stream. A camera that
// could not be opened is free again.
TEST_F(ToolDoctor, FindsCamerasThatRefuse) {
    PlugCamera();
    Tell("set CAM ErrorAddress 0x938");
    EXPECT_THAT(Doctor({kCamera}).Findings(),
                ElementsAre(Camera("open -> switch the camera off and on again")));
    Tell("set CAM ErrorAddress 0xd00");
    EXPECT_THAT(Doctor({kCamera}).Findings(),
                ElementsAre("stream, acquisition -> switch the camera off and on again"));
}

TEST_F(ToolDoctor, FindsOtherControllersAndTheirHeartbeat) {
    PlugCamera();
    const FileWatch watch(folder_);
    const int other = Start({"grab", kCamera, "-n", "1000000", "-o", "held-{n}.raw", "-f", "raw",
                             "--timeout", "60000", "--set", "GevHeartbeatTimeout=900"});
    ASSERT_TRUE(watch.Await("held-0001.raw")) << Read("stderr");
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(),
                ElementsAre(StartsWith(Camera("access -> close that program")),
                            Camera("heartbeat -> let the program that controls the camera set "
                                   "GevHeartbeatTimeout=3000")));
    EXPECT_THAT(result.Detail(Camera("access")), HasSubstr("controlled by 10.77.0.1:"));
    kill(other, SIGINT);
    Wait(other);
}

TEST_F(ToolDoctor, FindsHeartbeatsThatAreTooShort) {
    PlugCamera("10.77.0.11/24", R"(LongestHeartbeatMs="900")");
    EXPECT_THAT(Doctor({kCamera}).Findings(),
                ElementsAre(StartsWith(Camera("heartbeat -> stop other programs"))));
}

// Without test packets too, whose absence is no sign of a firewall then.
TEST_F(ToolDoctor, FindsCamerasThatWaitForATrigger) {
    PlugCamera("10.77.0.11/24", R"(FirstTestPacketsLost="1000000")");
    ASSERT_EQ(Run({"set", kCamera, "TriggerMode=On"}).exitCode, 0);
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(),
                ElementsAre(AllOf(StartsWith("stream, settings -> send the camera a trigger"),
                                  HasSubstr(std::string("zelcam set ") + kCamera))));
}

TEST_F(ToolDoctor, FindsLossesOnTheNetwork) {
    PlugCamera();
    Tell("set CAM LateBlocks 1");
    EXPECT_THAT(Doctor({kCamera}).Findings(), IsEmpty()) << "a packet of each frame is only slow";
    Tell("set CAM LateBlocks 0");
    Here("nft add table netdev path");
    Here("nft 'add chain netdev path in { type filter hook ingress device eth1 priority 0; }'");
    Here("nft add rule netdev path in udp sport '!=' 3956 numgen random mod 100 '<' 2 drop");
    const DoctorResult result = Doctor({kCamera});
    EXPECT_THAT(result.Findings(), Contains(StartsWith("stream, packets -> try another cable")));
    EXPECT_THAT(result.Detail("stream, packets"),
                AllOf(HasSubstr(" 0 were dropped by this machine: the network loses")));
}

TEST_F(ToolDoctor, FindsCamerasThatTakeLong) {
    PlugCamera();
    ASSERT_EQ(Run({"set", kCamera, "ExposureTime=5000000"}).exitCode, 0);
    EXPECT_THAT(Doctor({kCamera}).Findings(),
                Contains(std::string("stream, settings -> wait longer: zelcam grab ") + kCamera +
                         " --timeout 10000"));
}

// The kernel counts these for the whole machine only, which has programs with packets of their own.
TEST_F(ToolDoctor, FindsFullQueuesOfProcessors) {
    constexpr const char* kFirst =
        "0000ffff 0000000a 00000001 0 0\n00000001 00000010 00000002 0 0\n";
    constexpr const char* kThen =
        "0001ffff 0000001a 00000001 0 0\n00000002 00000011 00000004 0 0\n";
    PlugCamera();
    EXPECT_THAT(DoctorWhile("softnet_stat", kFirst, kThen).Findings(), IsEmpty());
    Tell("set CAM LossEvery 50");
    const DoctorResult result = DoctorWhile("softnet_stat", kFirst, kThen);
    EXPECT_THAT(result.Findings(), AllOf(Contains("machine, kernel queues -> sudo sysctl -w "
                                                  "net.core.netdev_max_backlog=10000"),
                                         Not(Contains(StartsWith("stream, packets")))));
    EXPECT_EQ(result.Detail("machine, kernel queues"), "17 packets dropped, 2 times out of time");
}

TEST_F(ToolDoctor, FindsFullSockets) {
    PlugCamera("10.77.0.11/24", "", kLargeFrames);
    for (const bool ofUser : {true, false}) {
        const DoctorResult result = DoctorWithPause(ofUser);
        const bool isSmall = !result.Detail("stream, receive buffer").empty();
        EXPECT_THAT(result.Findings(),
                    Contains(StartsWith(std::string("stream, packets -> ") +
                                        (isSmall ? "sudo sysctl -w net.core.rmem_max=33554432;"
                                                 : "stop other programs"))));
        EXPECT_THAT(result.Detail("stream, packets"), HasSubstr("get the processor in time"));
    }
}

TEST_F(ToolDoctor, FindsLackOfBuffers) {
    constexpr uint64_t kAllBuffers = uint64_t{16} * 640 * 480;
    PlugCamera("10.77.0.11/24", "", R"(width="640" height="480" frameRate="100")");
    EXPECT_THAT(DoctorWithPausedThread(2 * kAllBuffers).Findings(),
                Contains(StartsWith("stream, frames -> queue more buffers")));
}

#ifdef ZELCAM_FULL_RING
TEST_F(ToolDoctor, FindsFullRings) {
    SetVariable("LD_PRELOAD", ZELCAM_FULL_RING);
    PlugCamera();
    SetVariable("FULLRING_SIZE", "256");
    const DoctorResult result = Doctor();
    EXPECT_THAT(result.Findings(),
                ElementsAre("adapter eth1, drops -> sudo ethtool -G eth1 rx 4096"));
    EXPECT_THAT(result.Detail("adapter eth1, drops"),
                HasSubstr("the ring holds 256 of at most 4096"));
    SetVariable("FULLRING_SIZE", "4096");
    EXPECT_THAT(Doctor({kCamera}).Findings(),
                ElementsAre(StartsWith("adapter eth1, drops -> stop other programs")));
}
#endif

TEST_F(ToolDoctor, FindsTheRightsForUsbCameras) {
    Write("device", "");
    std::filesystem::permissions(Path("device"), std::filesystem::perms::none);
    SetVariable("USBCAMERA_DEVICE", Path("device"));
    CoverEtc();
    if (std::filesystem::exists("/usr/lib/udev")) Cover("/usr/lib/udev");
    const std::vector<std::string> arguments = {"--producer", USB_CAMERA, "USB"};
    EXPECT_THAT(DoctorOfUser(arguments).Findings(),
                ElementsAre(StartsWith("camera USB, access -> install the package zelcam-tools")));
    std::filesystem::create_directories("/etc/udev/rules.d");
    std::ofstream("/etc/udev/rules.d/70-zelcam.rules") << "# comment\n";
    EXPECT_THAT(DoctorOfUser(arguments).Findings(),
                ElementsAre(StartsWith("camera USB, access -> log in at the machine itself")));
    EXPECT_THAT(Doctor(arguments).Findings(), Not(Contains(HasSubstr("access")))) << "with rights";
}

}  // namespace

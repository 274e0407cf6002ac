// What zelcam doctor concludes from facts that a test cannot make happen.

#include "tools/zelcam/doctor/diagnosis.h"

#include <gmock/gmock.h>

#include "tools/zelcam/doctor/machinereader.h"

using namespace ZelTool;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

// A GigE camera on eth1 that sends all frames.
Snapshot GoodCamera() {
    AdapterFacts adapter;
    adapter.name = "eth1";
    adapter.isUp = adapter.hasLink = adapter.isWired = adapter.isSearched = true;
    adapter.subnets = {{0x0A4D0001, 0xFFFFFF00}};
    adapter.mtu = 1500;
    CameraFacts camera;
    camera.id = "CAM";
    camera.isGigE = camera.isFree = true;
    camera.adapter = camera.routedThrough = "eth1";
    camera.address = 0x0A4D000B;
    TrialFacts trial;
    trial.heartbeatMs = 3000;
    trial.commands = {500, 0, 0};
    trial.ownPacketSize = trial.passingPacketSize = 1500;
    trial.largestPacketSize = 9000;
    trial.testPacketArrived = true;
    trial.receiveBuffer = 32 << 20;
    trial.packets = {1000, 0, 0, 0, 0, 0};
    trial.frames = 50;
    Snapshot snapshot;
    snapshot.machine.receiveLimit = 33554432;
    snapshot.machine.processors = 2;
    snapshot.adapters = {adapter};
    snapshot.cameras = {camera};
    snapshot.wanted = "CAM";
    snapshot.chosen = 0;
    snapshot.trial = trial;
    return snapshot;
}

std::vector<std::string> Findings(const Snapshot& snapshot) {
    std::vector<std::string> findings;
    for (const Diagnosis& each : Diagnose(snapshot)) {
        if (each.state != Diagnosis::State::Found) continue;
        findings.push_back(each.about + ", " + each.check + " -> " + each.advice);
    }
    return findings;
}

TEST(Doctor, FindsNothingAtAGoodCamera) {
    EXPECT_THAT(Findings(GoodCamera()), IsEmpty());
}

// Each only where the stream misses packets: other programs have packets, too.
TEST(Doctor, TellsWhereThisMachineDroppedPackets) {
    Snapshot snapshot = GoodCamera();
    AdapterFacts& adapter = snapshot.adapters.front();
    snapshot.machine.meanwhile.backlogDrops = 3;
    adapter.dropsMeanwhile.dropped = 7;
    EXPECT_THAT(Findings(snapshot), IsEmpty());

    snapshot.trial->packets->askedAgain = 10;
    EXPECT_THAT(Findings(snapshot),
                ElementsAre("machine, kernel queues -> sudo sysctl -w "
                            "net.core.netdev_max_backlog=10000",
                            StartsWith("adapter eth1, drops -> ip -s -s link show eth1")));
    adapter.ring = {256, 4096};
    EXPECT_THAT(Findings(snapshot),
                Contains("adapter eth1, drops -> sudo ethtool -G eth1 rx 4096"));
    adapter.ring = {4096, 4096};
    EXPECT_THAT(Findings(snapshot), Contains(StartsWith("adapter eth1, drops -> ip -s -s")));
}

TEST(Doctor, FindsFullRingsWithoutAStream) {
    Snapshot snapshot = GoodCamera();
    snapshot.trial.reset();
    snapshot.adapters.front().ring = {256, 4096};
    snapshot.adapters.front().dropsMeanwhile.missed = 1;
    EXPECT_THAT(Findings(snapshot), ElementsAre("adapter eth1, drops -> sudo ethtool -G eth1 rx "
                                                "4096"));
}

TEST(Doctor, TellsDropsOfTheSocketFromLossesOnTheNetwork) {
    Snapshot snapshot = GoodCamera();
    snapshot.trial->packets = {1000, 0, 20, 19, 0, 0};
    EXPECT_THAT(Findings(snapshot), IsEmpty()) << "they were only slow";
    snapshot.trial->packets->needless = 3;
    EXPECT_THAT(Findings(snapshot),
                ElementsAre(StartsWith("stream, packets -> try another cable")));
    snapshot.trial->packets->socketDrops = 20;
    EXPECT_THAT(Findings(snapshot),
                ElementsAre(StartsWith("stream, packets -> sudo sysctl -w net.core.rmem_max=")));
    snapshot.machine.governors = {"schedutil"};
    EXPECT_THAT(Findings(snapshot), Contains(HasSubstr("frequency-set -g performance")));
    snapshot.machine.governors = {"performance"};
    EXPECT_THAT(Findings(snapshot), Not(Contains(HasSubstr("frequency-set"))));
}

TEST(Doctor, FindsHeartbeatsThatAreTooShort) {
    Snapshot snapshot = GoodCamera();
    snapshot.trial->heartbeatMs = 500;
    EXPECT_THAT(Findings(snapshot),
                ElementsAre("camera CAM, heartbeat -> zelcam set CAM GevHeartbeatTimeout=3000"));
    snapshot.trial->heartbeatMs.reset();
    EXPECT_THAT(Findings(snapshot), IsEmpty());
}

TEST(Doctor, FindsTheRightsForUsbCameras) {
    Snapshot snapshot = GoodCamera();
    CameraFacts& camera = snapshot.cameras.front();
    camera = {};
    camera.id = "CAM";
    camera.isUsb = camera.cannotBeReached = true;
    snapshot.trial.reset();
    EXPECT_THAT(Findings(snapshot),
                ElementsAre(AllOf(StartsWith("camera CAM, access -> "), HasSubstr("udev rule"))));
}

TEST(Doctor, NamesTheFirewallThatIsThere) {
    Snapshot snapshot = GoodCamera();
    snapshot.machine.usesUfw = true;
    snapshot.trial->testPacketArrived = false;
    snapshot.trial->packets->seen = snapshot.trial->frames = 0;
    EXPECT_THAT(Findings(snapshot),
                ElementsAre("stream, firewall -> sudo ufw insert 1 allow in on eth1 proto udp from "
                            "10.77.0.11"));
    // A camera that waits sends nothing else, and may know no test packets.
    snapshot.trial->silence = {{false, "TriggerMode is On", "send a trigger"}};
    EXPECT_THAT(Findings(snapshot), ElementsAre("stream, settings -> send a trigger"));
}

TEST(Doctor, BeginsWithWhatHidesCameras) {
    Snapshot snapshot = GoodCamera();
    snapshot.cameras.clear();
    snapshot.chosen.reset();
    snapshot.trial.reset();
    snapshot.machine.receiveLimit = 212992;
    snapshot.adapters.front().isUp = false;
    const std::vector<Diagnosis> diagnoses = Diagnose(snapshot);
    ASSERT_NE(FirstFinding(diagnoses), nullptr);
    EXPECT_EQ(FirstFinding(diagnoses)->advice, "sudo ip link set eth1 up");
    EXPECT_EQ(diagnoses[1].check, "receive buffers") << "a loss, listed before";
}

TEST(Doctor, ReadsTheCountsOfTheKernel) {
    const KernelCounts counts = KernelCountsIn(
        "0000ffff 0000000a 00000001 0 0\n00000001 00000010 00000002 0 0",
        "TcpExt: SyncookiesSent IPReversePathFilter X\nTcpExt: 4 77 5\nIpExt: A B\nIpExt: 1 2");
    EXPECT_EQ(counts.backlogDrops, 26U);
    EXPECT_EQ(counts.squeezes, 3U);
    EXPECT_EQ(counts.reversePathDrops, 77U);
    EXPECT_EQ(KernelCountsIn("", "").backlogDrops, 0U);
}

}  // namespace

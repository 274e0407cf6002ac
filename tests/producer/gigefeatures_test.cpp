// The features of GigE interfaces over what a transport knows.

#include "producers/gigefeatures/gigefeatures.h"

#include <set>

#include <gmock/gmock.h>

#include "tests/producer/producertest.h"
#include "tests/support/portnodemap.h"

using namespace GenTL;
using ::testing::ElementsAre;
using ZelCti::CameraNetwork;
using ZelCti::Error;
using ZelCti::Gvcp::Action;
using ZelTest::PortNodeMap;

namespace {

class Adapter final : public ZelCti::GigeHost {
  public:
    uint64_t MacAddress() const override { return 0x0200000000AA; }
    std::vector<Subnet> Subnets() const override { return subnets; }
    std::vector<uint32_t> Gateways() const override { return gateways; }
    bool IsTaken(uint32_t address) const override { return taken.count(address) != 0; }
    void ForceNetwork(ZelCti::Camera& camera, const CameraNetwork& network,
                      std::chrono::milliseconds timeout) override {
        if (timeout.count() == 5) throw Error(GC_ERR_TIMEOUT, "no answer");
        forced.push_back(camera.Id());
        last = network;
    }

    std::vector<Subnet> subnets = {{0x0A000001, 0xFFFFFFFC}, {0xC0A80A01, 0xFFFFFF00}};
    std::vector<uint32_t> gateways;
    std::set<uint32_t> taken;
    std::vector<std::string> forced;
    CameraNetwork last;
};

class GigeFeatures : public ProducerTest {
  protected:
    GigeFeatures() {
        camera->network = CameraNetwork{0x020000000001, 0xC0A80505, 0xFFFFFF00, 0};
        host->rows = [this](ZelCti::FeatureTable& features, const auto& selected) {
            AddGigeInterfaceFeatures(features, adapter, selected);
            AddActionFeatures(features, [this](const Action& action, uint32_t to) {
                sent = action;
                sentTo = to;
            });
        };
        interface = OpenInterface("I");
    }

    Adapter adapter;
    Action sent;
    uint32_t sentTo = 0;
};

TEST_F(GigeFeatures, ShowsTheSubnetsThatThereAre) {
    PortNodeMap map(Functions(), interface);
    EXPECT_EQ(map.Get("GevInterfaceMACAddress"), "02:00:00:00:00:aa");
    EXPECT_EQ(map.Get("GevInterfaceSubnetIPAddress"), "10.0.0.1");
    map.SetInteger("GevInterfaceSubnetSelector", 1);
    EXPECT_EQ(map.Get("GevInterfaceSubnetIPAddress"), "192.168.10.1");
    EXPECT_EQ(map.Get("GevInterfaceSubnetMask"), "255.255.255.0");
    EXPECT_ANY_THROW(map.SetInteger("GevInterfaceSubnetSelector", 2));
    EXPECT_FALSE(map.IsReadable("GevInterfaceGateway")) << "there is none";
    adapter.subnets.pop_back();
    EXPECT_EQ(map.Get("GevInterfaceSubnetIPAddress"), "10.0.0.1") << "the other one is gone";
    adapter.subnets.clear();
    EXPECT_FALSE(map.IsReadable("GevInterfaceSubnetIPAddress"));
    adapter.gateways = {0x0A000002};
    EXPECT_EQ(map.Get("GevInterfaceGateway"), "10.0.0.2");
}

// Two hosts fit into the first subnet, and the adapter is one of them.
TEST_F(GigeFeatures, ProposesFreeAddresses) {
    PortNodeMap map(Functions(), interface);
    const auto propose = [&] {
        map.Execute("GevDeviceProposeIP");
        return map.Get("GevDeviceForceIPAddress") + " " + map.Get("GevDeviceForceSubnetMask") +
               " " + map.Get("GevDeviceForceGateway");
    };
    EXPECT_EQ(propose(), "10.0.0.2 255.255.255.252 0.0.0.0");
    adapter.taken = {0x0A000002};
    const std::string second = propose();
    EXPECT_THAT(second, ::testing::MatchesRegex("192.168.10.[0-9]+ 255.255.255.0 0.0.0.0"));
    adapter.taken.insert(static_cast<uint32_t>(map.Integer("GevDeviceForceIPAddress")));
    EXPECT_NE(propose(), second);
    adapter.subnets.resize(1);
    EXPECT_THROW(propose(), std::runtime_error);
    camera->network.reset();
    EXPECT_THROW(propose(), std::runtime_error);
}

TEST_F(GigeFeatures, ForcesAddresses) {
    PortNodeMap map(Functions(), interface);
    map.SetInteger("GevDeviceForceIPAddress", 0x0A000009);
    map.SetInteger("GevDeviceForceSubnetMask", 0xFF000000);
    map.SetInteger("GevDeviceForceGateway", 0x0A000001);
    map.Execute("GevDeviceForceIP");
    EXPECT_THAT(adapter.forced, ElementsAre("C"));
    EXPECT_EQ(adapter.last.address, 0x0A000009U);
    EXPECT_EQ(adapter.last.mask, 0xFF000000U);
    EXPECT_EQ(adapter.last.gateway, 0x0A000001U);
    EXPECT_EQ(map.Get("GevDeviceLastForceIPSuccess"), "1");
    map.SetInteger("GevDeviceForceIPTimeout", 5);
    EXPECT_THROW(map.Execute("GevDeviceForceIP"), std::runtime_error);
    EXPECT_EQ(map.Get("GevDeviceLastForceIPSuccess"), "0");
}

TEST_F(GigeFeatures, SendsActions) {
    PortNodeMap map(Functions(), interface);
    map.SetInteger("ActionDeviceKey", 1);
    map.SetInteger("ActionGroupKey", 2);
    map.SetInteger("ActionGroupMask", 0xFFFFFFFF);
    map.SetInteger("ActionScheduledTime", 77);
    map.Execute("ActionCommand");
    EXPECT_EQ(sent.deviceKey, 1U);
    EXPECT_EQ(sent.groupKey, 2U);
    EXPECT_EQ(sent.groupMask, 0xFFFFFFFFU);
    EXPECT_FALSE(sent.time) << "it is not enabled";
    EXPECT_EQ(sentTo, 0xFFFFFFFFU);
    map.Set("ActionScheduledTimeEnable", "1");
    map.SetInteger("GevActionDestinationIPAddress", 0x0A0000FF);
    map.Execute("ActionCommand");
    EXPECT_EQ(sent.time, 77U);
    EXPECT_EQ(sentTo, 0x0A0000FFU);
}

}  // namespace

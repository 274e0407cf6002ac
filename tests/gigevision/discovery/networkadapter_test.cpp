// Adapters of this machine, and which of them the user wants.
#include "producers/gigevision/discovery/networkadapter.h"

#include <gmock/gmock.h>

#include "producers/gigevision/discovery/adapterfilter.h"

using testing::ElementsAre;
using testing::IsEmpty;
using ZelGev::AdapterFilter;
using ZelGev::NetworkAdapter;
using ZelGev::Subnet;

namespace {

NetworkAdapter Named(const std::string& name, std::vector<Subnet> subnets) {
    NetworkAdapter adapter;
    adapter.name = name;
    adapter.subnets = std::move(subnets);
    return adapter;
}

}  // namespace

TEST(NetworkAdapterTest, LoopbackIsListed) {
    const auto adapters = ZelGev::ListNetworkAdapters();
    const auto lo = std::find_if(adapters.begin(), adapters.end(),
                                 [](const auto& adapter) { return adapter.isLoopback; });
    ASSERT_NE(lo, adapters.end());
    EXPECT_EQ(lo->name, "lo");
    EXPECT_NE(lo->index, 0U);
    EXPECT_GE(lo->mtu, 16384U);
    EXPECT_TRUE(lo->hasCarrier);
    ASSERT_NE(lo->SubnetOf(0x7F000005), nullptr);
    EXPECT_EQ(lo->SubnetOf(0x7F000005)->address, 0x7F000001U);
    EXPECT_EQ(lo->SubnetOf(0x7F000005)->Broadcast(), 0x7FFFFFFFU);
    EXPECT_EQ(lo->SubnetOf(0x0A000005), nullptr);
}

TEST(NetworkAdapterTest, TheNarrowestSubnetCounts) {
    const auto adapter = Named("eth0", {{0x0A000001, 0xFF000000}, {0x0A010001, 0xFFFF0000}});
    EXPECT_EQ(adapter.SubnetOf(0x0A010203)->address, 0x0A010001U);
    EXPECT_EQ(adapter.SubnetOf(0x0A020203)->address, 0x0A000001U);
    EXPECT_EQ(AdapterText(adapter), "eth0 (10.0.0.1/8, 10.1.0.1/16)");
    NetworkAdapter unplugged = Named("eth1", {});
    EXPECT_EQ(AdapterText(unplugged), "eth1 (no address)");
    unplugged.hasCarrier = false;
    EXPECT_EQ(AdapterText(unplugged), "eth1 (no address, no link)");
    EXPECT_FALSE((Subnet{0x0A000001, 0xFFFFFFFE}.HasBroadcast()));
    EXPECT_TRUE((Subnet{0x0A000001, 0xFFFFFFFC}.HasBroadcast()));
}

TEST(AdapterFilterTest, NamesAndAddressesChoose) {
    const auto eth0 = Named("eth0", {{0x0A000001, 0xFF000000}});
    const auto eth1 = Named("eth1", {{0xC0A80101, 0xFFFFFF00}});
    EXPECT_TRUE(AdapterFilter("").Admits(eth0));
    EXPECT_FALSE(AdapterFilter("none").Admits(eth0));
    const AdapterFilter filter(" eth0, 192.168.1.1 ,eth9,10.0.0.2");
    EXPECT_TRUE(filter.Admits(eth0));
    EXPECT_TRUE(filter.Admits(eth1));
    EXPECT_FALSE(AdapterFilter("eth").Admits(eth0));
    EXPECT_THAT(filter.Unknown({eth0, eth1}), ElementsAre("eth9", "10.0.0.2"));
    EXPECT_THAT(AdapterFilter("none").Unknown({eth0}), IsEmpty());
}

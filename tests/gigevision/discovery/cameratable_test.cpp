// Which cameras there are, from the answers on several adapters.
#include "producers/gigevision/discovery/cameratable.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using ZelGev::CameraTable;
using ZelGev::FoundCamera;
using ZelGev::NetworkAdapter;

namespace {

NetworkAdapter MakeAdapter(unsigned index, uint32_t address, uint32_t mask = 0xFFFFFF00) {
    NetworkAdapter adapter;
    adapter.name = "eth" + std::to_string(index);
    adapter.index = index;
    adapter.subnets = {{address, mask}};
    return adapter;
}

FoundCamera MakeCamera(const std::string& id, uint32_t address) {
    FoundCamera camera;
    camera.id = id;
    camera.ip.address = address;
    return camera;
}

std::vector<std::string> Ids(const CameraTable& table, unsigned adapter) {
    std::vector<std::string> ids;
    for (const auto& sighting : table.CamerasOf(adapter))
        ids.push_back(sighting.camera.id);
    return ids;
}

class CameraTableTest : public ::testing::Test {
  protected:
    // A search on an adapter that these cameras answer.
    void Search(const NetworkAdapter& adapter, const std::vector<FoundCamera>& answers) {
        table_.BeginRound(adapter.index);
        for (const FoundCamera& camera : answers)
            table_.OnAnswer(adapter, camera, false);
        table_.EndRound(adapter.index);
    }

    const NetworkAdapter eth1_ = MakeAdapter(1, 0x0A010001);
    const NetworkAdapter eth2_ = MakeAdapter(2, 0x0A020001);
    CameraTable table_;
};

}  // namespace

TEST_F(CameraTableTest, ACameraInAnotherSubnetIsNotReached) {
    Search(eth1_, {MakeCamera("near", 0x0A010005), MakeCamera("foreign", 0xC0A80105)});
    const auto cameras = table_.CamerasOf(1);
    ASSERT_EQ(cameras.size(), 2U);
    EXPECT_EQ(cameras[0].hostAddress, 0U) << "foreign";
    EXPECT_EQ(cameras[1].hostAddress, 0x0A010001U);
    EXPECT_TRUE(table_.HasAddress(0xC0A80105));
    EXPECT_FALSE(table_.HasAddress(0x0A010001));
}

// Behind a router: it was asked at its own address.
TEST_F(CameraTableTest, ACameraThatAnswersItsOwnAddressIsReached) {
    table_.BeginRound(1);
    table_.OnAnswer(eth1_, MakeCamera("far", 0xC0A80105), false, 0x0A010001);
    table_.OnAnswer(eth1_, MakeCamera("far", 0xC0A80105), false);  // a broadcast, too
    table_.EndRound(1);
    EXPECT_EQ(table_.CamerasOf(1).at(0).hostAddress, 0x0A010001U);
}

TEST_F(CameraTableTest, OnTwoAdaptersItBelongsToTheOneThatReachesIt) {
    Search(eth1_, {MakeCamera("both", 0x0A020005)});
    EXPECT_THAT(Ids(table_, 1), ElementsAre("both"));
    Search(eth2_, {MakeCamera("both", 0x0A020005)});
    EXPECT_THAT(Ids(table_, 1), IsEmpty());
    EXPECT_THAT(Ids(table_, 2), ElementsAre("both"));
    table_.KeepAdapters({eth1_});
    EXPECT_THAT(Ids(table_, 1), ElementsAre("both"));
}

TEST_F(CameraTableTest, ACameraIsGoneWhenItIsSilentTwice) {
    Search(eth1_, {MakeCamera("a", 0x0A010005), MakeCamera("b", 0x0A010006)});
    EXPECT_EQ(table_.BeginRound(1), 2U);
    EXPECT_TRUE(table_.OnAnswer(eth1_, MakeCamera("a", 0x0A010005), false));
    EXPECT_FALSE(table_.OnAnswer(eth1_, MakeCamera("a", 0x0A010005), false)) << "again";
    table_.EndRound(1);
    EXPECT_THAT(Ids(table_, 1), ElementsAre("a", "b"));
    EXPECT_EQ(table_.BeginRound(1), 1U) << "nobody waits for one that may be gone";
    table_.EndRound(1);
    EXPECT_THAT(Ids(table_, 1), ElementsAre("a"));
}

// An answer that comes too late says that a camera exists, not that it is still there.
TEST_F(CameraTableTest, LateAnswersCountForCamerasThatAreNew) {
    table_.OnAnswer(eth1_, MakeCamera("late", 0x0A010005), true);
    EXPECT_THAT(Ids(table_, 1), ElementsAre("late"));
    Search(eth1_, {});
    table_.OnAnswer(eth1_, MakeCamera("late", 0x0A010005), true);
    Search(eth1_, {});
    EXPECT_THAT(Ids(table_, 1), IsEmpty());
}

TEST_F(CameraTableTest, AddressesFollowTheCamera) {
    Search(eth1_, {MakeCamera("moves", 0xC0A80105)});
    Search(eth1_, {MakeCamera("moves", 0x0A010009)});
    EXPECT_EQ(table_.CamerasOf(1).at(0).hostAddress, 0x0A010001U);
    Search(eth1_, {MakeCamera("moves", 0xC0A80105)});
    EXPECT_EQ(table_.CamerasOf(1).at(0).hostAddress, 0U);
}

TEST_F(CameraTableTest, ItsSizeIsBounded) {
    for (int i = 0; i < 5000; ++i)
        table_.OnAnswer(eth1_, MakeCamera(std::to_string(i), 0x0A010005), false);
    EXPECT_EQ(table_.CamerasOf(1).size(), 4096U);
}

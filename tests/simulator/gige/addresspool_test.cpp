// Which addresses cameras get, and which they may not have.

#include "producers/simulator/gige/sockets/addresspool.h"

#include <gmock/gmock.h>

#include "producers/server/base/error.h"
#include "producers/sockets/ipaddress.h"

using ::testing::HasSubstr;
using ZelCti::HostAddress;
using ZelCti::IpAddressText;
using ZelSim::AddressPool;

namespace {

std::vector<HostAddress> Machine() {
    return {{"lo", 1, 0x7F000001, 0xFF000000, true},
            {"eth0", 2, 0x0A4D0002, 0xFFFFFF00, false},
            {"eth0", 2, 0x0A4D0003, 0xFFFFFF00, false},
            {"eth1", 3, 0xC0A80105, 0xFFFF0000, false}};
}

std::string Next(AddressPool& pool) {
    const auto address = pool.Take();
    return address ? address->interface + " " + IpAddressText(address->address) : "none";
}

}  // namespace

TEST(AddressPoolTest, NothingBeyondLoopbackUnlessToldSo) {
    AddressPool pool({}, Machine());
    EXPECT_EQ(Next(pool), "lo 127.0.0.2");
    EXPECT_EQ(Next(pool), "lo 127.0.0.3");
    EXPECT_TRUE(pool.Find(0x7F010203));
    EXPECT_FALSE(pool.Find(0x0A4D0002));
    EXPECT_FALSE(pool.Find(0xC0A80105));
    EXPECT_FALSE(pool.Find(0x08080808));
}

TEST(AddressPoolTest, AnInterfaceGivesItsAddresses) {
    AddressPool pool({"eth0"}, Machine());
    EXPECT_EQ(Next(pool), "eth0 10.77.0.2");
    EXPECT_EQ(Next(pool), "eth0 10.77.0.3");
    EXPECT_EQ(Next(pool), "none");
    EXPECT_FALSE(pool.Find(0x7F000002)) << "loopback is served only when it is asked for, too";
    EXPECT_FALSE(pool.Find(0xC0A80105));
    ASSERT_TRUE(pool.Find(0x0A4D0003));
    EXPECT_EQ(pool.Find(0x0A4D0003)->Broadcast(), 0x0A4D00FFU);
}

TEST(AddressPoolTest, AnAddressGivesItself) {
    AddressPool pool({"10.77.0.3", "127.0.0.9"}, Machine());
    EXPECT_EQ(Next(pool), "eth0 10.77.0.3");
    EXPECT_EQ(Next(pool), "lo 127.0.0.9");
    EXPECT_EQ(Next(pool), "lo 127.0.0.10");
    EXPECT_FALSE(pool.Find(0x0A4D0002)) << "the other address of the interface";
}

TEST(AddressPoolTest, LoopbackEndsBeforeItsBroadcastAddress) {
    AddressPool pool({"127.255.255.253"}, Machine());
    EXPECT_EQ(Next(pool), "lo 127.255.255.253");
    EXPECT_EQ(Next(pool), "lo 127.255.255.254");
    EXPECT_EQ(Next(pool), "none");
}

TEST(AddressPoolTest, OtherMachinesAreRefused) {
    for (const char* place : {"eth2", "10.77.0.4", "10.77.0.255", ""}) {
        try {
            const AddressPool pool({place}, Machine());
            ADD_FAILURE() << place;
        } catch (const ZelCti::Error& error) {
            EXPECT_THAT(error.what(), HasSubstr("neither an address nor an interface"));
        }
    }
}

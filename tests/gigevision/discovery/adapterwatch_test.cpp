// Adapters come, go and change: in a network namespace of the test, where that takes no cable.

#include <arpa/inet.h>
#include <cstring>
#include <sched.h>
#include <sys/ioctl.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>
#include <net/if.h>

#include "producers/gigevision/discovery/discovery.h"

using testing::IsEmpty;

namespace {

// Asks the system to change something of an interface.
void Change(unsigned long what, const char* interface, const std::function<void(ifreq&)>& to) {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strncpy(request.ifr_name, interface, sizeof request.ifr_name - 1);
    to(request);
    EXPECT_EQ(ioctl(descriptor, what, &request), 0);
    close(descriptor);
}

void SwitchLoopback(bool on) {
    Change(SIOCSIFFLAGS, "lo", [on](ifreq& request) {
        request.ifr_flags = static_cast<short>(on ? IFF_UP | IFF_LOOPBACK : IFF_LOOPBACK);
    });
}

void AddAddress(uint32_t address) {
    Change(SIOCSIFADDR, "lo:1", [address](ifreq& request) {
        sockaddr_in native{};
        native.sin_family = AF_INET;
        native.sin_addr.s_addr = htonl(address);
        std::memcpy(&request.ifr_addr, &native, sizeof native);
    });
}

void FollowChanges() {
    ZelGev::Discovery discovery({"", {}});
    EXPECT_THAT(discovery.ListAdapters(), IsEmpty());
    SwitchLoopback(true);
    const auto adapters = discovery.ListAdapters();
    ASSERT_EQ(adapters.size(), 1U);
    EXPECT_EQ(AdapterText(adapters[0]), "lo (127.0.0.1/8)");
    EXPECT_EQ(adapters[0].mtu, 65536U);
    AddAddress(0x0A090909);
    EXPECT_EQ(AdapterText(discovery.ListAdapters().at(0)), "lo (127.0.0.1/8, 10.9.9.9/8)");
    EXPECT_TRUE(discovery.IsTaken(0x0A090909));
    Change(SIOCSIFMTU, "lo", [](ifreq& request) { request.ifr_mtu = 9000; });
    EXPECT_EQ(discovery.ListAdapters().at(0).mtu, 9000U);
    SwitchLoopback(false);
    EXPECT_THAT(discovery.ListAdapters(), IsEmpty());
    EXPECT_THAT(discovery.Search(adapters[0].index, std::chrono::steady_clock::now()), IsEmpty());
}

}  // namespace

TEST(AdapterWatchTest, AdaptersAreFollowed) {
    bool isAllowed = false;
    std::thread([&] {
        isAllowed = unshare(CLONE_NEWNET) == 0;
        if (isAllowed) FollowChanges();
    }).join();
    if (!isAllowed) GTEST_SKIP() << "this user makes no network namespaces";
}

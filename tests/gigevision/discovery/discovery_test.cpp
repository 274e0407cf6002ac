// Looking for cameras on loopback: what is sent, byte by byte, and what becomes of the answers.
#include "producers/gigevision/discovery/discovery.h"

#include <algorithm>
#include <array>
#include <condition_variable>
#include <list>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>

#include <gmock/gmock.h>

#include "producers/sockets/udpsocket.h"
#include "tests/gigevision/discovery/discoveryack.h"

using std::chrono::milliseconds;
using testing::ElementsAre;
using ZelCti::Endpoint;
using ZelCti::UdpSocket;
using ZelGev::Discovery;
using ZelTest::Bytes;
using ZelTest::DiscoveryAck;

namespace {

constexpr uint16_t kPort = 3956;
constexpr uint32_t kEverybody = 0xFFFFFFFF;

// An address and a MAC address that no other process has.
uint8_t Digit(int shift) {
    return static_cast<uint8_t>(getpid() >> shift);
}

// A camera that hears what is sent to its address and to all, and answers as the test says. Others
// on this machine may look for cameras as well: it keeps only what the test is to see.
class FakeCamera {
  public:
    // Answers a command that came to an address; an empty answer is none.
    using Respond = std::function<Bytes(const Bytes& command, uint32_t to)>;

    // One in another subnet answers everybody.
    explicit FakeCamera(Respond respond, bool isForeign = false)
        : respond_(std::move(respond)), isForeign_(isForeign) {
        for (const uint32_t address : {Address(), kEverybody, uint32_t{0x7FFFFFFF}})
            sockets_.emplace_back(address, std::make_unique<UdpSocket>(Endpoint{address, kPort},
                                                                       "lo", address != Address()));
        thread_ = std::thread([this] { Serve(); });
    }
    ~FakeCamera() {
        eventfd_write(end_, 1);
        thread_.join();
        close(end_);
    }
    FakeCamera(const FakeCamera&) = delete;
    FakeCamera& operator=(const FakeCamera&) = delete;

    static uint32_t Address() {
        return 0x7F800001U | uint32_t{Digit(8)} << 16 | uint32_t{Digit(0)} << 8;
    }
    static Bytes AddressBytes() {
        return {127, static_cast<uint8_t>(Digit(8) | 0x80), Digit(0), 1};
    }
    static Bytes Mac() { return {0x02, 0xFA, 0xCE, Digit(16), Digit(8), Digit(0)}; }

    // A datagram to the address that the test is interested in. Waits for it.
    Bytes Await(uint32_t to, const std::function<bool(const Bytes&)>& isMeant) {
        std::unique_lock lock(mutex_);
        Bytes found;
        changed_.wait_for(lock, std::chrono::minutes(1), [&] {
            for (const auto& [address, from, bytes] : heard_)
                if (address == to && isMeant(bytes)) found = bytes;
            return !found.empty();
        });
        return found;
    }

    struct Datagram {
        uint32_t to;
        uint16_t fromPort;
        Bytes bytes;
    };

    // All datagrams so far.
    std::vector<Datagram> Heard() {
        const std::lock_guard lock(mutex_);
        return heard_;
    }

  private:
    void Serve() {
        for (;;) {
            std::vector<pollfd> waited = {{end_, POLLIN, 0}};
            for (const auto& [address, socket] : sockets_)
                waited.push_back({socket->Descriptor(), POLLIN, 0});
            poll(waited.data(), waited.size(), -1);
            if (waited.front().revents != 0) return;
            for (const auto& [address, socket] : sockets_)
                Receive(address, *socket);
        }
    }

    void Receive(uint32_t address, UdpSocket& socket) {
        std::array<uint8_t, 600> memory;
        while (const auto datagram = socket.Receive({memory.data(), memory.size()})) {
            const Bytes bytes(memory.begin(), memory.begin() + static_cast<long>(datagram->size));
            const Bytes answer = respond_(bytes, address);
            // From its own address, also when everybody was asked.
            const uint32_t asker = isForeign_ ? kEverybody : datagram->from.address;
            if (!answer.empty()) {
                sockets_.front().second->Send({asker, datagram->from.port},
                                              {answer.data(), answer.size()});
            }
            const std::lock_guard lock(mutex_);
            heard_.push_back({address, datagram->from.port, bytes});
            changed_.notify_all();
        }
    }

    const Respond respond_;
    const bool isForeign_;
    const int end_ = eventfd(0, EFD_CLOEXEC);
    std::list<std::pair<uint32_t, std::unique_ptr<UdpSocket>>> sockets_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Datagram> heard_;  // guarded by mutex_
    std::thread thread_;
};

uint16_t NumberOf(const Bytes& command) {
    return static_cast<uint16_t>(command[6] << 8 | command[7]);
}

DiscoveryAck AckOf(const Bytes& command) {
    DiscoveryAck ack;
    ack.Id(NumberOf(command));
    ack.Mac(FakeCamera::Mac()).Ip(FakeCamera::AddressBytes(), {255, 0, 0, 0}, Bytes(4));
    return ack;
}

bool IsDiscovery(const Bytes& command) {
    return command.size() == 8 && command[3] == 2;
}

// Answers searches as far as they come to this address, and reads of registers with 0.
Bytes RespondAt(uint32_t address, const Bytes& command, uint32_t to) {
    if (IsDiscovery(command)) return to == address ? AckOf(command).Get() : Bytes();
    if (command.size() == 12 && command[3] == 0x80)
        return {0, 0, 0, 0x81, 0, 4, command[6], command[7], 0, 0, 0, 0};
    return {};
}

class DiscoveryTest : public ::testing::Test {
  protected:
    std::unique_ptr<Discovery> OnLoopback(std::vector<uint32_t> cameras = {}) {
        auto discovery =
            std::make_unique<Discovery>(ZelGev::DiscoverySettings{"lo", std::move(cameras)});
        lo_ = discovery->ListAdapters().at(0).index;
        return discovery;
    }

    // The fake camera as the search lists it.
    std::optional<ZelGev::ListedCamera> Search(Discovery& discovery) const {
        const auto deadline = std::chrono::steady_clock::now() + milliseconds(2000);
        for (auto& listed : discovery.Search(lo_, deadline))
            if (listed.camera.id == Id()) return std::move(listed);
        return std::nullopt;
    }

    // Searches until the fake camera is listed as wanted: on a busy machine, its answers may be too
    // late for one search.
    template <typename IsWanted>
    std::optional<ZelGev::ListedCamera> Find(Discovery& discovery, IsWanted isWanted) const {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        do {
            auto found = Search(discovery);
            if (found && isWanted(*found)) return found;
        } while (std::chrono::steady_clock::now() < end);
        return std::nullopt;
    }
    std::optional<ZelGev::ListedCamera> FindAndRead(Discovery& discovery) const {
        return Find(discovery, [](const ZelGev::ListedCamera& listed) {
            return listed.reading && listed.reading->isAnswered;
        });
    }

    static std::string Id() {
        std::string id = "GEV-";
        for (const uint8_t byte : FakeCamera::Mac()) {
            constexpr std::string_view kDigits = "0123456789abcdef";
            id += {kDigits[byte >> 4], kDigits[byte & 15]};
        }
        return id;
    }

    unsigned lo_ = 0;
};

}  // namespace

// Some cameras hear only some kinds of questions.
TEST_F(DiscoveryTest, EveryWayToAskFindsCameras) {
    for (const uint32_t way : {kEverybody, uint32_t{0x7FFFFFFF}, FakeCamera::Address()}) {
        SCOPED_TRACE(way);
        const FakeCamera camera([&](const Bytes& command, uint32_t to) {
            if (to == FakeCamera::Address() && !IsDiscovery(command))
                return RespondAt(way, command, to);
            return to == way ? RespondAt(way, command, to) : Bytes();
        });
        const auto discovery = OnLoopback({FakeCamera::Address()});
        const auto found = FindAndRead(*discovery);
        ASSERT_TRUE(found);
        ASSERT_TRUE(found->route);
        EXPECT_EQ(found->route->camera, (Endpoint{FakeCamera::Address(), kPort}));
        EXPECT_EQ(found->route->hostAddress, 0x7F000001U);
        EXPECT_EQ(found->route->interface, "lo");
        EXPECT_TRUE(found->route->isLoopback);
        EXPECT_EQ(found->reading->ccp, 0U);
    }
}

// A camera in another subnet answers by a broadcast, and only if it is told that it may.
TEST_F(DiscoveryTest, CamerasInOtherSubnetsAreFound) {
    const auto respond = [](const Bytes& command, uint32_t /*to*/) {
        if (!IsDiscovery(command) || (command[1] & 0x10) == 0) return Bytes();
        return AckOf(command).Ip({192, 168, 5, 5}, {255, 255, 255, 0}, Bytes(4)).Get();
    };
    FakeCamera camera(respond, true);
    const auto discovery = OnLoopback();
    const auto found = Find(*discovery, [](const auto&) { return true; });
    ASSERT_TRUE(found);
    EXPECT_FALSE(found->route);
    EXPECT_FALSE(found->reading);
    EXPECT_EQ(found->adapter, "lo (127.0.0.1/8)");
    EXPECT_TRUE(discovery->IsTaken(0xC0A80505));
    EXPECT_TRUE(discovery->IsTaken(0x7F000001)) << "ours";
    const Bytes asked = camera.Await(kEverybody, [](const Bytes& b) { return b[1] == 0x11; });
    EXPECT_THAT(Bytes(asked.begin(), asked.begin() + 6), ElementsAre(0x42, 0x11, 0, 2, 0, 0));
}

TEST_F(DiscoveryTest, AnAddressIsAskedOnDemand) {
    const FakeCamera camera([](const Bytes& command, uint32_t to) {
        return RespondAt(FakeCamera::Address(), command, to);
    });
    const auto discovery = OnLoopback();
    EXPECT_FALSE(Search(*discovery));
    discovery->AskAlso(lo_, FakeCamera::Address());
    EXPECT_EQ(discovery->AskedAlso(lo_), FakeCamera::Address());
    EXPECT_TRUE(FindAndRead(*discovery));
}

// A camera takes a command with the number of an earlier one for its repetition.
TEST_F(DiscoveryTest, EveryCommandHasANumberOfItsOwn) {
    FakeCamera camera([](const Bytes& command, uint32_t to) {
        return RespondAt(FakeCamera::Address(), command, to);
    });
    const auto discovery = OnLoopback({FakeCamera::Address()});
    for (int i = 0; i < 2; ++i)
        ASSERT_TRUE(FindAndRead(*discovery));
    std::map<std::pair<uint16_t, uint16_t>, Bytes> commands;  // by port and number
    for (const auto& [to, port, command] : camera.Heard()) {
        if (to != FakeCamera::Address()) continue;
        const auto key = std::make_pair(port, NumberOf(command));
        EXPECT_EQ(commands.emplace(key, command).first->second, command);
    }
}

TEST_F(DiscoveryTest, ForcesAddresses) {
    const Bytes mac = FakeCamera::Mac();
    const auto isForced = [&](const Bytes& command) {
        return command.size() == 64 && command[3] == 4 &&
               std::equal(mac.begin(), mac.end(), command.begin() + 10);
    };
    FakeCamera camera([&](const Bytes& command, uint32_t /*to*/) {
        if (!isForced(command)) return Bytes();
        return Bytes{0, 0, 0, 5, 0, 0, command[6], command[7]};
    });
    const auto discovery = OnLoopback();
    uint64_t number = 0;
    for (const uint8_t byte : mac)
        number = number << 8 | byte;
    EXPECT_TRUE(discovery->ForceIp(lo_, {number, 0x0A4D0005, 0xFFFFFF00, 0x0A4D0001},
                                   std::chrono::steady_clock::now() + std::chrono::minutes(1)));
    const Bytes sent = camera.Await(
        kEverybody, [&](const Bytes& command) { return isForced(command) && command[1] == 1; });
    ASSERT_EQ(sent.size(), 64U);
    EXPECT_THAT(Bytes(sent.begin(), sent.begin() + 6), ElementsAre(0x42, 0x01, 0, 4, 0, 56));
    EXPECT_THAT(Bytes(sent.begin() + 28, sent.begin() + 32), ElementsAre(10, 77, 0, 5));
    EXPECT_THAT(Bytes(sent.begin() + 44, sent.begin() + 48), ElementsAre(255, 255, 255, 0));
    EXPECT_THAT(Bytes(sent.begin() + 60, sent.end()), ElementsAre(10, 77, 0, 1));
    const auto isForAll = [&](const Bytes& command) {
        return isForced(command) && command[1] == 0x11;
    };
    EXPECT_FALSE(camera.Await(kEverybody, isForAll).empty());

    // A camera in use is silent; one that is to choose itself confirms nothing.
    EXPECT_FALSE(discovery->ForceIp(lo_, {1, 0x0A4D0005, 0xFFFFFF00, 0},
                                    std::chrono::steady_clock::now() + milliseconds(10)));
    EXPECT_FALSE(discovery->ForceIp(lo_, {number, 0, 0, 0},
                                    std::chrono::steady_clock::now() + std::chrono::minutes(1)));
    EXPECT_FALSE(
        camera
            .Await(kEverybody,
                   [&](const Bytes& command) { return isForced(command) && command[31] == 0; })
            .empty());
}

TEST_F(DiscoveryTest, SendsActions) {
    FakeCamera camera([](const Bytes&, uint32_t) { return Bytes(); });
    const auto discovery = OnLoopback();
    ZelCti::Gvcp::Action action;
    action.deviceKey = 0x01020304;
    action.groupKey = static_cast<uint32_t>(getpid());
    action.groupMask = 0x80000001;
    const auto isMeant = [&](const Bytes& command) {
        return command.size() >= 20 && command[3] == 0 && command[2] == 1 &&
               command[15] == Digit(0) && command[14] == Digit(8);
    };
    discovery->SendAction(lo_, action, kEverybody);
    const Bytes now = camera.Await(kEverybody, isMeant);
    ASSERT_EQ(now.size(), 20U);
    EXPECT_THAT(Bytes(now.begin(), now.begin() + 6), ElementsAre(0x42, 0, 1, 0, 0, 12));
    EXPECT_THAT(Bytes(now.begin() + 8, now.begin() + 12), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(Bytes(now.begin() + 16, now.end()), ElementsAre(0x80, 0, 0, 1));
    action.time = 0x0102030405060708;
    discovery->SendAction(lo_, action, FakeCamera::Address());
    const Bytes later = camera.Await(FakeCamera::Address(), isMeant);
    ASSERT_EQ(later.size(), 28U);
    EXPECT_THAT(Bytes(later.begin(), later.begin() + 6), ElementsAre(0x42, 0x80, 1, 0, 0, 20));
    EXPECT_THAT(Bytes(later.begin() + 20, later.end()), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST_F(DiscoveryTest, NamesThatAreNoAdapterAreKnown) {
    Discovery discovery({"lo,nosuch0", {}});
    EXPECT_EQ(discovery.ListAdapters().size(), 1U);
    EXPECT_THAT(discovery.UnknownNames(), ElementsAre("nosuch0"));
    EXPECT_TRUE(discovery.Search(4711, std::chrono::steady_clock::now()).empty());
    EXPECT_FALSE(discovery.Adapter(4711));
}

// Datagrams that no application sends, at every port of cameras on the network of this machine:
// random ones, and commands with bytes, lengths and ends changed.
//
//   zelcam_datagrams SECONDS PROCESS SEED ADDRESS...
//
// Fails when a camera answers no discovery any more, or when the process that serves them grows.
// Such commands let a camera send to anybody: run it where no other network can be reached.
#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "tests/support/networkapplication.h"
#include "tests/wire/bytes.h"

namespace {

using Clock = std::chrono::steady_clock;
using WireTest::Bytes;

constexpr uint16_t kControlPort = 3956;
constexpr int kBatch = 64;  // so that the next discovery finds room in the socket of the camera
constexpr long kToleratedKiB = 16384;  // cameras take memory for larger frames and more of them

// For a camera that is not there.
constexpr char kForceIp[] =
    "42010004 00380002 0000 021122334455 0000000000000000"
    "0000000000000000 7f000009 000000000000000000000000 ff000000"
    "000000000000000000000000 00000000";

// Commands of every kind, and acknowledges of events.
constexpr const char* kMessages[] = {
    "42110002 00000001",  // DISCOVERY
    kForceIp,
    "42000040 000c0003 0000 0001 00000000 00ffffff",  // PACKETRESEND
    "42100040 00140004 0000 0000 00000000 ffffffff 0000000000000001",
    "42010080 00080005 00000a00 00000938",  // READREG
    "42010082 00080006 00000a00 00000002",  // WRITEREG
    "42010082 00180007 00000d18 7f000001 00000d04 000005dc 00000d00 0000c350",
    "42010084 00080008 00000000 00000218",                             // READMEM
    "42010086 00140009 000000e8 61626300 00000000 00000000 00000000",  // WRITEMEM
    "42010100 000c000a 00000001 00000001 ffffffff",                    // ACTION
    "42810100 0014000b 00000001 00000001 ffffffff 0000000000000001",
    "000000c1 00000001",  // acknowledges of EVENT and EVENTDATA
    "000000c3 00000001",
};

class Mutator {
  public:
    explicit Mutator(uint32_t seed) : random_(seed) {
        for (const char* const message : kMessages)
            messages_.push_back(WireTest::Hex(message));
    }

    uint32_t Below(uint32_t limit) { return static_cast<uint32_t>(random_() % limit); }

    Bytes Next() {
        constexpr uint32_t kMostBytes = 1400;
        Bytes bytes;
        if (Below(8) == 0) {
            bytes.resize(Below(kMostBytes));
            for (uint8_t& byte : bytes)
                byte = static_cast<uint8_t>(random_());
            return bytes;
        }
        bytes = messages_[Below(static_cast<uint32_t>(messages_.size()))];
        for (uint32_t changes = Below(4); changes != 0; --changes)
            bytes[Below(static_cast<uint32_t>(bytes.size()))] = static_cast<uint8_t>(random_());
        if (Below(4) == 0) bytes.resize(Below(kMostBytes), static_cast<uint8_t>(random_()));
        if (Below(2) == 0) SetLength(bytes);
        return bytes;
    }

  private:
    static void SetLength(Bytes& bytes) {
        constexpr size_t kHeader = 8;
        if (bytes.size() < kHeader) return;
        const size_t length = bytes.size() - kHeader;
        bytes[4] = static_cast<uint8_t>(length >> 8);
        bytes[5] = static_cast<uint8_t>(length);
    }

    std::mt19937 random_;
    std::vector<Bytes> messages_;
};

// Sockets of several applications, each with a port of its own.
class Applications {
  public:
    Applications() {
        for (int& socket : sockets_) {
            socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
            if (socket < 0) throw std::runtime_error("there are no sockets");
        }
    }
    ~Applications() {
        for (const int socket : sockets_)
            close(socket);
    }
    Applications(const Applications&) = delete;
    Applications& operator=(const Applications&) = delete;

    void Send(uint32_t which, const std::string& address, uint16_t port, const Bytes& bytes) const {
        sockaddr_in to{};
        to.sin_family = AF_INET;
        to.sin_port = htons(port);
        inet_pton(AF_INET, address.c_str(), &to.sin_addr);
        sendto(sockets_[which % sockets_.size()], bytes.data(), bytes.size(), 0,
               reinterpret_cast<const sockaddr*>(&to), sizeof to);
    }

  private:
    std::array<int, 4> sockets_{};
};

// The camera may be restarting, and others may hold exclusive access; discovery is open to all.
void AwaitAnswer(const std::string& address) {
    constexpr int kTries = 20;
    for (int i = 0; i < kTries; ++i) {
        const ZelTest::NetworkApplication application(address);
        if (!application.Discover().empty()) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    }
    throw std::runtime_error("the camera answers no discovery any more");
}

long ResidentKiB(const std::string& process) {
    long total = 0;
    long resident = 0;
    std::ifstream("/proc/" + process + "/statm") >> total >> resident;
    if (resident == 0) throw std::runtime_error("the process has ended");
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

struct Target {
    std::string address;
    std::vector<uint16_t> ports;
};

// Half of the datagrams go to the control port.
Target TargetAt(const std::string& address) {
    constexpr uint16_t kChannelSize = 0x40;
    ZelTest::NetworkApplication reader(address);
    std::vector<uint16_t> ports{static_cast<uint16_t>(reader.Read(0x0B1C))};  // MCSP
    const uint32_t numStreams = reader.Read(0x0904);
    for (uint32_t i = 0; i < numStreams; ++i) {
        const auto scsp = static_cast<uint16_t>(0x0D1C + i * kChannelSize);
        ports.push_back(static_cast<uint16_t>(reader.Read(scsp)));
    }
    ports.resize(2 * ports.size(), kControlPort);
    return {address, ports};
}

void Flood(std::chrono::seconds duration, const std::string& process, uint32_t seed,
           const std::vector<std::string>& addresses) {
    Mutator mutator(seed);
    const Applications applications;
    std::vector<Target> targets(addresses.size());
    std::transform(addresses.begin(), addresses.end(), targets.begin(), TargetAt);
    const auto start = Clock::now();
    const auto half = start + duration / 2;
    long before = 0;
    uint64_t sent = 0;
    while (Clock::now() < start + duration) {
        if (before == 0 && Clock::now() > half) before = ResidentKiB(process);
        const Target& target = targets[mutator.Below(static_cast<uint32_t>(targets.size()))];
        for (int i = 0; i < kBatch; ++i, ++sent) {
            const auto port = mutator.Below(static_cast<uint32_t>(target.ports.size()));
            applications.Send(mutator.Below(64), target.address, target.ports[port],
                              mutator.Next());
        }
        AwaitAnswer(target.address);
    }
    for (const Target& target : targets)
        AwaitAnswer(target.address);
    const long after = ResidentKiB(process);
    std::printf("%llu datagrams, seed %u: from %ld to %ld KiB in the second half\n",
                static_cast<unsigned long long>(sent), seed, before, after);
    if (after > before + kToleratedKiB) throw std::runtime_error("the process has grown");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fprintf(stderr, "usage: zelcam_datagrams SECONDS PROCESS SEED ADDRESS...\n");
        return 1;
    }
    try {
        const auto seed = static_cast<uint32_t>(std::atoll(argv[3]));
        Flood(std::chrono::seconds(std::atoll(argv[1])), argv[2], seed, {argv + 4, argv + argc});
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zelcam_datagrams: %s\n", error.what());
        return 2;
    }
}

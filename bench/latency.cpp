// From the end of a frame, which the camera writes into its buffer, to the return of the wait of
// the thread that fetches it: through the library, by EventGetData alone, and by a condition
// variable between two threads, one of which wakes as often as the camera sends, with the nice
// value of the camera's thread.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <sched.h>
#include <sys/resource.h>
#include <thread>
#include <utility>

#include "bench/groups.h"
#include "bench/measure.h"
#include "bench/session.h"

namespace Bench {

namespace {

constexpr size_t kBuffers = 8;
// Short ones: from second to second the machine takes more or less time to wake a processor.
constexpr int kRounds = 31;
constexpr int kFrames = 400;
constexpr std::chrono::microseconds kPeriod(500);
// A fast link: a frame takes a quarter of a millisecond on it.
constexpr const char* kCamera =
    "width='640' height='480' frameRate='2000' linkSpeed='1250000000' noFill='true'";

struct Latencies {
    std::vector<double> p50;
    std::vector<double> p99;

    void AddRound(const std::vector<double>& nanoseconds) {
        p50.push_back(Percentile(nanoseconds, 0.5) / 1000);
        p99.push_back(Percentile(nanoseconds, 0.99) / 1000);
    }
};

// What to add to a timestamp of the camera to get the time of Now: a latched timestamp lies between
// the times before and after, and the closest ones count.
int64_t ClockOffset(const BareHost& host) {
    constexpr uint64_t kLatchRegister = 0x2014;
    constexpr uint64_t kValueRegister = 0x2018;
    const Simulator& gentl = Simulator::Get();
    const BareCamera camera(host);
    int64_t offset = 0;
    int64_t closest = std::numeric_limits<int64_t>::max();
    for (int i = 0; i < 1000; ++i) {
        const uint32_t latch = 1;
        size_t size = sizeof latch;
        const int64_t before = Now();
        Check(gentl.GCWritePort(camera.Port(), kLatchRegister, &latch, &size), "GCWritePort");
        const int64_t after = Now();
        int64_t timestamp = 0;
        size = sizeof timestamp;
        Check(gentl.GCReadPort(camera.Port(), kValueRegister, &timestamp, &size), "GCReadPort");
        if (after - before >= closest) continue;
        closest = after - before;
        offset = before + closest / 2 - timestamp;
    }
    return offset;
}

// The processors that the sending and the receiving thread may run on. Where the kernel chooses,
// they are on one or on two by chance, which makes more of a difference than anything else here.
struct Placement {
    std::string name;
    cpu_set_t sender;
    cpu_set_t receiver;
};

cpu_set_t Allowed() {
    cpu_set_t allowed;
    Require(sched_getaffinity(0, sizeof allowed, &allowed) == 0, "sched_getaffinity");
    return allowed;
}

// Gives the calling thread, and the threads that it starts, these processors while it lives.
class OnProcessors {
  public:
    explicit OnProcessors(const cpu_set_t& processors) : before_(Allowed()) {
        Require(sched_setaffinity(0, sizeof processors, &processors) == 0, "sched_setaffinity");
    }
    ~OnProcessors() { sched_setaffinity(0, sizeof before_, &before_); }
    OnProcessors(const OnProcessors&) = delete;
    OnProcessors& operator=(const OnProcessors&) = delete;

  private:
    const cpu_set_t before_;
};

std::vector<Placement> Placements() {
    const cpu_set_t allowed = Allowed();
    std::vector<cpu_set_t> processors;
    for (size_t number = 0; number < size_t{CPU_SETSIZE}; ++number) {
        if (!CPU_ISSET(number, &allowed)) continue;
        cpu_set_t only;
        CPU_ZERO(&only);
        CPU_SET(number, &only);
        processors.push_back(only);
    }
    std::vector<Placement> placements = {{"any CPU", allowed, allowed}};
    if (processors.size() > 1) placements.push_back({"two CPUs", processors[0], processors[1]});
    placements.push_back({"one CPU", processors[0], processors[0]});
    return placements;
}

template <typename SessionCamera>
void RunRound(const typename SessionCamera::Host& host, const Placement& placement,
              int64_t clockOffset, Latencies& result) {
    const SessionCamera camera(host);
    camera.Announce(kBuffers);
    {
        const OnProcessors ofSender(placement.sender);
        camera.Start();
    }
    const OnProcessors ofReceiver(placement.receiver);
    std::vector<double> latencies;
    for (int i = 0; i < kFrames; ++i) {
        const auto frame = camera.AwaitFrame();
        const int64_t arrival = Now();
        const auto end = static_cast<int64_t>(camera.CompletedAt(frame)) + clockOffset;
        camera.Finish(frame);
        latencies.push_back(static_cast<double>(arrival - end));
    }
    camera.Stop();
    result.AddRound(latencies);
}

// Hands a time over from one thread to another.
class HandOver {
  public:
    void Give(int64_t time) {
        {
            const std::lock_guard lock(mutex_);
            time_ = time;
        }
        arrived_.notify_one();
    }

    // 0 when nothing comes.
    int64_t Await() {
        std::unique_lock lock(mutex_);
        arrived_.wait_for(lock, std::chrono::milliseconds(kTimeoutMs), [&] { return time_ != 0; });
        return std::exchange(time_, 0);
    }

  private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    int64_t time_ = 0;  // 0 for none
};

void RunHandOverRound(const Placement& placement, Latencies& result) {
    HandOver handOver;
    std::atomic<bool> isOver{false};
    std::thread sender([&] {
        const OnProcessors ofSender(placement.sender);
        setpriority(PRIO_PROCESS, 0, getpriority(PRIO_PROCESS, 0) + ZELSIM_NICENESS);
        auto next = std::chrono::steady_clock::now();
        while (!isOver) {
            next += kPeriod;
            std::this_thread::sleep_until(next);
            handOver.Give(Now());
        }
    });
    const OnProcessors ofReceiver(placement.receiver);
    std::vector<double> latencies;
    for (int i = 0; i < kFrames; ++i) {
        const int64_t given = handOver.Await();
        if (given == 0) break;
        latencies.push_back(static_cast<double>(Now() - given));
    }
    isOver = true;
    sender.join();
    Require(latencies.size() == kFrames, "nothing was handed over");
    result.AddRound(latencies);
}

void MeasurePlacement(Report& report, const LibraryHost& libraryHost, const BareHost& bareHost,
                      const Placement& placement) {
    const int64_t clockOffset = ClockOffset(bareHost);
    Latencies library;
    Latencies bare;
    Latencies handOver;
    Interleave(
        kRounds, [&] { RunRound<LibraryCamera>(libraryHost, placement, clockOffset, library); },
        [&] {
            RunRound<BareCamera>(bareHost, placement, clockOffset, bare);
            RunHandOverRound(placement, handOver);
        });
    const auto add = [&](const char* share, std::vector<double> Latencies::*value,
                         std::optional<double> limit = std::nullopt) {
        const std::string name =
            std::string("frame to GetBuffer, ") + placement.name + ", " + share;
        const auto compare = [&](const char* baseName, const Latencies& base) {
            report.Add({"latency", name, "us", library.*value, baseName, base.*value, limit});
        };
        compare("bare EventGetData", bare);
        compare("bare condition variable", handOver);
    };
    add("p50", &Latencies::p50, 1.1);
    add("p99", &Latencies::p99);
}

}  // namespace

void MeasureLatency(Report& report) {
    Simulator::Get().ConfigureCameras(1, kCamera);
    const LibraryHost libraryHost;
    const BareHost bareHost;
    for (const Placement& placement : Placements())
        MeasurePlacement(report, libraryHost, bareHost, placement);
}

}  // namespace Bench

// From the end of a frame, its timestamp, to the return of the wait of the thread that fetches it:
// through the library, by EventGetData alone, and by a condition variable between two threads, one
// of which wakes as often as the camera sends and notifies the other with the mutex released or
// held.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <thread>

#include "bench/groups.h"
#include "bench/measure.h"
#include "bench/session.h"

namespace Bench {

namespace {

constexpr size_t kBuffers = 8;
constexpr int kRounds = 11;
constexpr int kFrames = 1000;
constexpr std::chrono::microseconds kPeriod(500);
constexpr const char* kCamera = "width='640' height='480' frameRate='2000' noFill='true'";

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
    constexpr uint64_t latchRegister = 0x2014;
    constexpr uint64_t valueRegister = 0x2018;
    const Simulator& gentl = Simulator::Get();
    const BareCamera camera(host);
    int64_t offset = 0;
    int64_t closest = std::numeric_limits<int64_t>::max();
    for (int i = 0; i < 1000; ++i) {
        const uint32_t latch = 1;
        size_t size = sizeof latch;
        const int64_t before = Now();
        Check(gentl.GCWritePort(camera.Port(), latchRegister, &latch, &size), "GCWritePort");
        const int64_t after = Now();
        int64_t timestamp = 0;
        size = sizeof timestamp;
        Check(gentl.GCReadPort(camera.Port(), valueRegister, &timestamp, &size), "GCReadPort");
        if (after - before >= closest) continue;
        closest = after - before;
        offset = before + closest / 2 - timestamp;
    }
    return offset;
}

template <typename SessionCamera>
void RunRound(const typename SessionCamera::Host& host, int64_t clockOffset, Latencies& result) {
    const SessionCamera camera(host);
    camera.Announce(kBuffers);
    camera.Start();
    std::vector<double> latencies;
    for (int i = 0; i < kFrames; ++i) {
        const auto frame = camera.AwaitFrame();
        const int64_t arrival = Now();
        const auto end = static_cast<int64_t>(camera.Finish(frame)) + clockOffset;
        latencies.push_back(static_cast<double>(arrival - end));
    }
    camera.Stop();
    result.AddRound(latencies);
}

enum class Notify { WithMutex, WithoutMutex };

// The time at which a value was handed over, or 0 for none.
struct HandOver {
    const Notify notify;
    std::mutex mutex{};
    std::condition_variable condition{};
    int64_t time = 0;
    std::atomic<bool> isOver{false};
};

void HandOverRegularly(HandOver& handOver) {
    auto next = std::chrono::steady_clock::now();
    while (!handOver.isOver) {
        next += kPeriod;
        std::this_thread::sleep_until(next);
        const int64_t now = Now();
        std::unique_lock lock(handOver.mutex);
        handOver.time = now;
        if (handOver.notify == Notify::WithoutMutex) lock.unlock();
        handOver.condition.notify_one();
    }
}

void RunHandOverRound(Notify notify, Latencies& result) {
    HandOver handOver{notify};
    std::thread sender(HandOverRegularly, std::ref(handOver));
    std::vector<double> latencies;
    std::unique_lock lock(handOver.mutex);
    const auto arrives = [&] { return handOver.time != 0; };
    while (latencies.size() < kFrames) {
        handOver.condition.wait_for(lock, std::chrono::milliseconds(kTimeoutMs), arrives);
        latencies.push_back(static_cast<double>(Now() - handOver.time));
        handOver.time = 0;
    }
    handOver.isOver = true;
    lock.unlock();
    sender.join();
    result.AddRound(latencies);
}

void Add(Report& report, const std::string& name, const std::vector<double>& value,
         const std::string& baseName, const std::vector<double>& base,
         std::optional<double> limit = std::nullopt) {
    report.Add({"latency", name, "us", value, baseName, base, limit});
}

}  // namespace

void MeasureLatency(Report& report) {
    Simulator::Get().ConfigureCameras(1, kCamera);
    const LibraryHost libraryHost;
    const BareHost bareHost;
    const int64_t clockOffset = ClockOffset(bareHost);
    Latencies library;
    Latencies libraryAgain;
    Latencies bare;
    Latencies handOver;
    Latencies slowHandOver;
    const auto runLibrary = [&](Latencies& result) {
        RunRound<LibraryCamera>(libraryHost, clockOffset, result);
    };
    Interleave(
        kRounds, [&] { runLibrary(library); },
        [&] { RunRound<BareCamera>(bareHost, clockOffset, bare); });
    Interleave(
        kRounds, [&] { runLibrary(libraryAgain); },
        [&] {
            RunHandOverRound(Notify::WithoutMutex, handOver);
            RunHandOverRound(Notify::WithMutex, slowHandOver);
        });
    const std::string p50 = "frame to GetBuffer, p50";
    const std::string p99 = "frame to GetBuffer, p99";
    const std::string variable = "bare condition variable";
    const std::string heldVariable = "the same, mutex held";
    Add(report, p50, library.p50, "bare EventGetData", bare.p50, 1.1);
    Add(report, p50, libraryAgain.p50, variable, handOver.p50, 1.1);
    Add(report, p50, libraryAgain.p50, heldVariable, slowHandOver.p50, 1.1);
    Add(report, p99, library.p99, "bare EventGetData", bare.p99);
    Add(report, p99, libraryAgain.p99, variable, handOver.p99);
    Add(report, p99, libraryAgain.p99, heldVariable, slowHandOver.p99);
}

}  // namespace Bench

// From the call that fires an event of a camera to the callback that is registered for it, and to a
// thread that waits in EventGetData. The events come one at a time, when the thread waits again.
#include <atomic>
#include <chrono>
#include <semaphore.h>
#include <thread>

#include "bench/groups.h"
#include "bench/measure.h"
#include "bench/session.h"

namespace Bench {

namespace {

constexpr int kRounds = 11;
constexpr int kEvents = 1000;
constexpr std::chrono::microseconds kPause(200);

// Where the thread that gets the events tells the one that fires them.
class Arrival {
  public:
    Arrival() { sem_init(&happened_, 0, 0); }
    ~Arrival() { sem_destroy(&happened_); }
    Arrival(const Arrival&) = delete;
    Arrival& operator=(const Arrival&) = delete;

    void Tell() {
        time_ = Now();
        sem_post(&happened_);
    }

    int64_t Await() {
        while (sem_wait(&happened_) != 0) {
        }
        return time_;
    }

  private:
    sem_t happened_{};
    std::atomic<int64_t> time_{0};
};

struct Latencies {
    std::vector<double> p50;
    std::vector<double> p99;
};

void FireEvents(Arrival& arrival, Latencies& result) {
    const std::string camera = CameraId(0);
    std::vector<double> latencies;
    for (int i = 0; i < kEvents; ++i) {
        std::this_thread::sleep_for(kPause);
        const int64_t start = Now();
        Simulator::Get().FireEvent(camera);
        latencies.push_back(static_cast<double>(arrival.Await() - start) / 1000);
    }
    result.p50.push_back(Percentile(latencies, 0.5));
    result.p99.push_back(Percentile(latencies, 0.99));
}

void OnEvent(const void* /*data*/, size_t /*size*/, void* arrival) {
    static_cast<Arrival*>(arrival)->Tell();
}

void RunLibraryRound(const LibraryHost& host, Latencies& result) {
    Arrival arrival;  // outlives the thread of the events, which is the camera's
    const LibraryCamera camera(host);
    Require(
        camera.Device().RegisterEvent(GenTL::EVENT_MODULE, OnEvent, &arrival) == ZelCamErr_Success,
        "no event");
    FireEvents(arrival, result);
    camera.Device().UnRegisterEvent(GenTL::EVENT_MODULE, OnEvent, &arrival);
}

// Until the wait is killed.
void GetEvents(GenTL::EVENT_HANDLE event, Arrival& arrival) {
    uint64_t data = 0;
    size_t size = sizeof data;
    while (Simulator::Get().EventGetData(event, &data, &size, GENTL_INFINITE) == 0) {
        arrival.Tell();
        size = sizeof data;
    }
}

void RunBareRound(const BareHost& host, Latencies& result) {
    const Simulator& gentl = Simulator::Get();
    const BareCamera camera(host);
    GenTL::EVENT_HANDLE event = nullptr;
    Check(gentl.GCRegisterEvent(camera.Device(), GenTL::EVENT_MODULE, &event), "GCRegisterEvent");
    Arrival arrival;
    std::thread thread(GetEvents, event, std::ref(arrival));
    FireEvents(arrival, result);
    gentl.EventKill(event);
    thread.join();
    gentl.GCUnregisterEvent(camera.Device(), GenTL::EVENT_MODULE);
}

}  // namespace

void MeasureEvents(Report& report) {
    Simulator::Get().ConfigureCameras(1, "");
    const LibraryHost libraryHost;
    const BareHost bareHost;
    Latencies library;
    Latencies bare;
    Interleave(
        kRounds, [&] { RunLibraryRound(libraryHost, library); },
        [&] { RunBareRound(bareHost, bare); });
    report.Add(
        {"events", "event to its callback, p50", "us", library.p50, "bare EventGetData", bare.p50});
    report.Add(
        {"events", "event to its callback, p99", "us", library.p99, "bare EventGetData", bare.p99});
}

}  // namespace Bench

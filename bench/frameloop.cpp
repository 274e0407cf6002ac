// The frame loop of an application, through the library and without it, over the same camera:
//
//   library  GetBuffer, GetImage, QueueBuffer
//   bare     EventGetData, DSGetBufferInfo for timestamp and frame id (what GetImage refreshes),
//            DSQueueBuffer
//
// One iteration is one frame. Time is the CPU time of the thread that runs the loop; the generator
// of the frames has its own.
#include <sstream>

#include <benchmark/benchmark.h>

#include "ZelCam/ZelCam.h"
#include "bench/simulator.h"

namespace Bench {

namespace {

constexpr size_t kBuffers = 16;
constexpr uint64_t kTimeoutMs = 5000;

struct Camera {
    unsigned width;
    unsigned height;
    bool noFill;
};

constexpr Camera kVgaNoFill{640, 480, true};
constexpr Camera kVga{640, 480, false};
constexpr Camera k12Megapixels{4096, 3000, false};

// One camera that delivers as fast as it can.
void ConfigureCamera(const Camera& camera) {
    std::ostringstream xml;
    xml << R"(<ZelSim><Interface id="BENCH" type="GEV"><Camera id="BENCH-CAM" frameRate="0" )"
        << R"(pixelFormat="Mono8" width=")" << camera.width << R"(" height=")" << camera.height
        << R"(" noFill=")" << (camera.noFill ? "true" : "false") << R"("/></Interface></ZelSim>)";
    Simulator::Get().Configure(xml.str());
}

// A frame is lost when no buffer is queued in time; the frames counted are those delivered.
void ReportFrames(benchmark::State& state) {
    state.counters["frames/s"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

struct ReleaseObject {
    template <typename T>
    void operator()(T* object) const {
        object->Release();
    }
};

void CheckLibrary(bool condition, const char* what) {
    if (!condition) throw std::runtime_error(what);
}

void LibraryLoop(benchmark::State& state, const Camera& camera) {
    ConfigureCamera(camera);
    const std::unique_ptr<ZelCam::System, ReleaseObject> system(ZelCam_GetSystem());
    CheckLibrary(system != nullptr, "no System");
    ZelCam::Interface* const iface = system->GetInterfaceById("BENCH");
    CheckLibrary(iface != nullptr, "no interface");
    ZelCam::Device* const device =
        ZelCam_CreateDevice(iface->GetFirstDeviceInfo(), ZelCam::DeviceAccess::Exclusive, nullptr);
    CheckLibrary(device != nullptr, "the camera does not open");
    ZelCam::Stream* const stream = device->GetStreamByIndex(0);
    CheckLibrary(stream != nullptr, "no stream");
    CheckLibrary(stream->AllocBufferQueue(nullptr, kBuffers) == ZelCamErr_Success, "no buffers");
    CheckLibrary(stream->StartAcquisition(ZelCam::Infinite, 0) == ZelCamErr_Success, "no start");

    for (auto _ : state) {
        ZelCam::Buffer* const buffer = stream->GetBuffer(kTimeoutMs, nullptr);
        if (buffer == nullptr) return state.SkipWithError("no frame");
        benchmark::DoNotOptimize(buffer->GetImage());
        stream->QueueBuffer(buffer);
    }
    ReportFrames(state);
    stream->StopAcquisition(ZelCam::StopFlag_Kill);
}

// An open stream of the camera, without the library.
class BareStream {
  public:
    BareStream() {
        Check(gentl_.GCInitLib(), "GCInitLib");
        Check(gentl_.TLOpen(&system_), "TLOpen");
        Check(gentl_.TLUpdateInterfaceList(system_, nullptr, 1000), "TLUpdateInterfaceList");
        Check(gentl_.TLOpenInterface(system_, "BENCH", &iface_), "TLOpenInterface");
        Check(gentl_.IFUpdateDeviceList(iface_, nullptr, 1000), "IFUpdateDeviceList");
        Check(gentl_.IFOpenDevice(iface_, "BENCH-CAM", GenTL::DEVICE_ACCESS_EXCLUSIVE, &device_),
              "IFOpenDevice");
        char id[256];
        size_t size = sizeof id;
        Check(gentl_.DevGetDataStreamID(device_, 0, id, &size), "DevGetDataStreamID");
        Check(gentl_.DevOpenDataStream(device_, id, &stream_), "DevOpenDataStream");
        Check(gentl_.GCRegisterEvent(stream_, GenTL::EVENT_NEW_BUFFER, &event_), "GCRegisterEvent");
        QueueBuffers();
        Check(gentl_.DSStartAcquisition(stream_, GenTL::ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE),
              "DSStartAcquisition");
    }

    ~BareStream() {
        gentl_.DSStopAcquisition(stream_, GenTL::ACQ_STOP_FLAGS_KILL);
        gentl_.DSClose(stream_);
        gentl_.DevClose(device_);
        gentl_.IFClose(iface_);
        gentl_.TLClose(system_);
        gentl_.GCCloseLib();
    }

    BareStream(const BareStream&) = delete;
    BareStream& operator=(const BareStream&) = delete;

    bool NextFrame() const {
        GenTL::EVENT_NEW_BUFFER_DATA data;
        size_t size = sizeof data;
        if (gentl_.EventGetData(event_, &data, &size, kTimeoutMs) != 0) return false;
        benchmark::DoNotOptimize(Info(data.BufferHandle, GenTL::BUFFER_INFO_TIMESTAMP));
        benchmark::DoNotOptimize(Info(data.BufferHandle, GenTL::BUFFER_INFO_FRAMEID));
        gentl_.DSQueueBuffer(stream_, data.BufferHandle);
        return true;
    }

  private:
    void QueueBuffers() const {
        size_t payload = 0;
        size_t size = sizeof payload;
        GenTL::INFO_DATATYPE type = 0;
        Check(gentl_.DSGetInfo(stream_, GenTL::STREAM_INFO_PAYLOAD_SIZE, &type, &payload, &size),
              "DSGetInfo");
        for (size_t i = 0; i < kBuffers; ++i) {
            GenTL::BUFFER_HANDLE buffer = nullptr;
            Check(gentl_.DSAllocAndAnnounceBuffer(stream_, payload, nullptr, &buffer),
                  "DSAllocAndAnnounceBuffer");
            Check(gentl_.DSQueueBuffer(stream_, buffer), "DSQueueBuffer");
        }
    }

    uint64_t Info(GenTL::BUFFER_HANDLE buffer, GenTL::BUFFER_INFO_CMD command) const {
        GenTL::INFO_DATATYPE type = 0;
        uint64_t value = 0;
        size_t size = sizeof value;
        gentl_.DSGetBufferInfo(stream_, buffer, command, &type, &value, &size);
        return value;
    }

    const Simulator& gentl_ = Simulator::Get();
    GenTL::TL_HANDLE system_ = nullptr;
    GenTL::IF_HANDLE iface_ = nullptr;
    GenTL::DEV_HANDLE device_ = nullptr;
    GenTL::DS_HANDLE stream_ = nullptr;
    GenTL::EVENT_HANDLE event_ = nullptr;
};

void BareLoop(benchmark::State& state, const Camera& camera) {
    ConfigureCamera(camera);
    const BareStream stream;
    for (auto _ : state) {
        if (!stream.NextFrame()) return state.SkipWithError("no frame");
    }
    ReportFrames(state);
}

}  // namespace

BENCHMARK_CAPTURE(BareLoop, vga_nofill, kVgaNoFill)->UseRealTime();
BENCHMARK_CAPTURE(LibraryLoop, vga_nofill, kVgaNoFill)->UseRealTime();
BENCHMARK_CAPTURE(BareLoop, vga, kVga)->UseRealTime();
BENCHMARK_CAPTURE(LibraryLoop, vga, kVga)->UseRealTime();
BENCHMARK_CAPTURE(BareLoop, 12mp, k12Megapixels)->UseRealTime();
BENCHMARK_CAPTURE(LibraryLoop, 12mp, k12Megapixels)->UseRealTime();

}  // namespace Bench

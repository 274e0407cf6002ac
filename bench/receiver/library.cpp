#include <atomic>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <thread>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"
#include "bench/receiver/receiver.h"
#include "tests/support/holder.h"

namespace BenchReceiver {

namespace {

using Clock = std::chrono::steady_clock;
using ZelTest::Holder;

constexpr size_t kBuffers = 50;  // as many as the other program has
constexpr uint64_t kPatienceMs = 300;

void Require(ZelCamErr err, const char* what) {
    if (err != ZelCamErr_Success)
        throw std::runtime_error(std::string(what) + " failed: " + std::to_string(err));
}

// One camera and its stream.
class Receiver {
  public:
    Receiver(ZelCam::DeviceInfo* info, const Options& options) {
        ZelCamErr err = ZelCamErr_Success;
        device_.reset(ZelCam_CreateDevice(info, ZelCam::DeviceAccess::Exclusive, &err));
        Require(err, "opening the camera");
        features_ = device_->GetCameraParameters(&err);
        Require(err, "the camera's features");
        stream_.reset(device_->GetStreamByIndex(0));
        Require(stream_ ? ZelCamErr_Success : ZelCamErr_Error, "opening the stream");
        transport_ = stream_->GetParameters(&err);
        Require(err, "the stream's features");
        if (options.socketBuffer != 0)
            Require(transport_->SetIntegerValue("GevStreamReceiveSocketSize", options.socketBuffer),
                    "GevStreamReceiveSocketSize");
        if (!options.method.empty())
            Require(transport_->SetEnumValueStr("GevStreamReceiveMethod", options.method.c_str()),
                    "GevStreamReceiveMethod");
        Require(device_->RegisterEvent2(ZelCam::EventType_Module, OnModuleEvent, this),
                "RegisterEvent2");
    }
    ~Receiver() { device_->UnRegisterEvent2(ZelCam::EventType_Module, OnModuleEvent, this); }
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    void Start() {
        Require(features_->SetIntegerValue("TLParamsLocked", 1), "TLParamsLocked");
        Require(stream_->AllocBufferQueue(nullptr, kBuffers), "buffers");
        Require(stream_->StartAcquisition(ZelCam::Infinite, ZelCam::StartFlag_Default), "start");
        Require(features_->ExecuteCommand("AcquisitionStart"), "AcquisitionStart");
    }

    // False when nothing came in time.
    bool Next() {
        ZelCam::Buffer* const buffer = stream_->GetBuffer(kPatienceMs, nullptr);
        if (buffer == nullptr) return false;
        const int64_t now = RealTime();
        arrivals_.push_back({buffer->GetFrameID(), now});
        if (buffer->IsIncomplete()) ++incomplete_;
        stream_->QueueBuffer(buffer);
        return true;
    }

    // With the frames that are on their way.
    void Stop() {
        features_->ExecuteCommand("AcquisitionStop");
        while (Next()) {
        }
        stream_->StopAcquisition(ZelCam::StopFlag_Default);
        features_->SetIntegerValue("TLParamsLocked", 0);
    }

    bool IsLost() const { return lostAt_ != 0; }

    void Print() const {
        std::printf("frames=%zu\nincomplete=%zu\n", arrivals_.size(), incomplete_);
        if (IsLost()) std::printf("lost-at-ns=%lld\n", static_cast<long long>(lostAt_));
        for (const char* const name :
             {"GevStreamSeenPacketCount", "GevStreamResendPacketCount",
              "GevStreamResentPacketCount", "GevStreamUnavailablePacketCount",
              "GevStreamLostPacketCount", "GevStreamSkippedBlockCount",
              "GevStreamEngineUnderrunCount", "GevStreamSocketDropCount",
              "GevStreamReceiveSocketSize"}) {
            const int64_t value = transport_->GetIntegerValue(name, nullptr);
            std::printf("%s=%lld\n", name, static_cast<long long>(value));
        }
        std::printf("GevStreamReceiveMethodInUse=%s\n",
                    transport_->GetEnumValueStr("GevStreamReceiveMethodInUse", nullptr));
        std::printf("GevStreamRealTime=%d\n",
                    transport_->GetBooleanValue("GevStreamRealTime", nullptr) ? 1 : 0);
    }

    const std::vector<Arrival>& Arrivals() const { return arrivals_; }

  private:
    static void OnModuleEvent(uint32_t /*type*/, const void* /*data*/, size_t /*size*/,
                              void* receiver) {
        static_cast<Receiver*>(receiver)->lostAt_ = RealTime();
    }

    Holder<ZelCam::Device> device_;
    Holder<ZelCam::Stream> stream_;
    ZelGenParam::Array* features_ = nullptr;
    ZelGenParam::Array* transport_ = nullptr;
    std::vector<Arrival> arrivals_;
    size_t incomplete_ = 0;
    std::atomic<int64_t> lostAt_{0};
};

std::vector<ZelCam::DeviceInfo*> FindCameras(ZelCam::System& system, size_t count) {
    constexpr uint64_t kTimeoutMs = 1000;
    std::vector<ZelCam::DeviceInfo*> found;
    const Holder<ZelCam::List<ZelCam::Interface>> interfaces(
        system.GetInterfaceList(ZelCam::InterfaceType::GEV));
    for (auto* interface = interfaces->GetFirst(); interface != nullptr;
         interface = interfaces->GetNext()) {
        interface->ReEnumerateDevices(nullptr, kTimeoutMs);
        const Holder<ZelCam::List<ZelCam::DeviceInfo>> cameras(interface->GetDeviceInfoList());
        for (auto* info = cameras->GetFirst(); info != nullptr && found.size() < count;
             info = cameras->GetNext())
            found.push_back(info);
    }
    if (found.size() < count) throw std::runtime_error("there are not so many cameras");
    return found;
}

void Receive(Receiver& receiver, const Options& options) {
    const auto end = Clock::now() + std::chrono::duration<double>(options.seconds);
    while (!receiver.IsLost() && (options.untilLost || Clock::now() < end))
        receiver.Next();
    if (!receiver.IsLost()) receiver.Stop();
}

}  // namespace

void ReceiveByLibrary(const Options& options) {
    const Holder<ZelCam::System> system(ZelCam_GetSystem());
    if (!system) throw std::runtime_error("the producer cannot be loaded");
    const int64_t begin = RealTime();
    std::vector<std::unique_ptr<Receiver>> receivers;
    for (ZelCam::DeviceInfo* const info : FindCameras(*system, options.cameras))
        receivers.push_back(std::make_unique<Receiver>(info, options));
    for (const auto& receiver : receivers)
        receiver->Start();
    std::vector<std::thread> threads;
    for (size_t i = 1; i < receivers.size(); ++i)
        threads.emplace_back([&, i] { Receive(*receivers[i], options); });
    Receive(*receivers[0], options);
    for (std::thread& thread : threads)
        thread.join();

    for (const auto& receiver : receivers)
        receiver->Print();
    const std::vector<Arrival>& arrivals = receivers[0]->Arrivals();
    if (!arrivals.empty())
        std::printf("first-frame-ns=%lld\n", static_cast<long long>(arrivals[0].time - begin));
    WriteArrivals(options.arrivals, arrivals);
}

}  // namespace BenchReceiver

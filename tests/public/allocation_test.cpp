// A session with everything in it, run again and again with each allocation of the process failing
// in turn, in the library, the engine and the simulated producer, on the thread that calls them:
// nothing crashes or hangs, nothing leaks, no handle stays open, and an operation that failed can
// be called again.
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <system_error>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/holder.h"
#include "tests/support/simulator.h"

namespace {

using ZelTest::AllocationFaults;

constexpr const char* kCameras =
    "<ZelSim><Interface id='eth0' type='GEV'>"
    "<Camera id='left' model='L' serial='1' width='64' height='48' frameRate='0'/>"
    "<Camera id='right' model='R' serial='2' width='64' height='48' frameRate='0'/>"
    "</Interface></ZelSim>";
constexpr uint64_t kPatience = 30000;  // milliseconds
constexpr uint32_t kRemoteDevice = 4;
constexpr uint32_t kModule = 5;
constexpr uint64_t kNever = UINT64_MAX;  // the number of no allocation

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(ZELCAM_EMULATED)
constexpr uint64_t kUsualStep = 101;  // sessions take many times as long
constexpr size_t kFailingShare = 6;
#else
constexpr uint64_t kUsualStep = 5;
constexpr size_t kFailingShare = 2;
#endif

// Counts what it is called for, and waits for it.
class Subscriber final : public ZelGenParam::ParamEventSink {
  public:
    static void Callback(uint32_t /*type*/, const void* /*data*/, size_t /*size*/, void* self) {
        static_cast<Subscriber*>(self)->Add();
    }
    void OnParamChanged(ZelGenParam::Param* /*param*/) override { Add(); }

    // Whether one comes, within a moment.
    bool Wait(size_t former) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::milliseconds(100),
                                 [&] { return count_ > former; });
    }
    size_t Count() {
        const std::lock_guard lock(mutex_);
        return count_;
    }

  private:
    void Add() {
        const std::lock_guard lock(mutex_);
        ++count_;
        changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    size_t count_ = 0;
};

// For the message of a crash.
uint64_t number = 0;

[[noreturn]] void SayWhere(int signal) {
    std::fprintf(stderr, "Signal %d with allocation %llu failing, asked for by\n", signal,
                 static_cast<unsigned long long>(number));
    AllocationFaults::PrintPlace();
    std::_Exit(1);
}

class AllocationTest : public testing::Test {
  protected:
    void SetUp() override {
        std::signal(SIGABRT, SayWhere);
        std::signal(SIGSEGV, SayWhere);
        file = (std::filesystem::path(testing::TempDir()) /
                ("allocation-" + std::to_string(getpid()) + ".xml"))
                   .string();
        // What is made once in a process is not to be there in the first session only.
        for (int i = 0; i < 3; ++i)
            RunSession(kNever, 1);
    }
    void TearDown() override { std::filesystem::remove(file); }

    // A session in which `count` allocations from number `first` on fail; how many it made.
    uint64_t RunSession(uint64_t first, uint64_t count);

    // Whether blocks are left each time.
    bool Leaks(uint64_t first, uint64_t count);

    // Sessions with those from each number on failing, `step` apart; stops at what goes wrong.
    void FailInTurn(uint64_t step, uint64_t count);

    void Session();
    void UseInterface(ZelCam::Interface& iface);
    void UseDevice(ZelCam::Device& device);
    ZelCam::Stream* OpenStream(ZelCam::Device& device);
    void UseFeatures(ZelGenParam::Array& features);
    void UseStream(ZelCam::Device& device, ZelCam::Stream& stream);
    void UseEvents(ZelCam::Device& device);

    // One operation, in which allocations may fail; it is called again when one failed. What takes
    // an error pointer gets one, and has a result or an error.
    template <typename Operation>
    auto Do(const char* name, Operation operation);

    // The same for an operation that says by its result whether it worked.
    template <typename Operation>
    auto Once(const char* name, Operation& operation, bool* failed);

    ZelTest::Simulator simulator;
    std::string file;
    Subscriber subscriber;
    bool met = false;      // whether one failed in the last operation
    bool lasting = false;  // the failures of this session, over more than one operation
    struct Outcome {
        bool failed = false;
        bool went = false;
    };
    std::map<std::string, Outcome> outcomes;  // filled in the first sessions
};

// With allocations that count.
template <typename Operation>
auto Call(Operation& operation, ZelCamErr* err) {
    const AllocationFaults::Counted counted;
    if constexpr (std::is_invocable_v<Operation, ZelCamErr*>)
        return operation(err);
    else
        return operation();
}

template <typename Operation>
auto AllocationTest::Once(const char* name, Operation& operation, bool* failed) {
    constexpr auto kUntouched = static_cast<ZelCamErr>(77);
    ZelCamErr err = kUntouched;
    decltype(Call(operation, &err)) result{};
    try {
        result = Call(operation, &err);
    } catch (const std::exception& e) {
        ADD_FAILURE() << name << " throws " << e.what();
    }
    if constexpr (std::is_pointer_v<decltype(result)>) {
        *failed = result == nullptr;
        if (err != kUntouched && *failed != (err != ZelCamErr_Success))
            ADD_FAILURE() << name << ", code " << err;
    } else if constexpr (std::is_same_v<decltype(result), ZelCamErr>) {
        *failed = result != ZelCamErr_Success;
    } else {
        *failed = err != kUntouched && err != ZelCamErr_Success;
    }
    return result;
}

template <typename Operation>
auto AllocationTest::Do(const char* name, Operation operation) {
    const uint64_t before = AllocationFaults::Failed();
    bool failed = false;
    auto result = Once(name, operation, &failed);
    met = AllocationFaults::Failed() != before;
    Outcome& outcome = outcomes[name];
    if (met) (failed ? outcome.failed : outcome.went) = true;
    if (lasting || !failed) return result;
    EXPECT_TRUE(met) << name << " failed though it had all memory";
    result = Once(name, operation, &failed);
    EXPECT_FALSE(failed) << name << " fails for good";
    return result;
}

void AllocationTest::Session() {
    ZelCam::System* const system = Do("GetSystem", [] { return ZelCam_GetSystem(); });
    if (system == nullptr) return;
    Do("System::GetDisplayName", [&] { return system->GetDisplayName(); });
    Do("System::GetInterfaceList",
       [&] { return system->GetInterfaceList(ZelCam::InterfaceType::GEV); });
    if (auto* const iface =
            Do("System::GetInterfaceById", [&] { return system->GetInterfaceById("eth0"); }))
        UseInterface(*iface);
    if (auto* const own = Do("CreateDevice", [](ZelCamErr* err) {
            return ZelCam_CreateDevice(nullptr, ZelCam::DeviceAccess::Control, err);
        })) {
        Do("Device::GetStreamByIndex", [&] { return own->GetStreamByIndex(0); });
        const AllocationFaults::Counted counted;
        own->Release();
    }
    Do("System::CreateDeviceFromConfig", [&](ZelCamErr* err) {
        ZelCam::Device* const device = system->CreateDeviceFromConfig(file.c_str(), err);
        // The opened camera is there also when the configuration does not load.
        if (device == nullptr || *err == ZelCamErr_Success) return device;
        device->Release();
        return static_cast<ZelCam::Device*>(nullptr);
    });
    const AllocationFaults::Counted counted;
    system->Release();
}

void AllocationTest::UseInterface(ZelCam::Interface& iface) {
    Do("Interface::GetType", [&] { return iface.GetType(); });
    Do("Interface::GetDescription", [&] { return iface.GetDescription(); });
    Do("Interface::RegisterEvent",
       [&] { return iface.RegisterEvent2(kModule, Subscriber::Callback, &subscriber); });
    Do("Interface::ReEnumerateDevices", [&] {
        try {
            return iface.ReEnumerateDevices(nullptr, 100);
        } catch (const std::exception&) {
            return ZelCamErr_Error;
        }
    });
    Do("Interface::GetDeviceInfoList", [&] { return iface.GetDeviceInfoList(); });
    auto* const info =
        Do("Interface::GetDeviceInfoById", [&] { return iface.GetDeviceInfoById("left"); });
    if (info == nullptr) return;
    Do("DeviceInfo::GetVendor", [&] { return info->GetVendor(); });
    Do("DeviceInfo::GetAccessStatus", [&] { return info->GetAccessStatus(); });
    Do("DeviceInfo::GetIPAddress", [&](ZelCamErr* err) { return info->GetIPAddress(err); });
    auto* const device = Do("CreateDevice", [&](ZelCamErr* err) {
        return ZelCam_CreateDevice(info, ZelCam::DeviceAccess::Exclusive, err);
    });
    if (device == nullptr) return;
    UseDevice(*device);
    const AllocationFaults::Counted counted;
    device->Release();
}

void AllocationTest::UseDevice(ZelCam::Device& device) {
    Do("Device::RegisterEvent",
       [&] { return device.RegisterEvent2(kModule, Subscriber::Callback, &subscriber); });
    auto* const features = Do("Device::GetCameraParameters",
                              [&](ZelCamErr* err) { return device.GetCameraParameters(err); });
    if (features != nullptr) UseFeatures(*features);
    Do("Device::GetTransportParameters",
       [&](ZelCamErr* err) { return device.GetTransportParameters(err); });
    Do("Device::SaveConfiguration", [&] { return device.SaveConfiguration(file.c_str()); });
    Do("Device::LoadConfiguration", [&] { return device.LoadConfiguration(file.c_str()); });
    if (auto* const stream = OpenStream(device); stream != nullptr && features != nullptr)
        UseStream(device, *stream);
}

// A stream that cannot have its event is opened all the same, and gives no frames.
ZelCam::Stream* AllocationTest::OpenStream(ZelCam::Device& device) {
    const auto open = [&] { return device.GetStreamByIndex(0); };
    auto* const stream = Do("Device::GetStreamByIndex", open);
    if (stream == nullptr || !met) return stream;
    stream->Release();
    return Do("Device::GetStreamByIndex", open);
}

void AllocationTest::UseFeatures(ZelGenParam::Array& features) {
    Do("Array::GetParamByIndex", [&](ZelCamErr* err) { return features.GetParamByIndex(0, err); });
    Do("Array::GetStringValue",
       [&](ZelCamErr* err) { return features.GetStringValue("DeviceModelName", err); });
    Do("Array::SetStringValue", [&] { return features.SetStringValue("DeviceUserID", "me"); });
    Do("Array::SetFloatValue", [&] { return features.SetFloatValue("ExposureTime", 5000); });
    Do("Array::GetEnumValueStr",
       [&](ZelCamErr* err) { return features.GetEnumValueStr("PixelFormat", err); });
    auto* const width =
        Do("Array::GetInt", [&](ZelCamErr* err) { return features.GetInt("Width", err); });
    if (width == nullptr) return;
    Do("Param::RegisterEventSink", [&] { return width->RegisterEventSink(&subscriber); });
    Do("Int::SetValue", [&] { return width->SetValue(32); });
    Do("Int::GetMax", [&](ZelCamErr* err) { return width->GetMax(err); });
    Do("Param::GetDisplayName", [&] { return width->GetDisplayName(); });
    auto* const format =
        Do("Array::GetEnum", [&](ZelCamErr* err) { return features.GetEnum("PixelFormat", err); });
    if (format == nullptr) return;
    Do("Enum::GetEnumEntryByIndex", [&] { return format->GetEnumEntryByIndex(0); });
    Do("Enum::SetValueStr", [&] { return format->SetValueStr("Mono8"); });
    auto* const root =
        Do("Array::GetRootCategory", [&](ZelCamErr* err) { return features.GetRootCategory(err); });
    if (root == nullptr) return;
    Do("Category::GetParamByIndex", [&](ZelCamErr* err) { return root->GetParamByIndex(0, err); });
}

void AllocationTest::UseStream(ZelCam::Device& device, ZelCam::Stream& stream) {
    auto& features = *device.GetCameraParameters(nullptr);
    Do("Array::SetBooleanValue", [&] { return features.SetBooleanValue("ChunkModeActive", true); });
    Do("Stream::AllocBufferQueue", [&] { return stream.AllocBufferQueue(nullptr, 2); });
    static uint8_t memory[64 * 48 + 256];
    auto* const own = Do("Stream::SetBuffer", [&](ZelCamErr* err) {
        return stream.SetBuffer(memory, sizeof memory, nullptr, err);
    });
    Do("Stream::GetParameters", [&](ZelCamErr* err) { return stream.GetParameters(err); });
    Do("Array::SetEnumValueStr",
       [&] { return features.SetEnumValueStr("EventSelector", "ExposureEnd"); });
    Do("Array::SetValueStr",
       [&] { return features.SetValueStr("EventNotification", "On", nullptr); });
    Do("Array::GetValueStr",
       [&](ZelCamErr* err) { return features.GetValueStr("EventNotification", err); });
    Do("Stream::StartAcquisition", [&] { return stream.StartAcquisition(ZelCam::Infinite, 0); });
    Do("Array::SetIntegerValue", [&] { return features.SetIntegerValue("TLParamsLocked", 1); });
    if (Do("Array::ExecuteCommand", [&] { return features.ExecuteCommand("AcquisitionStart"); }) ==
        ZelCamErr_Success) {
        for (int i = 0; i < 4; ++i) {
            auto* const buffer = Do("Stream::GetBuffer", [&](ZelCamErr* err) {
                return stream.GetBuffer(kPatience, err);
            });
            if (buffer == nullptr) continue;
            Do("Buffer::GetImage", [&] { return buffer->GetImage(); });
            Do("Buffer::AttachChunks", [&] { return buffer->AttachChunks(); });
            Do("Stream::QueueBuffer", [&] { return stream.QueueBuffer(buffer); });
        }
        UseEvents(device);
        Do("Array::ExecuteCommand", [&] { return features.ExecuteCommand("AcquisitionStop"); });
    }
    Do("Stream::StopAcquisition", [&] { return stream.StopAcquisition(0); });
    Do("Array::SetIntegerValue", [&] { return features.SetIntegerValue("TLParamsLocked", 0); });
    if (own != nullptr) Do("Stream::RevokeBuffer", [&] { return stream.RevokeBuffer(own); });
    const AllocationFaults::Counted counted;
    stream.Release();
}

// One that is dropped does not keep the next from coming.
void AllocationTest::UseEvents(ZelCam::Device& device) {
    if (Do("Device::RegisterEvent", [&] {
            return device.RegisterEvent2(kRemoteDevice, Subscriber::Callback, &subscriber);
        }) != ZelCamErr_Success)
        return;
    const size_t former = subscriber.Count();
    bool came = false;
    for (int i = 0; i < 100 && !came; ++i) {
        EXPECT_EQ(simulator.fire("left", kModule, 1, "camera", 7), 0);
        came = subscriber.Wait(former);
    }
    EXPECT_TRUE(came);
}

uint64_t AllocationTest::RunSession(uint64_t first, uint64_t count) {
    number = first;
    lasting = count > 1;
    EXPECT_EQ(simulator.configure(kCameras), 0);
    AllocationFaults::Begin(first, count);
    Session();
    const uint64_t made = AllocationFaults::End();
    EXPECT_EQ(simulator.openHandles(), 0U);
    return made;
}

// How far apart the allocations are that fail alone, and a seventh of how far apart those are after
// which others fail, too; with ZELCAM_EVERY_CALL set, each fails alone. The variable
// ZELCAM_FIRST_ALLOCATION is where to begin.
uint64_t Step(uint64_t usual) {
    return std::getenv("ZELCAM_EVERY_CALL") != nullptr ? 1 : usual;
}

// What was lost, and is kept for the next time, comes back in a session that has all memory. What
// is made once, a stack for one more thread at a time for instance, does not grow again.
bool AllocationTest::Leaks(uint64_t first, uint64_t count) {
    for (int i = 0; i < 3; ++i) {
        RunSession(kNever, 1);
        const int64_t live = AllocationFaults::Live();
        RunSession(first, count);
        // The archive library loses a block or two of its own when it has no memory for another.
        const bool excused = count > 1 || AllocationFaults::FailedIn("libzip");
        RunSession(kNever, 1);
        if (AllocationFaults::Live() <= live + (excused ? 2 : 0)) return false;
    }
    return true;
}

void AllocationTest::FailInTurn(uint64_t step, uint64_t count) {
    int64_t live = AllocationFaults::Live();
    const uint64_t made = RunSession(kNever, 1);
    const char* const first = std::getenv("ZELCAM_FIRST_ALLOCATION");
    uint64_t sessions = 0;
    for (uint64_t n = first != nullptr ? std::strtoull(first, nullptr, 10) : 0; n < made;
         n += step, ++sessions) {
        RunSession(n, count);
        if (AllocationFaults::Live() != live) {
            EXPECT_FALSE(Leaks(n, count));
            live = AllocationFaults::Live();
        }
        if (!HasFailure()) continue;
        std::printf("With allocation %llu failing, asked for by\n",
                    static_cast<unsigned long long>(n));
        std::fflush(stdout);
        AllocationFaults::PrintPlace();
        return;
    }
    std::printf("%llu sessions of some %llu allocations\n",
                static_cast<unsigned long long>(sessions), static_cast<unsigned long long>(made));
}

}  // namespace

TEST_F(AllocationTest, EachAllocationFailingInTurn) {
    FailInTurn(Step(kUsualStep), 1);
    // The session would prove little if it had all memory.
    size_t failing = 0;
    for (const auto& [name, outcome] : outcomes)
        if (outcome.failed) ++failing;
    EXPECT_GE(failing, outcomes.size() / kFailingShare);
}

// Operations are not called again here, and what ends the session has no memory either.
TEST_F(AllocationTest, AllocationsFailingForAWhile) {
    for (const uint64_t count : {4U, 30U, 1000U})
        FailInTurn(7 * Step(kUsualStep), count);
}

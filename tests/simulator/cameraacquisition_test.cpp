// When cameras take frames: what starts and ends them, what must not change meanwhile, and at which
// times they come.

#include <future>
#include <thread>

#include <gmock/gmock.h>

#include "tests/simulator/cameranodestest.h"
#include "tests/simulator/producer.h"

using namespace GenTL;
using ::testing::ElementsAre;

namespace {

constexpr uint64_t kAcquisitionStart = 0x2204;

class CameraAcquisitionTest : public CameraNodesTest {
  protected:
    bool IsWritable(const char* name) { return GENAPI_NAMESPACE::IsWritable(nodes->Node(name)); }
    bool IsDone(const char* name) {
        return GENAPI_NAMESPACE::CCommandPtr(nodes->Node(name))->IsDone();
    }
    double Float(const char* name) {
        return GENAPI_NAMESPACE::CFloatPtr(nodes->Node(name))->GetValue();
    }
    GC_ERROR Write(uint64_t address, uint32_t value) {
        size_t size = sizeof value;
        return p.GCWritePort(Remote(), address, &value, &size);
    }
    bool Is(const char* status) {
        nodes->Set("AcquisitionStatusSelector", status);
        return nodes->Get("AcquisitionStatus") == "1";
    }
    void StartCamera() {
        nodes->SetInteger("TLParamsLocked", 1);
        nodes->Execute("AcquisitionStart");
    }
    void Await(const char* status, bool expected) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kPatienceMs);
        while (Is(status) != expected && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
        EXPECT_EQ(Is(status), expected) << status;
    }
    void AwaitEnd() { Await("AcquisitionActive", false); }
    uint64_t NumStarted() { return StreamInfo(STREAM_INFO_NUM_STARTED).Uint64(); }

    std::vector<uint64_t> FetchIds(size_t count) {
        std::vector<uint64_t> ids;
        while (ids.size() < count)
            ids.push_back(FrameId(Fetch()));
        return ids;
    }

    void OpenSecondStream() {
        ASSERT_EQ(p.DevOpenDataStream(device, "C/Stream1", &stream), GC_ERR_SUCCESS);
        ASSERT_EQ(p.GCRegisterEvent(stream, EVENT_NEW_BUFFER, &newBuffer), GC_ERR_SUCCESS);
    }
    uint64_t FetchTime() { return BufferInfo(Fetch(), BUFFER_INFO_TIMESTAMP_NS).Uint64(); }

    // Nanoseconds from each of some frames to the next.
    std::vector<uint64_t> Intervals(uint32_t frames) {
        nodes->Set("AcquisitionMode", "MultiFrame");
        nodes->SetInteger("AcquisitionFrameCount", frames);
        AllocateAndQueue(frames);
        EXPECT_EQ(StartStream(), GC_ERR_SUCCESS);
        StartCamera();
        std::vector<uint64_t> intervals;
        uint64_t last = 0;
        for (uint32_t i = 0; i < frames; ++i) {
            const uint64_t time = FetchTime();
            if (i != 0) intervals.push_back(time - last);
            last = time;
        }
        EXPECT_EQ(Stop(), GC_ERR_SUCCESS);
        return intervals;
    }
};

TEST_F(CameraAcquisitionTest, NoFrameComesBeforeTheStart) {
    Open("frameRate='0' width='16' height='8'", "GEV");
    AllocateAndQueue(2);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    nodes->SetInteger("TLParamsLocked", 1);
    EXPECT_EQ(TryFetch(50), GC_ERR_TIMEOUT);
    EXPECT_FALSE(Is("AcquisitionActive"));
    EXPECT_EQ(StreamInfo(STREAM_INFO_NUM_QUEUED).Size(), 2U);
    nodes->Execute("AcquisitionStart");
    EXPECT_TRUE(IsDone("AcquisitionStart"));
    EXPECT_TRUE(Is("AcquisitionActive"));
    EXPECT_THAT(FetchIds(2), ElementsAre(0U, 1U));
}

TEST_F(CameraAcquisitionTest, StartsOnlyWithLockedParametersAndAStream) {
    Open("frameRate='0' width='16' height='8'", "U3V");
    AllocateAndQueue(1);
    nodes->SetInteger("TLParamsLocked", 1);
    EXPECT_EQ(Write(kAcquisitionStart, 1), GC_ERR_ACCESS_DENIED);
    nodes->SetInteger("TLParamsLocked", 0);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    EXPECT_FALSE(IsWritable("AcquisitionStart"));
    EXPECT_EQ(Write(kAcquisitionStart, 1), GC_ERR_ACCESS_DENIED);
    nodes->SetInteger("TLParamsLocked", 1);
    EXPECT_TRUE(IsWritable("AcquisitionStart"));
    EXPECT_EQ(Write(kAcquisitionStart, 1), GC_ERR_SUCCESS);
    EXPECT_EQ(Write(kAcquisitionStart, 1), GC_ERR_BUSY);
}

TEST_F(CameraAcquisitionTest, WhatFramesDependOnIsFixedWhileLocked) {
    const std::pair<const char*, uint64_t> fixed[] = {
        {"Width", 0x2110},           {"Height", 0x2114},
        {"OffsetX", 0x2118},         {"OffsetY", 0x211C},
        {"BinningVertical", 0x2124}, {"PixelFormat", 0x212C},
        {"AcquisitionMode", 0x2200}, {"AcquisitionFrameCount", 0x220C},
        {"ChunkModeActive", 0x9000}, {"ChunkEnable", 0x9014},
        {"UserSetLoad", 0x2510},     {"GevSCPSPacketSize", 0x2620}};
    Open("width='64' height='8' frameRate='0'", "GEV");
    AllocateAndQueue(1);
    const auto expectWritable = [&](bool writable) {
        for (const auto& [name, address] : fixed)
            EXPECT_EQ(IsWritable(name), writable) << name;
    };
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    expectWritable(true);
    nodes->SetInteger("TLParamsLocked", 1);
    expectWritable(false);
    for (const auto& [name, address] : fixed)
        EXPECT_EQ(Write(address, 1), GC_ERR_ACCESS_DENIED) << name;
    EXPECT_TRUE(IsWritable("ExposureTime"));

    // While the camera acquires, the client's lock alone does not decide.
    nodes->Execute("AcquisitionStart");
    nodes->SetInteger("TLParamsLocked", 0);
    expectWritable(false);
    EXPECT_EQ(Write(0x2110, 32), GC_ERR_ACCESS_DENIED);
    nodes->Execute("AcquisitionAbort");
    AwaitEnd();
    expectWritable(true);
    EXPECT_EQ(Write(0x2110, 32), GC_ERR_SUCCESS);
}

TEST_F(CameraAcquisitionTest, SingleAndMultipleFramesEndByThemselves) {
    Open("width='16' height='8' frameRate='200'", "CXP");
    AllocateAndQueue(8);
    const auto startAndCount = [&](uint64_t frames) {
        const uint64_t before = NumStarted();
        StartCamera();
        for (uint64_t id = 0; id < frames; ++id)
            EXPECT_EQ(FrameId(Fetch()), id);
        AwaitEnd();
        EXPECT_EQ(NumStarted() - before, frames);
        EXPECT_EQ(nodes->Integer("TLParamsLocked"), 1) << "is the client's";
    };
    nodes->Set("AcquisitionMode", "SingleFrame");
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    startAndCount(1);
    startAndCount(1);
    nodes->SetInteger("TLParamsLocked", 0);
    nodes->Set("AcquisitionMode", "MultiFrame");
    nodes->SetInteger("AcquisitionFrameCount", 3);
    startAndCount(3);
    startAndCount(3);
}

TEST_F(CameraAcquisitionTest, AStopSendsTheFrameUnderWayAndAnAbortDoesNot) {
    Open("width='16' height='8' frameRate='1'", "GEV");
    nodes->Set("ExposureTime", "300000");
    AllocateAndQueue(3);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    Await("FrameActive", true);
    nodes->Execute("AcquisitionStop");
    EXPECT_THAT(FetchIds(1), ElementsAre(0U));
    AwaitEnd();
    EXPECT_TRUE(IsDone("AcquisitionStop"));

    nodes->Execute("AcquisitionStart");
    Await("FrameActive", true);
    nodes->Execute("AcquisitionAbort");
    EXPECT_TRUE(IsDone("AcquisitionAbort"));
    EXPECT_FALSE(Is("FrameActive"));
    EXPECT_FALSE(Is("AcquisitionActive"));
    EXPECT_EQ(NumStarted(), 1U);
    EXPECT_EQ(StreamInfo(STREAM_INFO_NUM_QUEUED).Size(), 2U);
}

TEST_F(CameraAcquisitionTest, TheBufferOfAFrameGivenUpIsTheNextOneAgain) {
    Open("width='4000' height='2000' linkSpeed='1000000'", "GEV");  // eight seconds a frame
    AllocateAndQueue(2);
    BUFFER_HANDLE first = nullptr;
    ASSERT_EQ(p.DSGetBufferID(stream, 0, &first), GC_ERR_SUCCESS);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    while (NumStarted() == 0)
        std::this_thread::yield();
    nodes->Execute("AcquisitionAbort");
    EXPECT_EQ(NumStarted(), 0U);
    BUFFER_HANDLE next = nullptr;
    ASSERT_EQ(p.DSGetBufferID(stream, 0, &next), GC_ERR_SUCCESS);
    EXPECT_EQ(next, first);
}

TEST_F(CameraAcquisitionTest, EndsWithTheStream) {
    Open("width='16' height='8' frameRate='0'", "GEV");
    AllocateAndQueue(1);
    ASSERT_EQ(Start(), GC_ERR_SUCCESS);
    const BUFFER_HANDLE buffer = Fetch();
    ASSERT_EQ(StopStream(), GC_ERR_SUCCESS);
    EXPECT_FALSE(Is("AcquisitionActive"));
    EXPECT_EQ(nodes->Integer("TLParamsLocked"), 1);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    EXPECT_EQ(TryFetch(50), GC_ERR_TIMEOUT);
    nodes->Execute("AcquisitionStart");
    EXPECT_EQ(Fetch(), buffer);
}

TEST_F(CameraAcquisitionTest, EachStartedStreamGetsTheFrames) {
    Open("width='16' height='8' frameRate='200' streams='2'", "GEV");
    AllocateAndQueue(3);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    const DS_HANDLE first = stream;
    const EVENT_HANDLE firstEvent = newBuffer;
    ASSERT_NO_FATAL_FAILURE(OpenSecondStream());
    AllocateAndQueue(3);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    nodes->Set("AcquisitionMode", "MultiFrame");
    nodes->SetInteger("AcquisitionFrameCount", 3);
    StartCamera();
    EXPECT_THAT(FetchIds(3), ElementsAre(0U, 1U, 2U));
    ASSERT_EQ(StopStream(), GC_ERR_SUCCESS);
    stream = first;
    newBuffer = firstEvent;
    EXPECT_THAT(FetchIds(3), ElementsAre(0U, 1U, 2U));
}

TEST_F(CameraAcquisitionTest, ACameraThatKeepsNoTimeWaitsForBuffersAndDropsNothing) {
    Open("width='16' height='8' frameRate='0' streams='2'", "GEV");
    Allocate();
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    const DS_HANDLE withoutInput = stream;
    ASSERT_NO_FATAL_FAILURE(OpenSecondStream());
    AllocateAndQueue(2);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    EXPECT_THAT(FetchIds(2), ElementsAre(0U, 1U));
    stream = withoutInput;
    EXPECT_EQ(StreamInfo(STREAM_INFO_NUM_UNDERRUN).Uint64(), 0U);
}

// Nothing hangs, and everything can be closed.
TEST_F(CameraAcquisitionTest, StreamsAndCommandsMeetInAnyOrder) {
    Open("width='16' height='8' frameRate='2000' streams='2'", "GEV");
    AllocateAndQueue(2);
    DS_HANDLE other = nullptr;
    ASSERT_EQ(p.DevOpenDataStream(device, "C/Stream1", &other), GC_ERR_SUCCESS);
    BUFFER_HANDLE buffer = nullptr;
    ASSERT_EQ(p.DSAllocAndAnnounceBuffer(other, 128, nullptr, &buffer), GC_ERR_SUCCESS);
    const auto startAndStop = [&](DS_HANDLE handle) {
        for (int i = 0; i < 200; ++i) {
            p.DSFlushQueue(handle, ACQ_QUEUE_ALL_TO_INPUT);
            EXPECT_EQ(p.DSStartAcquisition(handle, ACQ_START_FLAGS_DEFAULT, GENTL_INFINITE), 0);
            EXPECT_EQ(p.DSStopAcquisition(
                          handle, i % 2 == 0 ? ACQ_STOP_FLAGS_DEFAULT : ACQ_STOP_FLAGS_KILL),
                      GC_ERR_SUCCESS);
        }
    };
    auto firstEnds = std::async(std::launch::async, startAndStop, stream);
    auto secondEnds = std::async(std::launch::async, startAndStop, other);
    for (int i = 0; i < 200; ++i) {
        for (const uint32_t address : {0x2608U, 0x2204U, 0x2234U, 0x2240U, 0x2208U, 0x2244U})
            Write(address, 1);
        Write(0x2608, 0);
        Write(0x2234, 0);
    }
    firstEnds.get();
    secondEnds.get();
    EXPECT_FALSE(Is("AcquisitionActive"));
}

TEST_F(CameraAcquisitionTest, TheClientsStateEndsWithTheClient) {
    UseConfig("<ZelSim><Interface id='I' type='GEV'><Camera id='C'/></Interface></ZelSim>");
    interface = OpenInterface("I");
    DEV_HANDLE controlling = nullptr;
    ASSERT_EQ(p.IFOpenDevice(interface, "C", DEVICE_ACCESS_CONTROL, &controlling), GC_ERR_SUCCESS);
    PORT_HANDLE control = nullptr;
    ASSERT_EQ(p.DevGetPort(controlling, &control), GC_ERR_SUCCESS);

    // One who only looks on, with a stream of his own.
    TL_HANDLE other = nullptr;
    ASSERT_EQ(p.TLOpen(&other), GC_ERR_SUCCESS);
    IF_HANDLE otherInterface = nullptr;
    ASSERT_EQ(p.TLOpenInterface(other, "I", &otherInterface), GC_ERR_SUCCESS);
    ASSERT_EQ(p.IFOpenDevice(otherInterface, "C", DEVICE_ACCESS_READONLY, &device), GC_ERR_SUCCESS);
    ASSERT_EQ(p.DevOpenDataStream(device, "C/Stream0", &stream), GC_ERR_SUCCESS);
    AllocateAndQueue(1);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);

    PortNodeMap observed(p, Remote());
    PortNodeMap map(p, control);
    map.SetInteger("TLParamsLocked", 1);
    map.Execute("AcquisitionStart");
    EXPECT_EQ(observed.Integer("TLParamsLocked"), 1);
    EXPECT_EQ(observed.Get("AcquisitionStatus"), "1");
    ASSERT_EQ(p.DevClose(controlling), GC_ERR_SUCCESS);
    EXPECT_EQ(observed.Integer("TLParamsLocked"), 0);
    EXPECT_EQ(observed.Get("AcquisitionStatus"), "0");
    EXPECT_EQ(observed.Integer("FrameSettingsLocked"), 0);
}

TEST_F(CameraAcquisitionTest, AFreeRunningCameraFollowsTheStream) {
    Open("acquisition='free-running' frameRate='0' width='16' height='8'", "GEV");
    AllocateAndQueue(1);
    EXPECT_TRUE(IsWritable("Width"));
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    const BUFFER_HANDLE buffer = Fetch();
    EXPECT_EQ(FrameId(buffer), 0U);
    EXPECT_FALSE(IsWritable("Width"));
    EXPECT_EQ(nodes->Integer("TLParamsLocked"), 0);
    nodes->Execute("AcquisitionStart");  // it runs already
    nodes->Execute("AcquisitionStop");
    AwaitEnd();
    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    nodes->Execute("AcquisitionStart");
    EXPECT_EQ(FrameId(Fetch()), 0U);
    ASSERT_EQ(StopStream(), GC_ERR_SUCCESS);
    EXPECT_TRUE(IsWritable("Width"));
    EXPECT_EQ(p.PlugCamera("I", "<Camera id='D' acquisition='sometimes'/>"),
              GC_ERR_INVALID_PARAMETER);
}

// A frame is exposed while the one before is read out.
TEST_F(CameraAcquisitionTest, WithoutARateTheSensorSetsThePace) {
    Open("", "GEV");
    nodes->Set("AcquisitionFrameRateEnable", "0");
    EXPECT_EQ(Float("ExposureTime"), 10000);
    EXPECT_DOUBLE_EQ(Float("ResultingFrameRate"), 100);
    EXPECT_THAT(Intervals(4), ElementsAre(10000000U, 10000000U, 10000000U));
    nodes->SetInteger("TLParamsLocked", 0);

    // 307200 bytes take 2457600 ns at the 125 MB/s of the link.
    nodes->Set("ExposureTime", "1000");
    EXPECT_DOUBLE_EQ(Float("ResultingFrameRate"), 125e6 / 307200);
    EXPECT_THAT(Intervals(3), ElementsAre(2457600U, 2457600U));
}

TEST_F(CameraAcquisitionTest, ANewRateCountsFromTheLastFrame) {
    constexpr uint64_t kBefore = 10000000;  // nanoseconds
    constexpr uint64_t kAfter = 100000000;
    Open("width='16' height='8' frameRate='100'", "GEV");
    nodes->Set("ExposureTime", "100");
    AllocateAndQueue(50);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    uint64_t last = FetchTime();
    uint64_t interval = FetchTime() - last;
    last += interval;
    nodes->Set("AcquisitionFrameRate", "10");
    for (; interval == kBefore; last += interval)
        interval = FetchTime() - last;
    EXPECT_GE(interval, kAfter);  // more where the thread heard of it late
}

TEST_F(CameraAcquisitionTest, TheLinkLimitsTheFrameRate) {
    Open("linkSpeed='12288000' frameRate='60'", "U3V");
    EXPECT_EQ(nodes->Integer("DeviceLinkSpeed"), 12288000);
    const GENAPI_NAMESPACE::CFloatPtr rate = nodes->Node("AcquisitionFrameRate");
    EXPECT_DOUBLE_EQ(rate->GetMax(), 40);
    EXPECT_DOUBLE_EQ(rate->GetValue(), 40);
    nodes->Set("AcquisitionFrameRate", "32");
    EXPECT_DOUBLE_EQ(Float("ResultingFrameRate"), 32);
    EXPECT_THAT(Intervals(3), ElementsAre(31250000U, 31250000U));
    nodes->SetInteger("TLParamsLocked", 0);
    nodes->SetInteger("Height", 240);
    EXPECT_DOUBLE_EQ(rate->GetMax(), 80);
}

TEST_F(CameraAcquisitionTest, ACameraThatKeepsNoTimeHasNoResultingRate) {
    Open("frameRate='0'", "U3V");
    EXPECT_FALSE(nodes->IsReadable("ResultingFrameRate"));
    nodes->Set("AcquisitionFrameRateEnable", "1");
    EXPECT_DOUBLE_EQ(Float("ResultingFrameRate"), 30);
    EXPECT_THAT(Intervals(2), ElementsAre(::testing::AnyOf(33333333U, 33333334U)));
}

TEST_F(CameraAcquisitionTest, SoftwareTriggersGiveOneFrameEach) {
    Open("width='16' height='8' frameRate='500'", "U3V");
    EXPECT_FALSE(IsWritable("TriggerSoftware"));
    nodes->Set("TriggerMode", "On");
    AllocateAndQueue(4);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    nodes->Execute("TriggerSoftware");  // nothing waits for it yet
    EXPECT_FALSE(Is("FrameTriggerWait"));
    StartCamera();
    for (uint64_t id = 0; id < 3; ++id) {
        EXPECT_TRUE(Is("FrameTriggerWait"));
        nodes->Execute("TriggerSoftware");
        EXPECT_EQ(FrameId(Fetch()), id);
    }
    EXPECT_EQ(NumStarted(), 3U);
    nodes->Set("TriggerMode", "Off");
    EXPECT_EQ(FrameId(Fetch()), 3U);
}

TEST_F(CameraAcquisitionTest, TriggersDuringAnExposureAreLost) {
    Open("width='16' height='8'", "GEV");
    nodes->Set("TriggerMode", "On");
    nodes->Set("ExposureTime", "500000");
    AllocateAndQueue(3);
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    nodes->Execute("TriggerSoftware");
    Await("FrameActive", true);
    EXPECT_FALSE(Is("FrameTriggerWait"));
    nodes->Execute("TriggerSoftware");
    EXPECT_EQ(FrameId(Fetch()), 0U);
    EXPECT_TRUE(Is("FrameTriggerWait"));
    nodes->Execute("AcquisitionStop");
    AwaitEnd();
    EXPECT_EQ(NumStarted(), 1U);
}

}  // namespace

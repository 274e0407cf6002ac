// What an application does, through the shared library alone, with the simulated cameras.
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"
#include "tests/support/acquisition.h"
#include "tests/support/components.h"
#include "tests/support/holder.h"
#include "tests/support/simulator.h"

namespace {

using ZelCam::DeviceAccess;
using ZelCam::InterfaceType;

using ZelTest::Holder;

// Frames as fast as they are asked for.
constexpr const char* kCameras =
    "<ZelSim>"
    "<Interface id='eth0' type='GEV' version='4.2'>"
    "<Camera id='left' model='L' serial='1' width='64' height='48' frameRate='0'/>"
    "<Camera id='right' width='30' height='20' frameRate='0' pixelFormat='BGR8' xPadding='6'/>"
    "</Interface>"
    "<Interface id='cl0' type='CL'/>"
    "<Interface id='usb0' type='U3V'><Camera id='usb' frameRate='0' bigEndian='true'/></Interface>"
    "</ZelSim>";

constexpr uint64_t kPatience = 30000;  // milliseconds

// Calls the operation in a slot of an object's table, counted from 1, as a caller compiled
// elsewhere would.
template <typename Result, typename Object, typename... Arguments>
Result CallSlot(Object* object, size_t slot, Arguments... arguments) {
    void** table = nullptr;
    std::memcpy(&table, reinterpret_cast<const char*>(object), sizeof table);
    return reinterpret_cast<Result (*)(const Object*, Arguments...)>(table[slot - 1])(object,
                                                                                      arguments...);
}

class PublicSession : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(simulator.configure(kCameras), 0);
        system.reset(ZelCam_GetSystem());
        ASSERT_NE(system, nullptr);
    }
    void TearDown() override {
        system.reset();
        EXPECT_EQ(simulator.openHandles(), 0U);
    }

    void Open(const char* interfaceId, const char* cameraId) {
        ZelCam::Interface* const iface = system->GetInterfaceById(interfaceId);
        ASSERT_NE(iface, nullptr);
        ZelCamErr err = ZelCamErr_Error;
        device =
            ZelCam_CreateDevice(iface->GetDeviceInfoById(cameraId), DeviceAccess::Exclusive, &err);
        ASSERT_EQ(err, ZelCamErr_Success);
        stream = device->GetStreamByIndex(0);
        ASSERT_NE(stream, nullptr);
    }
    // Opens the stream of a camera, starts it, and then the camera.
    void Start(const char* interfaceId, const char* cameraId, uint64_t count = ZelCam::Infinite) {
        ASSERT_NO_FATAL_FAILURE(Open(interfaceId, cameraId));
        StartOpened(count);
    }
    void StartOpened(uint64_t count = ZelCam::Infinite) {
        ASSERT_EQ(stream->AllocBufferQueue(nullptr, 4), ZelCamErr_Success);
        ASSERT_EQ(stream->StartAcquisition(count, ZelCam::StartFlag_Default), ZelCamErr_Success);
        const auto write = [this](uint64_t address, const auto& bytes) {
            return device->WriteMem(address, bytes.data(), bytes.size(), nullptr) ==
                   ZelCamErr_Success;
        };
        ASSERT_TRUE(ZelTest::CameraAcquisition(write, device->GetEndianness() == 0).Start());
    }

    // Takes frames and gives them back; their frame identifiers follow each other.
    void Grab(int count) {
        uint64_t last = 0;
        for (int i = 0; i < count; ++i) {
            ZelCamErr err = ZelCamErr_Error;
            ZelCam::Buffer* const buffer = stream->GetBuffer(kPatience, &err);
            ASSERT_NE(buffer, nullptr) << err;
            ASSERT_EQ(err, ZelCamErr_Success);
            if (i > 0) {
                EXPECT_EQ(buffer->GetFrameID(), last + 1);
            }
            last = buffer->GetFrameID();
            EXPECT_EQ(buffer->GetImage()->frameId, last);
            EXPECT_FALSE(buffer->IsIncomplete());
            ASSERT_EQ(stream->QueueBuffer(buffer), ZelCamErr_Success);
        }
    }

    std::vector<std::string> CameraIds(const char* interfaceId) {
        std::vector<std::string> ids;
        const Holder<ZelCam::List<ZelCam::DeviceInfo>> list(
            system->GetInterfaceById(interfaceId)->GetDeviceInfoList());
        for (auto* info = list->GetFirst(); info != nullptr; info = list->GetNext())
            ids.emplace_back(info->GetID());
        return ids;
    }

    ZelTest::Simulator simulator;
    Holder<ZelCam::System> system;
    ZelCam::Device* device = nullptr;
    ZelCam::Stream* stream = nullptr;
};

}  // namespace

TEST_F(PublicSession, ListsInterfacesAndCameras) {
    const auto count = [this](InterfaceType type) {
        return Holder<ZelCam::List<ZelCam::Interface>>(system->GetInterfaceList(type))->GetCount();
    };
    EXPECT_EQ(count(InterfaceType::Unknown), 3U);
    EXPECT_EQ(count(InterfaceType::GEV), 1U);
    EXPECT_THAT(CameraIds("eth0"), testing::ElementsAre("left", "right"));
    EXPECT_THAT(CameraIds("cl0"), testing::IsEmpty());
    ZelCam::Interface* const eth0 = system->GetInterfaceById("eth0");
    EXPECT_STREQ(eth0->GetVersion(), "4.2");
    EXPECT_STREQ(eth0->GetDeviceInfoById("left")->GetModel(), "L");
}

TEST_F(PublicSession, GrabsFrames) {
    ASSERT_NO_FATAL_FAILURE(Start("eth0", "left"));
    EXPECT_TRUE(stream->IsGrabbing());
    EXPECT_EQ(stream->GetNumAnnounced(), 4U);
    ASSERT_NO_FATAL_FAILURE(Grab(50));
    EXPECT_GE(stream->GetNumDelivered(), 50U);
    EXPECT_EQ(stream->ReleaseBufferQueue(), ZelCamErr_AcquisitionActive);
    EXPECT_EQ(stream->StopAcquisition(ZelCam::StopFlag_Default), ZelCamErr_Success);
    EXPECT_FALSE(stream->IsGrabbing());
    EXPECT_EQ(stream->ReleaseBufferQueue(), ZelCamErr_Success);
    EXPECT_EQ(stream->GetBufferQueueSize(), 0U);
}

TEST_F(PublicSession, TwoCamerasStreamAtTheSameTimeAndDescribeTheirImages) {
    ASSERT_NO_FATAL_FAILURE(Start("eth0", "left"));
    ZelCam::Stream* const left = stream;
    ASSERT_NO_FATAL_FAILURE(Start("eth0", "right"));
    EXPECT_NE(left->GetBuffer(kPatience, nullptr), nullptr);
    ZelCam::Buffer* const buffer = stream->GetBuffer(kPatience, nullptr);
    ASSERT_NE(buffer, nullptr);
    const ZelImageInfo& image = *buffer->GetImage();
    EXPECT_EQ(image.pixelType, static_cast<uint32_t>(ZelPixelType_BGR8));
    EXPECT_EQ(image.linePitch, 96U);
    EXPECT_EQ(image.imageSize, 1920U);
}

TEST_F(PublicSession, CountedAcquisitionEndsByItself) {
    ASSERT_NO_FATAL_FAILURE(Start("usb0", "usb", 3));
    ASSERT_NO_FATAL_FAILURE(Grab(3));
    ZelCamErr err = ZelCamErr_Success;
    EXPECT_EQ(stream->GetBuffer(0, &err), nullptr);
    EXPECT_EQ(err, ZelCamErr_GenTL_Timeout);
    EXPECT_EQ(device->GetEndianness(), 0U);
}

TEST_F(PublicSession, CancelEndsAWait) {
    ASSERT_NO_FATAL_FAILURE(Start("eth0", "left", 1));
    ASSERT_NO_FATAL_FAILURE(Grab(1));
    ZelCamErr err = ZelCamErr_Success;
    std::thread waiter([&] { stream->GetBuffer(ZelCam::Infinite, &err); });
    EXPECT_EQ(stream->CancelBuffer(), ZelCamErr_Success);  // before or during the wait
    waiter.join();
    EXPECT_EQ(err, ZelCamErr_GenTL_Abort);
}

TEST_F(PublicSession, StreamingGoesOnWhileCamerasComeAndGo) {
    ASSERT_NO_FATAL_FAILURE(Start("eth0", "left"));
    ZelCam::Interface* const eth0 = system->GetInterfaceById("eth0");
    ZelCam::DeviceInfo* const right = eth0->GetDeviceInfoById("right");
    for (int round = 0; round < 5; ++round) {
        ASSERT_EQ(simulator.plug("eth0", "<Camera id='new' frameRate='0'/>"), 0);
        bool changed = false;
        EXPECT_EQ(eth0->ReEnumerateDevices(&changed, 100), ZelCamErr_Success);
        EXPECT_TRUE(changed);
        EXPECT_THAT(CameraIds("eth0"), testing::ElementsAre("left", "right", "new"));
        ASSERT_NO_FATAL_FAILURE(Grab(5));
        ASSERT_EQ(simulator.unplug("new"), 0);
        EXPECT_EQ(eth0->ReEnumerateDevices(&changed, 100), ZelCamErr_Success);
        EXPECT_TRUE(changed);
        EXPECT_THAT(CameraIds("eth0"), testing::ElementsAre("left", "right"));
    }
    EXPECT_EQ(eth0->GetDeviceInfoById("right"), right);
}

TEST_F(PublicSession, AnUnpluggedCameraEndsItsWaitsAndIsTornDown) {
    ASSERT_NO_FATAL_FAILURE(Start("eth0", "left"));
    ASSERT_NO_FATAL_FAILURE(Grab(5));
    ASSERT_EQ(simulator.unplug("left"), 0);
    // Frames delivered before may still come.
    ZelCamErr err = ZelCamErr_Success;
    for (int i = 0; i < 100 && err == ZelCamErr_Success; ++i)
        stream->GetBuffer(kPatience, &err);
    EXPECT_NE(err, ZelCamErr_Success);
    EXPECT_NE(err, ZelCamErr_GenTL_Timeout);
    uint32_t value = 0;
    EXPECT_NE(device->ReadMem(0, &value, sizeof value), ZelCamErr_Success);
    stream->StopAcquisition(ZelCam::StopFlag_Kill);
    stream->Release();
    device->Release();
    ZelCam::Interface* const eth0 = system->GetInterfaceById("eth0");
    EXPECT_EQ(eth0->ReEnumerateDevices(nullptr, 100), ZelCamErr_Success);
    EXPECT_THAT(CameraIds("eth0"), testing::ElementsAre("right"));
}

TEST_F(PublicSession, TwoSystemsShareTheCamerasButNotAnExclusiveOne) {
    const Holder<ZelCam::System> other(ZelCam_GetSystem());
    ASSERT_NE(other, nullptr);
    ASSERT_NO_FATAL_FAILURE(Start("eth0", "left"));
    ZelCam::Interface* const iface = other->GetInterfaceById("eth0");
    ZelCam::DeviceInfo* const left = iface->GetDeviceInfoById("left");
    ZelCamErr err = ZelCamErr_Success;
    EXPECT_EQ(ZelCam_CreateDevice(left, DeviceAccess::Exclusive, &err), nullptr);
    EXPECT_THAT(err, testing::AnyOf(ZelCamErr_GenTL_AccessDenied, ZelCamErr_GenTL_ResourceInUse));
    EXPECT_NE(left->GetAccessStatus(), 1);

    device->Release();
    ZelCam::Device* const mine = ZelCam_CreateDevice(left, DeviceAccess::Exclusive, &err);
    EXPECT_NE(mine, nullptr);
    EXPECT_EQ(err, ZelCamErr_Success);
}

TEST_F(PublicSession, ADeviceMayBringItsOwnSystem) {
    system.reset();
    device = ZelCam_CreateDevice(nullptr, DeviceAccess::Exclusive, nullptr);
    ASSERT_NE(device, nullptr);
    EXPECT_STREQ(device->GetInfo()->GetID(), "left");
    device->Release();
}

TEST_F(PublicSession, EventsReachTheirModule) {
    ASSERT_NO_FATAL_FAILURE(Start("usb0", "usb"));
    struct Received {
        std::mutex mutex;
        std::condition_variable changed;
        std::vector<std::string> texts;
    } received;
    const auto callback = [](uint32_t type, const void* data, size_t size, void* priv) {
        auto& r = *static_cast<Received*>(priv);
        const std::lock_guard<std::mutex> lock(r.mutex);
        EXPECT_GE(size, 6U);
        r.texts.push_back(std::to_string(type) + static_cast<const char*>(data));
        r.changed.notify_all();
    };
    ZelCam::Interface* const usb0 = system->GetInterfaceById("usb0");
    EXPECT_EQ(usb0->RegisterEvent2(5, callback, &received), ZelCamErr_Success);
    EXPECT_EQ(device->RegisterEvent2(3, callback, &received), ZelCamErr_Success);
    EXPECT_EQ(simulator.fire("usb0", 5, 1, "iface", 6), 0);
    EXPECT_EQ(simulator.fire("usb", 3, 1, "camera", 7), 0);
    std::unique_lock<std::mutex> lock(received.mutex);
    EXPECT_TRUE(received.changed.wait_for(lock, std::chrono::milliseconds(kPatience),
                                          [&] { return received.texts.size() == 2; }));
    EXPECT_THAT(received.texts, testing::UnorderedElementsAre("5iface", "3camera"));
    lock.unlock();
    system.reset();  // ends the threads before `received` goes
}

// The chunks of two buffers, one after the other; then of none.
TEST_F(PublicSession, ChunksOfABufferAreFeaturesOfTheCameraUntilItIsQueued) {
    for (const char* const cameraInterface : {"eth0", "usb0"}) {
        SCOPED_TRACE(cameraInterface);
        ASSERT_NO_FATAL_FAILURE(Open(cameraInterface, CameraIds(cameraInterface)[0].c_str()));
        ZelCamErr err = ZelCamErr_Error;
        ZelGenParam::Array& features = *device->GetCameraParameters(&err);
        for (const char* const kind : {"FrameID", "ExposureTime"}) {
            ASSERT_EQ(features.SetBooleanValue("ChunkModeActive", true), ZelCamErr_Success);
            ASSERT_EQ(features.SetEnumValueStr("ChunkSelector", kind), ZelCamErr_Success);
            ASSERT_EQ(features.SetBooleanValue("ChunkEnable", true), ZelCamErr_Success);
        }
        ASSERT_EQ(features.SetFloatValue("ExposureTime", 123), ZelCamErr_Success);
        const auto frameId = [&] { return features.GetIntegerValue("ChunkFrameID", &err); };

        ASSERT_NO_FATAL_FAILURE(StartOpened());
        ZelCam::Buffer* const first = stream->GetBuffer(kPatience, nullptr);
        ZelCam::Buffer* const second = stream->GetBuffer(kPatience, nullptr);
        ASSERT_TRUE(first != nullptr && second != nullptr);
        frameId();
        EXPECT_EQ(err, ZelCamErr_AccessDenied);
        for (ZelCam::Buffer* const buffer : {first, second, first}) {
            ASSERT_EQ(buffer->AttachChunks(), ZelCamErr_Success);
            EXPECT_EQ(frameId(), static_cast<int64_t>(buffer->GetFrameID()));
            EXPECT_EQ(features.GetFloatValue("ChunkExposureTime", &err), 123);
        }
        EXPECT_NE(first->GetFrameID(), second->GetFrameID());
        features.GetFloatValue("ChunkGain", &err);
        EXPECT_EQ(err, ZelCamErr_AccessDenied) << "the frame has no such chunk";

        second->DetachChunks();  // of another buffer
        ASSERT_EQ(stream->QueueBuffer(second), ZelCamErr_Success);
        EXPECT_EQ(frameId(), static_cast<int64_t>(first->GetFrameID()));
        ASSERT_EQ(stream->QueueBuffer(first), ZelCamErr_Success);
        frameId();
        EXPECT_EQ(err, ZelCamErr_AccessDenied);

        ZelCam::Buffer* const third = stream->GetBuffer(kPatience, nullptr);
        ASSERT_NE(third, nullptr);
        for (const bool revoked : {false, true}) {
            ASSERT_EQ(third->AttachChunks(), ZelCamErr_Success);
            EXPECT_GT(frameId(), 0);
            revoked ? (void)stream->RevokeBuffer(third) : third->DetachChunks();
            frameId();
            EXPECT_EQ(err, ZelCamErr_AccessDenied);
        }
        device->Release();
    }
}

TEST_F(PublicSession, FramesWithoutChunksHaveNoneToAttach) {
    ASSERT_NO_FATAL_FAILURE(Start("eth0", "left"));
    ZelCam::Buffer* const buffer = stream->GetBuffer(kPatience, nullptr);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->AttachChunks(), ZelCamErr_GenTL_NoData);
    EXPECT_EQ(buffer->GetNumParts(), 0U);
    device->Release();
}

// The producer lists those of a multi-part payload, and the library finds those of a container.
TEST_F(PublicSession, PartsAreTheSameInAMultiPartPayloadAndInAContainer) {
    for (const std::string payload : {"MultiPart", "GenDC"}) {
        SCOPED_TRACE(payload);
        system.reset();
        const std::string cameras =
            "<ZelSim><Interface id='eth0' type='GEV'><Camera id='3d' width='64' height='40' "
            "offsetX='4' offsetY='2' xPadding='3' frameRate='0' payload='" +
            payload + "'/></Interface></ZelSim>";
        ASSERT_EQ(simulator.configure(cameras.c_str()), 0);
        system.reset(ZelCam_GetSystem());
        ASSERT_NO_FATAL_FAILURE(Start("eth0", "3d", 2));
        for (uint64_t frame = 0; frame < 2; ++frame) {
            ZelCam::Buffer* const buffer = stream->GetBuffer(kPatience, nullptr);
            ASSERT_NE(buffer, nullptr);
            ASSERT_EQ(buffer->GetNumParts(), 3U);
            const auto part = [&](size_t index) {
                ZelBufferPart found{};
                EXPECT_EQ(buffer->GetPart(index, &found, sizeof found), ZelCamErr_Success);
                return found;
            };
            const auto dataOf = [&](size_t index) {
                const ZelBufferPart found = part(index);
                const auto* const data = static_cast<const uint8_t*>(found.data);
                return std::vector<uint8_t>(data, data + found.size);
            };
            const ZelBufferPart range = part(1);
            EXPECT_THAT(
                (std::vector<uint64_t>{range.dataType, range.format, range.formatNamespace,
                                       range.width, range.height, range.xOffset, range.yOffset,
                                       range.xPadding, range.deliveredHeight, range.sourceId,
                                       range.regionId, range.dataPurposeId}),
                testing::ElementsAre(5, 0x011000B8, 4, 64, 40, 4, 2, 3, 40, 1, 2, 4));
            EXPECT_EQ(part(0).dataType, 1U);
            EXPECT_EQ(part(2).dataType, 9U);
            EXPECT_EQ(dataOf(1), ZelTest::RangeBytes(frame, 64, 40, 3));
            EXPECT_EQ(dataOf(2), ZelTest::ConfidenceBytes(frame, 64, 40, 3));
            ZelBufferPart none{};
            EXPECT_EQ(buffer->GetPart(3, &none, sizeof none), -1017);
        }
        device->Release();
    }
}

// Operations of each module, called as somebody with an older header would.
TEST_F(PublicSession, RawTablesLeadToTheSameOperations) {
    ASSERT_NO_FATAL_FAILURE(Start("usb0", "usb", 2));
    ASSERT_NO_FATAL_FAILURE(Grab(2));
    EXPECT_STREQ(CallSlot<const char*>(system.get(), 5), system->GetVersion());
    ZelCam::DeviceInfo* const info = CallSlot<ZelCam::DeviceInfo*>(device, 5);
    EXPECT_EQ(info, device->GetInfo());
    EXPECT_EQ(CallSlot<uint32_t>(device, 16), 0U);  // a big-endian camera
    EXPECT_EQ(CallSlot<int32_t>(info, 9), info->GetAccessStatus());
    EXPECT_EQ(CallSlot<const char*>(info, 18), nullptr);
    ZelCam::Interface* const iface = CallSlot<ZelCam::Interface*>(info, 1);
    EXPECT_EQ(CallSlot<ZelCam::DeviceInfo*>(iface, 2), info);
    EXPECT_STREQ(CallSlot<const char*>(iface, 7), "usb0");
    auto* const list = CallSlot<ZelCam::List<ZelCam::DeviceInfo>*>(iface, 1);
    EXPECT_EQ(CallSlot<size_t>(list, 2), 1U);
    EXPECT_EQ(CallSlot<ZelCam::DeviceInfo*>(list, 3), info);
    CallSlot<void>(list, 1);
    ZelGenParam::Array* const features = device->GetCameraParameters(nullptr);
    EXPECT_EQ(CallSlot<ZelCamErr>(features, 26, int64_t{1}), ZelCamErr_Success);  // Poll
    const char* reason = nullptr;
    EXPECT_EQ(CallSlot<ZelCamErr>(features, 27, "Width", "320", &reason), ZelCamErr_AccessDenied);
    EXPECT_STRNE(reason, "");
    ZelCamErr err = ZelCamErr_Error;
    EXPECT_STREQ(CallSlot<const char*>(features, 28, "Width", &err), "640");
    ZelCam::Buffer* const buffer = stream->CreateBuffer(64, nullptr, &err);
    ZelBufferPart part{};
    EXPECT_EQ(CallSlot<bool>(buffer, 17), buffer->IsKacFrameB());
    EXPECT_EQ(CallSlot<size_t>(buffer, 18), 0U);
    EXPECT_LT(CallSlot<ZelCamErr>(buffer, 19, size_t{0}, &part, sizeof part), 0);
    EXPECT_LT(CallSlot<ZelCamErr>(buffer, 20), 0);  // no frame, so no chunks
    CallSlot<void>(buffer, 21);
    EXPECT_EQ(CallSlot<uint64_t>(stream, 19), 2U);  // delivered
    EXPECT_EQ(CallSlot<size_t>(stream, 24), size_t{640} * 480);
    EXPECT_EQ(CallSlot<size_t>(stream, 27), stream->GetBufferAlignment());
    CallSlot<void>(stream, 1);
    CallSlot<void>(device, 1);
    CallSlot<void>(system.release(), 1);
    EXPECT_EQ(simulator.openHandles(), 0U);
}

// The type information of the interfaces is the same in the library and here.
TEST_F(PublicSession, FeaturesAreCastToTheirKinds) {
    ZelCam::Interface* const iface = system->GetInterfaceById("eth0");
    const Holder<ZelCam::Device> camera(
        ZelCam_CreateDevice(iface->GetDeviceInfoById("left"), DeviceAccess::Exclusive, nullptr));
    ASSERT_NE(camera, nullptr);
    ZelCamErr err = ZelCamErr_Error;
    ZelGenParam::Array* const features = camera->GetCameraParameters(&err);
    ASSERT_NE(features, nullptr) << err;
    ZelGenParam::Param* const width = features->GetParam("Width", &err);
    ASSERT_NE(width, nullptr) << err;
    EXPECT_NE(dynamic_cast<ZelGenParam::Int*>(width), nullptr);
    EXPECT_EQ(dynamic_cast<ZelGenParam::Int*>(width), width->ToInt());
    EXPECT_EQ(dynamic_cast<ZelGenParam::Float*>(width), nullptr);
    ZelGenParam::Param* const format = features->GetParam("PixelFormat", &err);
    ASSERT_NE(format, nullptr) << err;
    EXPECT_NE(dynamic_cast<ZelGenParam::Enum*>(format), nullptr);
}

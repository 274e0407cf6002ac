// The public tables: every operation keeps its slot for ever.
#include <cstddef>
#include <iterator>

#include <gtest/gtest.h>

#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"
#include "ZelGenParam/Param.h"
#include "tests/public/slot.h"

namespace {

using namespace ZelGenParam;

// Checks the slots of one table, in the order in which they are given, from `first` on.
template <typename... Operations>
void ExpectSlots(const char* table, size_t first, Operations... operations) {
    size_t slot = first;
    const auto check = [&](size_t actual) {
        EXPECT_EQ(actual, slot) << table;
        ++slot;
    };
    (check(SlotOf(operations)), ...);
}

}  // namespace

TEST(Slots, System) {
    using I = ZelCam::System;
    ExpectSlots("System", 1, &I::Release, &I::GetInterfaceList, &I::GetInterfaceById,
                &I::GetDisplayName, &I::GetVersion, &I::CreateDeviceFromConfig,
                &I::RegisterGenTLProvider);
}

TEST(Slots, List) {
    using I = ZelCam::List<ZelCam::Interface>;
    using D = ZelCam::List<ZelCam::DeviceInfo>;
    ExpectSlots("List", 1, &I::Release, &I::GetCount, &I::GetFirst, &I::GetNext);
    ExpectSlots("List", 1, &D::Release, &D::GetCount, &D::GetFirst, &D::GetNext);
}

TEST(Slots, Interface) {
    using I = ZelCam::Interface;
    ExpectSlots("Interface", 1, &I::GetDeviceInfoList, &I::GetFirstDeviceInfo,
                &I::GetDeviceInfoById, &I::ReEnumerateDevices, &I::GetDescription, &I::GetType,
                &I::GetId, &I::GetVersion, &I::RegisterEvent2, &I::RegisterEvent,
                &I::UnRegisterEvent2, &I::UnRegisterEvent, &I::GetParameters,
                &I::CreateDeviceFromConfig);
}

TEST(Slots, DeviceInfo) {
    using I = ZelCam::DeviceInfo;
    ZelCamErr (I::*const forceText)(const char*, const char*, const char*) = &I::ForceIP;
    ZelCamErr (I::*const forceNumber)(uint32_t, uint32_t, uint32_t) = &I::ForceIP;
    ExpectSlots("DeviceInfo", 1, &I::GetInterface, &I::GetID, &I::GetVendor, &I::GetModel,
                &I::GetDisplayName, &I::GetUserDefinedName, &I::GetSerialNumber, &I::GetVersion,
                &I::GetAccessStatus, &I::GetUSB3HostInfo, &I::GetIPAddress, &I::GetIPMask,
                &I::GetIPGateway, &I::GetIP, forceText, forceNumber, &I::SetExternalXml,
                &I::GetExternalXml);
}

TEST(Slots, Device) {
    using I = ZelCam::Device;
    ExpectSlots("Device", 1, &I::Release, &I::GetNumStreams, &I::GetStreamByIndex,
                &I::GetStreamById, &I::GetInfo, &I::ReadMem, &I::WriteMem, &I::RegisterEvent2,
                &I::RegisterEvent, &I::UnRegisterEvent2, &I::UnRegisterEvent,
                &I::GetTransportParameters, &I::GetCameraParameters, &I::SaveConfiguration,
                &I::LoadConfiguration, &I::GetEndianness);
}

TEST(Slots, Stream) {
    using I = ZelCam::Stream;
    ExpectSlots("Stream", 1, &I::Release, &I::CreateBuffer, &I::SetBuffer, &I::RevokeBuffer,
                &I::QueueBuffer, &I::GetBuffer, &I::CancelBuffer, &I::FlushBuffers,
                &I::StartAcquisition, &I::StopAcquisition, &I::AllocBufferQueue,
                &I::ReleaseBufferQueue, &I::GetBufferQueueSize, &I::RegisterEvent,
                &I::RegisterEvent2, &I::UnRegisterEvent, &I::UnRegisterEvent2, &I::GetParameters,
                &I::GetNumDelivered, &I::GetNumUnderrun, &I::GetNumAnnounced, &I::GetNumQueued,
                &I::GetNumAwaitDelivery, &I::GetBufferSize, &I::IsGrabbing, &I::GetMinNumBuffers,
                &I::GetBufferAlignment);
}

TEST(Slots, Buffer) {
    using I = ZelCam::Buffer;
    ExpectSlots("Buffer", 1, &I::GetImage, &I::GetBufferPtr, &I::GetImageOffset, &I::GetBufferSize,
                &I::GetPixelFormat, &I::GetUserPtr, &I::GetTimestamp, &I::GetFrameID,
                &I::IsIncomplete, &I::GetWidth, &I::GetHeight, &I::GetXOffset, &I::GetYOffset,
                &I::GetXPadding, &I::GetYPadding, &I::GetDeliveredHeight, &I::IsKacFrameB);
}

TEST(Slots, Array) {
    using I = Array;
    ExpectSlots("Array", 1, &I::GetParam, &I::GetBoolean, &I::GetCommand, &I::GetEnum, &I::GetFloat,
                &I::GetInt, &I::GetString, &I::GetRootCategory, &I::GetNodeMap, &I::GetCount,
                &I::GetParamByIndex, &I::SetBooleanValue, &I::GetBooleanValue, &I::SetEnumValueStr,
                &I::SetEnumValue, &I::GetEnumValueStr, &I::GetEnumValue, &I::SetFloatValue,
                &I::GetFloatValue, &I::SetIntegerValue, &I::GetIntegerValue, &I::SetStringValue,
                &I::GetStringValue, &I::ExecuteCommand, &I::IsCommandDone, &I::Poll);
}

TEST(Slots, Param) {
    using I = Param;
    ExpectSlots("Param", 1, &I::GetType, &I::GetName, &I::GetToolTip, &I::GetDescription,
                &I::GetDisplayName, &I::GetVisibility, &I::IsValueCached, &I::IsAvailable,
                &I::IsWritable, &I::IsReadable, &I::IsStreamable, &I::IsVisible,
                &I::RegisterEventSink, &I::UnregisterEventSink, &I::GetNode, &I::ToCategory,
                &I::ToBoolean, &I::ToCommand, &I::ToEnumEntry, &I::ToEnum, &I::ToFloat, &I::ToInt,
                &I::ToString);
    ExpectSlots("ParamEventSink", 1, &ParamEventSink::OnParamChanged);
}

// The kinds share the table of Param, and go on behind its 23 slots.
TEST(Slots, ParamKinds) {
    constexpr size_t first = 24;
    ExpectSlots("Int", first, &Int::SetValue, &Int::GetValue, &Int::GetMin, &Int::GetMax,
                &Int::GetIncrement);
    ExpectSlots("Float", first, &Float::SetValue, &Float::GetValue, &Float::GetMin, &Float::GetMax,
                &Float::GetUnit);
    ExpectSlots("String", first, &String::GetMaxLength, &String::GetValue, &String::SetValue);
    ExpectSlots("Enum", first, &Enum::GetEnumEntriesCount, &Enum::GetEnumEntryByIndex,
                &Enum::GetEnumEntryByName, &Enum::GetEnumEntryByValue, &Enum::GetValue,
                &Enum::GetValueStr, &Enum::SetValue, &Enum::SetValueStr);
    ExpectSlots("EnumEntry", first, &EnumEntry::GetValue, &EnumEntry::GetValueStr);
    ExpectSlots("Boolean", first, &Boolean::SetValue, &Boolean::GetValue);
    ExpectSlots("Command", first, &Command::Execute, &Command::IsDone);
    ExpectSlots("Category", first, &Category::GetCount, &Category::GetParamByIndex);
    ExpectSlots("GetType", 1, &Int::GetType);
    ExpectSlots("GetType", 1, &Category::GetType);
}

TEST(Layout, EnumerationsAreThirtyTwoBits) {
    static_assert(sizeof(ZelCam::InterfaceType) == 4 && sizeof(ZelCam::DeviceAccess) == 4 &&
                  sizeof(ZelCam::FlushOperation) == 4 && sizeof(ParamType) == 4 &&
                  sizeof(Visibility) == 4 && sizeof(II_PIXEL_TYPE_DEFINES) == 4);
    EXPECT_EQ(static_cast<int>(ZelCam::InterfaceType::Unknown), 255);
    EXPECT_EQ(static_cast<int>(ZelCam::InterfaceType::HDSDI), 5);
    EXPECT_EQ(static_cast<int>(ZelCam::DeviceAccess::Exclusive), 2);
    EXPECT_EQ(static_cast<int>(ZelCam::FlushOperation::AllDiscard), 4);
    EXPECT_EQ(static_cast<int>(ParamType_Category), 8);
    EXPECT_EQ(static_cast<int>(Visibility::UndefinedVisibility), 99);
}

// What an application reads directly. Offsets as the compiler of any application lays them out.
TEST(Layout, ImageInfo) {
    const size_t offsets[] = {
        offsetof(ZelImageInfo, structSize), offsetof(ZelImageInfo, version),
        offsetof(ZelImageInfo, pixelType),  offsetof(ZelImageInfo, bitsPerChannel),
        offsetof(ZelImageInfo, reserved1),  offsetof(ZelImageInfo, packing),
        offsetof(ZelImageInfo, channels),   offsetof(ZelImageInfo, bitsPerPixel),
        offsetof(ZelImageInfo, reserved2),  offsetof(ZelImageInfo, width),
        offsetof(ZelImageInfo, height),     offsetof(ZelImageInfo, imageSize),
        offsetof(ZelImageInfo, linePitch),  offsetof(ZelImageInfo, timestamp),
        offsetof(ZelImageInfo, frameId),    offsetof(ZelImageInfo, reserved3),
        offsetof(ZelImageInfo, imageData),  offsetof(ZelImageInfo, bufferBase)};
    const size_t expected[] = {0, 4, 8, 12, 16, 20, 24, 28, 32, 36, 40, 44, 48, 56, 64, 72, 80, 88};
    for (size_t i = 0; i < std::size(expected); ++i)
        EXPECT_EQ(offsets[i], expected[i]) << i;
    EXPECT_EQ(sizeof(ZelImageInfo), 96U);
}
